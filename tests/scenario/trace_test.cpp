// trace_test.cpp - sessions that are traced, played back, printed and compared
#include "tests/scenario/program_test.h"
#include "tests/support/wait_until.h"

#include <algorithm>
#include <cstdint>

namespace scenario {
namespace {

constexpr std::size_t kMostBytes = 1024 * 1024 + 4096;

class SdkTrace : public ProgramTest {
protected:
    void SetUp() override { UseCamera(); }

    /// Runs mivora with the trace "a.trace" written.
    support::ProgramResult Traced(const Arguments& arguments) const {
        Arguments all{"--trace-sdk", PathOf("a.trace")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Mivora(all);
    }
    /// Runs it with that trace in place of an SDK.
    support::ProgramResult Replayed(const Arguments& arguments) const {
        Arguments all{"--sdk", "trace:" + PathOf("a.trace")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Mivora(all);
    }
    support::ProgramResult Print(const Arguments& arguments) const {
        Arguments all{"trace", PathOf("a.trace")};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return support::RunProgram("pyxen-tool", all);
    }
    static std::ptrdiff_t Lines(const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    }
};

TEST_F(SdkTrace, ChangesNothingAndIsPlayedBackWithoutTheCamera) {
    const auto plain = Mivora({"info", "--json"});
    const auto traced = Traced({"info", "--json"});
    ExpectDone(traced);
    EXPECT_EQ(traced.output, plain.output);
    EXPECT_PRED2(Contains, traced.output, "(1.4.0.2)"); // the file version of the simulator
    directory.Write("PxnC.xml", "<PxnC/>");
    const auto replayed = Replayed({"info", "--json"});
    ExpectDone(replayed);
    EXPECT_EQ(replayed.output, plain.output);
}

TEST_F(SdkTrace, ShowsAThreadTheCallsAndWhatTheyStored) {
    ExpectDone(Traced({"grab", "--frames", "3"}));
    const auto printed = Print({});
    ExpectDone(printed);
    EXPECT_PRED2(Contains, printed.output, "PxnStartup(configPath=\"" + PathOf("PxnC.xml"));
    EXPECT_PRED2(Contains, printed.output, ", cameras=[\"A\"], found=1 (");
    EXPECT_PRED2(Contains, printed.output, " > FrameCallback(callback=0x");
    EXPECT_PRED2(Contains, printed.output, ", width=64, height=48, ");
    EXPECT_PRED2(Contains, printed.output, "   PxnCaptureFrameQueue(handle=0x"); // inside of it
    const auto opened = Print({"--call", "CameraOpen"});
    EXPECT_EQ(Lines(opened.output), 1);
    EXPECT_PRED2(Contains, opened.output,
                 "PxnCameraOpen(id=\"Eth0|A\", accessMode=1) = 0, camera=");
    EXPECT_EQ(Print({"--text", "PxnCameraOpen", "--thread", "1", "--failed"}).output, "");
    const auto summary = Print({"--summary"});
    EXPECT_PRED2(Contains, summary.output,
                 "PxnCameraOpen                              1         0");
    EXPECT_GT(Print({"--whole"}).output.size(), printed.output.size());
    ExpectFailure(support::RunProgram("pyxen-tool", {"trace", PathOf("none")}), 1,
                  {"cannot read " + PathOf("none")});
    ExpectFailure(support::RunProgram("pyxen-tool", {"trace"}), 2, {"FILE"});
}

TEST_F(SdkTrace, PlaysFramesFaultsAndCountsBack) {
    const std::string script =
        directory.Write("faults.txt", "frame incomplete 2\nfail PxnCamerasList 2 -24\n");
    const auto traced = Traced({"--sdk-script", script, "grab", "--frames", "4", "--json"});
    ExpectDone(traced);
    const auto replayed = Replayed({"--sdk-script", script, "grab", "--frames", "4", "--json"});
    ExpectDone(replayed);
    const Json before = Json::parse(traced.output);
    const Json after = Json::parse(replayed.output);
    EXPECT_EQ(before["errors"], 1);
    EXPECT_EQ(after["errors"], 1);
    EXPECT_EQ(after["frames"], 4);
    EXPECT_EQ(after["account"]["sdk"], before["account"]["sdk"]);
}

// A synchronous snap: who stops an asynchronous one depends on time.
TEST_F(SdkTrace, PlaysImagesBackWhenTheyAreTraced) {
    ExpectDone(Mivora({"--trace-sdk", PathOf("a.trace"), "--trace-frames", "snap", "--mode", "3",
                       "-o", PathOf("before.raw")}));
    ExpectDone(Replayed({"snap", "--mode", "3", "-o", PathOf("after.raw")}));
    const std::string image = directory.Read("before.raw");
    EXPECT_NE(image, std::string(image.size(), '\0'));
    EXPECT_TRUE(directory.Read("after.raw") == image);
    ExpectDone(Traced({"snap", "--mode", "3", "-o", PathOf("before.raw")}));
    ExpectDone(Replayed({"snap", "--mode", "3", "-o", PathOf("after.raw")}));
    EXPECT_TRUE(directory.Read("after.raw") == std::string(image.size(), '\0'));
}

TEST_F(SdkTrace, NamesTheFirstDifference) {
    ExpectDone(Traced({"param", "get", "257"}));
    ExpectFailure(Replayed({"info"}), 1,
                  {"PxnC: " + PathOf("a.trace") + " differs: thread 1 at ", "the trace has Pxn",
                   "the module calls Pxn"});
    ExpectFailure(Replayed({"param", "set", "257", "2000", "40000"}), 1,
                  {"the module calls PxnFeature"});
    ExpectFailure(Replayed({"cameras"}), 1, {"differs", "the trace has PxnCameraOpen("});
    ExpectDone(Replayed({"param", "get", "257"}));
}

TEST_F(SdkTrace, IsReadAfterTheProgramWasKilled) {
    platform::Process process;
    std::string error;
    ASSERT_TRUE(support::StartProgram(
        process,
        support::ProgramStart("mivora",
                              WithConfig({"--trace-sdk", PathOf("a.trace"), "grab", "--frames", "0",
                                          "-o", PathOf("images"), "--format", "raw"})),
        &error))
        << error;
    EXPECT_TRUE(support::WaitUntil(
        [this] { return platform::PathExists(PathOf("images/frame-000003.raw")); }, 60000));
    EXPECT_PRED2(Contains, Print({"--call", "Callback"}).output, "FrameCallback"); // it still runs
    process.Kill();
    int status = 0;
    ASSERT_TRUE(process.Wait(60000, status));
    const auto printed = Print({});
    ExpectDone(printed);
    EXPECT_PRED2(Contains, printed.output, "FrameCallback");
    EXPECT_FALSE(Contains(printed.output, "PxnShutdown"));
    ExpectFailure(Replayed({"info"}), 1, {"differs"});
}

TEST_F(SdkTrace, KeepsTheNewestPartWithinItsSize) {
    ExpectDone(Mivora({"--trace-sdk", PathOf("a.trace"), "--trace-size", "1", "--trace-frames",
                       "grab", "--frames", "400"}));
    EXPECT_LE(directory.Read("a.trace").size(), kMostBytes);
    const auto printed = Print({});
    ExpectDone(printed);
    EXPECT_EQ(printed.output.find("The beginning has been overwritten.\n"), 0u);
    EXPECT_PRED2(Contains, printed.output, "PxnShutdown()");
    EXPECT_FALSE(Contains(printed.output, "PxnStartup"));
    ExpectFailure(Replayed({"info"}), 1,
                  {"its beginning has been overwritten; it wants a bigger file"});
    ExpectFailure(Mivora({"--trace-size", "0", "info"}), 2, {"--trace-size"});
}

TEST_F(SdkTrace, ComparesSessions) {
    const auto trace = [this](const std::string& name, const Arguments& arguments) {
        Arguments all{"--trace-sdk", PathOf(name)};
        all.insert(all.end(), arguments.begin(), arguments.end());
        ExpectDone(Mivora(all));
        return PathOf(name);
    };
    const auto compare = [](const std::string& left, const std::string& right) {
        return support::RunProgram("pyxen-tool", {"trace", "diff", left, right});
    };
    const std::string first = trace("1.trace", {"param", "get", "257"});
    const auto same = compare(first, trace("2.trace", {"param", "get", "257"}));
    ExpectDone(same);
    EXPECT_EQ(same.output, "");
    const auto other = compare(first, trace("3.trace", {"param", "set", "257", "2000", "40000"}));
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.output.find("thread 1\n- "), 0u) << other.output;
    EXPECT_EQ(Lines(other.output), 3) << other.output;
    // A session that is played back is traced like the one with the camera.
    ExpectDone(Mivora(
        {"--sdk", "trace:" + first, "--trace-sdk", PathOf("4.trace"), "param", "get", "257"}));
    ExpectDone(compare(first, PathOf("4.trace")));
    ExpectFailure(compare(first, PathOf("none")), 1, {"cannot read " + PathOf("none")});
}

TEST_F(SdkTrace, PassesTheControlInterfaceOn) {
    const Arguments shell = WithConfig({"--trace-sdk", PathOf("a.trace"), "shell"});
    const auto result = support::RunProgram("mivora", shell, "Init\nSdkControl status\nDeInit\n");
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output, "announced");
    EXPECT_PRED2(Contains, Print({"--call", "PxnControl"}).output,
                 "command=\"status\", answerSize=1048576) = 0, answer=");
}

TEST_F(SdkTrace, ServesHostsWithoutTheOptions) {
    platform::ProcessStart start = support::ProgramStart("mivora", WithConfig({"info"}));
    const std::string sdk = support::BuiltFile("simulator");
    start.environment = {{"PYXEN_HOME", support::BuiltFile("trace")},
                         {"PYXEN_TRACE_SDK", sdk},
                         {"PYXEN_TRACE_FILE", PathOf("a.trace")},
                         {"PYXEN_TRACE_SIZE", "2"}};
    ExpectDone(support::RunProgram(start));
    EXPECT_PRED2(Contains, Print({}).output, "PxnCameraOpen(id=\"Eth0|A\"");
    start.environment = {{"PYXEN_HOME", support::BuiltFile("trace")},
                         {"PYXEN_TRACE_REPLAY", PathOf("a.trace")}};
    ExpectDone(support::RunProgram(start));
    start.environment.back() = {"PYXEN_TRACE_SDK", ""};
    ExpectFailure(support::RunProgram(start), 1, {"PxnC: PYXEN_TRACE_SDK names no camera SDK"});
    start.environment.back() = {"PYXEN_TRACE_SDK", support::BuiltFile("incomplete")};
    ExpectFailure(support::RunProgram(start), 1, {" lacks Pxn"});
    start.environment = {{"PYXEN_HOME", support::BuiltFile("trace")},
                         {"PYXEN_TRACE_SDK", sdk},
                         {"PYXEN_TRACE_FILE", PathOf("b.trace")},
                         {"PYXEN_TRACE_SIZE", "much"}};
    ExpectFailure(support::RunProgram(start), 1, {"PYXEN_TRACE_SIZE=much is no size in MB"});
}

TEST_F(SdkTrace, SaysWhyThereIsNone) {
    ExpectFailure(Mivora({"--trace-sdk", PathOf("none/a.trace"), "info"}), 1,
                  {"PxnC: cannot write the trace " + PathOf("none/a.trace") + ": "});
    ExpectFailure(Mivora({"--sdk", PathOf("none"), "--trace-sdk", PathOf("a.trace"), "info"}), 1,
                  {"there is no file " + PathOf("none")});
    ExpectFailure(Mivora({"--sdk", "trace:" + PathOf("none"), "info"}), 1,
                  {"PxnC: cannot play back " + PathOf("none") + ": "});
}

} // namespace
} // namespace scenario
