#include "platform/event.h"
#include "platform/window_message.h"
#include "tests/host/test_grabber.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What the receivers were told, one text per call.
struct Told {
    TestGrabber* grabber = nullptr;
    std::vector<std::string> calls;
    uint32_t answer = 1;
    std::function<void()> inside;
};

void OnPostProcess(uint64_t index, uint32_t fromCallback, void* context) {
    auto& told = *static_cast<Told*>(context);
    told.calls.push_back("post process " + std::to_string(index) + " " +
                         std::to_string(fromCallback));
    if (told.inside) {
        told.inside();
    }
}

void OnCamCfgChange(void* context) {
    auto& told = *static_cast<Told*>(context);
    told.calls.emplace_back("configuration change");
    if (told.inside) {
        told.inside();
    }
}

uint32_t OnCamCntrl(uint32_t code, void* context) {
    auto& told = *static_cast<Told*>(context);
    told.calls.push_back("camera control " + std::to_string(code));
    if (told.inside) {
        told.inside();
    }
    return told.answer;
}

void OnDialogUpdate(uint32_t mask, void* context) {
    auto& told = *static_cast<Told*>(context);
    told.calls.push_back("dialog update " + std::to_string(mask));
    if (told.inside) {
        told.inside();
    }
}

class Receivers : public testing::Test {
protected:
    Receivers() {
        told.grabber = &grabber;
        EXPECT_EQ(grabber.PrepareFrameBuffers(4), MV_OK);
    }

    void InstallAll() {
        EXPECT_EQ(grabber.InstPostProcessCallBack(OnPostProcess, &told), MV_OK);
        EXPECT_EQ(grabber.InstCamCfgChangeCallBack(OnCamCfgChange, &told), MV_OK);
        EXPECT_EQ(grabber.InstCamCntrlCallBack(OnCamCntrl, &told), MV_OK);
        EXPECT_EQ(grabber.InstDialogUpdateCallBack(OnDialogUpdate, &told), MV_OK);
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
    Told told;
};

using Calls = std::vector<std::string>;

const Calls kAll = {"post process 3 1", "configuration change", "camera control 4096",
                    "dialog update 4294967295"};

TEST_F(Receivers, AreToldUntilTheyAreRemoved) {
    SignalAll();
    InstallAll();
    SignalAll();
    EXPECT_EQ(told.calls, kAll);
    RemoveAll();
    SignalAll();
    EXPECT_EQ(told.calls, kAll);
}

TEST_F(Receivers, AreReplacedByTheNextOnes) {
    Told former;
    EXPECT_EQ(grabber.InstCamCntrlCallBack(OnCamCntrl, &former), MV_OK);
    InstallAll();
    SignalAll();
    EXPECT_TRUE(former.calls.empty());
    EXPECT_EQ(told.calls, kAll);
}

TEST_F(Receivers, AnswerCameraControlEvents) {
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
    InstallAll();
    told.answer = 0;
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 0u);
    told.answer = 5;
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 5u);
    RemoveAll();
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
}

TEST_F(Receivers, AreLeftAloneWhileTheirFeatureIsOff) {
    InstallAll();
    told.answer = 0;
    grabber.SetFeature(EMV_FEATURE_POST_PROCESS, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CFG_CHANGE, 0);
    grabber.SetFeature(EMV_FEATURE_CAM_CNTRL_EVENT, 0);
    grabber.DoPostProcess(1, 0);
    grabber.SignalCamCfgChange();
    EXPECT_EQ(grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest), 1u);
    EXPECT_TRUE(told.calls.empty());
    // The buffer waits all the same.
    uint64_t index = 0;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(index, 1u);
}

