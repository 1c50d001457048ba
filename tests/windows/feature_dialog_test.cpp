// The feature control dialog: its window, its rows and what it follows.
#include "mivora/dialog_messages.h"
#include "scripted_dialog.h"

#include "tests/support/manual_clock.h"
#include "window_pixels.h"

#include <algorithm>

namespace {

using FeatureDialog = ScriptedDialog;

// ---- the window ----

TEST_F(FeatureDialog, HasItsTextsControlsAndIcon) {
    Open();
    EXPECT_EQ(TextOf(Dialog().m_hWnd), L"Camera Feature Control");
    EXPECT_EQ(TextOf(Control(7001)), L"Close");
    EXPECT_EQ(TextOf(Control(7002)), L"Feature Description");
    EXPECT_EQ(TextOf(Control(7003)), L"");
    EXPECT_EQ(TextOf(Control(4108)), L"tree");
    EXPECT_EQ(TextOf(Control(4109)), L"cntview");
    EXPECT_NE(Dialog().SendMessage(WM_GETICON, ICON_SMALL), 0);
    EXPECT_TRUE(::GetWindowLong(Dialog().m_hWnd, GWL_STYLE) & WS_THICKFRAME);
    EXPECT_EQ(::GetParent(Dialog().m_hWnd), nullptr);
    EXPECT_EQ(::GetFocus(), Tree());
}

TEST_F(FeatureDialog, UsesTheseMessageNumbers) {
    EXPECT_EQ(WM_FEATURE_UPDATE, 0x8000u);
    EXPECT_EQ(WM_SYNC_FEATURE_INVALIDATED, 0x8001u);
    EXPECT_EQ(WM_BUFFER_FORMAT_INVALIDATED, 0x8002u);
    EXPECT_EQ(WM_TIMING_FEATURE_INVALIDATED, 0x8003u);
    EXPECT_EQ(CKVNPyxenFeatureCtrlDialog::SYNC_TIMEOUT_TIMER_ID, 1u);
}

TEST_F(FeatureDialog, IsRegisteredForTheHostsMessages) {
    Open();
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), Dialog().m_hWnd);
    MSG enter{};
    enter.hwnd = Tree();
    enter.message = WM_KEYDOWN;
    enter.wParam = VK_RETURN;
    EXPECT_TRUE(OfferMessageToDialogs(Grabber(), enter));
    EXPECT_TRUE(Dialog().IsVisible());
}

TEST_F(FeatureDialog, IsKeptAndShownAgain) {
    Open();
    CKVNPyxenFeatureCtrlDialog* const first = &Dialog();
    EXPECT_EQ(Grabber().CloseCamCntrlDialog(), MV_OK);
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 0u);
    OpenDialog();
    EXPECT_EQ(&Dialog(), first);
    EXPECT_EQ(Grabber().IsCamCntrlDialogOpen(), 1u);
    EXPECT_EQ(Grabber().GetRegisteredWindow(1), nullptr);
}

TEST_F(FeatureDialog, CannotBeMadeSmallerThan600By400) {
    Open();
    Dialog().SetWindowPos(nullptr, 0, 0, 100, 100, SWP_NOMOVE | SWP_NOZORDER);
    CRect rect;
    Dialog().GetWindowRect(rect);
    EXPECT_EQ(rect.Width(), 600);
    EXPECT_EQ(rect.Height(), 400);
}

TEST_F(FeatureDialog, KeepsItsEdgesWhenItIsResized) {
    Open();
    const auto distances = [&](int id) {
        CRect client, place;
        Dialog().GetClientRect(client);
        ::GetWindowRect(Control(id), &place);
        Dialog().ScreenToClient(place);
        return CRect(place.left, place.Height(), client.right - place.right,
                     client.bottom - place.bottom);
    };
    const int kept[] = {7002, 7003, 7001};
    std::vector<CRect> before;
    for (const int id : kept) {
        before.push_back(distances(id));
    }
    const CRect closeBefore = distances(7001);
    Dialog().SetWindowPos(nullptr, 0, 0, 1100, 800, SWP_NOMOVE | SWP_NOZORDER);
    for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_TRUE(EqualRect(distances(kept[index]), before[index])) << kept[index];
    }
    EXPECT_EQ(distances(7001).right, closeBefore.right);
    EXPECT_EQ(distances(7001).bottom, closeBefore.bottom);
    CRect tree, pane, box;
    ::GetWindowRect(Control(4108), &tree);
    ::GetWindowRect(Control(4109), &pane);
    ::GetWindowRect(Control(7002), &box);
    EXPECT_LT(tree.right, pane.left);
    EXPECT_LT(tree.bottom, box.top);
    EXPECT_EQ(tree.bottom, pane.bottom);
    EXPECT_EQ(pane.right, box.right);
    EXPECT_EQ(tree.left, box.left);
}

