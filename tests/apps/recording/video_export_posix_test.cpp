// video_export_posix_test.cpp - tests of having a program write a video, which a script plays
#include "apps/recording/video_export.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/environment_guard.h"
#include "tests/support/written_recording.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class VideoExport : public testing::Test {
protected:
    VideoExport() {
        recording.Add();
        recording.AddMissing(FrameStatus::kDropped);
        recording.Add();
        recording.Write(recordingDirectory);
    }
    /// A program that the export finds.
    void Install(const std::string& name, const std::string& lines) const {
        const std::string path = programs.Write(name, "#!/bin/sh\nPATH=/bin:/usr/bin\n" + lines);
        fs::permissions(path, fs::perms::owner_all);
    }
    ExportedVideo Export(const std::string& file) const {
        const support::EnvironmentGuard path("PATH", programs.Path());
        return ExportVideo(recordingDirectory.Path(), ReadRecordingIndex(recordingDirectory.Path()),
                           programs.PathOf(file));
    }
    std::string Failure(const std::string& file) const {
        try {
            Export(file);
            return "";
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
    }
    static bool Contains(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    support::WrittenRecording recording;
    support::TemporaryDirectory recordingDirectory;
    support::TemporaryDirectory programs;
};

/// Writes its arguments and its input where the test finds them, and a file as the last argument
/// names it.
constexpr const char* kTakesAll = "echo \"$@\" > \"$(dirname \"$0\")/arguments\"\n"
                                  "cat > \"$(dirname \"$0\")/input\"\n"
                                  "for last; do :; done\n"
                                  "last=${last#file:}\n"
                                  "last=${last#location=\\\"}\n"
                                  "echo video > \"${last%\\\"}\"\n";

TEST_F(VideoExport, PassesPicturesWithTheirTimesToFfmpeg) {
    Install("ffmpeg", kTakesAll);
    Install("gst-launch-1.0", "exit 1\n");
    const ExportedVideo video = Export("a.mp4");
    EXPECT_EQ(video.program, programs.PathOf("ffmpeg"));
    EXPECT_EQ(video.frames, 2u);
    EXPECT_DOUBLE_EQ(video.seconds, 0.02);
    EXPECT_EQ(programs.Read("a.mp4"), "video\n");
    EXPECT_FALSE(platform::PathExists(programs.PathOf("a.mp4.unfinished.mp4")));
    EXPECT_PRED2(Contains, programs.Read("arguments"), "-f matroska -i pipe:0 ");
    EXPECT_PRED2(Contains, programs.Read("arguments"), "-vsync vfr -enc_time_base -1 file:");
    const std::string input = programs.Read("input");
    // The second picture, 20000 us after the first: its cluster, its time, its block.
    const std::string second("\xE7\x01\x00\x00\x00\x00\x00\x00\x08\x00\x00\x00\x00\x00\x00\x4E\x20",
                             17);
    EXPECT_PRED2(Contains, input, second);
    EXPECT_PRED2(Contains, input, "V_UNCOMPRESSED");
    Export("a.avi");
    EXPECT_FALSE(Contains(programs.Read("arguments"), "-enc_time_base"));
}

TEST_F(VideoExport, TakesGstreamerWhereThereIsNoFfmpeg) {
    Install("gst-launch-1.0", kTakesAll);
    for (const auto& [file, elements] :
         {std::pair{"a b.mp4", "x264enc ! h264parse ! mp4mux ! filesink location=\""},
          std::pair{"a.mkv", "x264enc ! h264parse ! matroskamux ! filesink"},
          std::pair{"a.avi", "videorate ! jpegenc ! avimux ! filesink"}}) {
        EXPECT_EQ(Export(file).program, programs.PathOf("gst-launch-1.0"));
        EXPECT_PRED2(Contains, programs.Read("arguments"), "fdsrc fd=0 ! matroskademux ! ");
        EXPECT_PRED2(Contains, programs.Read("arguments"), elements);
        EXPECT_EQ(programs.Read(file), "video\n");
    }
}

TEST_F(VideoExport, ReportsWhyTheProgramFailed) {
    Install("ffmpeg", "echo no such codec >&2\nexit 7\n");
    const std::string failure = Failure("a.mkv");
    EXPECT_PRED2(Contains, failure, programs.PathOf("ffmpeg") + " failed with status 7");
    EXPECT_PRED2(Contains, failure, "\n  no such codec");
    EXPECT_FALSE(platform::PathExists(programs.PathOf("a.mkv")));
    // One that takes nothing and writes nothing.
    Install("ffmpeg", "exit 0\n");
    EXPECT_PRED2(Contains, Failure("a.mkv"), "cannot write");
}

TEST_F(VideoExport, LeavesNothingWhenAFrameCannotBeRead) {
    Install("ffmpeg", kTakesAll);
    recording.stack.pop_back();
    recording.Write(recordingDirectory);
    EXPECT_PRED2(Contains, Failure("a.mp4"), "it ends at byte 63");
    EXPECT_FALSE(platform::PathExists(programs.PathOf("a.mp4")));
}

TEST_F(VideoExport, NamesWhatWasLookedFor) {
    EXPECT_EQ(Failure("a.mp4"),
              "a video is written by FFmpeg or GStreamer, and neither is installed\n"
              "  ffmpeg and gst-launch-1.0 were looked for in the directories of PATH");
}

TEST_F(VideoExport, WantsFrames) {
    recording.lines.clear();
    recording.Write(recordingDirectory);
    EXPECT_PRED2(Contains, Failure("a.mp4"), "there are no frames");
}

TEST(VideoFileName, SaysTheKindOfVideo) {
    for (const char* const name : {"a.mp4", "b/a.mkv", "a.b.avi"}) {
        EXPECT_EQ(VideoFileNameProblem(name), "") << name;
    }
    for (const char* const name : {"", "a", "a.mov", ".mp4", "mp4"}) {
        EXPECT_NE(VideoFileNameProblem(name), "") << name;
    }
}

} // namespace
