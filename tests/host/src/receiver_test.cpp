// receiver_test.cpp - receivers of events and their removal
#include "platform/event.h"
#include "platform/window_message.h"
#include "tests/host/test_grabber.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

/// The calls of the receivers, one text for each, and what the receivers do.
struct ReceivedCalls {
    TestGrabber* grabber = nullptr;
    std::vector<std::string> calls;
    std::uint32_t result = 1;
    std::function<void()> inside;
};

void OnPostProcess(std::uint64_t index, std::uint32_t fromCallback, void* context) {
    auto& received = *static_cast<ReceivedCalls*>(context);
    received.calls.push_back("post process " + std::to_string(index) + " " +
                             std::to_string(fromCallback));
    if (received.inside) {
        received.inside();
    }
}

void OnCamCfgChange(void* context) {
    auto& received = *static_cast<ReceivedCalls*>(context);
    received.calls.emplace_back("configuration change");
    if (received.inside) {
        received.inside();
    }
}

std::uint32_t OnCamCntrl(std::uint32_t code, void* context) {
    auto& received = *static_cast<ReceivedCalls*>(context);
    received.calls.push_back("camera control " + std::to_string(code));
    if (received.inside) {
        received.inside();
    }
    return received.result;
}

void OnDialogUpdate(std::uint32_t mask, void* context) {
    auto& received = *static_cast<ReceivedCalls*>(context);
    received.calls.push_back("dialog update " + std::to_string(mask));
    if (received.inside) {
        received.inside();
    }
}

class Receivers : public testing::Test {
protected:
    Receivers() {
        received.grabber = &grabber;
        EXPECT_EQ(grabber.PrepareFrameBuffers(4), MV_OK);
    }

    void InstallAll() {
        EXPECT_EQ(grabber.InstPostProcessCallBack(OnPostProcess, &received), MV_OK);
        EXPECT_EQ(grabber.InstCamCfgChangeCallBack(OnCamCfgChange, &received), MV_OK);
        EXPECT_EQ(grabber.InstCamCntrlCallBack(OnCamCntrl, &received), MV_OK);
        EXPECT_EQ(grabber.InstDialogUpdateCallBack(OnDialogUpdate, &received), MV_OK);
    }

    void RemoveAll() {
        EXPECT_EQ(grabber.InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber.InstCamCfgChangeCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber.InstCamCntrlCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber.InstDialogUpdateCallBack(nullptr, nullptr), MV_OK);
    }

    void SignalAll() {
        grabber.DoPostProcess(3, 1);
        grabber.SignalCamCfgChange();
        grabber.SignalCamCntrlDlgEvent(0x1000);
        grabber.UpdateCamCntrlDialogs(kMvUpdateAll);
    }

    TestGrabber grabber;
    ReceivedCalls received;
};

using CallTexts = std::vector<std::string>;

const CallTexts kAllCalls = {"post process 3 1", "configuration change", "camera control 4096",
                             "dialog update 4294967295"};

TEST_F(Receivers, AreNotifiedUntilTheyAreRemoved) {
    SignalAll();
    InstallAll();
    SignalAll();
    EXPECT_EQ(received.calls, kAllCalls);
    RemoveAll();
    SignalAll();
    EXPECT_EQ(received.calls, kAllCalls);
}

TEST_F(Receivers, AreReplacedByTheNextOnes) {
    ReceivedCalls former;
    EXPECT_EQ(grabber.InstCamCntrlCallBack(OnCamCntrl, &former), MV_OK);
    InstallAll();
    SignalAll();
    EXPECT_TRUE(former.calls.empty());
    EXPECT_EQ(received.calls, kAllCalls);
}

TEST_F(Receivers, ReturnTheResultOfCameraControlEvents) {
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
    InstallAll();
    received.result = 0;
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 0u);
    received.result = 5;
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 5u);
    RemoveAll();
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
}

TEST_F(Receivers, AreNotNotifiedWhileTheirFeatureIsOff) {
    InstallAll();
    received.result = 0;
    grabber.SetFeature(EMV_FEATURE_POST_PROCESS, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CFG_CHANGE, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CNTRL_EVENT, 0);
    grabber.DoPostProcess(1, 0);
    grabber.SignalCamCfgChange();
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
    EXPECT_TRUE(received.calls.empty());
    // The buffer is waiting nevertheless.
    std::uint64_t index = 0;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(index, 1u);
}

TEST_F(Receivers, MayCallTheGrabberAndRemoveThemselves) {
    InstallAll();
    received.inside = [this] {
        std::uint64_t index = 0;
        if (grabber.GetLastFilledBuffer(&index) == MV_OK) {
            grabber.ReleaseFrameBuffer(index);
        }
        grabber.PrepareFrameBuffers(4);
        RemoveAll();
        InstallAll();
        RemoveAll();
    };
    grabber.DoPostProcess(3, 1);
    InstallAll();
    grabber.SignalCamCfgChange();
    InstallAll();
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(0x1000), 1u);
    InstallAll();
    grabber.UpdateCamCntrlDialogs(kMvUpdateAll);
    EXPECT_EQ(received.calls, kAllCalls);
}

TEST_F(Receivers, MayCauseFurtherEvents) {
    InstallAll();
    int depth = 0;
    received.inside = [&] {
        if (++depth < 4) {
            SignalAll();
        }
    };
    grabber.DoPostProcess(3, 1);
    EXPECT_EQ(received.calls.front(), "post process 3 1");
    EXPECT_EQ(received.calls.size(), 13u);
}

struct Blocking {
    platform::Event entered;
    platform::Event mayLeave;
    std::atomic<bool> left{false};
    TestGrabber* grabber = nullptr;
};

