// A value editor inside a dialog, as the feature control dialog holds it.
#include "mivora/cam_cntrl_dlg_base.h"
#include "recording_observer.h"
#include "res/resource.h"
#include "screenshot.h"
#include "test_host.h"
#include "ui/windows/cmd_value_view.h"
#include "ui/windows/container_view.h"
#include "ui/windows/enum_value_view.h"
#include "ui/windows/float_value_view.h"
#include "ui/windows/sint_value_view.h"
#include "ui/windows/string_value_view.h"

#include <memory>

namespace {

using Told = std::vector<bool>;

class EditorDialog : public CCamCntrlDlgBase {
public:
    explicit EditorDialog(CWnd& parent) : CCamCntrlDlgBase(IDD_FEATURE_CONTROL) {
        EXPECT_TRUE(Create(IDD_FEATURE_CONTROL, &parent));
        EXPECT_TRUE(container.Create(CRect(10, 10, 300, 130), this, IDC_VALUE_CONTAINER));
        container.SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        Show();
    }

    void Update(uint32_t) override {}
    void SetAcquisitionMarks(bool, bool) override {}

    template <class View>
    View& Edit() {
        auto made = std::make_unique<View>();
        CRect client;
        container.GetClientRect(client);
        EXPECT_TRUE(made->Create(&observer, client, &container));
        View& result = *made;
        view = std::move(made);
        return result;
    }

    int oks = 0;
    int cancels = 0;
    RecordingObserver observer;
    CContainerView container;
    std::unique_ptr<CValueView> view;

protected:
    void OnOK() override {
        ++oks;
        if (view) {
            view->CommitOnEnter();
        }
    }
    void OnCancel() override { ++cancels; }
};

class EditorInDialog : public TestHost {
protected:
    EditorInDialog() {
        SetDialog(dialog.m_hWnd);
        Pump();
    }

    HWND Control(int id) { return GetDlgItem(dialog.view->m_hWnd, id); }

    EditorDialog dialog{Frame()};
};

TEST_F(EditorInDialog, CommitsOnEnterInItsEdit) {
    auto& view = dialog.Edit<CSintValueView>();
    view.SetRange(0, 1000);
    SetFocus(Control(7022));
    SendMessage(Control(7022), EM_SETSEL, 0, -1);
    Type(L"5000");
    Press(VK_RETURN);
    EXPECT_EQ(dialog.oks, 1);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
    EXPECT_EQ(TextOf(Control(7022)), L"1000");
    EXPECT_TRUE(dialog.IsVisible());
}

TEST_F(EditorInDialog, CommitsOnEnterInItsSlider) {
    dialog.Edit<CSintValueView>().SetRange(0, 1000);
    SetFocus(Control(7020));
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
}

TEST_F(EditorInDialog, CommitsOnEnterInItsList) {
    auto& view = dialog.Edit<CEnumValueView>();
    const char* const names[] = {"Off", "On"};
    view.SetOptions(names, 2);
    view.SelectOption("Off");
    SetFocus(Control(7007));
    Press(VK_DOWN);
    EXPECT_EQ(dialog.observer.told, Told{});
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
    std::string name;
    EXPECT_TRUE(view.GetSelection(name));
    EXPECT_EQ(name, "On");
}

TEST_F(EditorInDialog, MayGoWhileEnterIsHandled) {
    dialog.Edit<CStringValueView>();
    SetFocus(Control(7018));
    dialog.observer.then = [this] {
        dialog.view.reset();
    };
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
    EXPECT_FALSE(dialog.view);
    EXPECT_TRUE(dialog.IsVisible());
}

TEST_F(EditorInDialog, PressesItsButtonsOnEnter) {
    dialog.Edit<CFloatValueView>();
    SetFocus(Control(7026));
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
    SetFocus(Control(7030));
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true, false}));
    SetFocus(Control(7030));
    Press(VK_SPACE);
    EXPECT_EQ(dialog.observer.told, (Told{true, false, false}));
    EXPECT_EQ(dialog.oks, 0);
}