TEST_F(Receivers, MayCallTheGrabberAndRemoveThemselves) {
    InstallAll();
    told.inside = [this] {
        uint64_t index = 0;
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
    EXPECT_EQ(told.calls, kAll);
}

TEST_F(Receivers, MayCauseFurtherEvents) {
    InstallAll();
    int depth = 0;
    told.inside = [&] {
        if (++depth < 4) {
            SignalAll();
        }
    };
    grabber.DoPostProcess(3, 1);
    EXPECT_EQ(told.calls.front(), "post process 3 1");
    EXPECT_EQ(told.calls.size(), 13u);
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

TEST_F(Receivers, AreGoneWhenTheirRemovalReturns) {
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

TEST_F(Receivers, OfOtherEventsAreToldWhileOneIsRunning) {
    Blocking blocking;
    grabber.InstCamCfgChangeCallBack(BlockInside, &blocking);
    grabber.InstPostProcessCallBack(OnPostProcess, &told);
    std::thread signal([&] { grabber.SignalCamCfgChange(); });
    ASSERT_TRUE(blocking.entered.Wait(10000));
    grabber.DoPostProcess(0, 1);
    EXPECT_EQ(told.calls.size(), 1u);
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
        [](uint64_t, uint32_t, void* context) {
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

TEST_F(Receivers, MayComeAndGoWhileEventsAreDelivered) {
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
    grabber.InstCamCfgChangeCallBack(OnCamCfgChange, &told);
    grabber.SignalCamCfgChange();
    EXPECT_EQ(told.calls, Calls({"configuration change"}));
}

TEST_F(Receivers, ByMessageExistWhereThePlatformHasMessages) {
    if (platform::HasMessages()) {
        // Any address that is no window: posting to it fails without harm.
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

class FakeDialog : public ICamCntrlDialog {
public:
    void Show() override { visible = true; }
    void Hide() override { visible = false; }
    bool IsVisible() const override { return visible; }
    void Update(uint32_t mask) override { masks.push_back(mask); }
    void SetAcquisitionMarks(bool, bool) override {}

    bool visible = false;
    std::vector<uint32_t> masks;
};

TEST_F(Receivers, TheHeldDialogIsToldOfUpdates) {
    FakeDialog dialog;
    grabber.UpdateCamCntrlDialogs(kMvUpdateParameters);
    grabber.SetCamCntrlDialogObject(&dialog);
    EXPECT_EQ(grabber.GetCamCntrlDialogObject(), &dialog);
    grabber.InstDialogUpdateCallBack(OnDialogUpdate, &told);
    grabber.UpdateCamCntrlDialogs(3);
    grabber.SetCamCntrlDialogObject(nullptr);
    grabber.UpdateCamCntrlDialogs(kMvUpdateTimer);
    EXPECT_EQ(grabber.GetCamCntrlDialogObject(), nullptr);
    EXPECT_EQ(dialog.masks, std::vector<uint32_t>({3}));
    EXPECT_EQ(told.calls, Calls({"dialog update 3", "dialog update 2"}));
}

TEST_F(Receivers, TheHeldDialogIsHiddenOnClosing) {
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
    EXPECT_EQ(grabber.CloseCamCntrlDialog(), MV_OK);
    FakeDialog dialog;
    grabber.SetCamCntrlDialogObject(&dialog);
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
    dialog.Show();
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 1u);
    EXPECT_EQ(grabber.CloseCamCntrlDialog(), MV_OK);
    EXPECT_FALSE(dialog.visible);
    EXPECT_EQ(grabber.IsCamCntrlDialogOpen(), 0u);
}

TEST_F(Receivers, WindowsAreRegisteredOnceAndInOrder) {
    int first = 0;
    int second = 0;
    grabber.RegisterWindowHandle(&first);
    grabber.RegisterWindowHandle(&second);
    grabber.RegisterWindowHandle(&first);
    grabber.RegisterWindowHandle(nullptr);
    EXPECT_EQ(grabber.GetRegisteredWindow(0), &first);
    EXPECT_EQ(grabber.GetRegisteredWindow(1), &second);
    EXPECT_EQ(grabber.GetRegisteredWindow(2), nullptr);
    grabber.UnRegisterWindowHandle(&first);
    grabber.UnRegisterWindowHandle(&first);
    EXPECT_EQ(grabber.GetRegisteredWindow(0), &second);
    EXPECT_EQ(grabber.GetRegisteredWindow(1), nullptr);
}

} // namespace
