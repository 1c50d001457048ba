// recording_posix_test.cpp - recordings on a full disk, and given up by the user
#include "platform/process.h"
#include "tests/scenario/program_test.h"
#include "tests/support/wait_until.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace scenario {
namespace {

class RecordingsEnd : public ProgramTest {
protected:
    /// Starts mivora below a shell that runs `before`, with `after` behind the arguments.
    platform::ProcessStart InShell(const std::string& before, const Arguments& arguments,
                                   const std::string& after = {}) const {
        auto start = support::ProgramStart("mivora", {});
        start.arguments = {"-c", before + "exec \"$0\" \"$@\" " + after, start.program};
        const Arguments all = WithConfig(arguments);
        start.arguments.insert(start.arguments.end(), all.begin(), all.end());
        start.program = "/bin/sh";
        return start;
    }
    std::string Index() const { return directory.Read("images/frames.jsonl"); }
};

TEST_F(RecordingsEnd, WholeOnAFullDisk) {
    UseCamera();
    // No file can have more than 20 blocks of 512 bytes: three images, or the lines of some fifty.
    const std::string full = "trap '' XFSZ; ulimit -f 20; ";
    for (const char* const format : {"stack", "png"}) {
        const auto result =
            support::RunProgram(InShell(full, {"grab", "--frames", "1000", "-o", PathOf("images"),
                                               "--format", format, "--overwrite", "--json"}));
        ExpectFailure(result, 1, {"cannot write ", ": File too large"});
        const Json report = Json::parse(result.output);
        EXPECT_TRUE(report["account"]["closed"]) << report;
        const auto recorded = report["recording"]["recorded"].get<std::size_t>();
        EXPECT_GT(recorded, 0u);
        std::size_t files = 0;
        std::uintmax_t bytes = 0;
        for (const auto& entry : std::filesystem::directory_iterator(PathOf("images"))) {
            const std::string name = entry.path().filename().string();
            EXPECT_FALSE(Contains(name, ".tmp")) << name;
            if (Contains(name, "frame-") || name == "frames.stack") {
                ++files;
                bytes += entry.file_size();
            }
        }
        if (format == std::string("stack")) {
            EXPECT_EQ(bytes, recorded * 64 * 48);
        } else {
            EXPECT_EQ(files, recorded);
        }
        const Json description = Json::parse(directory.Read("images/recording.json"));
        EXPECT_FALSE(description["complete"]);
        EXPECT_PRED2(Contains, description["reason"].get<std::string>(), "File too large");
        EXPECT_EQ(description["frames"]["recorded"], recorded);
        const std::string index = Index();
        ASSERT_FALSE(index.empty());
        EXPECT_EQ(index.back(), '\n');
        EXPECT_GE(static_cast<std::size_t>(std::count(index.begin(), index.end(), '\n')), recorded);
    }
}

TEST_F(RecordingsEnd, WhenTheReaderHasGone) {
    UseCamera();
    const auto result =
        support::RunProgram(InShell("", {"grab", "--frames", "1000", "-o", "-", "--json"},
                                    "| head -c 3072 >/dev/null; echo ended"));
    EXPECT_EQ(result.output, "ended\n");
    EXPECT_PRED2(Contains, result.errors, "cannot write to standard output: Broken pipe");
    EXPECT_PRED2(Contains, result.errors, "\"closed\":true");
}

TEST_F(RecordingsEnd, WhenTheUserGivesUpWhatWaits) {
    UseCamera();
    // A pipe that nobody reads holds some twenty images.
    const std::string pipe = PathOf("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    platform::Process process;
    std::string error;
    ASSERT_TRUE(process.Start(
        InShell("", {"grab", "--frames", "0", "-o", "-", "--json", "--progress"}, "> " + pipe),
        &error))
        << error;
    const auto isShown = [&](const char* text) {
        return support::WaitUntil([&] { return Contains(process.Errors(), text); }, 60000);
    };
    EXPECT_TRUE(isShown("mivora: taken 1")) << process.Errors();
    EXPECT_TRUE(process.Interrupt());
    EXPECT_TRUE(isShown("frames are still to be written, Ctrl-C gives them up"))
        << process.Errors();
    EXPECT_TRUE(process.Interrupt());
    EXPECT_TRUE(isShown("mivora: gave up ")) << process.Errors();
    // The frame that is being written is written whole.
    std::size_t read = 0;
    support::ProgramResult result;
    EXPECT_TRUE(support::WaitUntil(
        [&] {
            char buffer[65536];
            for (ssize_t count = 1; count > 0; read += static_cast<std::size_t>(count)) {
                count = ::read(reader, buffer, sizeof buffer);
                count = std::max<ssize_t>(count, 0);
            }
            return process.Wait(1, result.status);
        },
        60000));
    close(reader);
    EXPECT_EQ(result.status, 3) << process.Errors();
    const std::string errors = process.Errors();
    const std::size_t begin = errors.find("{\"schema\":1,\"frames\"");
    ASSERT_NE(begin, std::string::npos) << errors;
    const Json report = Json::parse(errors.substr(begin, errors.find('\n', begin) - begin));
    EXPECT_TRUE(report["interrupted"]);
    EXPECT_GT(report["recording"]["givenUp"], 0) << report;
    EXPECT_EQ(report["recording"]["recorded"].get<std::size_t>() * 64 * 48, read);
    EXPECT_PRED2(Contains, errors, " given up before they were written");
}

TEST_F(RecordingsEnd, WithAReadableIndexWhenTheProgramIsKilled) {
    UseCamera();
    const std::string images = PathOf("images");
    platform::Process process;
    std::string error;
    ASSERT_TRUE(process.Start(
        support::ProgramStart("mivora", WithConfig({"grab", "--frames", "0", "-o", images})),
        &error))
        << error;
    EXPECT_TRUE(support::WaitUntil(
        [&] { return platform::PathExists(images + "/frame-000005.png"); }, 60000));
    process.Kill();
    int status = 0;
    EXPECT_TRUE(process.Wait(60000, status));
    const std::string index = Index();
    EXPECT_GE(std::count(index.begin(), index.end(), '\n'), 4);
    EXPECT_EQ(index.back(), '\n');
    const Json description = Json::parse(directory.Read("images/recording.json"));
    EXPECT_FALSE(description["complete"]);
    EXPECT_EQ(description["reason"], "the recording has not ended");
}

} // namespace
} // namespace scenario
