// kept_traces_test.cpp - sessions that were traced once, played back: one with a real protocol, and
// three in which a fault was made. traces/record.sh records them anew.
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class KeptTraces : public ProgramTest {
protected:
    support::ProgramResult Replay(const std::string& name, const Arguments& arguments) const {
        Arguments all{"--sdk", "trace:" + support::BuiltFile("traces/" + name + ".trace")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Mivora(all);
    }
};

TEST_F(KeptTraces, FramesOfAGigECamera) {
    const auto result = Replay("gige-grab", {"grab", "--frames", "5", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 5);
    EXPECT_EQ(report["errors"], 0);
    EXPECT_EQ(report["imageSize"], 512 * 512);
    EXPECT_EQ(report["account"]["sdk"], nullptr);
    EXPECT_TRUE(report["account"]["closed"]);
}

TEST_F(KeptTraces, AGigECameraThatIsKilled) {
    const auto result =
        Replay("gige-camera-lost", {"grab", "--frames", "0", "--timeout", "1000", "--json"});
    ExpectFailure(result, 1, {"\"message\":\"no more frames from camera 0 (Fake, "});
    EXPECT_FALSE(Contains(result.errors, "differs")) << result.errors;
    const Json report = Json::parse(result.output);
    EXPECT_GE(report["frames"], 10);
    EXPECT_TRUE(report["account"]["closed"]);
}

TEST_F(KeptTraces, FramesThatAreIncomplete) {
    UseCamera(); // which only its configuration's name is wanted of
    const auto result = Replay("incomplete-frames", {"grab", "--frames", "10", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 10);
    EXPECT_EQ(report["errors"], 3);
    EXPECT_EQ(report["account"]["incomplete"], 3);
    EXPECT_EQ(report["account"]["sdk"]["callbacks"], 13);
}

TEST_F(KeptTraces, ACameraThatIsNotOpened) {
    UseCamera();
    const auto result = Replay("refused-open", {"grab", "--frames", "3"});
    ExpectFailure(result, 1,
                  {"mivora: OpenActCamera failed with 4 (the camera SDK refused or ",
                   "for camera 0 (Camera A, 0x0A05F6D0)"});
    EXPECT_FALSE(Contains(result.errors, "differs")) << result.errors;
}

} // namespace
} // namespace scenario