TEST_F(FeatureDialog, IsHiddenByItsCloseButton) {
    Open();
    ClickButton(Dialog().m_hWnd, 7001);
    EXPECT_FALSE(Dialog().IsVisible());
    EXPECT_TRUE(::IsWindow(Dialog().m_hWnd));
}

TEST_F(FeatureDialog, IsHiddenByEscapeAndTheFramesButton) {
    Open();
    Press(VK_ESCAPE);
    EXPECT_FALSE(Dialog().IsVisible());
    OpenDialog();
    EXPECT_TRUE(Dialog().IsVisible());
    Dialog().SendMessage(WM_SYSCOMMAND, SC_CLOSE);
    Pump();
    EXPECT_FALSE(Dialog().IsVisible());
}

struct Host {
    std::vector<uint32_t> codes;
    uint32_t answer = 1;
    std::function<void(uint32_t)> then;

    static uint32_t Tell(uint32_t code, void* context) {
        Host& host = *static_cast<Host*>(context);
        host.codes.push_back(code);
        if (host.then) {
            host.then(code);
        }
        return host.answer;
    }
};

TEST_F(FeatureDialog, StaysWhenTheHostDoesNotLetItClose) {
    Open();
    Host host{{}, 0, {}};
    Grabber().InstCamCntrlCallBack(&Host::Tell, &host);
    ClickButton(Dialog().m_hWnd, 7001);
    EXPECT_TRUE(Dialog().IsVisible());
    EXPECT_EQ(host.codes, (std::vector<uint32_t>{1}));
    host.answer = 2;
    ClickButton(Dialog().m_hWnd, 7001);
    EXPECT_TRUE(Dialog().IsVisible());
    host.answer = 1;
    ClickButton(Dialog().m_hWnd, 7001);
    EXPECT_FALSE(Dialog().IsVisible());
    Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

// ---- the tree ----

TEST_F(FeatureDialog, ShowsTheModulesSortedBelowTheRoot) {
    Open();
    EXPECT_EQ(RowText(L""), L"/");
    EXPECT_EQ(Children(L""),
              (WideTexts{L"Camera", L"Interface", L"Localdevice", L"Stream0", L"Transportlayer"}));
    EXPECT_EQ(TreeView_GetSelection(Tree()), Row(L""));
    for (const wchar_t* const module : {L"", L"Camera", L"Stream0"}) {
        EXPECT_TRUE(TreeView_GetItemState(Tree(), Row(module), TVIS_EXPANDED) & TVIS_EXPANDED);
    }
    EXPECT_FALSE(TreeView_GetItemState(Tree(), Row(L"Camera/DeviceControl"), TVIS_EXPANDED) &
                 TVIS_EXPANDED);
}

TEST_F(FeatureDialog, ShowsCategoriesAndFeaturesInTheirOrder) {
    Open();
    EXPECT_EQ(Children(L"Camera"), (WideTexts{L"ImageFormatControl", L"TransportLayerControl",
                                              L"AcquisitionControl", L"DeviceControl"}));
    EXPECT_EQ(Children(L"Camera/ImageFormatControl"),
              (WideTexts{L"Width\t640", L"Height\t480", L"OffsetX\t0", L"OffsetY\t0",
                         L"PixelFormat\tMono8", L"ReverseX\tFalse"}));
    EXPECT_EQ(Children(L"Camera/AcquisitionControl"),
              (WideTexts{L"AcquisitionStart\t<Press button below to execute>",
                         L"AcquisitionStop\t<Press button below to execute>",
                         L"ExposureTime\t10000.000000", L"AcquisitionFrameRate\t25.000000"}));
}

TEST_F(FeatureDialog, LeavesModulesWithoutFeaturesOut) {
    Camera().localDevice.features.clear();
    Open();
    EXPECT_EQ(Children(L""), (WideTexts{L"Camera", L"Interface", L"Stream0", L"Transportlayer"}));
}

TEST_F(FeatureDialog, ShowsTextsOfOtherLanguages) {
    Camera().Find("DeviceUserID")->text = "\xCE\xBC-K\xC3\xB6ln";
    Open();
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\t\x3BC-K\xF6ln");
}

TEST_F(FeatureDialog, DrawsWhatCannotBeWrittenInGrey) {
    Open();
    Expand(L"Camera/DeviceControl");
    const auto gray = [&](const std::wstring& path) {
        CRect rect;
        TreeView_GetItemRect(Tree(), Row(path), &rect, TRUE);
        ::UpdateWindow(Tree());
        return WindowPixels(Tree()).Count(rect, ::GetSysColor(COLOR_GRAYTEXT)) > 0;
    };
    EXPECT_TRUE(gray(L"Camera/DeviceControl/DeviceModelName"));
    EXPECT_FALSE(gray(L"Camera/DeviceControl/DeviceUserID"));
    EXPECT_FALSE(Dialog().IsAttrReadOnly(Row(L"Camera/DeviceControl")));
    EXPECT_TRUE(Dialog().IsAttrReadOnly(Row(L"Camera/DeviceControl/DeviceModelName")));
    EXPECT_FALSE(Dialog().IsAttrReadOnly(Row(L"Camera/DeviceControl/DeviceUserID")));
}

// ---- registrations ----

TEST_F(FeatureDialog, RegistersInOrderWhenItOpens) {
    Open(WithRules());
    EXPECT_EQ(DialogLog(),
              (Texts{"1 RegisterSyncInvalidationFeatures: Registering Width",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering Width",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering Height",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering OffsetX",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering OffsetY",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering PixelFormat",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering ReverseX",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering GVSPAdjustPacketSize",
                     "1 RegisterBufferFormatInvalidationFeatures: Registering GevSCPSPacketSize",
                     "1 RegisterExtNotificationInvalidationFeatures: Registering ExposureTime",
                     "1 RegisterExtNotificationInvalidationFeatures: Registering "
                     "AcquisitionFrameRate"}));
}

TEST_F(FeatureDialog, RegistersRowsThatComeIntoSight) {
    Open();
    Forget();
    Expand(L"Camera/DeviceControl");
    EXPECT_EQ(DialogLog(),
              (Texts{"1 RegisterDlgInvalidationFeatures: Registering DeviceModelName",
                     "1 RegisterDlgInvalidationFeatures: Registering DeviceUserID",
                     "1 RegisterDlgInvalidationFeatures: Registering DeviceSerialPortBaudRate",
                     "1 OnInvalidateFeature: Updating DeviceModelName",
                     "1 OnInvalidateFeature: Updating DeviceUserID",
                     "1 OnInvalidateFeature: Updating DeviceSerialPortBaudRate"}));
    EXPECT_EQ(
        sdk.Calls({"PxnFeatureInvalidation"}),
        (Texts{R"(PxnFeatureInvalidationRegister(camera0, "DeviceModelName", cb))",
               R"(PxnFeatureInvalidationRegister(camera0, "DeviceUserID", cb))",
               R"(PxnFeatureInvalidationRegister(camera0, "DeviceSerialPortBaudRate", cb))"}));
    Forget();
    Expand(L"Camera/DeviceControl"); // which collapses it
    EXPECT_EQ(
        DialogLog(),
        (Texts{"1 UnregisterDlgInvalidationFeatures: Unregistering DeviceModelName",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceUserID",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceSerialPortBaudRate"}));
}

TEST_F(FeatureDialog, FollowsOnlyWhatIsOnScreenWhileItScrolls) {
    for (int index = 0; index < 100; ++index) {
        auto feature = scripted::IntFeature("Extra" + std::to_string(index), index, 0, 1000);
        feature.category = "/Extra";
        Camera().features.push_back(feature);
    }
    Open();
    Expand(L"Camera/Extra");
    Forget();
    for (int step = 0; step < 6; ++step) {
        ::SendMessage(Tree(), WM_VSCROLL, step < 3 ? SB_PAGEDOWN : SB_LINEUP, 0);
        Pump();
        const auto lines = DialogLog();
        const Texts gone = NamesAfter(lines, "1 UnregisterDlgInvalidationFeatures: Unregistering ");
        const Texts come = NamesAfter(lines, "1 RegisterDlgInvalidationFeatures: Registering ");
        EXPECT_FALSE(come.empty()) << step;
        EXPECT_LT(come.size(), 25u);
        Texts expected;
        for (int index = 0; index < 100; ++index) {
            CRect row, client;
            ::GetClientRect(Tree(), client);
            const std::string name = "Extra" + std::to_string(index);
            if (TreeView_GetItemRect(Tree(),
                                     Row(L"Camera/Extra/" + std::wstring(name.begin(), name.end())),
                                     &row, FALSE) &&
                row.top >= 0 && row.top < client.bottom) {
                expected.push_back("camera0 " + name);
            }
        }
        Texts registered = Registered();
        std::erase_if(registered, [](const std::string& text) {
            return text.find("Extra") == std::string::npos;
        });
        std::sort(expected.begin(), expected.end());
        std::sort(registered.begin(), registered.end());
        EXPECT_EQ(registered, expected) << step;
    }
}

TEST_F(FeatureDialog, FollowsRowsThatKeysBringIntoSight) {
    Open();
    ::SetFocus(Tree());
    TreeView_SelectItem(Tree(), Row(L"Camera/DeviceControl"));
    Pump();
    Forget();
    Press(VK_RIGHT);
    EXPECT_EQ(NamesAfter(DialogLog(), "1 RegisterDlgInvalidationFeatures: Registering "),
              (Texts{"DeviceModelName", "DeviceUserID", "DeviceSerialPortBaudRate"}));
}

TEST_F(FeatureDialog, DropsTheValuesWhileItIsHidden) {
    Open();
    Expand(L"Camera/DeviceControl");
    const Texts all = Registered();
    Forget();
    Grabber().CloseCamCntrlDialog();
    EXPECT_EQ(
        DialogLog(),
        (Texts{"1 UnregisterDlgInvalidationFeatures: Unregistering DeviceModelName",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceUserID",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceSerialPortBaudRate"}));
    EXPECT_EQ(Registered().size(), all.size() - 3);
    Dialog().SetWindowPos(nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(Registered().size(), all.size() - 3) << "followed while hidden";
    OpenDialog();
    Pump();
    EXPECT_EQ(Registered().size(), all.size());
}

TEST_F(FeatureDialog, TakesEverythingBackInOrderWhenItEnds) {
    Open(WithRules());
    Expand(L"Camera/DeviceControl");
    Forget();
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(
        DialogLog(),
        (Texts{"1 OnDestroy called", "1 UnregisterSyncInvalidationFeatures: Unregistering Width",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering Width",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering Height",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering OffsetX",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering OffsetY",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering PixelFormat",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering ReverseX",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering GVSPAdjustPacketSize",
               "1 UnegisterBufferFormatInvalidationFeatures: Unregistering GevSCPSPacketSize",
               "1 UnegisterExtNotificationInvalidationFeatures: Unregistering ExposureTime",
               "1 UnegisterExtNotificationInvalidationFeatures: Unregistering "
               "AcquisitionFrameRate",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceModelName",
               "1 UnregisterDlgInvalidationFeatures: Unregistering DeviceUserID",
               "1 UnregisterDlgInvalidationFeatures: Unregistering "
               "DeviceSerialPortBaudRate"}));
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), nullptr);
    const Texts calls = sdk.Calls();
    const auto first = [&](const std::string& text) {
        return std::find_if(calls.begin(), calls.end(),
                            [&](const std::string& call) { return call.starts_with(text); });
    };
    EXPECT_LT(first("PxnFeatureInvalidationUnregister(camera0, \"Width\""), first("PxnCameraClose"))
        << "registrations outlived what they belong to";
    EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                            [](const std::string& call) {
                                return call.starts_with("PxnFeatureInvalidationUnregister(") &&
                                       call.find("system") == std::string::npos;
                            }),
              14);
    EXPECT_EQ(Registered(), Texts{});
    SetDialog(nullptr);
}

