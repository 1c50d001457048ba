// snap_checks_test.cpp - what a snap asks before it begins
#include "tests/module/acquisition/snap_fixture.h"

namespace {

using SnapChecks = SnapFixture;

TEST_F(SnapChecks, RefuseBeforeInit) {
    EXPECT_EQ(Grabber().Snap(1), MV_NOT_INITIALISED);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(SnapChecks, RefuseWithoutAnActiveCamera) {
    Init();
    ASSERT_EQ(Grabber().SetActCameraIndex(-1), MV_OK);
    EXPECT_EQ(Grabber().Snap(1), MV_NO_CAMERA);
}

TEST_F(SnapChecks, RefuseWithoutAnOpenCamera) {
    Init();
    EXPECT_EQ(Grabber().Snap(1), MV_CAMERA_NOT_OPEN);
}

TEST_F(SnapChecks, RefuseWithoutAVideoMode) {
    Ready(1);
    Grabber().GetActCamera()->DeleteGfxModes();
    EXPECT_EQ(Grabber().Snap(1), MV_NO_VIDEO_MODE);
}

TEST_F(SnapChecks, RefuseWithoutPreparedBuffers) {
    Open();
    EXPECT_EQ(Grabber().Snap(1), MV_BUFFERS_NOT_PREPARED);
}

TEST_F(SnapChecks, RefuseWhileAnAcquisitionRuns) {
    Ready(1);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    Forget();
    for (uint32_t mode = 0; mode < 7; ++mode) {
        EXPECT_EQ(Grabber().Snap(mode), MV_BUSY);
    }
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
    EXPECT_EQ(Grabber().GetAcquisitionState(), 1u);
}

TEST_F(SnapChecks, RefuseModesThatThereAreNot) {
    Ready(1);
    for (const uint32_t mode : {0u, 6u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Grabber().Snap(mode), MV_BAD_VALUE);
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    }
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(SnapChecks, RefuseSingleSnapsWithoutABuffer) {
    Ready(0);
    for (const uint32_t mode : {2u, 3u, 4u, 5u}) {
        EXPECT_EQ(Grabber().Snap(mode), MV_BUFFERS_NOT_PREPARED);
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    }
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Grabber().Snap(6), MV_BAD_VALUE);
}

TEST_F(SnapChecks, AskForTheCameraThenForTheModeThenForBuffers) {
    Init();
    Grabber().GetActCamera()->DeleteGfxModes();
    EXPECT_EQ(Grabber().Snap(1), MV_CAMERA_NOT_OPEN);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Grabber().GetActCamera()->DeleteGfxModes();
    EXPECT_EQ(Grabber().Snap(1), MV_NO_VIDEO_MODE);
}

TEST_F(SnapChecks, TellOneAfterTheOtherInTheirOrder) {
    // Everything is wrong at first, then one thing after the other is put right.
    EXPECT_EQ(Grabber().Snap(9), MV_NOT_INITIALISED);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().Snap(9), MV_NO_CAMERA);
    ASSERT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
    EXPECT_EQ(Grabber().Snap(9), MV_CAMERA_NOT_OPEN);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Grabber().SetAcquisitionState(1);
    EXPECT_EQ(Grabber().Snap(9), MV_BUFFERS_NOT_PREPARED);
    Grabber().SetAcquisitionState(0);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    Grabber().SetAcquisitionState(1);
    EXPECT_EQ(Grabber().Snap(9), MV_BUSY);
    Grabber().SetAcquisitionState(0);
    EXPECT_EQ(Grabber().Snap(9), MV_BAD_VALUE);
}

} // namespace
