// json_output_test.cpp - what commands print with --json, and how they fail
#include "tests/scenario/program_test.h"

#include <sstream>

namespace scenario {
namespace {

class JsonOutput : public ProgramTest {
protected:
    void SetUp() override { UseCamera(); }

    /// The object that a command prints, without its schema, which must be 1.
    static Json Report(const support::ProgramResult& result) {
        EXPECT_EQ(result.errors, "");
        Json report = Json::parse(result.output, nullptr, false);
        EXPECT_TRUE(report.is_object()) << result.output;
        EXPECT_EQ(report.value("schema", 0), 1) << result.output;
        report.erase("schema");
        return report;
    }
    static Json Feature(const char* name, const Json& value) {
        return {{"module", "Camera"}, {"name", name}, {"value", value}};
    }
};

TEST_F(JsonOutput, HasTheValuesOfFeatures) {
    EXPECT_EQ(Report(Mivora({"get", "Camera/Width", "Camera/PixelFormat", "-j"})),
              (Json{{"features", {Feature("Width", 64), Feature("PixelFormat", "Mono8")}}}));
    EXPECT_EQ(Report(Mivora({"set", "Camera/Width=32", "Camera/AcquisitionStop", "--json"})),
              (Json{{"features", {Feature("Width", 32), Feature("AcquisitionStop", nullptr)}}}));
}

TEST_F(JsonOutput, HasParameters) {
    EXPECT_EQ(Report(Mivora({"param", "get", "257", "--json"})),
              (Json{{"id", 257},
                    {"name", "exposure and frame interval"},
                    {"value1", 1000},
                    {"value2", 5000}}));
    EXPECT_EQ(Report(Mivora({"param", "limits", "261", "--json"})), (Json{{"id", 261},
                                                                          {"name", "time base"},
                                                                          {"min", -6},
                                                                          {"max", 0},
                                                                          {"min2", 0},
                                                                          {"max2", 0}}));
    EXPECT_EQ(Report(Mivora({"param", "set", "261", "-3", "--json"}))["value1"], -3);
}

TEST_F(JsonOutput, HasCommandChannels) {
    directory.Write("host.ini", "[Grabber_0]\nActCmdChannel=0\nNumCmdChannels=1\n"
                                "[CmdChannel_0]\nType=0\n");
    const Json report = Report(Mivora({"channels", "--json"}));
    ASSERT_GE(report["types"].size(), 2u);
    EXPECT_EQ(report["types"][1]["type"], 1);
    EXPECT_FALSE(report["types"][1]["name"].get<std::string>().empty());
    EXPECT_TRUE(report["configured"].is_array());
}

TEST_F(JsonOutput, HasSettings) {
    const std::string file = PathOf("bench.json");
    const Json saved = Report(Mivora({"settings", "save", file, "--json"}));
    EXPECT_EQ(saved["file"], file);
    EXPECT_GE(saved["saved"], 50);
    EXPECT_EQ(saved["refused"], Json::array());
    EXPECT_EQ(Report(Mivora({"settings", "diff", file, "--json"})),
              (Json{{"file", file}, {"differences", Json::array()}}));
    const Json shown = Report(Mivora({"settings", "show", file, "--json"}));
    EXPECT_EQ(shown["settings"].size(), saved["saved"]);
    UseCamera("<feature name=\"Width\" value=\"32\"/>");
    const auto differs = Mivora({"settings", "diff", file, "--json"});
    EXPECT_EQ(differs.status, 1);
    EXPECT_NE(differs.output.find(R"({"setting":"Camera/Width","camera":"32","file":"64"})"),
              std::string::npos)
        << differs.output;
    const Json tried = Report(Mivora({"settings", "load", file, "--dry-run", "--json"}));
    EXPECT_EQ(tried["dryRun"], true);
    const Json loaded = Report(Mivora({"settings", "load", file, "--json"}));
    EXPECT_EQ(loaded["dryRun"], false);
    EXPECT_NE(loaded["changed"].dump().find(R"({"from":"32","setting":"Camera/Width","to":"64"})"),
              std::string::npos)
        << loaded;
    EXPECT_EQ(loaded["same"].get<std::size_t>() + loaded["changed"].size(), saved["saved"]);
    EXPECT_EQ(loaded["unknown"], 0);
    EXPECT_EQ(loaded["refused"], Json::array());
}

TEST_F(JsonOutput, NamesRefusedSettingsInReportAndFailure) {
    directory.Write("bench.json",
                    R"({"format":"Mivora settings","version":1,"camera":{"vendor":"","model":"",)"
                    R"("serial":"","id":""},"settings":[{"module":"Camera","feature":"Width",)"
                    R"("selectors":{},"type":"integer","value":9999}]})");
    const auto result = Mivora({"settings", "load", PathOf("bench.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["refused"][0]["setting"], "Camera/Width");
    EXPECT_EQ(report["refused"][0]["value"], "9999");
    const Json failure = Json::parse(result.errors);
    EXPECT_EQ(failure["error"]["details"].size(), 1u);
}

TEST_F(JsonOutput, OfToolsHasTheirResults) {
    const Json key = Report(Tool({"camera-key", "Eth0|A", "--json"}));
    EXPECT_EQ(key["extendedId"], "Eth0|A");
    EXPECT_EQ(key["uniqueId"], std::stoul(Tool({"camera-key", "Eth0|A"}).output, nullptr, 16));
    directory.Write("dump", std::string(6, '\x40'));
    const std::string image = PathOf("image.pgm");
    EXPECT_EQ(Report(Tool({"convert", "--format", "Mono8", "--width", "3", "--height", "2",
                           PathOf("dump"), image, "--json"})),
              (Json{{"file", image}, {"width", 3}, {"height", 2}, {"components", 1}, {"bits", 8}}));
    directory.Write("cam.sync", "{\"SyncFeatures\":[]}");
    EXPECT_EQ(Report(Tool({"sync-check", PathOf("cam.sync"), "--json"}))["ok"], true);
}

TEST_F(JsonOutput, OfTracesHasTheirCalls) {
    const std::string first = PathOf("a.trace");
    const std::string second = PathOf("b.trace");
    ExpectDone(Mivora({"--trace-sdk", first, "info"}));
    ExpectDone(Mivora({"--trace-sdk", second, "get", "Camera/Width"}));
    const auto calls = Tool({"trace", first, "--call", "PxnStartup", "--json"});
    ExpectDone(calls);
    const Json call = Json::parse(calls.output);
    EXPECT_EQ(call["schema"], 1);
    EXPECT_EQ(call["call"], "PxnStartup");
    EXPECT_EQ(call["result"], 0);
    EXPECT_EQ(call["callback"], false);
    EXPECT_EQ(call["depth"], 0);
    EXPECT_GT(call["durationNs"], 0);
    EXPECT_EQ(call["text"].get<std::string>().find("PxnStartup(configPath="), 0u) << call;
    const Json summary = Report(Tool({"trace", first, "--summary", "--json"}));
    EXPECT_EQ(summary["hasBeginning"], true);
    EXPECT_NE(summary["calls"].dump().find(R"("call":"PxnCameraOpen","calls":1,"failed":0)"),
              std::string::npos)
        << summary;
    EXPECT_EQ(Report(Tool({"trace", "diff", first, first, "--json"})),
              (Json{{"differences", Json::array()}}));
    const auto differs = Tool({"trace", "diff", first, second, "--json"});
    EXPECT_EQ(differs.status, 1);
    EXPECT_EQ(Json::parse(differs.output)["differences"][0]["thread"], 1);
}

TEST_F(JsonOutput, OfTheShellIsALineForEachOperation) {
    const auto result = Mivora({"shell", "--json"}, "Init\nCamera 0\nNothing\nHelp\n");
    EXPECT_EQ(result.status, 2);
    std::istringstream lines(result.output);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, R"({"schema":1,"operation":"Init","result":0,"values":{}})");
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line)["values"]["name"], "Camera A");
    std::getline(lines, line);
    EXPECT_EQ(line, R"({"schema":1,"operation":"Nothing","refusal":"unknown operation"})");
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line)["values"]["Snap"], "MODE");
    EXPECT_FALSE(std::getline(lines, line));
    ExpectFailure(Mivora({"--camera", "0", "shell"}), 2, {"shell excludes --camera"});
}

