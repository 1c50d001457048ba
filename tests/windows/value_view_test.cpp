#include "ui/windows/value_view.h"

#include "ui/windows/cmd_value_view.h"
#include "ui/windows/enum_value_view.h"
#include "ui/windows/float_value_view.h"
#include "ui/windows/sint_value_view.h"
#include "ui/windows/string_value_view.h"
#include "value_view_fixture.h"
#include "window_pixels.h"

#include <map>

namespace {

template <class View>
class EveryValueView : public ValueViewFixture {};

using Views = ::testing::Types<CValueView, CEnumValueView, CSintValueView, CFloatValueView,
                               CCmdValueView, CStringValueView>;

struct ViewNames {
    template <class View>
    static std::string GetName(int) {
        return View().GetRuntimeClass()->m_lpszClassName;
    }
};
TYPED_TEST_SUITE(EveryValueView, Views, ViewNames);

TYPED_TEST(EveryValueView, IsAVisibleChildThatClipsItsChildren) {
    const auto view = this->template Make<TypeParam>();
    constexpr DWORD kWanted = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
    EXPECT_EQ(view->GetStyle() & kWanted, kWanted);
    EXPECT_EQ(view->GetParent(), &this->container);
    CRect rect;
    view->GetWindowRect(rect);
    this->container.ScreenToClient(rect);
    EXPECT_TRUE(EqualRect(rect, CRect(10, 10, 300, 150)));
}

TYPED_TEST(EveryValueView, CanBeCreatedByItsName) {
    const TypeParam known;
    const std::unique_ptr<CObject> made(
        CRuntimeClass::CreateObject(known.GetRuntimeClass()->m_lpszClassName));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->GetRuntimeClass(), known.GetRuntimeClass());
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CValueView)));
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CFormView)));
}

TYPED_TEST(EveryValueView, HasTwoIconButtonsOfTwelveUnits) {
    const auto view = this->template Make<TypeParam>();
    CRect wanted(0, 0, 12, 12);
    MapDialogRect(view->m_hWnd, wanted);
    for (const int id : {7026, 7030}) {
        CWnd* const button = view->GetDlgItem(id);
        ASSERT_NE(button, nullptr) << id;
        EXPECT_EQ(button->GetStyle() & (BS_TYPEMASK | BS_ICON | BS_BITMAP),
                  DWORD{BS_PUSHBUTTON | BS_ICON});
        CRect rect;
        button->GetClientRect(rect);
        EXPECT_EQ(rect.Size().cx, wanted.Width());
        EXPECT_EQ(rect.Size().cy, wanted.Height());
        const auto icon = reinterpret_cast<HICON>(button->SendMessage(BM_GETIMAGE, IMAGE_ICON));
        ICONINFO info{};
        ASSERT_TRUE(GetIconInfo(icon, &info)) << id;
        BITMAP bitmap{};
        GetObject(info.hbmMask, sizeof(bitmap), &bitmap);
        EXPECT_EQ(bitmap.bmWidth, GetSystemMetrics(SM_CXSMICON));
        EXPECT_GE(rect.Width(), bitmap.bmWidth);
        EXPECT_GE(rect.Height(), bitmap.bmHeight);
        DeleteObject(info.hbmMask);
        DeleteObject(info.hbmColor);
    }
}

TYPED_TEST(EveryValueView, DestroysItsIconsInTheEnd) {
    auto view = this->template Make<TypeParam>();
    const auto icon =
        reinterpret_cast<HICON>(view->GetDlgItem(7026)->SendMessage(BM_GETIMAGE, IMAGE_ICON));
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
    view.reset();
    EXPECT_FALSE(GetIconInfo(icon, &info));
}

TYPED_TEST(EveryValueView, IsNotMadeWithoutItsIcons) {
    AFX_MODULE_STATE& state = *AfxGetStaticModuleState();
    const HINSTANCE before = state.m_hCurrentResourceHandle;
    state.m_hCurrentResourceHandle = GetModuleHandle(L"kernel32.dll");
    TypeParam view;
    state.m_hCurrentResourceHandle = before;
    EXPECT_FALSE(view.Create(&this->observer, CRect(0, 0, 200, 100), &this->container));
    EXPECT_EQ(view.m_hWnd, nullptr);
}

