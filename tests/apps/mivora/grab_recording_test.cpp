// grab_recording_test.cpp - tests of saying what is missing from a recording
#include "apps/mivora/grab_recording.h"

#include "apps/common/json_text.h"

#include <gtest/gtest.h>

namespace {

class RecordingReportTest : public testing::Test {
protected:
    RecordingReportTest() {
        report.output = "images";
        report.format = "png";
        report.wanted = 100;
        report.counts.recorded = 100;
    }
    std::uint64_t& Missing(FrameStatus status) {
        return report.counts.missing[static_cast<std::size_t>(status)];
    }

    RecordingReport report;
};

TEST_F(RecordingReportTest, HasNoReasonWhenNothingIsMissing) {
    EXPECT_EQ(report.Reason(), "");
    EXPECT_EQ(report.Json().Text(),
              "{\"output\":\"images\",\"format\":\"png\",\"wanted\":100,\"recorded\":100,"
              "\"bytes\":0,\"missing\":0,\"dropped\":0,\"incomplete\":0,\"lost\":0,\"damaged\":0,"
              "\"givenUp\":0,\"reason\":null}");
    report.wanted = 0;
    EXPECT_NE(report.Json().Text().find("\"wanted\":null"), std::string::npos);
}

TEST_F(RecordingReportTest, SaysHowManyAreMissingAndWhy) {
    Missing(FrameStatus::kDropped) = 1;
    EXPECT_EQ(report.Reason(),
              "1 frame is missing from the recording: 1 dropped by the camera or its SDK");
    Missing(FrameStatus::kIncomplete) = 2;
    Missing(FrameStatus::kLost) = 7;
    Missing(FrameStatus::kDamaged) = 4;
    report.givenUp = 4;
    EXPECT_EQ(report.Reason(),
              "14 frames are missing from the recording: 1 dropped by the camera or its SDK, 2 "
              "incomplete, 3 lost because this program was too slow, 4 given up before they were "
              "written, 4 written over by the camera while being copied");
}

TEST_F(RecordingReportTest, SaysWhenNobodyKnowsHowMany) {
    Missing(FrameStatus::kDropped) = 1;
    report.unknownGaps = 1;
    EXPECT_EQ(report.Reason(),
              "at least 1 frame is missing from the recording: 1 gap of unknown length");
    Missing(FrameStatus::kDropped) = 5;
    report.unknownGaps = 2;
    EXPECT_EQ(report.Reason(), "at least 5 frames are missing from the recording: 3 dropped by the "
                               "camera or its SDK, 2 gaps of unknown length");
}

TEST_F(RecordingReportTest, SaysWhatEndedItEarly) {
    report.counts.recorded = 60;
    report.queueFull = "the queue was full";
    EXPECT_EQ(report.Reason(), "the queue was full: 60 of 100 frames are recorded");
    Missing(FrameStatus::kDropped) = 1;
    EXPECT_EQ(report.Reason(), "the queue was full: 60 of 100 frames are recorded; 1 frame is "
                               "missing from the recording: 1 dropped by the camera or its SDK");
    report.queueFull.clear();
    report.failure = "the disk is full";
    Missing(FrameStatus::kDropped) = 0;
    Missing(FrameStatus::kLost) = 3;
    EXPECT_EQ(report.Reason(), "60 of 100 frames are recorded; 3 frames are missing from the "
                               "recording: 3 not written");
    EXPECT_NE(report.Json().Text().find("\"reason\":\"the disk is full\""), std::string::npos);
}

} // namespace