TEST_F(JsonOutput, OfSerialPortsHasTheBytes) {
    UseCamera("<port number=\"1\" device=\"lens\"/>", "", "serial");
    const auto result = Mivora({"serial", "1", "--json"}, "FOCUS?\n");
    ExpectDone(result);
    std::istringstream lines(result.output);
    std::string text;
    std::string hex;
    for (std::string line; std::getline(lines, line);) {
        const Json piece = Json::parse(line);
        EXPECT_EQ(piece["schema"], 1);
        text += piece["received"];
        hex += piece["hex"];
    }
    EXPECT_EQ(text, "FOCUS 1200\r\n");
    EXPECT_EQ(hex, "464F43555320313230300D0A");
}

TEST_F(JsonOutput, OfEventsIsALineForEach) {
    const std::string script =
        directory.Write("script.txt", "after 700 unplug A\nafter 1000 plug A\n");
    const auto result = Mivora({"--sdk-script", script, "watch", "--for", "2500", "--json"});
    ExpectDone(result);
    std::istringstream lines(result.output);
    std::vector<std::string> events;
    double last = 0;
    for (std::string line; std::getline(lines, line);) {
        const Json event = Json::parse(line);
        EXPECT_EQ(event["schema"], 1);
        EXPECT_GE(event["seconds"], last);
        last = event["seconds"];
        events.push_back(event["event"]);
    }
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events.front(), "watching");
    EXPECT_EQ(events.back(), "there") << result.output;
}

