// base_calls_posix_test.cpp - what the grabber leaves to its base class, and when
#include "tests/module/grabber/base_calls.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/mutex_probe.h"

namespace {

class GrabberBase : public GrabberFixture {
protected:
    BaseCalls base;
};

TEST_F(GrabberBase, IsInitialisedBeforeTheGrabberCountsAsInitialised) {
    bool wasInitialized = true;
    Texts calls;
    base.onInit = [&] {
        wasInitialized = Grabber().IsInitialized();
        calls = Calls();
    };
    EXPECT_EQ(Grabber().Init(), MV_OK);
    EXPECT_FALSE(wasInitialized);
    EXPECT_EQ(calls.back(), "PxnInterfacesList(array, 1, 40)");
    EXPECT_EQ(Calls().front(), "PxnCamerasList(array, 100, 80)");
}

TEST_F(GrabberBase, ShowsItsDialogsForTheSameParent) {
    Init();
    int window = 0;
    MV_WINDOW shownFor = nullptr;
    base.onCamCntrlDialog = [&](MV_WINDOW parent) {
        shownFor = parent;
    };
    Grabber().GetActCamera()->SetCamCntrlDlgIndex(1);
    EXPECT_EQ(Grabber().CamCntrlDialog(&window), MV_NOT_AVAILABLE);
    EXPECT_EQ(shownFor, &window);
}

TEST_F(GrabberBase, EndsTheLoadingOfAConfigurationThatItCannotLoad) {
    WriteIni("[Grabber_0]\nUniqueId=cam-ext-1\n");
    base.loadResult = MV_BAD_VALUE;
    EXPECT_EQ(Grabber().LoadGrabberConfig(), MV_BAD_VALUE);
    ASSERT_EQ(Grabber().Init(), MV_OK);
    EXPECT_EQ(Grabber().GetActCameraIndex(), -1); // nothing was chosen
}

TEST_F(GrabberBase, PreparesItsBuffersUnderTheMutexOfTheSerialChannels) {
    Open();
    bool wasFree = true;
    std::uint64_t prepared = 0;
    base.onPrepareFrameBuffers = [&](std::uint64_t count) {
        wasFree = IsFree(Grabber().SerialMutex());
        prepared = count;
    };
    EXPECT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_FALSE(wasFree);
    EXPECT_EQ(prepared, 2u);
}

} // namespace