void BlockInside(void* context) {
    auto& blocking = *static_cast<Blocking*>(context);
    blocking.entered.Set();
    blocking.mayLeave.Wait(platform::kInfinite);
    blocking.left = true;
}

TEST_F(Receivers, AreNoLongerRunningWhenTheirRemovalReturns) {
    Blocking blocking;
    grabber.InstCamCfgChangeCallBack(BlockInside, &blocking);
    std::thread signal([&] { grabber.SignalCamCfgChange(); });
    ASSERT_TRUE(blocking.entered.Wait(10000));
    platform::Event removing;
    bool leftBefore = false;
    std::thread remove([&] {
        removing.Set();
        grabber.InstCamCfgChangeCallBack(nullptr, nullptr);
        leftBefore = blocking.left;
    });
    ASSERT_TRUE(removing.Wait(10000));
    blocking.mayLeave.Set();
    remove.join();
    signal.join();
    EXPECT_TRUE(leftBefore);
}

TEST_F(Receivers, OfOtherEventsAreNotifiedWhileOneIsRunning) {
    Blocking blocking;
    grabber.InstCamCfgChangeCallBack(BlockInside, &blocking);
    grabber.InstPostProcessCallBack(OnPostProcess, &received);
    std::thread signal([&] { grabber.SignalCamCfgChange(); });
    ASSERT_TRUE(blocking.entered.Wait(10000));
    grabber.DoPostProcess(0, 1);
    EXPECT_EQ(received.calls.size(), 1u);
    EXPECT_EQ(grabber.InstPostProcessCallBack(nullptr, nullptr), MV_OK);
    EXPECT_EQ(grabber.GetNumCameras(), 0u);
    blocking.mayLeave.Set();
    signal.join();
}

struct Meeting {
    std::atomic<int> arrived{0};
    platform::Event both;
    TestGrabber* grabber = nullptr;

    void Arrive() {
        if (++arrived == 2) {
            both.Set();
        }
        both.Wait(platform::kInfinite);
    }
};

TEST_F(Receivers, ThatRemoveEachOtherDoNotWait) {
    Meeting meeting;
    meeting.grabber = &grabber;
    grabber.InstCamCfgChangeCallBack(
        [](void* context) {
            auto& at = *static_cast<Meeting*>(context);
            at.Arrive();
            at.grabber->InstPostProcessCallBack(nullptr, nullptr);
        },
        &meeting);
    grabber.InstPostProcessCallBack(
        [](std::uint64_t, std::uint32_t, void* context) {
            auto& at = *static_cast<Meeting*>(context);
            at.Arrive();
            at.grabber->InstCamCfgChangeCallBack(nullptr, nullptr);
        },
        &meeting);
    std::thread other([&] { grabber.SignalCamCfgChange(); });
    grabber.DoPostProcess(0, 1);
    other.join();
    EXPECT_EQ(meeting.arrived, 2);
}

TEST_F(Receivers, MayBeInstalledAndRemovedDuringDelivery) {
    std::atomic<bool> stop{false};
    std::atomic<int> inside{0};
    const auto count = [](void* context) {
        auto& running = *static_cast<std::atomic<int>*>(context);
        ++running;
        --running;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (!stop) {
                grabber.SignalCamCfgChange();
            }
        });
    }
    for (int i = 0; i < 2000; ++i) {
        grabber.InstCamCfgChangeCallBack(count, &inside);
        grabber.InstCamCfgChangeCallBack(nullptr, nullptr);
        ASSERT_EQ(inside, 0);
    }
    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(Receivers, ThatThrowDoNoHarm) {
    grabber.InstCamCfgChangeCallBack([](void*) { throw 1; }, nullptr);
    grabber.SignalCamCfgChange();
    grabber.InstCamCfgChangeCallBack(OnCamCfgChange, &received);
    grabber.SignalCamCfgChange();
    EXPECT_EQ(received.calls, CallTexts({"configuration change"}));
}

TEST_F(Receivers, ByMessageExistOnPlatformsWithMessages) {
    if (platform::HasMessages()) {
        // An address that is not a window: posting to it fails without consequences.
        EXPECT_EQ(grabber.InstPostProcessMsgWnd(this, 0x400), MV_OK);
        EXPECT_EQ(grabber.InstCamCfgChangeMsgWnd(this, 0x401), MV_OK);
        EXPECT_EQ(grabber.InstCamCntrlMsgWnd(this, 0x402), MV_OK);
        SignalAll();
        EXPECT_EQ(grabber.InstPostProcessMsgWnd(nullptr, 0), MV_OK);
        EXPECT_EQ(grabber.InstPostProcessThreadID(0, 0), MV_OK);
        EXPECT_EQ(grabber.InstCamCfgChangeThreadID(0, 0), MV_OK);
        EXPECT_EQ(grabber.InstCamCntrlThreadID(0, 0), MV_OK);
        return;
    }
    EXPECT_EQ(grabber.InstPostProcessMsgWnd(this, 0x400), MV_NOT_AVAILABLE);
    EXPECT_EQ(grabber.InstPostProcessThreadID(1, 0x400), MV_NOT_AVAILABLE);
    EXPECT_EQ(grabber.InstCamCfgChangeMsgWnd(this, 0x400), MV_NOT_AVAILABLE);
    EXPECT_EQ(grabber.InstCamCfgChangeThreadID(1, 0x400), MV_NOT_AVAILABLE);
    EXPECT_EQ(grabber.InstCamCntrlMsgWnd(this, 0x400), MV_NOT_AVAILABLE);
    EXPECT_EQ(grabber.InstCamCntrlThreadID(1, 0x400), MV_NOT_AVAILABLE);
}

} // namespace
