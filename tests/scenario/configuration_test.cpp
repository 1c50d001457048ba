// configuration_test.cpp - configuration files edited by hand and saved by the programs
#include "tests/scenario/program_test.h"

#include <set>
#include <sstream>

namespace scenario {
namespace {

class ConfigurationFile : public ProgramTest {
protected:
    /// The lines except those whose keys are written by a save.
    static std::string WithoutSavedKeys(const std::string& text) {
        static const std::set<std::string> kSaved = {
            "Exposure",    "Interval",       "TimeBase",      "TimerMode",      "TimerEnabled",
            "GrabberBits", "PostProcess",    "KeepNewest",    "CamCfgChange",   "CamCntrlEvent",
            "UniqueId",    "NumCmdChannels", "ActCmdChannel", "CameraUniqueID", "CameraName",
            "QZRCameraID", "ActMode",        "NumModes"};
        std::string rest;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            const std::string key = line.substr(0, line.find_first_of(" =\t"));
            if (kSaved.count(key) == 0) {
                rest += line + "\n";
            }
        }
        return rest;
    }
};

TEST_F(ConfigurationFile, EditedByHandKeepsAllButTheSavedKeysThroughAHundredSaves) {
    UseCamera();
    const std::string byHand = "; my bench, \xC3\xA4nd its cameras\r\n"
                               "\r\n"
                               "[GRABBER_0]   ; upper case\r\n"
                               "  Exposure =  1000\r\n"
                               "# Interval=3\r\n"
                               "Unknown = \"kept as it is\" ; with this\r\n"
                               "no key at all\r\n"
                               "uniqueid=Eth0|A\r\n"
                               "Exposure=77\r\n"
                               "\r\n"
                               "[TLSpecificConfig_1]\r\n"
                               "PixelFormat=Mono8\r\n"
                               ";[Camera_7]\r\n"
                               "[Empty]\r\n"
                               "\r\n"
                               "; the end, without a line end";
    directory.Write("host.ini", byHand);
    std::string lines = "LoadGrabberConfig\nInit\n";
    for (int i = 0; i < 100; ++i) {
        lines += "SaveGrabberConfig\n";
    }
    const auto result = Mivora({"shell"}, lines);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_EQ(result.output.find("SaveGrabberConfig = 22"), std::string::npos);
    const std::string after = directory.Read("host.ini");
    EXPECT_EQ(WithoutSavedKeys(after), WithoutSavedKeys(byHand) + "");
    for (const char* kept :
         {"; my bench, \xC3\xA4nd its cameras\r\n\r\n[GRABBER_0]   ; upper case\r\n"
          "  Exposure =  ",
          "\r\nuniqueid=Eth0|A\r\n", "\r\nExposure=77\r\n"}) {
        EXPECT_PRED2(Contains, after, kept);
    }
    // Nothing accumulates: another hundred saves leave the file unchanged.
    EXPECT_EQ(Mivora({"shell"}, lines).status, 0);
    EXPECT_EQ(directory.Read("host.ini"), after);
}

TEST_F(ConfigurationFile, NamedWithoutItsDirectoryHasTheSdksFileBesideItAllTheSame) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|A\n");
    platform::ProcessStart start =
        support::ProgramStart("mivora", {"--config", "host.ini", "cameras", "--json"});
    start.workingDirectory = directory.Path();
    const auto result = support::RunProgram(start);
    ExpectDone(result);
    const Json list = Json::parse(result.output);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["name"], "Camera A");
    EXPECT_TRUE(list[0]["active"]);
}

} // namespace
} // namespace scenario