// ---- what the SDK tells ----

TEST_F(FeatureDialog, RefreshesAFeatureOnceHoweverOftenItChanged) {
    Open();
    Expand(L"Camera/DeviceControl");
    Camera().Find("DeviceUserID")->text = "right";
    Forget();
    for (int times = 0; times < 5; ++times) {
        EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "DeviceUserID"), 1u);
    }
    const std::string told = "1 InvalidationCallback: /Camera/DeviceControl/DeviceUserID";
    EXPECT_EQ(DialogLog(), (Texts{told, told, told, told, told}));
    sdk.ClearCalls();
    Pump();
    const std::string dropped =
        "1 OnInvalidateFeature: Dropping duplicate feature update request: handle "
        "0000000000100000, Feature DeviceUserID .";
    EXPECT_EQ(DialogLog(), (Texts{dropped, dropped, dropped, dropped,
                                  "1 OnInvalidateFeature: Updating DeviceUserID"}));
    EXPECT_EQ(sdk.Calls({"PxnFeatureStringGet(camera0, \"DeviceUserID\""}).size(), 2u);
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\tright");
}

TEST_F(FeatureDialog, MovesARepeatedRequestToTheEnd) {
    Open();
    Expand(L"Camera/DeviceControl");
    Forget();
    sdk.Fire(scripted::CameraHandle(), "DeviceUserID");
    sdk.Fire(scripted::CameraHandle(), "DeviceModelName");
    sdk.Fire(scripted::CameraHandle(), "DeviceUserID");
    Pump();
    EXPECT_EQ(NamesAfter(DialogLog(), "1 OnInvalidateFeature: Updating "),
              (Texts{"DeviceModelName", "DeviceUserID"}));
}

