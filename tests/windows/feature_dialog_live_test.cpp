// The feature control dialog while images are grabbed.
#include "feature_dialog_fixture.h"
#include "scripted_dialog.h"
#include "tests/module/scripted_sleep.h"
#include "tests/support/manual_clock.h"
#include "ui/buffer_debounce.h"

#include <atomic>

using namespace pyxen;

namespace {

/// A host that shows images: it stops while the buffers change, and starts again with new ones.
class LiveHost {
public:
    explicit LiveHost(CMivoraKVNPyxenClass& newGrabber) : grabber(newGrabber) {
        grabber.InstCamCntrlCallBack(&Tell, this);
        grabber.InstPostProcessCallBack(&Receive, this);
    }
    ~LiveHost() {
        grabber.InstCamCntrlCallBack(nullptr, nullptr);
        EXPECT_EQ(grabber.StopSnap(), MV_OK);
        grabber.InstPostProcessCallBack(nullptr, nullptr);
    }
    LiveHost(const LiveHost&) = delete;
    LiveHost& operator=(const LiveHost&) = delete;

    void Start() {
        EXPECT_EQ(grabber.PrepareFrameBuffers(4), MV_OK);
        EXPECT_EQ(grabber.Snap(1), MV_OK);
    }

    std::vector<uint32_t> codes; ///< what the grabber told of buffers
    std::atomic<int> images{0};

private:
    static uint32_t Tell(uint32_t code, void* context) {
        LiveHost& host = *static_cast<LiveHost*>(context);
        if (code == 0x1000) {
            host.codes.push_back(code);
            EXPECT_EQ(host.grabber.StopSnap(), MV_OK);
        } else if (code == 0x1001) {
            host.codes.push_back(code);
            host.Start();
        }
        return 1;
    }
    static void Receive(uint64_t index, uint32_t, void* context) {
        LiveHost& host = *static_cast<LiveHost*>(context);
        ++host.images;
        host.grabber.ReleaseFrameBuffer(index);
    }

    CMivoraKVNPyxenClass& grabber;
};

using Codes = std::vector<uint32_t>;

// ---- a camera that does not take another layout meanwhile ----

class SimulatedLiveDialog : public FeatureDialogFixture {
protected:
    SimulatedLiveDialog() : FeatureDialogFixture(SimulatorHome()) {}

    void SetUp() override {
        OpenCamera();
        OpenDialog();
        Pump();
        live.emplace(Grabber());
    }
    void TearDown() override {
        live.reset();
        EndGrabber();
    }
    /// Handles all that the camera has reported so far.
    void Settle() {
        SdkControl("drain");
        Pump();
    }
    void Retype(int id, const std::wstring& text) {
        ::SetFocus(EditorControl(id));
        ::SendMessage(EditorControl(id), EM_SETSEL, 0, -1);
        Type(text);
    }

    ScriptedSleep sleep;        // no settling pauses
    support::ManualClock clock; // a change of the buffers ends when the test says so
    std::optional<LiveHost> live;
};

TEST_F(SimulatedLiveDialog, TakesStartAndStopForNoChangeOfTheBuffers) {
    for (int time = 0; time < 5; ++time) {
        live->Start();
        Settle();
        ASSERT_EQ(live->codes, Codes{}) << "after a start";
        ASSERT_EQ(Grabber().StopSnap(), MV_OK);
        Settle();
        ASSERT_EQ(live->codes, Codes{}) << "after a stop";
    }
}

TEST_F(SimulatedLiveDialog, InterruptsTheImagesOnceForAChange) {
    live->Start();
    Select(L"Camera/ImageFormatControl/OffsetX");
    Retype(7022, L"16");
    Press(VK_RETURN);
    PumpUntil([&] { return !live->codes.empty(); });
    Settle();
    EXPECT_EQ(live->codes, (Codes{0x1000}));
    clock.Advance(BufferDebounce::kQuietMs);
    PumpUntil([&] { return live->codes.size() >= 2; });
    Settle();
    EXPECT_EQ(live->codes, (Codes{0x1000, 0x1001}));
    EXPECT_EQ(RowText(L"Camera/ImageFormatControl/OffsetX"), L"OffsetX\t16");
    const int before = live->images;
    Frame().SetTimer(1, 20, nullptr); // the loop waits for messages
    PumpUntil([&] { return live->images > before + 2; });
    EXPECT_EQ(live->codes, (Codes{0x1000, 0x1001}));
}

TEST_F(SimulatedLiveDialog, RefusesAWidthThatIsLocked) {
    const std::wstring width = L"Camera/ImageFormatControl/Width";
    Select(width);
    live->Start();
    Settle();
    Retype(7022, L"320");
    CatchBox(L"Write protected", [&] { Press(VK_RETURN); });
    EXPECT_EQ(RowText(width), L"Width\t640");
    EXPECT_EQ(live->codes, Codes{});
    Select(L"Camera/ImageFormatControl/PixelFormat");
    EXPECT_EQ(Editor(), nullptr) << "an editor for what cannot be written";
}

// ---- one that does ----

class ScriptedLiveDialog : public ScriptedDialog {
protected:
    void SetUp() override {
        Open();
        live.emplace(Grabber());
    }
    void TearDown() override {
        live.reset();
        EndGrabber();
    }

    ScriptedSleep sleep;        // no settling pauses
    support::ManualClock clock; // a change of the buffers ends when the test says so
    std::optional<LiveHost> live;
};

TEST_F(ScriptedLiveDialog, HasTheBuffersMadeAnewForAnotherLayout) {
    live->Start();
    ASSERT_EQ(Grabber().GetActCamera()->GetActGfxMode()->GetImageSize(), 640u * 480);
    Select(L"Camera/ImageFormatControl/Width");
    ::SetFocus(EditorControl(7022));
    ::SendMessage(EditorControl(7022), EM_SETSEL, 0, -1);
    Type(L"1280");
    // As a camera tells of it: the size of a frame follows.
    sdk.OnCall("PxnFeatureIntSet", [&] {
        Camera().Find("PayloadSize")->intValue = 1280 * 480;
        sdk.Fire(scripted::CameraHandle(), "Width");
    });
    Press(VK_RETURN);
    sdk.ClearHooks();
    EXPECT_EQ(live->codes, (Codes{0x1000}));
    EXPECT_EQ(sdk.AnnouncedFrames().size(), 0u) << "buffers of the old layout";
    Select(L"Camera/ImageFormatControl/PixelFormat");
    ::SendMessage(EditorControl(7007), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                  reinterpret_cast<LPARAM>(L"Mono12"));
    sdk.OnCall("PxnFeatureEnumSet", [&] {
        Camera().Find("PayloadSize")->intValue = 1280 * 480 * 2;
        sdk.Fire(scripted::CameraHandle(), "PixelFormat");
    });
    ClickButton(Editor(), 7026);
    sdk.ClearHooks();
    EXPECT_EQ(live->codes, (Codes{0x1000}));
    clock.Advance(BufferDebounce::kQuietMs);
    PumpUntil([&] { return live->codes.size() >= 2; });
    EXPECT_EQ(live->codes, (Codes{0x1000, 0x1001})) << "two changes are told as one";
    EXPECT_EQ(Grabber().GetActCamera()->GetActGfxMode()->GetImageSize(), 1280u * 480 * 2);
    EXPECT_EQ(sdk.AnnouncedFrames().size(), 4u);
    ASSERT_TRUE(sdk.Deliver(0));
    EXPECT_EQ(live->images, 1);
}

} // namespace
