// templates_test.cpp - the templates of the dialogs, as they are before any dialog fills them
#include "test_host.h"

#include "res/resource.h"
#include "screenshot.h"

#include <vector>

namespace {

class Shown : public CDialog {
public:
    Shown(UINT id, CWnd& parent) {
        EXPECT_TRUE(Create(id, &parent));
        ShowWindow(SW_SHOW);
    }
    using CDialog::Create;

    CRect Client() const {
        CRect rect;
        GetClientRect(rect);
        return rect;
    }
    /// A rectangle in dialog units, in pixels.
    CRect Units(int width, int height) const {
        CRect rect(0, 0, width, height);
        MapDialogRect(m_hWnd, rect);
        return rect;
    }
    DWORD StyleOf(int id) const {
        EXPECT_NE(::GetDlgItem(m_hWnd, id), nullptr) << id;
        return static_cast<DWORD>(GetWindowLong(::GetDlgItem(m_hWnd, id), GWL_STYLE));
    }
    std::wstring ClassOf(int id) const {
        wchar_t name[64]{};
        GetClassName(::GetDlgItem(m_hWnd, id), name, 64);
        return name;
    }
    CRect PlaceOf(HWND child) const {
        CRect rect;
        ::GetWindowRect(child, &rect);
        ScreenToClient(rect);
        return rect;
    }
    /// All controls are inside, and their texts fit; frames aside no two overlap.
    void ExpectTidy() const {
        std::vector<HWND> seen;
        for (HWND child = ::GetWindow(m_hWnd, GW_CHILD); child;
             child = ::GetWindow(child, GW_HWNDNEXT)) {
            const CRect place = PlaceOf(child);
            CRect common;
            common.IntersectRect(place, Client());
            EXPECT_TRUE(EqualRect(common, place)) << GetDlgCtrlID(child);
            const std::wstring text = TextOf(child);
            CWnd* const wnd = FromHandle(child);
            CClientDC dc(wnd);
            CFont* const before = dc.SelectObject(wnd->GetFont());
            EXPECT_LE(dc.GetTextExtent(text.data(), static_cast<int>(text.size())).cx,
                      place.Width())
                << GetDlgCtrlID(child);
            dc.SelectObject(before);
            if ((::GetWindowLong(child, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX) {
                continue;
            }
            for (const HWND other : seen) {
                EXPECT_FALSE(common.IntersectRect(place, PlaceOf(other)))
                    << GetDlgCtrlID(child) << " and " << GetDlgCtrlID(other);
            }
            seen.push_back(child);
        }
    }

private:
    static int GetDlgCtrlID(HWND window) { return ::GetDlgCtrlID(window); }
};

using Templates = TestHost;

TEST_F(Templates, FeatureControlIsAResizableDialog) {
    const Shown dialog(7001, Frame());
    EXPECT_EQ(TextOf(dialog), L"Camera Feature Control");
    EXPECT_TRUE(EqualRect(dialog.Client(), dialog.Units(407, 274)));
    EXPECT_TRUE(dialog.GetStyle() & WS_THICKFRAME);
    EXPECT_EQ(TextOf(dialog, 7001), L"Close");
    EXPECT_EQ(dialog.ClassOf(7001), L"Button");
    EXPECT_EQ(dialog.StyleOf(7001) & BS_TYPEMASK, DWORD{BS_PUSHBUTTON});
    EXPECT_EQ(TextOf(dialog, 7002), L"Feature Description");
    EXPECT_EQ(dialog.StyleOf(7002) & BS_TYPEMASK, DWORD{BS_GROUPBOX});
    EXPECT_EQ(TextOf(dialog, 7003), L"");
    EXPECT_EQ(dialog.ClassOf(7003), L"Static");
    SaveScreenshot(dialog, "template-feature-control");
    dialog.ExpectTidy();
}

TEST_F(Templates, FeatureControlHasNoDefaultButton) {
    const Shown dialog(7001, Frame());
    EXPECT_NE(LOWORD(::SendMessage(dialog, DM_GETDEFID, 0, 0)), 7001);
    EXPECT_EQ(GetDlgItem(dialog, IDOK), nullptr);
}

TEST_F(Templates, DeviceFinderHasAListAndTwoButtons) {
    const Shown dialog(7000, Frame());
    EXPECT_EQ(TextOf(dialog), L"Device Finder");
    EXPECT_TRUE(EqualRect(dialog.Client(), dialog.Units(551, 201)));
    EXPECT_EQ(dialog.ClassOf(7000), WC_LISTVIEW);
    EXPECT_EQ(dialog.StyleOf(7000) & LVS_TYPEMASK, DWORD{LVS_REPORT});
    EXPECT_EQ(dialog.StyleOf(7000) & (LVS_SINGLESEL | WS_TABSTOP),
              DWORD{LVS_SINGLESEL | WS_TABSTOP});
    // In a dialog the border may turn into a sunken edge.
    EXPECT_TRUE(dialog.StyleOf(7000) & WS_BORDER ||
                GetWindowLong(GetDlgItem(dialog, 7000), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    EXPECT_EQ(TextOf(dialog, IDOK), L"OK");
    EXPECT_EQ(TextOf(dialog, IDCANCEL), L"Cancel");
    SaveScreenshot(dialog, "template-device-finder");
    dialog.ExpectTidy();
}

TEST_F(Templates, SerialConfigurationHasItsControls) {
    const Shown dialog(IDD_SERIAL_CONFIG, Frame());
    EXPECT_EQ(TextOf(dialog), L"Configure Communication Port");
    EXPECT_EQ(dialog.ClassOf(7039), L"ListBox");
    for (const int id : {7035, 7036, 7037, 7044}) {
        EXPECT_EQ(dialog.ClassOf(id), L"ComboBox") << id;
        EXPECT_EQ(dialog.StyleOf(id) & 3, DWORD{CBS_DROPDOWNLIST}) << id;
        EXPECT_FALSE(dialog.StyleOf(id) & CBS_SORT) << id;
    }
    EXPECT_FALSE(dialog.StyleOf(7039) & LBS_SORT);
    EXPECT_EQ(dialog.ClassOf(7038), L"Edit");
    EXPECT_EQ(TextOf(dialog, IDOK), L"OK");
    EXPECT_EQ(TextOf(dialog, IDCANCEL), L"Cancel");
    SaveScreenshot(dialog, "template-serial");
    dialog.ExpectTidy();
}

TEST_F(Templates, SerialConfigurationNamesItsControls) {
    const Shown dialog(IDD_SERIAL_CONFIG, Frame());
    const std::pair<int, const wchar_t*> labels[] = {{7036, L"Baudrate"},
                                                     {7035, L"Byte Size"},
                                                     {7037, L"Stopbits"},
                                                     {7044, L"Parity"},
                                                     {7038, L"Intercharacter delay [ms]"}};
    for (const auto& [id, label] : labels) {
        // A screen reader takes the label that stands before the control.
        const HWND before = ::GetWindow(::GetDlgItem(dialog, id), GW_HWNDPREV);
        EXPECT_EQ(TextOf(before), label);
    }
}

} // namespace
