// recording_directory_test.cpp - tests of the directory of a recording
#include "apps/recording/recording_directory.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

class RecordingDirectory : public testing::Test {
protected:
    bool IsThere(const std::string& name) const {
        return platform::PathExists(directory.PathOf(name));
    }

    support::TemporaryDirectory directory;
};

TEST_F(RecordingDirectory, IsMadeWithItsParents) {
    PrepareRecordingDirectory(directory.PathOf("a/b"), false);
    EXPECT_TRUE(platform::IsDirectory(directory.PathOf("a/b")));
    directory.Write("a/b/notes.txt", "");
    directory.Write("a/b/frame-000001.png", "");
    PrepareRecordingDirectory(directory.PathOf("a/b"), false);
    EXPECT_TRUE(IsThere("a/b/frame-000001.png")) << "that is no recording";
    const std::string file = directory.Write("file", "");
    EXPECT_THROW(PrepareRecordingDirectory(file + "/below", true), CommandFailure);
}

TEST_F(RecordingDirectory, ThatHoldsARecordingIsRefused) {
    for (const char* const name : {"recording.json", "frames.jsonl"}) {
        const std::string path = directory.PathOf(std::string("of ") + name);
        directory.Write(std::string("of ") + name + "/" + name, "");
        try {
            PrepareRecordingDirectory(path, false);
            ADD_FAILURE() << name;
        } catch (const CommandFailure& failure) {
            EXPECT_EQ(failure.what(), "the directory " + path +
                                          " holds a recording: name another one, or replace it "
                                          "with --overwrite");
        }
    }
}

TEST_F(RecordingDirectory, IsClearedOfARecordingAlone) {
    const char* const gone[] = {"recording.json",    "frames.jsonl",        "frame-000001.png",
                                "frame-1000000.pgm", "frames.stack",        "frames.tiff",
                                "frame-000002.raw",  "frames.stack.1.0.tmp"};
    const char* const kept[] = {"notes.txt", "frame-1.png", "frame-x.png", "frames.txt"};
    for (const char* const name : gone) {
        directory.Write(name, "");
    }
    for (const char* const name : kept) {
        directory.Write(name, "");
    }
    PrepareRecordingDirectory(directory.Path(), true);
    for (const char* const name : gone) {
        EXPECT_FALSE(IsThere(name)) << name;
    }
    for (const char* const name : kept) {
        EXPECT_TRUE(IsThere(name)) << name;
    }
}

TEST_F(RecordingDirectory, GetsItsDescription) {
    WriteRecordingDescription(directory.Path(), "first and long");
    WriteRecordingDescription(directory.Path(), "second");
    EXPECT_EQ(directory.Read("recording.json"), "second");
    EXPECT_THROW(WriteRecordingDescription(directory.PathOf("none"), "text"), CommandFailure);
}

} // namespace