TEST_F(EditorInDialog, PressesTheButtonThatTheTabKeyReached) {
    dialog.Edit<CFloatValueView>();
    SetFocus(Control(7010));
    Press(VK_TAB);
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
    Press(VK_TAB);
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true, false}));
    EXPECT_EQ(dialog.oks, 0);
}

TEST_F(EditorInDialog, RunsACommandOnEnter) {
    dialog.Edit<CCmdValueView>();
    SetFocus(Control(7005));
    Press(VK_RETURN);
    EXPECT_EQ(dialog.observer.told, (Told{true}));
}

TEST_F(EditorInDialog, LetsEscapeAndTheFramesButtonReachTheDialog) {
    dialog.Edit<CFloatValueView>();
    SetFocus(Control(7010));
    Press(VK_ESCAPE);
    EXPECT_EQ(dialog.cancels, 1);
    dialog.SendMessage(WM_SYSCOMMAND, SC_CLOSE);
    Pump();
    EXPECT_EQ(dialog.cancels, 2);
    EXPECT_TRUE(dialog.IsVisible());
}

TEST_F(EditorInDialog, IsWalkedThroughByTheTabKey) {
    dialog.Edit<CSintValueView>();
    SetFocus(Control(7020));
    const HWND order[] = {Control(7022), Control(7026), Control(7030),
                          GetDlgItem(dialog.m_hWnd, 7001), Control(7020)};
    for (const HWND next : order) {
        Press(VK_TAB);
        EXPECT_EQ(GetFocus(), next) << GetDlgCtrlID(next);
    }
}

TEST_F(EditorInDialog, LeavesTheFocusAloneWhenItComes) {
    SetFocus(GetDlgItem(dialog.m_hWnd, 7001));
    dialog.Edit<CSintValueView>();
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog.m_hWnd, 7001));
}

TEST_F(EditorInDialog, CanBeHiddenAndShown) {
    dialog.Hide();
    EXPECT_FALSE(dialog.IsVisible());
    dialog.Show();
    EXPECT_TRUE(dialog.IsVisible());
    ShowWindow(dialog.m_hWnd, SW_MINIMIZE);
    dialog.Show();
    EXPECT_FALSE(IsIconic(dialog.m_hWnd));
}

/// Every control's text fits into it, and no two controls of a window overlap.
void ExpectTidy(HWND window, const char* name) {
    std::vector<std::pair<int, CRect>> places;
    CRect client;
    GetClientRect(window, &client);
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        CRect place;
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, window, reinterpret_cast<LPPOINT>(&place), 2);
        CRect inside;
        inside.IntersectRect(place, client);
        EXPECT_TRUE(EqualRect(inside, place)) << name << " cuts control " << GetDlgCtrlID(child);
        for (const auto& [id, other] : places) {
            CRect both;
            EXPECT_FALSE(both.IntersectRect(place, other))
                << name << ": " << id << " and " << GetDlgCtrlID(child) << " overlap";
        }
        places.emplace_back(GetDlgCtrlID(child), place);
        wchar_t className[16]{};
        GetClassName(child, className, 16);
        if (GetWindowLong(child, GWL_STYLE) & BS_ICON || std::wstring(L"Edit") == className) {
            continue;
        }
        const std::wstring text = TextOf(child);
        const HDC dc = GetDC(child);
        const auto font = reinterpret_cast<HFONT>(SendMessage(child, WM_GETFONT, 0, 0));
        const HGDIOBJ before = SelectObject(dc, font);
        SIZE size{};
        GetTextExtentPoint32(dc, text.data(), static_cast<int>(text.size()), &size);
        SelectObject(dc, before);
        ReleaseDC(child, dc);
        EXPECT_LE(size.cx, place.Width()) << name << " cuts the text of " << GetDlgCtrlID(child);
    }
}

