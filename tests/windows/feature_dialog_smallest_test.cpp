// The feature control dialog where there is little room.
#include "feature_dialog_fixture.h"
#include "screenshot.h"
#include "scripted_dialog.h"
#include "window_pixels.h"

using namespace pyxen;

namespace {

CRect ScreenPlaceOf(HWND window) {
    CRect rect;
    ::GetWindowRect(window, rect);
    return rect;
}

bool IsInside(const CRect& part, const CRect& whole) {
    CRect common;
    common.IntersectRect(part, whole);
    return EqualRect(common, part);
}

class SmallestFeatureDialog : public FeatureDialogFixture {
protected:
    SmallestFeatureDialog() : FeatureDialogFixture(SimulatorHome()) {}

    void SetUp() override {
        OpenCamera();
        OpenDialogAt(10, 10);
    }
    /// The dialog's client area, on the screen.
    CRect Client() {
        CRect rect;
        Dialog().GetClientRect(rect);
        ::MapWindowPoints(Dialog(), nullptr, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
};

TEST_F(SmallestFeatureDialog, ShowsEveryEditorWithItsButtons) {
    const struct {
        const wchar_t* path;
        int control;
    } kinds[] = {{L"Camera/ImageFormatControl/Width", 7022},
                 {L"Camera/AnalogControl/Gain", 7010},
                 {L"Camera/ImageFormatControl/PixelFormat", 7007},
                 {L"Camera/ImageFormatControl/ReverseX", 7007},
                 {L"Camera/DeviceControl/DeviceUserID", 7018},
                 {L"Camera/UserSetControl/UserSetLoad", 7005}};
    const CRect size = ScreenPlaceOf(Dialog());
    ASSERT_EQ(size.Width(), 600);
    ASSERT_EQ(size.Height(), 400);
    for (const auto& kind : kinds) {
        Select(kind.path);
        ASSERT_NE(Editor(), nullptr) << kind.control;
        const CRect pane = ScreenPlaceOf(Control(4109));
        EXPECT_TRUE(IsInside(pane, Client()));
        for (const int id : {kind.control, 7026, 7030}) {
            EXPECT_TRUE(::IsWindowVisible(EditorControl(id))) << id;
            EXPECT_TRUE(IsInside(ScreenPlaceOf(EditorControl(id)), pane)) << id << " is cut";
        }
    }
}

TEST_F(SmallestFeatureDialog, ShowsTheWholeValuesColumn) {
    CRect column;
    ASSERT_TRUE(Header_GetItemRect(::GetDlgItem(Control(4108), 1), 1, &column));
    CRect view;
    ::GetClientRect(Control(4108), view);
    EXPECT_GT(column.Width(), 0);
    EXPECT_LE(column.right, view.right);
    EXPECT_FALSE(::GetWindowLong(Control(4108), GWL_STYLE) & WS_HSCROLL);
}

// ---- options ----

class ManyOptions : public ScriptedDialog {
protected:
    void SetUp() override {
        std::vector<scripted::EnumEntry> entries;
        for (int index = 0; index < kOptions; ++index) {
            entries.push_back({"SomeOption" + std::to_string(index)});
        }
        auto& feature = Camera().Put(scripted::EnumFeature("Many", entries[0].name, entries));
        feature.category = "/Extra";
        Open();
        Select(L"Camera/Extra/Many");
    }
    bool HasScrollBar() { return ::GetWindowLong(Control(7003), GWL_STYLE) & WS_VSCROLL; }
    int Position() { return ::GetScrollPos(Control(7003), SB_VERT); }
    void Scroll(UINT code, UINT position = 0) {
        ::SendMessage(Control(7003), WM_VSCROLL, MAKEWPARAM(code, position), 0);
    }

    static constexpr int kOptions = 400;
};

TEST_F(ManyOptions, KeepTheirTextAndScrollWhereTheyDoNotFit) {
    const std::wstring text = Description();
    EXPECT_NE(text.find(L"Possible options: SomeOption0, SomeOption1, "), std::wstring::npos);
    EXPECT_TRUE(text.ends_with(L", SomeOption" + std::to_wstring(kOptions - 1)));
    ASSERT_TRUE(HasScrollBar());
    Select(L"Camera/ImageFormatControl/Width");
    EXPECT_FALSE(HasScrollBar());
    EXPECT_EQ(Position(), 0);
}

TEST_F(ManyOptions, ScrollToTheirEnds) {
    SaveScreenshot(Dialog(), "feature-control-many-options");
    CRect client;
    ::GetClientRect(Control(7003), client);
    const WindowPixels before(Control(7003));
    Scroll(SB_LINEDOWN);
    const int line = Position();
    EXPECT_GT(line, 0);
    EXPECT_LT(line, client.Height());
    Scroll(SB_PAGEDOWN);
    EXPECT_EQ(Position(), line + client.Height());
    Scroll(SB_PAGEUP);
    Scroll(SB_LINEUP);
    EXPECT_EQ(Position(), 0);
    Scroll(SB_THUMBTRACK, 17);
    EXPECT_EQ(Position(), 17);
    Scroll(SB_BOTTOM);
    SCROLLINFO bar = {};
    bar.cbSize = sizeof(bar);
    bar.fMask = SIF_ALL;
    ASSERT_TRUE(::GetScrollInfo(Control(7003), SB_VERT, &bar));
    EXPECT_EQ(bar.nPos, bar.nMax - static_cast<int>(bar.nPage) + 1);
    const WindowPixels after(Control(7003));
    int different = 0;
    for (int y = 0; y < client.Height(); ++y) {
        for (int x = 0; x < client.Width(); ++x) {
            different += before.At(x, y) != after.At(x, y);
        }
    }
    EXPECT_GT(different, 0) << "the text stays where it was";
    ::SendMessage(Control(7003), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_LT(Position(), bar.nPos);
    Scroll(SB_TOP);
    EXPECT_EQ(Position(), 0);
}

TEST_F(ManyOptions, HaveAScrollBarThatTheMouseReaches) {
    ASSERT_TRUE(HasScrollBar());
    const CRect place = ScreenPlaceOf(Control(7003));
    const LPARAM onBar = MAKELPARAM(place.right - 3, (place.top + place.bottom) / 2);
    EXPECT_EQ(::SendMessage(Control(7003), WM_NCHITTEST, 0, onBar), HTVSCROLL);
}

} // namespace
