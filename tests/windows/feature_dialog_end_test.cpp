// feature_dialog_end_test.cpp - the feature control dialog whose grabber, camera or host has gone
#include "scripted_dialog.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

// ---- hosts that end everything when they are notified ----

/// The code at which the host ends the grabber.
class EndedByItsHost : public ScriptedDialog, public ::testing::WithParamInterface<uint32_t> {
protected:
    void SetUp() override {
        Open();
        window = Dialog().m_hWnd;
        Grabber().InstCamCntrlCallBack(&Receive, this);
    }
    void TearDown() override {
        Grabber().InstCamCntrlCallBack(nullptr, nullptr);
        EndGrabber();
    }

    /// Does what the dialog notifies its host of with that code.
    void Provoke() {
        switch (GetParam()) {
        case 1:
            ClickButton(window, 7001);
            break;
        case 3:
            Camera().Find("ExposureTime")->floatValue = 20000;
            sdk.Fire(scripted::CameraHandle(), "ExposureTime");
            break;
        case 0x1000:
            sdk.Fire(scripted::CameraHandle(), "Width");
            break;
        default:
            ::SendMessage(window, WM_TIMER, 1, 0);
            break;
        }
        Pump();
    }
    /// Handles what comes in the time of a change of the buffers; true when a timer is left without
    /// a window.
    bool HasTimerWithoutWindow() {
        const ULONGLONG end = GetTickCount64() + 700;
        bool found = false;
        while (!found && GetTickCount64() < end) {
            MSG message{};
            const HWND threadMessages = reinterpret_cast<HWND>(-1);
            found = ::PeekMessage(&message, threadMessages, WM_TIMER, WM_TIMER, PM_REMOVE);
            Pump();
            ::Sleep(20);
        }
        return found;
    }

    HWND window = nullptr;
    std::weak_ptr<CKVNPyxenFeatureCtrlDialog> object;
    unsigned ended = 0;

private:
    static uint32_t Receive(uint32_t code, void* context) {
        auto& self = *static_cast<EndedByItsHost*>(context);
        if (code == self.GetParam()) {
            ++self.ended;
            self.SetDialog(nullptr);
            self.object = self.Dialog().weak_from_this();
            EXPECT_EQ(self.Grabber().DeInit(), MV_OK);
            EXPECT_FALSE(::IsWindow(self.window));
            EXPECT_FALSE(self.object.expired()) << "its handler has not returned yet";
            self.Forget();
        }
        return 1;
    }
};

TEST_P(EndedByItsHost, TouchesNothingAfterwards) {
    Provoke();
    EXPECT_EQ(ended, 1u);
    EXPECT_TRUE(object.expired());
    EXPECT_EQ(sdk.Calls(), Texts{});
    EXPECT_EQ(sink.Take(), Texts{});
    EXPECT_FALSE(HasTimerWithoutWindow());
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), nullptr);
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 0u);
}

TEST_P(EndedByItsHost, OpensANewDialogLater) {
    Provoke();
    ASSERT_EQ(Grabber().Init(), MV_OK);
    ASSERT_EQ(Grabber().SetActCameraIndex(0), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    OpenDialog();
    Pump();
    EXPECT_TRUE(Dialog().IsVisible());
    EXPECT_EQ(Children(L"").size(), 5u);
}

INSTANTIATE_TEST_SUITE_P(Codes, EndedByItsHost, ::testing::Values(1u, 3u, 0x1000u, 0x1001u));

// ---- cameras that are closed ----

class ClosedCamera : public ScriptedDialog {
protected:
    void Paint() {
        ::RedrawWindow(Tree(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    }
    static bool Contains(const Texts& lines, const std::string& wanted) {
        return std::find(lines.begin(), lines.end(), wanted) != lines.end();
    }
};

TEST_F(ClosedCamera, IsAskedNothing) {
    Open();
    Expand(L"Camera/DeviceControl");
    Select(L"Camera/DeviceControl/DeviceUserID");
    ASSERT_NE(Editor(), nullptr);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Forget();
    Paint();
    Expand(L"Camera/ImageFormatControl");
    Paint();
    const Texts lines = DialogLog();
    EXPECT_TRUE(Contains(lines, "1 RegisterDlgInvalidationFeatures: Registering Width"));
    EXPECT_TRUE(Contains(lines, "1 OnInvalidateFeature: Updating Width"));
    EXPECT_TRUE(Contains(lines, "0 RefreshLeaf: Feature Width has no valid feature cache"));
    Expand(L"Camera/DeviceControl"); // which collapses it
    EXPECT_TRUE(Contains(DialogLog(),
                         "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceModelName"));
    Select(L"Camera/ImageFormatControl/Width");
    EXPECT_EQ(DialogLog(),
              Texts{"0 AttrSelected: Feature Width is not in the feature cache Camera."});
    EXPECT_EQ(Editor(), nullptr);
    Grabber().CloseCamCntrlDialog();
    EXPECT_EQ(sdk.Calls(), Texts{});
}

TEST_F(ClosedCamera, IsAskedNothingWhileAnotherOneIsOpen) {
    scripted::Camera another = Camera();
    another.id = "cam-2";
    another.extendedId = "cam-ext-2";
    sdk.Data().cameras.push_back(another);
    Open();
    Expand(L"Camera/DeviceControl");
    Select(L"Camera/DeviceControl/DeviceUserID");
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(Grabber().SetActCameraIndex(1), MV_OK);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().CameraHandle(), scripted::CameraHandle(1));
    Forget();
    // Before the dialog has handled the message that has it show the new camera's modules.
    Paint();
    Dialog().OnValueChanged(false);
    Dialog().OnValueChanged(true);
    Dialog().AttrSelected(Row(L"Camera/DeviceControl/DeviceModelName"));
    Dialog().SendMessage(WM_FEATURE_UPDATE, reinterpret_cast<WPARAM>(scripted::CameraHandle()),
                         reinterpret_cast<LPARAM>("DeviceUserID"));
    EXPECT_EQ(sdk.Calls(), Texts{});
    Pump();
    EXPECT_EQ(Children(L"").size(), 5u);
    for (const std::string& call : sdk.Calls()) {
        EXPECT_EQ(call.find("camera0"), std::string::npos) << call;
    }
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(1), "Width"), 1u);
}

} // namespace