TEST_F(FeatureDialog, SaysWhatItCannotFind) {
    Open();
    Forget();
    Dialog().PostMessage(WM_FEATURE_UPDATE, reinterpret_cast<WPARAM>(scripted::CameraHandle()),
                         reinterpret_cast<LPARAM>("Nothing"));
    Pump();
    EXPECT_EQ(DialogLog(), (Texts{"0 OnInvalidateFeature: Feature Nothing not found in handle "
                                  "0000000000100000."}));
}

TEST_F(FeatureDialog, SaysWhenAFeaturesModuleIsGone) {
    Open();
    Expand(L"Camera/DeviceControl");
    Forget();
    Grabber().GetFeatureCacheByName("Camera")->Clear();
    Dialog().PostMessage(WM_FEATURE_UPDATE, reinterpret_cast<WPARAM>(scripted::CameraHandle()),
                         reinterpret_cast<LPARAM>("DeviceUserID"));
    Pump();
    EXPECT_EQ(DialogLog(),
              (Texts{"1 OnInvalidateFeature: Updating DeviceUserID",
                     "0 RefreshLeaf: Feature DeviceUserID has no valid feature cache"}));
}

TEST_F(FeatureDialog, ShowsWhatCannotBeReadAsUnavailable) {
    Open();
    Expand(L"Camera/DeviceControl");
    sdk.FailFeature(scripted::CameraHandle(), "DeviceUserID", "PxnFeatureStringGet",
                    PxnErrDeviceNotOpen);
    sdk.Fire(scripted::CameraHandle(), "DeviceUserID");
    Pump();
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\t<unavailable>");
}

