// callback_race_test.cpp - a host that calls the grabber from inside its own receivers
#include "race_fixture.h"

#include <array>
#include <atomic>
#include <deque>

namespace {

class CallbackRace : public RaceFixture {
protected:
    /// What one installation of the receivers gets as its context.
    struct Installation {
        explicit Installation(CallbackRace& owner) : test(owner) {}
        CallbackRace& test;
        std::atomic<bool> isRemoved{false};
    };

    void SetUp() override {
        RaceFixture::SetUp();
        grabber = MakeGrabber();
        Open(*grabber);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        ASSERT_EQ(grabber->InstCamCntrlCallBack(&OnControl, this), MV_OK);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->InstCamCfgChangeCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->InstCamCntrlCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->InstDialogUpdateCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        grabber.reset();
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    /// New receivers in place of the present ones, which may go then.
    void Replace() {
        installations.emplace_back(*this);
        Installation& next = installations.back();
        EXPECT_EQ(grabber->InstPostProcessCallBack(&OnFrame, &next), MV_OK);
        EXPECT_EQ(grabber->InstCamCfgChangeCallBack(&OnChange, &next), MV_OK);
        for (; &installations.front() != &next; installations.pop_front()) {
            installations.front().isRemoved = true;
        }
    }
    void Remove() {
        EXPECT_EQ(grabber->InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        EXPECT_EQ(grabber->InstCamCfgChangeCallBack(nullptr, nullptr), MV_OK);
        for (Installation& installation : installations) {
            installation.isRemoved = true;
        }
        installations.clear();
    }
    void UseHost(RaceRandom& random) {
        for (unsigned count = 0; count < 3; ++count) {
            Replace();
            Hesitate(random);
        }
        if (Draw(random, 2) == 0) {
            Remove();
        }
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    }
    void Signal(RaceRandom& random) {
        for (unsigned count = 0; count < 3; ++count) {
            switch (Draw(random, 3)) {
            case 0:
                grabber->SignalCamCfgChange();
                break;
            case 1:
                EXPECT_EQ(grabber->SignalCamCntrlDlgEvent(3), 1u);
                break;
            default:
                grabber->UpdateCamCntrlDialogs(1);
                break;
            }
            Hesitate(random);
        }
    }

    /// Operations that may be called from any thread at any time.
    void CallAnything(RaceRandom& random) {
        std::uint64_t index = 0;
        std::uint32_t value = 0;
        switch (Draw(random, 10)) {
        case 0:
            EXPECT_EQ(grabber->InstDialogUpdateCallBack(&OnUpdate, this), MV_OK);
            break;
        case 1:
            EXPECT_EQ(grabber->InstDialogUpdateCallBack(nullptr, nullptr), MV_OK);
            break;
        case 2:
            grabber->UpdateCamCntrlDialogs(2);
            break;
        case 3:
            EXPECT_EQ(grabber->SignalCamCntrlDlgEvent(1), 1u);
            break;
        case 4:
            EXPECT_EQ(grabber->IsCameraOpen(), 1u);
            EXPECT_EQ(grabber->GetActCameraIndex(), 0);
            break;
        case 5:
            if (grabber->GetLastFilledBuffer(&index) == MV_OK) {
                EXPECT_NE(grabber->GetFrameBuffer(index), nullptr);
                EXPECT_EQ(grabber->ReleaseFrameBuffer(index), MV_OK);
            }
            break;
        case 6:
            EXPECT_EQ(grabber->SetGrabberBit(3, static_cast<std::uint32_t>(Draw(random, 2))),
                      MV_OK);
            EXPECT_EQ(grabber->GetGrabberBit(3, &value), MV_OK);
            break;
        case 7:
            EXPECT_EQ(grabber->ChangeTimerTB(1000, 20000, 1), MV_OK);
            break;
        case 8:
            EXPECT_EQ(grabber->AddCmdChannel(nullptr), MV_BAD_VALUE);
            grabber->GetNumCmdChannels();
            break;
        default:
            grabber->SignalCamCfgChange();
            break;
        }
    }
    /// What a frame callback must refuse, as it would wait for the callback itself.
    void CallRefused(RaceRandom& random) {
        switch (Draw(random, 6)) {
        case 0:
            EXPECT_EQ(grabber->OpenActCamera(), MV_BUSY);
            break;
        case 1:
            EXPECT_EQ(grabber->CloseActCamera(), MV_BUSY);
            break;
        case 2:
            EXPECT_EQ(grabber->RefreshCameraList(), MV_BUSY);
            break;
        case 3:
            EXPECT_EQ(grabber->PrepareFrameBuffers(2), MV_BUSY);
            break;
        case 4:
            EXPECT_EQ(grabber->DeInit(), MV_BUSY);
            break;
        default:
            EXPECT_EQ(grabber->StopSnap(), MV_OK);
            break;
        }
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::deque<Installation> installations;
    std::atomic<std::uint64_t> calls{0};
    std::atomic<std::uint64_t> frames{0};

private:
    /// Signals inside receivers lead to receivers again, but not for ever.
    class Nesting {
    public:
        Nesting() { ++Depth(); }
        ~Nesting() { --Depth(); }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        bool IsDeep() const { return Depth() > 3; }

    private:
        static unsigned& Depth() {
            thread_local unsigned depth = 0;
            return depth;
        }
    };

    void OnCall() {
        const Nesting nesting;
        RaceRandom random(++calls);
        if (!nesting.IsDeep()) {
            CallAnything(random);
        }
    }
    static void OnFrame(std::uint64_t index, std::uint32_t, void* context) {
        auto& installation = *static_cast<Installation*>(context);
        CallbackRace& test = installation.test;
        EXPECT_FALSE(installation.isRemoved);
        EXPECT_NE(test.grabber->GetFrameBuffer(index), nullptr);
        RaceRandom random(++test.frames);
        Hesitate(random);
        test.OnCall();
        test.CallRefused(random);
        EXPECT_FALSE(installation.isRemoved);
    }
    static void OnChange(void* context) {
        auto& installation = *static_cast<Installation*>(context);
        EXPECT_FALSE(installation.isRemoved);
        installation.test.OnCall();
        EXPECT_FALSE(installation.isRemoved);
    }
    static std::uint32_t OnControl(std::uint32_t, void* context) {
        static_cast<CallbackRace*>(context)->OnCall();
        return 1;
    }
    static void OnUpdate(std::uint32_t, void* context) {
        static_cast<CallbackRace*>(context)->OnCall();
    }
};

TEST_F(CallbackRace, TheHostCallsBackFromItsReceivers) {
    RunRounds([this](RaceRandom& random) {
        Replace();
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        Contest(random, {[this](RaceRandom& own) { UseHost(own); },
                         [this](RaceRandom& own) { Signal(own); },
                         [this](RaceRandom& own) {
                             Hesitate(own);
                             TryControl("access A read");
                             TryControl("access A full");
                         }});
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
    });
    EXPECT_GT(frames, 0u);
    EXPECT_GT(calls, 0u);
}

} // namespace