TYPED_TEST(EveryValueView, TellsThatTheUserAppliesOrReverts) {
    const auto view = this->template Make<TypeParam>();
    this->ClickButton(*view, 7026);
    EXPECT_EQ(this->observer.told, (Told{true}));
    this->ClickButton(*view, 7030);
    EXPECT_EQ(this->observer.told, (Told{true, false}));
}

TYPED_TEST(EveryValueView, MayBeDeletedByItsObserver) {
    for (const int id : {7026, 7030}) {
        auto view = this->template Make<TypeParam>();
        const HWND window = view->m_hWnd;
        this->observer.then = [&view] {
            view->DestroyWindow();
            view.reset();
        };
        this->ClickButton(*view, id);
        EXPECT_FALSE(view);
        EXPECT_FALSE(IsWindow(window));
    }
}

TYPED_TEST(EveryValueView, DoesNotDeleteItself) {
    struct Watched : TypeParam {
        explicit Watched(bool& newDeleted) : deleted(newDeleted) {}
        ~Watched() override { deleted = true; }
        bool& deleted;
    };
    bool deleted = false;
    auto view = std::make_unique<Watched>(deleted);
    ASSERT_TRUE(view->Create(&this->observer, CRect(0, 0, 200, 100), &this->container));
    EXPECT_TRUE(view->DestroyWindow());
    EXPECT_FALSE(deleted);
    EXPECT_EQ(view->m_hWnd, nullptr);
    view.reset();
    EXPECT_TRUE(deleted);
}

TYPED_TEST(EveryValueView, CommitsNothingOnEnterWithTheFocusElsewhere) {
    const auto view = this->template Make<TypeParam>();
    view->GetDlgItem(7026)->SetFocus();
    EXPECT_FALSE(view->CommitOnEnter());
    ::SetFocus(this->Frame());
    EXPECT_FALSE(view->CommitOnEnter());
    EXPECT_EQ(this->observer.told, Told{});
}

using ValueViews = ValueViewFixture;

