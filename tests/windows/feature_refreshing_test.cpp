// feature_refreshing_test.cpp - what the feature control dialog reads anew, and what it leaves
// alone
#include "feature_editing_fixture.h"
#include "ui/windows/float_value_view.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

class FeatureRefreshing : public FeatureEditing {
protected:
    /// The calls of `action` that name the feature.
    Texts CallsFor(const std::string& feature, const std::function<void()>& action) {
        sdk.ClearCalls();
        action();
        Texts calls = sdk.TakeCalls();
        std::erase_if(calls, [&](const std::string& call) {
            return call.find("\"" + feature + "\"") == std::string::npos;
        });
        return calls;
    }
    /// Selects a row that is in sight already, with nothing left to be drawn or refreshed.
    void SelectInSight(const std::wstring& path) {
        TreeView_EnsureVisible(Tree(), Row(path));
        Dialog().OnTreeExpanded();
        Pump();
        Dialog().AttrSelected(Row(path));
    }
    std::size_t OptionCount() {
        return static_cast<std::size_t>(::SendMessage(EditorControl(7007), CB_GETCOUNT, 0, 0));
    }
};

TEST_F(FeatureRefreshing, ReadsARangeTheValueAndForItsTextTheRangeAgain) {
    const std::string ofWidth = R"((camera0, "Width"))";
    SelectInSight(width);
    EXPECT_EQ(CallsFor("Width", [&] { Dialog().AttrSelected(Row(width)); }),
              (Texts{"PxnFeatureAccessQuery" + ofWidth, "PxnFeatureIntRangeQuery" + ofWidth,
                     "PxnFeatureIntGet" + ofWidth, "PxnFeatureIntRangeQuery" + ofWidth}));
    EXPECT_EQ(CallsFor("Width", [&] { Dialog().OnValueChanged(false); }),
              (Texts{"PxnFeatureIntRangeQuery" + ofWidth, "PxnFeatureIntGet" + ofWidth}));
}

TEST_F(FeatureRefreshing, DescribesTheRangeAsItIsAfterTheEditorWasFilled) {
    SelectInSight(width);
    sdk.OnCall("PxnFeatureIntGet", [&] { Camera().Find("Width")->intMax = 1000; });
    Dialog().AttrSelected(Row(width));
    sdk.ClearHooks();
    EXPECT_EQ(::SendMessage(EditorControl(7020), TBM_GETRANGEMAX, 0, 0), 2048);
    EXPECT_EQ(Description(), L"Width of the image.\nMin: 16px, Max: 1000px");
}

TEST_F(FeatureRefreshing, LeavesTheEditorAloneWhenTheCameraChangesTheValue) {
    Expand(L"Camera/DeviceControl");
    SelectFeature(userId);
    Camera().Find("DeviceUserID")->text = "right";
    EXPECT_EQ(sdk.Fire(scripted::CameraHandle(), "DeviceUserID"), 1u);
    Pump();
    EXPECT_EQ(RowText(userId), L"DeviceUserID\tright");
    EXPECT_EQ(TextOf(EditorControl(7018)), L"left");
}

TEST_F(FeatureRefreshing, MissesNoEditorForWhatCannotBeWritten) {
    SelectInSight(L"Camera/DeviceControl/DeviceModelName");
    Forget();
    Dialog().AttrSelected(Row(L"Camera/DeviceControl/DeviceModelName"));
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(FeatureRefreshing, KeepsTheDescriptionOverAFeatureThatIsNotInItsCache) {
    SelectFeature(width);
    const std::wstring before = Description();
    ASSERT_NE(before, L"");
    TreeView_EnsureVisible(Tree(), Row(userId));
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Dialog().AttrSelected(Row(userId));
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Description(), before);
}

// ---- after a write ----

