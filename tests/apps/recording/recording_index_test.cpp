// recording_index_test.cpp - tests of reading the index of a recording
#include "apps/recording/recording_index.h"

#include "apps/common/command_failure.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

class RecordingIndexTest : public testing::Test {
protected:
    RecordingIndexTest() {
        RecordingDescription description;
        description.layout = {64, 48, 1, 8, 8, MVCC_MONO, 0, 0};
        description.start = "2026";
        description.format = "png";
        directory.Write("recording.json", description.Json());
    }
    static std::string Line(int n) {
        return "{\"n\":" + std::to_string(n) + ",\"status\":\"complete\",\"file\":\"a.png\"}\n";
    }
    std::string Failure() const {
        try {
            ReadRecordingIndex(directory.Path());
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
        return {};
    }

    support::TemporaryDirectory directory;
};

TEST_F(RecordingIndexTest, HasTheDescriptionAndALineForEachFrame) {
    directory.Write("frames.jsonl", Line(1) + Line(2));
    const RecordingIndex index = ReadRecordingIndex(directory.Path());
    EXPECT_EQ(index.description.format, "png");
    ASSERT_EQ(index.lines.size(), 2u);
    EXPECT_EQ(index.lines[1].n, 2u);
    EXPECT_EQ(index.lines[1].layout, index.description.layout);
    EXPECT_FALSE(index.isCutOff);
}

TEST_F(RecordingIndexTest, IsReadableUpToWhereAProgramWasKilled) {
    directory.Write("frames.jsonl", Line(1) + "{\"n\":2,\"fra");
    const RecordingIndex index = ReadRecordingIndex(directory.Path());
    EXPECT_EQ(index.lines.size(), 1u);
    EXPECT_TRUE(index.isCutOff);
}

TEST_F(RecordingIndexTest, IsRefusedWithThePlaceOfTheFault) {
    EXPECT_NE(Failure().find("cannot read"), std::string::npos) << Failure();
    directory.Write("frames.jsonl", Line(1) + "nonsense\n");
    EXPECT_NE(Failure().find("frames.jsonl:2: no JSON object"), std::string::npos) << Failure();
    directory.Write("recording.json", "{}");
    EXPECT_NE(Failure().find("recording.json: \"schema\" is missing"), std::string::npos)
        << Failure();
}

} // namespace
