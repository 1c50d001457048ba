// playback_plan_test.cpp - tests of choosing and timing the frames that are sent
#include "apps/recording/playback_plan.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::nanoseconds;

RecordingIndex IndexOf(std::vector<FrameStamp> stamps) {
    RecordingIndex index;
    index.description.layout = {4, 3, 1, 8, 8, MVCC_MONO, 0, 0};
    for (const FrameStamp& stamp : stamps) {
        FrameLine line;
        line.n = index.lines.size() + 1;
        line.stamp = stamp;
        line.file = "frame";
        line.layout = index.description.layout;
        index.lines.push_back(line);
    }
    return index;
}

std::vector<std::int64_t> DueTimes(const PlaybackPlan& plan) {
    std::vector<std::int64_t> times;
    for (const PlannedFrame& frame : plan.frames) {
        times.push_back(frame.due.count());
    }
    return times;
}

std::vector<std::size_t> Lines(const PlaybackPlan& plan) {
    std::vector<std::size_t> lines;
    for (const PlannedFrame& frame : plan.frames) {
        lines.push_back(frame.line);
    }
    return lines;
}

TEST(PlaybackPlan, SendsWhatWasRecordedAndWhatCameIncomplete) {
    RecordingIndex index =
        IndexOf({{1, 10, 10}, {2, 20, 20}, {3, 30, 30}, {4, 40, 40}, {5, 50, 50}});
    for (const auto& [line, status] :
         {std::pair{1, FrameStatus::kDropped}, std::pair{2, FrameStatus::kIncomplete},
          std::pair{3, FrameStatus::kLost}}) {
        index.lines[line].status = status;
        index.lines[line].file.clear();
    }
    const PlaybackPlan plan = MakePlaybackPlan(index);
    EXPECT_EQ(Lines(plan), (std::vector<std::size_t>{0, 2, 4}));
    EXPECT_EQ(DueTimes(plan), (std::vector<std::int64_t>{0, 20, 40}));
    EXPECT_EQ(plan.otherLayouts, 0u);
}

TEST(PlaybackPlan, LeavesImagesOfOtherSizesOut) {
    RecordingIndex index = IndexOf({{1, 10, 10}, {2, 20, 20}, {3, 30, 30}});
    index.lines[1].layout.width = 5;
    const PlaybackPlan plan = MakePlaybackPlan(index);
    EXPECT_EQ(Lines(plan), (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(plan.otherLayouts, 1u);
}

TEST(PlaybackPlan, TakesTheCamerasTimesFirst) {
    const std::vector<std::int64_t> camera{0, 20, 50};
    const std::vector<std::int64_t> computer{0, 1, 7};
    EXPECT_EQ(DueTimes(MakePlaybackPlan(IndexOf({{1, 10, 3}, {2, 30, 4}, {3, 60, 10}}))), camera);
    // Not when one is missing or it went back, as after a reconnection.
    EXPECT_EQ(DueTimes(MakePlaybackPlan(IndexOf({{1, 10, 3}, {2, {}, 4}, {3, 60, 10}}))), computer);
    EXPECT_EQ(DueTimes(MakePlaybackPlan(IndexOf({{1, 10, 3}, {2, 30, 4}, {3, 20, 10}}))), computer);
    // Nor when nobody could wait as long.
    EXPECT_EQ(
        DueTimes(MakePlaybackPlan(IndexOf({{1, 10, 3}, {2, 30, 4}, {3, ~std::uint64_t{0}, 10}}))),
        computer);
}

TEST(PlaybackPlan, CountsTheRateWhereNoTimesAreKnown) {
    RecordingIndex index = IndexOf({{1, {}, {}}, {2, {}, {}}, {3, {}, {}}, {4, {}, {}}});
    index.lines[1].file.clear();
    index.lines[1].status = FrameStatus::kDropped;
    index.description.frameRate = 1000;
    const PlaybackPlan plan = MakePlaybackPlan(index);
    EXPECT_EQ(DueTimes(plan), (std::vector<std::int64_t>{0, 2000000, 3000000}));
    EXPECT_EQ(plan.length, nanoseconds(4000000));
    for (const double rate : {0.0, -1.0, 1e-300}) {
        index.description.frameRate = rate;
        EXPECT_EQ(DueTimes(MakePlaybackPlan(index)), (std::vector<std::int64_t>{0, 0, 0}));
        EXPECT_EQ(MakePlaybackPlan(index).length, nanoseconds(0));
    }
}

TEST(PlaybackPlan, GoesOnWithIdsAndTimesWhenItIsRepeated) {
    RecordingIndex index = IndexOf({{17, 1000, 3}, {18, 1100, 4}, {20, 1400, 10}});
    PlaybackPlan plan = MakePlaybackPlan(index);
    EXPECT_EQ(plan.idSpan, 4u);          // 17 becomes 21
    EXPECT_EQ(plan.timestampSpan, 600u); // the mean distance behind the last one
    EXPECT_EQ(plan.length, nanoseconds(600));
    index.description.frameRate = 1e7;
    plan = MakePlaybackPlan(index);
    EXPECT_EQ(plan.timestampSpan, 500u);
    EXPECT_EQ(plan.length, nanoseconds(500));
}

TEST(PlaybackPlan, IsEmptyForARecordingWithoutFrames) {
    const PlaybackPlan plan = MakePlaybackPlan(IndexOf({}));
    EXPECT_TRUE(plan.frames.empty());
    EXPECT_EQ(plan.length, nanoseconds(0));
    EXPECT_EQ(plan.idSpan, 0u);
}

} // namespace
