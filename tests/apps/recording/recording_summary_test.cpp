// recording_summary_test.cpp - tests of adding up the index of a recording
#include "apps/recording/recording_summary.h"

#include "tests/support/written_recording.h"

#include <gtest/gtest.h>

namespace {

RecordingIndex IndexWithGaps() {
    support::WrittenRecording recording;
    recording.Add();
    recording.AddMissing(FrameStatus::kDropped);
    recording.AddMissing(FrameStatus::kDropped);
    recording.AddMissing(FrameStatus::kLost);
    recording.Add();
    recording.AddMissing(FrameStatus::kIncomplete);
    recording.Add();
    return {recording.description, recording.lines, false};
}

TEST(RecordingSummary, CountsFramesByStatusAndFindsGaps) {
    const RecordingSummary summary = Summarise(IndexWithGaps());
    EXPECT_EQ(summary.byStatus, (std::array<std::uint64_t, 5>{3, 1, 2, 1, 0}));
    EXPECT_EQ(summary.recorded, 3u);
    EXPECT_EQ(summary.missing, 4u);
    EXPECT_EQ(summary.bytes, 96u);
    ASSERT_EQ(summary.gaps.size(), 3u);
    EXPECT_EQ(summary.gaps[0].status, FrameStatus::kDropped);
    EXPECT_EQ(summary.gaps[0].firstN, 2u);
    EXPECT_EQ(summary.gaps[0].lastN, 3u);
    EXPECT_EQ(summary.gaps[0].firstId, 18u);
    EXPECT_EQ(summary.gaps[0].lastId, 19u);
    EXPECT_EQ(summary.gaps[1].status, FrameStatus::kLost);
    EXPECT_EQ(summary.gaps[1].firstN, 4u);
    EXPECT_EQ(summary.gaps[2].firstN, 6u);
    EXPECT_DOUBLE_EQ(summary.seconds.value_or(0), 0.06);
    EXPECT_DOUBLE_EQ(summary.framesPerSecond.value_or(0), 2 / 0.06);
}

TEST(RecordingSummary, TakesTheComputersTimesWhereTheCamerasAreNotKnown) {
    RecordingIndex index = IndexWithGaps();
    index.lines[4].stamp.timestampNs.reset();
    index.lines[6].stamp.hostNs = *index.lines[0].stamp.hostNs + 4000000000;
    EXPECT_DOUBLE_EQ(Summarise(index).seconds.value_or(0), 4);
    index.lines[4].stamp.hostNs = 1; // went back
    EXPECT_FALSE(Summarise(index).seconds.has_value());
    EXPECT_FALSE(Summarise(index).framesPerSecond.has_value());
}

TEST(RecordingSummary, KeepsGapsApartWhoseIdsDoNotFollow) {
    RecordingIndex index = IndexWithGaps();
    index.lines[2].stamp.frameId = 30;
    EXPECT_EQ(Summarise(index).gaps.size(), 4u);
    index.lines[1].stamp.frameId.reset();
    index.lines[2].stamp.frameId.reset();
    EXPECT_EQ(Summarise(index).gaps.size(), 3u);
}

TEST(RecordingSummary, IsEmptyForNoFrames) {
    const RecordingSummary summary = Summarise({});
    EXPECT_EQ(summary.recorded, 0u);
    EXPECT_TRUE(summary.gaps.empty());
    EXPECT_FALSE(summary.seconds.has_value());
}

} // namespace