class EditorLooks : public EditorInDialog {
protected:
    /// Gives the pane a size in dialog units.
    void Resize(int width, int height) {
        CRect rect(7, 7, 7 + width, 7 + height);
        MapDialogRect(dialog.m_hWnd, rect);
        dialog.container.MoveWindow(rect);
    }
    void ShowAll(int width);
};

void EditorLooks::ShowAll(int width) {
    Resize(width, 70);
    const std::string suffix = "-" + std::to_string(width);
    auto& integer = dialog.Edit<CSintValueView>();
    integer.SetFeatureName("DeviceStreamChannelPacketSize");
    integer.SetNarrowUnit("pixels");
    integer.SetRange(0, 100000);
    integer.SetValue(40000);
    ExpectTidy(integer, "integer");
    SaveScreenshot(dialog, "editor-integer" + suffix);
    auto& number = dialog.Edit<CFloatValueView>();
    number.SetFeatureName("ExposureTime");
    number.SetNarrowUnit("\xC2\xB5s");
    number.SetRange(0.0, 100000.0);
    number.SetValue(15000.5);
    ExpectTidy(number, "float");
    SaveScreenshot(dialog, "editor-float" + suffix);
    auto& list = dialog.Edit<CEnumValueView>();
    list.SetFeatureName("PixelFormat");
    const char* const names[] = {"Mono8", "BayerRG12Packed"};
    list.SetOptions(names, 2);
    list.SelectOption("BayerRG12Packed");
    ExpectTidy(list, "enumeration");
    SaveScreenshot(dialog, "editor-enumeration" + suffix);
    auto& text = dialog.Edit<CStringValueView>();
    text.SetFeatureName("DeviceUserID");
    text.SetText("left camera");
    ExpectTidy(text, "string");
    SaveScreenshot(dialog, "editor-string" + suffix);
    auto& command = dialog.Edit<CCmdValueView>();
    command.SetFeatureName("TriggerSoftware");
    ExpectTidy(command, "command");
    SaveScreenshot(dialog, "editor-command" + suffix);
}

TEST_F(EditorLooks, AreTidyAtEveryWidth) {
    ShowAll(150);
    ShowAll(290);
    ShowAll(120);
}

TEST_F(EditorLooks, FollowTheirForm) {
    Resize(150, 70);
    auto& view = dialog.Edit<CSintValueView>();
    const auto place = [&](int id) {
        CRect rect;
        ::GetWindowRect(Control(id), &rect);
        view.ScreenToClient(rect);
        return rect;
    };
    const CRect slider = place(7020), edit = place(7022), apply = place(7026), unit = place(7031);
    CRect client;
    view.GetClientRect(client);
    view.MoveWindow(0, 0, client.Width() + 80, client.Height());
    EXPECT_TRUE(
        EqualRect(place(7020), CRect(slider.left, slider.top, slider.right + 80, slider.bottom)));
    EXPECT_TRUE(EqualRect(place(7022), CRect(edit.left, edit.top, edit.right + 80, edit.bottom)));
    EXPECT_TRUE(
        EqualRect(place(7026), CRect(apply.left + 80, apply.top, apply.right + 80, apply.bottom)));
    EXPECT_EQ(place(7031).left, unit.left + 80);
    view.MoveWindow(0, 0, 10, client.Height());
    EXPECT_GT(place(7022).Width(), place(7026).Width());
    view.MoveWindow(0, 0, client.Width(), client.Height());
    EXPECT_TRUE(EqualRect(place(7022), edit));
}

TEST_F(EditorLooks, KeepTheHeightOfADroppedList) {
    auto& view = dialog.Edit<CEnumValueView>();
    const std::vector<const char*> names(100, "Option");
    view.SetOptions(names.data(), 100);
    const auto dropped = [&] {
        CRect rect;
        SendMessage(Control(7007), CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect));
        return rect.Height();
    };
    const int before = dropped();
    view.MoveWindow(0, 0, 400, 100);
    EXPECT_EQ(dropped(), before);
    CRect closed;
    ::GetWindowRect(Control(7007), &closed);
    EXPECT_GT(before, 3 * closed.Height());
}

} // namespace
