// output_posix_test.cpp - output that cannot be written: a full disk, a closed pipe
#include "platform/process.h"
#include "tests/scenario/program_test.h"

#include <filesystem>

namespace scenario {
namespace {

class UnwrittenOutput : public ProgramTest {
protected:
    void SetUp() override { UseCamera(); }

    /// Runs a program with its standard output redirected by shell syntax.
    static support::ProgramResult RunInto(const std::string& redirection,
                                          const std::string& program, const Arguments& arguments,
                                          const std::string& input = {}) {
        auto start = support::ProgramStart(program, {});
        start.arguments = {"-c", "exec \"$0\" \"$@\" " + redirection, start.program};
        start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
        start.program = "/bin/sh";
        return support::RunProgram(start, input);
    }
};

TEST_F(UnwrittenOutput, EndsACommandWithAnErrorThatSaysWhy) {
    const Arguments commands[] = {{"cameras"},
                                  {"cameras", "--json"},
                                  {"info"},
                                  {"grab", "--frames", "3", "--json"},
                                  {"param", "get", "257"},
                                  {"--help"}};
    for (const Arguments& command : commands) {
        const bool isJson = command.back() == "--json";
        ExpectFailure(RunInto(">/dev/full", "mivora", WithConfig(command)), 1,
                      {isJson ? "\"message\":\"cannot write to standard output"
                              : "mivora: cannot write to standard output"});
    }
    ExpectFailure(RunInto(">/dev/full", "pyxen-tool", {"formats"}), 1,
                  {"pyxen-tool: cannot write to standard output: No space left"});
}

TEST_F(UnwrittenOutput, DoesNotHideAnotherFailure) {
    ExpectFailure(RunInto(">/dev/full", "mivora", WithConfig({"--camera", "7", "info"})), 1,
                  {"there is no camera \"7\""});
    EXPECT_EQ(RunInto(">/dev/full", "mivora", {"nonsense"}).status, 2);
}

TEST_F(UnwrittenOutput, EndsTheShellAndTheWatch) {
    // Neither would end on its own for a long time.
    ExpectFailure(
        RunInto(">/dev/full", "mivora", WithConfig({"shell"}), "GetNumCameras\nSleep 3600000\n"), 1,
        {"cannot write to standard output"});
    ExpectFailure(RunInto(">/dev/full", "mivora", WithConfig({"watch"})), 1,
                  {"cannot write to standard output"});
}

TEST_F(UnwrittenOutput, IsNoFailureOfACommandThatPrintsNothing) {
    const auto result =
        RunInto(">/dev/full", "mivora", WithConfig({"snap", "-o", PathOf("image.raw")}));
    EXPECT_EQ(result.status, 0) << result.errors;
}

TEST_F(UnwrittenOutput, OfALogIsReportedOnce) {
    const auto result = Mivora({"--log", "/dev/full", "cameras"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors,
              "the log lacks lines that could not be written: No space left on device\n");
}

TEST_F(UnwrittenOutput, OfImagesNamesTheFile) {
    const std::string image = PathOf("image.png");
    std::filesystem::create_symlink("/dev/full", image);
    ExpectFailure(Mivora({"snap", "-o", image}), 1,
                  {"cannot write " + image + ": No space left on device"});
    const std::string images = PathOf("images");
    std::filesystem::create_directory(images);
    std::filesystem::create_symlink("/dev/full", images + "/frame-000002.raw");
    ExpectFailure(Mivora({"grab", "--frames", "50", "-o", images, "--format", "raw"}), 1,
                  {"cannot write " + images + "/frame-000002.raw: No space left on device"});
}

} // namespace
} // namespace scenario