TEST_F(ValueViews, StandInAPaneOfTheFacesColour) {
    ASSERT_NE(GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(TextOf(container), L"cntview");
    CRect client;
    container.GetClientRect(client);
    container.Invalidate(TRUE);
    EXPECT_EQ(WindowPixels(container).Count(client, GetSysColor(COLOR_BTNFACE)),
              client.Width() * client.Height());
}

TEST_F(ValueViews, ShowTheNameInTheirLabel) {
    const auto view = Make<CFloatValueView>();
    view->SetFeatureName("ExposureTime");
    EXPECT_EQ(TextOf(*view, 7024), L"ExposureTime");
    view->SetFeatureName("Gr\xC3\xB6\xC3\x9F"
                         "e & Co");
    EXPECT_EQ(TextOf(*view, 7024), L"Gr\u00F6\u00DFe & Co");
}

TEST_F(ValueViews, ShowTheUnitWhereTheyHaveAPlaceForIt) {
    const auto view = Make<CFloatValueView>();
    view->SetUnit(L"\u00B5s");
    EXPECT_EQ(TextOf(*view, 7031), L"\u00B5s");
    view->SetNarrowUnit("\xC2\xB0"
                        "C");
    EXPECT_EQ(TextOf(*view, 7031), L"\u00B0C");
    const auto without = Make<CEnumValueView>();
    without->SetUnit(L"us");
    without->SetNarrowUnit("us");
    EXPECT_EQ(GetDlgItem(*without, 7031), nullptr);
}

/// Class and styles of a control that a template must hold.
struct WantedControl {
    const wchar_t* className;
    DWORD styles;
};

void ExpectControls(HWND window, const std::map<int, WantedControl>& wanted) {
    for (const auto& [id, control] : wanted) {
        const HWND found = GetDlgItem(window, id);
        ASSERT_NE(found, nullptr) << id;
        wchar_t className[64]{};
        GetClassName(found, className, 64);
        EXPECT_STRCASEEQ(
            std::string(className, className + wcslen(className)).c_str(),
            std::string(control.className, control.className + wcslen(control.className)).c_str());
        EXPECT_EQ(static_cast<DWORD>(GetWindowLong(found, GWL_STYLE)) & control.styles,
                  control.styles)
            << id;
    }
}

const WantedControl kLabel = {L"Static", SS_LEFTNOWORDWRAP};
const WantedControl kButton = {L"Button", BS_ICON};

TEST_F(ValueViews, HaveTheControlsOfTheirKind) {
    ExpectControls(*Make<CEnumValueView>(), {{7024, kLabel},
                                             {7026, kButton},
                                             {7030, kButton},
                                             {7007, {L"ComboBox", CBS_DROPDOWNLIST}}});
    ExpectControls(*Make<CSintValueView>(), {{7024, kLabel},
                                             {7026, kButton},
                                             {7030, kButton},
                                             {7031, kLabel},
                                             {7020, {L"msctls_trackbar32", TBS_HORZ}},
                                             {7022, {L"Edit", 0}}});
    ExpectControls(
        *Make<CFloatValueView>(),
        {{7024, kLabel}, {7026, kButton}, {7030, kButton}, {7031, kLabel}, {7010, {L"Edit", 0}}});
    ExpectControls(
        *Make<CCmdValueView>(),
        {{7024, kLabel}, {7026, kButton}, {7030, kButton}, {7005, {L"Button", BS_MULTILINE}}});
    ExpectControls(*Make<CStringValueView>(),
                   {{7024, kLabel}, {7026, kButton}, {7030, kButton}, {7018, {L"Edit", 0}}});
}

TEST_F(ValueViews, ScrollALongListOfOptions) {
    const auto view = Make<CEnumValueView>();
    const std::vector<const char*> names(100, "Option");
    ASSERT_TRUE(view->SetOptions(names.data(), 100));
    view->GetDlgItem(7007)->SendMessage(CB_SHOWDROPDOWN, TRUE);
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    ASSERT_TRUE(GetComboBoxInfo(GetDlgItem(*view, 7007), &info));
    EXPECT_TRUE(GetWindowLong(info.hwndList, GWL_STYLE) & WS_VSCROLL);
}

/// A form of the template that no editor uses.
class AnyForm : public CFormView {
public:
    AnyForm() : CFormView(7009) {}
    using CFormView::Create;
};

TEST_F(ValueViews, LeaveOneTemplateUnused) {
    AnyForm form;
    ASSERT_TRUE(form.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200),
                            &container, 0, nullptr));
    const WantedControl plainButton = {L"Button", BS_PUSHBUTTON};
    ExpectControls(form, {{7024, kLabel},
                          {7026, plainButton},
                          {7030, plainButton},
                          {7012, {L"Edit", 0}},
                          {7014, {L"ComboBox", 0}},
                          {7015, {L"ComboBox", 0}},
                          {7017, {L"msctls_trackbar32", 0}}});
}

TEST_F(ValueViews, ShowACommandsNameOnItsButton) {
    const auto view = Make<CCmdValueView>();
    const std::wstring label = TextOf(*view, 7024);
    view->SetFeatureName("TriggerSoftware");
    EXPECT_EQ(TextOf(*view, 7005), L"TriggerSoftware");
    EXPECT_EQ(TextOf(*view, 7024), label);
}

TEST_F(ValueViews, ShowEveryNameAndUnitAsItIs) {
    const auto command = Make<CCmdValueView>();
    command->SetFeatureName("Load && Save &All");
    EXPECT_EQ(TextOf(*command, 7005), L"Load && Save &All");
    const auto view = Make<CSintValueView>();
    view->SetFeatureName("Black && White &Level");
    view->SetUnit(L"a&b");
    EXPECT_EQ(TextOf(*view, 7024), L"Black && White &Level");
    EXPECT_EQ(TextOf(*view, 7031), L"a&b");
    for (const int id : {7024, 7031}) {
        EXPECT_TRUE(GetWindowLong(GetDlgItem(*view, id), GWL_STYLE) & SS_NOPREFIX) << id;
    }
}

TEST_F(ValueViews, CommitACommandByItsButton) {
    auto view = Make<CCmdValueView>();
    ClickButton(*view, 7005);
    EXPECT_EQ(observer.told, (Told{true}));
    observer.then = [&view] {
        view.reset();
    };
    ClickButton(*view, 7005);
    EXPECT_FALSE(view);
}

} // namespace