TEST_F(FeatureDialog, TellsTheGrabberOfNewTiming) {
    Open();
    Host host;
    Grabber().InstCamCntrlCallBack(&Host::Tell, &host);
    Camera().Find("ExposureTime")->floatValue = 20000;
    Forget();
    sdk.Fire(scripted::CameraHandle(), "ExposureTime");
    EXPECT_EQ(DialogLog(), (Texts{"1 ExtNotificationInvalidationCallback: "
                                  "/Camera/AcquisitionControl/ExposureTime"}));
    EXPECT_TRUE(host.codes.empty());
    Pump();
    EXPECT_EQ(host.codes, (std::vector<uint32_t>{3}));
    Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

TEST_F(FeatureDialog, SynchronisesDependentFeatures) {
    Open(WithRules());
    Camera().Find("Width")->intValue = 800;
    Grabber().SetAcquisitionState(0);
    Forget();
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    const Texts lines = DialogLog();
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        "1 SyncInvalidationCallback: /Camera/ImageFormatControl/Width"),
              lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        "1 OnInvalidateSyncFeature: Width has been invalidated."),
              lines.end());
    EXPECT_EQ(Camera().Find("OffsetX")->intValue, 800);
}

TEST_F(FeatureDialog, FollowsNeitherWhileTheMarksAreSet) {
    Open(WithRules());
    Host host;
    Grabber().InstCamCntrlCallBack(&Host::Tell, &host);
    Camera().Find("Width")->intValue = 800;
    Dialog().SetAcquisitionMarks(true, true);
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    EXPECT_EQ(Camera().Find("OffsetX")->intValue, 640) << "as when the camera was opened";
    EXPECT_TRUE(host.codes.empty());
    Dialog().SetAcquisitionMarks(true, false);
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    EXPECT_EQ(Camera().Find("OffsetX")->intValue, 800);
    EXPECT_TRUE(host.codes.empty());
    Dialog().SetAcquisitionMarks(false, false);
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    EXPECT_EQ(host.codes, (std::vector<uint32_t>{0x1000}));
    Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

// ---- changes of the buffer format ----

TEST_F(FeatureDialog, TellsManyBufferChangesAsOne) {
    support::ManualClock clock;
    const std::vector<uint32_t> begun{0x1000};
    Open();
    Host host;
    Grabber().InstCamCntrlCallBack(&Host::Tell, &host);
    Forget();
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    EXPECT_EQ(host.codes, begun);
    clock.Advance(300);
    sdk.Fire(scripted::CameraHandle(), "Height");
    Pump();
    clock.Advance(499);
    Dialog().SendMessage(WM_TIMER, CKVNPyxenFeatureCtrlDialog::SYNC_TIMEOUT_TIMER_ID);
    EXPECT_EQ(host.codes, begun) << "before the time has passed since the second change";
    clock.Advance(1);
    Frame().SetTimer(1, 20, nullptr); // the loop waits for messages
    PumpUntil([&] { return host.codes.size() > 1; });
    EXPECT_EQ(host.codes, (std::vector<uint32_t>{0x1000, 0x1001}));
    EXPECT_FALSE(Dialog().KillTimer(CKVNPyxenFeatureCtrlDialog::SYNC_TIMEOUT_TIMER_ID))
        << "the timer still runs";
    EXPECT_EQ(DialogLog(),
              (Texts{"1 BufferFormatInvalidationCallback: /Camera/ImageFormatControl/Width",
                     "1 OnInvalidateAnyFeature: change of Width invalidates framebuffers.",
                     "1 BufferFormatInvalidationCallback: /Camera/ImageFormatControl/Height",
                     "1 OnTimer(SYNC_TIMEOUT_TIMER_ID): Feature synchronization finished. Calling "
                     "NotifyBufferImpact.\n"}));
    Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

TEST_F(FeatureDialog, LeavesOtherTimersAlone) {
    Open();
    Host host;
    Grabber().InstCamCntrlCallBack(&Host::Tell, &host);
    Dialog().SendMessage(WM_TIMER, 2);
    EXPECT_TRUE(host.codes.empty());
    Dialog().SendMessage(WM_TIMER, 1);
    EXPECT_EQ(host.codes, (std::vector<uint32_t>{0x1001}));
    Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

// ---- closing and reopening the camera ----

TEST_F(FeatureDialog, SurvivesClosingAndReopeningTheCamera) {
    Open();
    Expand(L"Camera/DeviceControl");
    Select(L"Camera/DeviceControl/DeviceUserID");
    ASSERT_NE(Editor(), nullptr);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Press(VK_RETURN);
    Expand(L"Camera/ImageFormatControl");
    Pump();
    Camera().Find("DeviceUserID")->text = "other";
    Camera().Remove("ReverseX");
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Forget();
    Pump();
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\tother");
    EXPECT_EQ(Row(L"Camera/ImageFormatControl/ReverseX"), nullptr);
    EXPECT_EQ(Children(L"").size(), 5u);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Description(), L"");
    EXPECT_EQ(TreeView_GetSelection(Tree()), Row(L""));
    EXPECT_EQ(
        NamesAfter(DialogLog(), "1 RegisterExtNotificationInvalidationFeatures: Registering "),
        (Texts{"ExposureTime", "AcquisitionFrameRate"}));
    Texts registered = Registered();
    std::sort(registered.begin(), registered.end());
    EXPECT_EQ(std::adjacent_find(registered.begin(), registered.end()), registered.end())
        << "something is registered twice";
    EXPECT_EQ(registered.size(), 9u);
}

TEST_F(FeatureDialog, StaysAsItIsForOtherUpdates) {
    Open();
    Expand(L"Camera/DeviceControl");
    Select(L"Camera/DeviceControl/DeviceUserID");
    Grabber().UpdateCamCntrlDialogs(kMvUpdateParameters | kMvUpdateTimer);
    Pump();
    EXPECT_NE(Editor(), nullptr);
}

TEST_F(FeatureDialog, GoesWithItsGrabber) {
    Open();
    const HWND window = Dialog().m_hWnd;
    EndGrabber();
    EXPECT_FALSE(::IsWindow(window));
    Pump();
}

} // namespace
