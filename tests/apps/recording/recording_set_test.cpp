// recording_set_test.cpp - tests of the recordings of several cameras at once
#include "apps/recording/recording_set.h"

#include "apps/common/command_failure.h"
#include "tests/support/written_recording_set.h"

#include <gtest/gtest.h>

namespace {

using Folders = std::vector<std::string>;

TEST(CameraFolders, AreNamedAfterTheSerialNumber) {
    EXPECT_EQ(CameraFolders({{"GV-0210-0016", 1}, {"42", 2}}),
              (Folders{"camera-GV-0210-0016", "camera-42"}));
}

TEST(CameraFolders, AreNamesForEveryFileSystem) {
    EXPECT_EQ(CameraFolders({{"../a b:\\c.", 1}, {"\xC3\xA4", 2}}),
              (Folders{"camera-___a_b__c_", "camera-__"}));
    EXPECT_EQ(CameraFolders({{std::string(1000, 'x'), 1}})[0].size(), 67u);
}

TEST(CameraFolders, DifferForEachCamera) {
    EXPECT_EQ(CameraFolders({{"", 0x1234ABCD}, {"", 2}}),
              (Folders{"camera-0x1234ABCD", "camera-0x00000002"}));
    EXPECT_EQ(CameraFolders({{"sn", 1}, {"SN", 2}, {"other", 3}}),
              (Folders{"camera-sn-0x00000001", "camera-SN-0x00000002", "camera-other"}));
}

TEST(RecordingSet, IsCompleteWhenAllRecordingsAre) {
    RecordingSet set;
    set.program = "mivora";
    set.recordings.resize(2);
    set.recordings[0].folder = "camera-1";
    set.recordings[0].complete = true;
    set.recordings[1].folder = "camera-2";
    set.recordings[1].reason = "2 frames are missing";
    EXPECT_FALSE(set.IsComplete());
    const std::string text = set.Json();
    EXPECT_EQ(text.find("{\"schema\":1,\"program\":\"mivora\","), 0u) << text;
    EXPECT_NE(text.find("\"folder\":\"camera-2\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"complete\":false,\"reason\":\"2 frames are missing\"}"),
              std::string::npos)
        << text;
    set.recordings[1].complete = true;
    EXPECT_TRUE(set.IsComplete());
}

TEST(RecordingSet, IsNoRecordingOfOneCamera) {
    try {
        ParseRecordingDescription(RecordingSet().Json());
        ADD_FAILURE();
    } catch (const CommandFailure& failure) {
        EXPECT_STREQ(failure.what(), "this describes the recordings of several cameras; name the "
                                     "folder of one of them");
    }
}

TEST(RecordingSet, IsReadAsItWasWritten) {
    const support::TemporaryDirectory directory;
    support::WrittenRecordingSet written;
    written.set.recordings[1].complete = false;
    written.set.recordings[1].reason = "the camera is gone";
    written.Write(directory);
    const std::optional<RecordingSet> set = ReadRecordingSet(directory.Path());
    ASSERT_TRUE(set);
    EXPECT_EQ(set->Json(), written.set.Json());
    const std::vector<RecordingPart> parts = ReadRecordingParts(directory.Path(), *set);
    ASSERT_EQ(parts.size(), 2u);
    ASSERT_TRUE(parts[1].index);
    EXPECT_EQ(parts[1].directory, directory.PathOf("camera-B"));
    EXPECT_EQ(parts[1].index->lines.size(), 2u);
    EXPECT_FALSE(ReadRecordingSet(directory.PathOf("camera-A"))) << "a recording of one camera";
}

TEST(RecordingSet, KeepsTheProblemOfAFolder) {
    const support::TemporaryDirectory directory;
    support::WrittenRecordingSet written;
    written.recordings.pop_back();
    written.Write(directory);
    const std::vector<RecordingPart> parts =
        ReadRecordingParts(directory.Path(), *ReadRecordingSet(directory.Path()));
    EXPECT_TRUE(parts[0].index);
    EXPECT_FALSE(parts[1].index);
    EXPECT_NE(parts[1].problem.find("camera-B"), std::string::npos) << parts[1].problem;
}

TEST(RecordingSet, NamesNoOtherFolders) {
    for (const char* const folder : {"../camera-A", "camera-/../../x", "other", ""}) {
        const support::TemporaryDirectory directory;
        support::WrittenRecordingSet written;
        written.set.recordings[0].folder = folder;
        directory.Write("recording.json", written.set.Json());
        try {
            ReadRecordingSet(directory.Path());
            ADD_FAILURE() << folder;
        } catch (const CommandFailure& failure) {
            EXPECT_NE(failure.Message().find("is no name of a camera's folder"), std::string::npos)
                << failure.what();
        }
    }
}

TEST(RecordingSet, IsRefusedWhenItMakesNoSense) {
    for (const char* const text :
         {R"({"schema":2,"cameras":[]})", R"({"schema":1,"cameras":[7]})",
          R"({"schema":1,"cameras":[{"folder":"camera-1"}]})",
          R"({"schema":1,"cameras":[{"folder":"camera-1","camera":{},"frames":{}}]})"}) {
        const support::TemporaryDirectory directory;
        directory.Write("recording.json", text);
        EXPECT_THROW(ReadRecordingSet(directory.Path()), CommandFailure) << text;
    }
}

} // namespace
