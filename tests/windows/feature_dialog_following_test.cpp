// The feature control dialog: the finer points of what it follows.
#include "scripted_dialog.h"

#include <algorithm>

namespace {

using FeatureDialogFollowing = ScriptedDialog;

TEST_F(FeatureDialogFollowing, GivesRowsBackBeforeItTakesNewOnes) {
    for (int index = 0; index < 60; ++index) {
        auto feature = scripted::IntFeature("Extra" + std::to_string(index), index, 0, 1000);
        feature.category = "/Extra";
        Camera().features.push_back(feature);
    }
    Open();
    Expand(L"Camera/Extra");
    TreeView_EnsureVisible(Tree(), Row(L"Camera/Extra/Extra30"));
    Dialog().OnTreeExpanded();
    Pump();
    Forget();
    ::SendMessage(Tree(), WM_VSCROLL, SB_LINEDOWN, 0);
    Texts lines = DialogLog();
    const auto lastGone = std::find_if(lines.rbegin(), lines.rend(), [](const std::string& line) {
        return line.starts_with("1 UnregisterDlgInvalidationFeatures: ");
    });
    const auto firstCome = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with("1 RegisterDlgInvalidationFeatures: ");
    });
    ASSERT_NE(lastGone, lines.rend());
    ASSERT_NE(firstCome, lines.end());
    EXPECT_LE(lastGone.base(), firstCome);
}

TEST_F(FeatureDialogFollowing, RegistersWhatIsInSightFirstWhenItOpens) {
    auto& feature = Camera().Put(scripted::IntFeature("Plain", 1, 0, 2));
    feature.category = "/";
    // So few rows that no scroll bar appears, which would have them looked at as well.
    Camera().localDevice.features.clear();
    Camera().streams[0].features.clear();
    Open(WithRules());
    const Texts lines = DialogLog();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0], "1 RegisterDlgInvalidationFeatures: Registering Plain");
    EXPECT_EQ(lines[1], "1 RegisterSyncInvalidationFeatures: Registering Width");
    EXPECT_EQ(lines.back(), "1 OnInvalidateFeature: Updating Plain");
}

TEST_F(FeatureDialogFollowing, ReadsEveryRowThatComesIntoSight) {
    Open();
    Camera().Find("DeviceUserID")->text = "changed unseen";
    Expand(L"Camera/DeviceControl");
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\tchanged unseen");
}

TEST_F(FeatureDialogFollowing, FollowsOnlyFeaturesWithTheFlagsOfAMask) {
    Camera().Find("DeviceModelName")->flags = PxnFeatureFlagRead;
    Open();
    Expand(L"Camera/DeviceControl");
    Forget();
    Dialog().UpdateVisibleFeatures(PxnFeatureFlagRead | PxnFeatureFlagWrite);
    EXPECT_EQ(DialogLog(),
              Texts{"1 UnregisterDlgInvalidationFeatures: Unregistering DeviceModelName"});
    Dialog().UpdateVisibleFeatures();
    EXPECT_EQ(DialogLog(), Texts{"1 RegisterDlgInvalidationFeatures: Registering DeviceModelName"});
}

TEST_F(FeatureDialogFollowing, IsHandedItsGrabberBeforeItsWindowIsMade) {
    OpenCamera();
    const auto made = std::make_shared<CKVNPyxenFeatureCtrlDialog>();
    made->Update(kMvUpdateAll);
    made->SetAcquisitionMarks(true, true);
    made->Disconnect();
    EXPECT_FALSE(made->Create(IDD_FEATURE_CONTROL)) << "it belongs to nobody";
    EXPECT_EQ(made->m_hWnd, nullptr);
    made->SetOwnerClass(Grabber());
    ASSERT_TRUE(made->Create(IDD_FEATURE_CONTROL));
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), made->m_hWnd);
    made->DestroyWindow();
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), nullptr);
}

TEST_F(FeatureDialogFollowing, KeepsWhatTheTreeNotifies) {
    for (int index = 0; index < 60; ++index) {
        auto feature = scripted::IntFeature("Extra" + std::to_string(index), index, 0, 1000);
        feature.category = "/Extra";
        Camera().features.push_back(feature);
    }
    Open();
    Expand(L"Camera/Extra");
    Dialog().SetWindowPos(nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER);
    Pump();
    CRect client;
    ::GetClientRect(Tree(), client);
    EXPECT_EQ(Dialog().GetTreeExtent(), client.Height());
    ::SendMessage(Tree(), WM_VSCROLL, SB_LINEDOWN, 0);
    SCROLLINFO bar = {};
    bar.cbSize = sizeof(bar);
    bar.fMask = SIF_ALL;
    ASSERT_TRUE(::GetScrollInfo(Tree(), SB_VERT, &bar));
    ASSERT_GT(bar.nPos, 0);
    EXPECT_EQ(Dialog().GetScrollValue(), static_cast<int>(bar.nPage) * bar.nPos);
}

TEST_F(FeatureDialogFollowing, KnowsTimingByTheExactNames) {
    Camera().Put(scripted::FloatFeature("exposuretime", 1, 0, 2));
    Camera().Put(scripted::FloatFeature("ExposureTimeAbs", 1, 0, 2));
    Camera().localDevice.Put(scripted::FloatFeature("ExposureTime", 1, 0, 2));
    Open();
    EXPECT_EQ(
        NamesAfter(DialogLog(), "1 RegisterExtNotificationInvalidationFeatures: Registering "),
        (Texts{"ExposureTime", "ExposureTime", "AcquisitionFrameRate"}));
}

TEST_F(FeatureDialogFollowing, SynchronisesOnlyWhatDiffers) {
    Open(WithRules());
    ASSERT_EQ(Camera().Find("OffsetX")->intValue, 640) << "as when the camera was opened";
    Forget();
    sdk.Fire(scripted::CameraHandle(), "Width");
    Pump();
    EXPECT_NE(sdk.Calls({"PxnFeatureIntGet(camera0, \"OffsetX\""}), Texts{});
    EXPECT_EQ(sdk.Calls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(FeatureDialogFollowing, SaysWhenAFeatureHasLeftItsModule) {
    Open();
    Expand(L"Camera/DeviceControl");
    Camera().Remove("DeviceUserID");
    ASSERT_TRUE(Grabber().GetFeatureCacheByName("Camera")->Init("Camera", &Grabber().Api(),
                                                                scripted::CameraHandle(), nullptr));
    Forget();
    Dialog().PostMessage(WM_FEATURE_UPDATE, reinterpret_cast<WPARAM>(scripted::CameraHandle()),
                         reinterpret_cast<LPARAM>("DeviceUserID"));
    Pump();
    EXPECT_EQ(DialogLog(),
              (Texts{"1 OnInvalidateFeature: Updating DeviceUserID",
                     "0 RefreshLeaf: Feature DeviceUserID is not in the feature cache"}));
    EXPECT_EQ(RowText(L"Camera/DeviceControl/DeviceUserID"), L"DeviceUserID\tleft");
}

TEST_F(FeatureDialogFollowing, AsksNobodyAboutModulesItDoesNotKnow) {
    Open();
    Forget();
    for (const UINT message : {0x8001u, 0x8002u, 0x8003u}) {
        Dialog().SendMessage(message, 77, reinterpret_cast<LPARAM>("ExposureTime"));
    }
    EXPECT_EQ(DialogLog(), Texts{});
    EXPECT_EQ(sdk.Calls(), Texts{});
}

} // namespace
