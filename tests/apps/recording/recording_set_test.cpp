// recording_set_test.cpp - tests of the recordings of several cameras at once
#include "apps/recording/recording_set.h"

#include "apps/common/command_failure.h"

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

} // namespace