TEST_F(FeatureRefreshing, KeepsTheRowOfAFailedWrite) {
    const struct {
        std::wstring path;
        const char* entry;
        std::wstring row;
    } cases[] = {{width, "PxnFeatureIntSet", L"Width\t640"},
                 {width, "PxnFeatureIntGet", L"Width\t640"},
                 {gain, "PxnFeatureFloatSet", L"Gain\t1.500000"},
                 {gain, "PxnFeatureFloatGet", L"Gain\t1.500000"},
                 {reverseX, "PxnFeatureBoolSet", L"ReverseX\tFalse"},
                 {reverseX, "PxnFeatureBoolGet", L"ReverseX\tFalse"},
                 {userId, "PxnFeatureStringSet", L"DeviceUserID\tleft"},
                 {userId, "PxnFeatureStringGet", L"DeviceUserID\tleft"}};
    for (const auto& failing : cases) {
        SelectFeature(failing.path);
        Pump();
        const scripted::Camera before = Camera();
        sdk.OnCall(failing.entry, [&] {
            Camera().Find("Width")->intValue = 320;
            Camera().Find("Gain")->floatValue = 3;
            Camera().Find("ReverseX")->boolValue = true;
            Camera().Find("DeviceUserID")->text = "changed";
        });
        sdk.Fail(failing.entry, PxnErrTimeout);
        CatchBox(L"Setting error", [&] { Dialog().OnValueChanged(true); });
        sdk.ClearHooks();
        sdk.ClearFailures();
        EXPECT_EQ(RowText(failing.path), failing.row) << failing.entry;
        Camera() = before;
    }
}

TEST_F(FeatureRefreshing, ReadsTheRowOfAnEnumerationOnceTheCheckHasPassed) {
    SelectFeature(pixelFormat);
    Pump();
    for (const char* const entry : {"PxnFeatureEnumSet", "PxnFeatureEnumGet"}) {
        sdk.OnCall(entry, [&] { Camera().Find("PixelFormat")->text = "Mono12"; });
        sdk.Fail(entry, PxnErrTimeout);
        CatchBox(L"Setting error", [&] { Dialog().OnValueChanged(true); });
        sdk.ClearHooks();
        EXPECT_EQ(RowText(pixelFormat), L"PixelFormat\tMono12") << entry;
        Camera().Find("PixelFormat")->text = "Mono8";
        Dialog().OnValueChanged(false);
        Dialog().OnValueChanged(true);
        ASSERT_EQ(RowText(pixelFormat), L"PixelFormat\tMono8");
    }
    Camera().Find("PixelFormat")->writeable = false;
    sdk.OnCall("PxnFeatureAccessQuery", [&] { Camera().Find("PixelFormat")->text = "Mono12"; });
    CatchBox(L"Write protected", [&] { Dialog().OnValueChanged(true); });
    sdk.ClearHooks();
    EXPECT_EQ(RowText(pixelFormat), L"PixelFormat\tMono8") << "refused, but read";
}

TEST_F(FeatureRefreshing, LeavesSynchronisingToTheFeaturesOwnNotification) {
    EndGrabber();
    Open(WithRules());
    SelectFeature(width);
    Retype(7022, L"800");
    Press(VK_RETURN);
    EXPECT_EQ(Camera().Find("Width")->intValue, 800);
    EXPECT_EQ(Camera().Find("OffsetX")->intValue, 640) << "as when the camera was opened";
    EXPECT_GE(sdk.Fire(scripted::CameraHandle(), "Width"), 1u);
    Pump();
    EXPECT_EQ(Camera().Find("OffsetX")->intValue, 800);
}

// ---- reverting ----

TEST_F(FeatureRefreshing, ListsTheOptionsAnewWhenItReverts) {
    SelectFeature(pixelFormat);
    const std::size_t before = OptionCount();
    Camera().Find("PixelFormat")->entries[1].available = true;
    ClickButton(Editor(), 7030);
    EXPECT_EQ(OptionCount(), before + 1);
    EXPECT_EQ(Selected(), L"Mono8");
}

TEST_F(FeatureRefreshing, TakesTheRangeAnewWhenItReverts) {
    SelectFeature(width);
    Camera().Find("Width")->intMax = 1000;
    ClickButton(Editor(), 7030);
    EXPECT_EQ(::SendMessage(EditorControl(7020), TBM_GETRANGEMAX, 0, 0), 1000);
    SelectFeature(gain);
    Camera().Find("Gain")->floatMax = 2;
    ClickButton(Editor(), 7030);
    Retype(7010, L"20");
    const auto* const view =
        dynamic_cast<const CFloatValueView*>(CWnd::FromHandlePermanent(Editor()));
    double value = 0;
    ASSERT_TRUE(view && view->GetValue(value));
    EXPECT_EQ(value, 2.0);
}

} // namespace
