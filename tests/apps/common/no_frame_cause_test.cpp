// no_frame_cause_test.cpp - tests of why no frame comes
#include "apps/common/no_frame_cause.h"

#include "apps/common/service_client.h"
#include "tests/apps/common/fake_services.h"

#include <gtest/gtest.h>

namespace {

class NoFrame : public testing::Test {
protected:
    NoFrame() {
        facts.waitedMs = 5000;
        services.Add("Camera", "Width", MV_FEATURE_INTEGER);
    }

    void Entry(const char* name, const char* text) {
        services.Add("Camera", name, MV_FEATURE_ENUMERATION).text = text;
    }
    void Number(const char* name, double number) {
        services.Add("Camera", name, MV_FEATURE_FLOAT).value.real = number;
    }
    NoFrameCause Find() { return FindNoFrameCause(&client, facts); }

    FakeServices services;
    ServiceClient client{services};
    NoFrameFacts facts;
};

TEST_F(NoFrame, IsBecauseTheCameraIsGone) {
    services.reading = MV_SERVICE_NO_CAMERA;
    EXPECT_EQ(Find().kind, NoFrameKind::kGone);
    EXPECT_EQ(Find().text, "it is gone");
    services.reading = MV_SERVICE_SDK_FAILED;
    EXPECT_EQ(Find().kind, NoFrameKind::kGone);
    EXPECT_EQ(Find().text, "it does not reply any more");
    EXPECT_EQ(FindNoFrameCause(nullptr, facts).kind, NoFrameKind::kGone);
}

TEST_F(NoFrame, IsBecauseTheStartFailed) {
    Entry("TriggerMode", "On");
    facts.startErrors = {"Snap: PxnCaptureStart failed", "more"};
    EXPECT_EQ(Find().kind, NoFrameKind::kNotStarted);
    EXPECT_EQ(Find().text, "its start failed with: Snap: PxnCaptureStart failed");
    EXPECT_FALSE(Find().IsWait());
    services.reading = MV_SERVICE_NO_CAMERA;
    EXPECT_EQ(Find().kind, NoFrameKind::kGone);
}

TEST_F(NoFrame, IsBecauseTheRecordingHasEnded) {
    facts.incomplete = 2; // the last ones
    MV_FEATURE_VALUE& ended = services.Add("Camera", "PlaybackEnded", MV_FEATURE_BOOLEAN).value;
    EXPECT_EQ(Find().kind, NoFrameKind::kIncomplete);
    ended.integer = 1;
    EXPECT_EQ(Find().kind, NoFrameKind::kEnded);
    EXPECT_FALSE(Find().IsWait());
    EXPECT_EQ(Find().text, "the recording that is played has ended; with "
                           "Camera/PlaybackRepeat=1 it begins again");
}

TEST_F(NoFrame, IsBecauseAllFramesAreIncomplete) {
    Entry("TriggerMode", "On");
    facts.incomplete = 12;
    facts.packets.missing = 34;
    const NoFrameCause cause = Find();
    EXPECT_EQ(cause.kind, NoFrameKind::kIncomplete);
    EXPECT_FALSE(cause.IsWait());
    EXPECT_EQ(cause.text.find("12 frames came and none was complete, 34 packets are missing; "), 0u)
        << cause.text;
}

TEST_F(NoFrame, IsBecauseTheCameraWaitsForATrigger) {
    Entry("TriggerMode", "On");
    EXPECT_EQ(Find().text, "it waits for a trigger (TriggerMode is On)");
    EXPECT_TRUE(Find().IsWait());
    Entry("TriggerSelector", "FrameStart");
    Entry("TriggerSource", "Line1");
    EXPECT_EQ(Find().text,
              "it waits for a trigger (TriggerMode is On for FrameStart, TriggerSource is Line1)");
    Entry("TriggerSource", "Software");
    EXPECT_NE(Find().text.find("Camera/TriggerSoftware gives one"), std::string::npos);
    EXPECT_TRUE(services.calls.empty()) << "the selector was not moved";
}

TEST_F(NoFrame, IsFoundBehindTheTriggerSelector) {
    Entry("TriggerMode", "Off");
    Entry("TriggerSelector", "FrameStart");
    const char* const names[] = {"FrameStart", "AcquisitionStart", "AcquisitionEnd", "LineStart"};
    const std::uint32_t areAvailable[] = {1, 1, 1, 0};
    MV_FEATURE_DESCRIPTION& selector = services.features[{"Camera", "TriggerSelector"}].description;
    selector.entries = names;
    selector.entryAvailable = areAvailable;
    selector.entryCount = 4;
    std::string selected = "FrameStart";
    services.onWrite = [&](const std::string&) {
        selected = services.features[{"Camera", "TriggerSelector"}].text;
        services.features[{"Camera", "TriggerMode"}].text =
            selected == "AcquisitionStart" ? "On" : "Off";
    };
    EXPECT_EQ(Find().text, "it waits for a trigger (TriggerMode is On for AcquisitionStart)");
    EXPECT_EQ(selected, "FrameStart") << "it is put back";
    EXPECT_EQ(services.calls.size(), 2u);
}

TEST_F(NoFrame, IsBecauseTheCameraIsSlow) {
    Number("AcquisitionFrameRate", 0.1);
    EXPECT_EQ(Find().text, "it is slower (AcquisitionFrameRate is 0.1 Hz, a frame each 10000 ms) "
                           "than the 5000 ms that were waited");
    EXPECT_TRUE(Find().IsWait());
    services.Add("Camera", "AcquisitionFrameRateEnable", MV_FEATURE_BOOLEAN);
    EXPECT_EQ(Find().kind, NoFrameKind::kUnknown) << "the rate is not in force";
    Number("ExposureTime", 6e6);
    EXPECT_EQ(Find().text,
              "it exposes longer (ExposureTime is 6e+06 us) than the 5000 ms that were "
              "waited");
}

TEST_F(NoFrame, IsBecauseNothingArrives) {
    EXPECT_EQ(Find().kind, NoFrameKind::kUnknown);
    facts.packets.lost = 9;
    EXPECT_EQ(Find().text, "9 frames were lost on the way");
    facts.packets.lost = 0;
    services.Add("Stream0", "GVSPPacketSize", MV_FEATURE_INTEGER).value.integer = 8228;
    EXPECT_EQ(Find().kind, NoFrameKind::kNotArriving);
    EXPECT_EQ(Find().text, "the camera replies and nothing of its stream arrives; a firewall may "
                           "keep the stream away, or its packets of 8228 bytes (GVSPPacketSize) "
                           "are larger than the network carries");
    facts.packets.underruns = 4;
    EXPECT_EQ(Find().text, "4 frames came while no buffer was queued");
}

} // namespace
