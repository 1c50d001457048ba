// callback_allocations_test.cpp - the frame callback allocates nothing
//
// The sanitizers' allocators tell of every allocation; the suite always runs with one of them.
#if defined(MIVORA_SANITIZED)

#include "tests/module/acquisition/acquisition_insides.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <cstdlib>

// Not every compiler brings the header that declares it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*,
                                                                          std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace {

thread_local bool counting = false;
thread_local unsigned allocationsHere = 0;

void CountAllocation(const volatile void*, std::size_t) {
    if (counting) {
        ++allocationsHere;
    }
}

void IgnoreRelease(const volatile void*) {}

/// How often `work` allocates on this thread.
template <typename Work>
unsigned CountAllocations(Work work) {
    static const int installed =
        __sanitizer_install_malloc_and_free_hooks(&CountAllocation, &IgnoreRelease);
    EXPECT_NE(installed, 0);
    allocationsHere = 0;
    counting = true;
    work();
    counting = false;
    return allocationsHere;
}

class CallbackAllocations : public SnapFixture {
protected:
    void SetUp() override {
        SnapFixture::SetUp();
        WithoutSink();
        Camera()["PixelFormat"].text = "Mono12p";
        Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
        ChooseImage();
        Prepare(1);
        // Without a sink a continuous snap needs its announcement to fail, and an SDK that queues
        // the frame all the same.
        sdk.Data().broken.unannouncedFramesAreQueued = true;
        sdk.Fail("PxnFrameAnnounce", PxnErrIO);
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
    }
    virtual void ChooseImage() {}

    void ExpectNone() {
        // Stopped, the mode as if it were not: all that the callback does but for the SDK's part.
        PxnFrame* const frame = sdk.FrameOf(0);
        ASSERT_NE(frame, nullptr);
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        Grabber().SetAcquisitionState(1);
        const auto deliver = [&](std::int32_t status) {
            frame->receiveStatus = status;
            Grabber().FrameCallback(frame);
        };
        deliver(PxnFrameStatusComplete);
        EXPECT_EQ(CountAllocations([&] {
                      for (int i = 0; i < 10; ++i) {
                          deliver(PxnFrameStatusComplete);
                          deliver(PxnFrameStatusIncomplete);
                          deliver(77);
                      }
                  }),
                  0u);
        EXPECT_EQ(FramesReceived(), 11u);
        Grabber().SetAcquisitionState(0);
    }
};

// Images that another thread helps to convert.
class HelpedCallbackAllocations : public CallbackAllocations {
protected:
    void ChooseImage() override {
        Camera()["Width"].intValue = 1024;
        Camera()["Height"].intValue = 768;
        Camera()["PayloadSize"].intValue = 1024 * 768 * 3 / 2;
        WriteIni("[Grabber_0]\nConversionThreads=2\n");
        ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    }
};

TEST_F(CallbackAllocations, AreCounted) {
    const auto allocate = [] {
        void* volatile block = std::malloc(1);
        std::free(block);
    };
    EXPECT_EQ(CountAllocations(allocate), 1u);
}

TEST_F(CallbackAllocations, AreNoneForGoodAndBadFrames) {
    ExpectNone();
}

TEST_F(HelpedCallbackAllocations, AreNoneForGoodAndBadFrames) {
    ASSERT_EQ(AcquisitionInsides::Helpers(Grabber()).Count(), 1u);
    ExpectNone();
}

} // namespace

#endif
