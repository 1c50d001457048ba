// settings_test.cpp - settings files with mivora
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class SettingsCommands : public ProgramTest {
protected:
    SettingsCommands() {
        UseCamera("<feature name=\"Gamma\" value=\"2\"/>",
                  "<camera kind=\"gige\" id=\"B\" extendedId=\"Eth0|B\" model=\"Camera B\" "
                  "interface=\"Eth0\" sensorWidth=\"64\" sensorHeight=\"64\"/>\n");
    }
    std::string File() const { return PathOf("bench.json"); }
    /// Saves the settings of the first camera.
    void Save() const {
        const auto result = Mivora({"--camera", "0", "settings", "save", File()});
        ExpectDone(result);
        EXPECT_PRED2(Contains, result.output, " settings saved to " + File() + "\n");
    }
    /// A settings file with just these settings.
    void WriteFile(const std::string& settings) const {
        directory.Write(
            "bench.json",
            "{\"format\":\"Mivora settings\",\"version\":1,\"camera\":{\"vendor\":\"\",\"model\":\"\",\"serial\":\"\",\"id\":\"\"},"
            "\"settings\":[" +
                settings + "]}");
    }
    static std::string Setting(const std::string& feature, const std::string& type,
                               const std::string& value) {
        return "{\"module\":\"Camera\",\"feature\":\"" + feature +
               "\",\"selectors\":{},\"type\":\"" + type + "\",\"value\":" + value + "}";
    }
};

TEST_F(SettingsCommands, AreSavedFromOneCameraAndLoadedIntoAnother) {
    Save();
    const auto trial = Mivora({"--camera", "1", "settings", "load", File(), "--dry-run"});
    ExpectDone(trial);
    EXPECT_PRED2(Contains, trial.output, "Camera/ExposureTime: 5000 -> 1000\n");
    EXPECT_PRED2(Contains, trial.output, "Camera/Height: 64 -> 48\n");
    EXPECT_PRED2(Contains, trial.output, " settings would be written, ");
    EXPECT_PRED2(Contains, trial.output, " refused, ");
    EXPECT_PRED2(Contains, trial.output, " at other positions of their selectors\n");
    const auto loaded = Mivora({"--camera", "1", "settings", "load", File()});
    ExpectDone(loaded);
    EXPECT_PRED2(Contains, loaded.output, "Camera/Height: 64 -> 48\n");
    EXPECT_PRED2(Contains, loaded.output, " settings written, ");
    EXPECT_PRED2(Contains, loaded.output, ", 0 refused\n");
}

TEST_F(SettingsCommands, AreComparedWithTheCamera) {
    Save();
    const auto same = Mivora({"--camera", "0", "settings", "diff", File()});
    ExpectDone(same);
    EXPECT_EQ(same.output, "");
    const auto other = Mivora({"--camera", "1", "settings", "diff", File()});
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.errors, "");
    EXPECT_PRED2(Contains, other.output, "Camera/Height: camera 64, file 48\n");
    EXPECT_EQ(other.output.find("Camera/Width"), std::string::npos) << other.output;
    EXPECT_EQ(other.output.find("Selector="), std::string::npos) << other.output;
    WriteFile(Setting("Width", "integer", "64") + "," + Setting("Nothing", "integer", "1"));
    const auto parts = Mivora({"--camera", "0", "settings", "diff", File()});
    EXPECT_EQ(parts.status, 1);
    EXPECT_TRUE(parts.output.starts_with("Camera/Nothing: file 1, no setting of the camera\n"))
        << parts.output;
    EXPECT_PRED2(Contains, parts.output, "\nCamera/Height: camera 48, not in the file\n");
    EXPECT_EQ(parts.output.find("Camera/Width:"), std::string::npos) << parts.output;
}

TEST_F(SettingsCommands, AreShownWithoutACamera) {
    Save();
    directory.Write("PxnC.xml", "<PxnC/>");
    const auto shown = Mivora({"settings", "show", File()});
    ExpectDone(shown);
    EXPECT_TRUE(shown.output.starts_with("# ")) << shown.output;
    EXPECT_PRED2(Contains, shown.output, "\nCamera/Height=48\n");
    EXPECT_PRED2(Contains, shown.output, "[GainSelector=");
    ExpectFailure(Mivora({"settings", "show", PathOf("none")}), 1,
                  {"mivora: cannot read " + PathOf("none") + ": "});
    directory.Write("bench.json", "{\"format\":\"\x1B[2J\"}");
    ExpectFailure(Mivora({"settings", "show", File()}), 1, {File() + " is no settings file"});
}

TEST_F(SettingsCommands, NameWhatTheCameraRefusedAndKeepTheRest) {
    WriteFile(Setting("Width", "integer", "32") + "," + Setting("Height", "integer", "9999") + "," +
              Setting("Other\\u001b[2J", "integer", "1"));
    for (const Arguments& command : {Arguments{"settings", "load", File(), "--dry-run"},
                                     Arguments{"settings", "load", File()}}) {
        const auto result = Mivora(command);
        ExpectFailure(result, 1,
                      {"mivora: " + File() + ": 2 of 3 settings failed",
                       "\n  Camera/Height=9999: ", "\n  Camera/Other\\x1B[2J=1: "});
        EXPECT_PRED2(Contains, result.output, "Camera/Width: 64 -> 32\n1 of 3 settings w");
        EXPECT_PRED2(Contains, result.output, ", 0 as they were, 2 refused\n");
    }
}

TEST_F(SettingsCommands, RefuseFilesThatAreNoSettings) {
    directory.Write("bench.json", "{\"format\":\"Mivora settings\",\"version\":1,}");
    ExpectFailure(
        Mivora({"settings", "load", File()}), 1,
        {"LoadSettings failed with 14 (the file cannot be used) for " + File(), "line 1, column "});
    ExpectFailure(Mivora({"settings", "diff", File()}), 1, {File() + " is no settings file"});
    ExpectFailure(
        Mivora({"settings", "save", PathOf("none/a.json")}), 1,
        {"SaveSettings failed with 14 (the file cannot be used) for " + PathOf("none/a.json")});
    ExpectFailure(Mivora({"settings"}), 2, {"subcommand"});
    ExpectFailure(Mivora({"settings", "load"}), 2, {"FILE"});
}

} // namespace
} // namespace scenario