TEST_F(JsonOutput, OfASnapSaysWhatWasWritten) {
    EXPECT_EQ(Report(Mivora({"snap", "--json", "-o", PathOf("image.png")})),
              (Json{{"file", PathOf("image.png")},
                    {"width", 64},
                    {"height", 48},
                    {"components", 1},
                    {"bits", 8}}));
}

TEST_F(JsonOutput, IsAlsoWhatAFailureIsReportedIn) {
    const auto failed = Mivora({"get", "Camera/Nothing", "--json"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.output, "");
    const Json failure = Json::parse(failed.errors);
    EXPECT_EQ(failure["schema"], 1);
    EXPECT_EQ(failure["error"]["status"], 1);
    EXPECT_PRED2(Contains, failure["error"]["message"], "failed with 5 ");
    EXPECT_PRED2(Contains, failure["error"]["details"][0], "no feature \"Nothing\"");
    const auto wrong = Tool({"formats", "--json", "--slow"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(Json::parse(wrong.errors)["error"]["status"], 2);
}

TEST_F(JsonOutput, DoesNotGoWithOtherLayouts) {
    ExpectFailure(Mivora({"features", "--tree", "--json"}), 2, {"excludes"});
    ExpectFailure(Mivora({"features", "--xml", "--filter", "a"}), 2, {"excludes"});
    const auto mixed = Mivora({"features", "--xml", "--json"});
    EXPECT_EQ(mixed.status, 2);
    EXPECT_PRED2(Contains, mixed.errors, "--json with --xml wants a file for the description");
    ExpectFailure(Tool({"trace", "a", "--summary", "--whole"}), 2, {"excludes"});
    ExpectFailure(Mivora({"--camera", "0", "channels"}), 2, {"channels excludes --camera"});
}

} // namespace
} // namespace scenario
