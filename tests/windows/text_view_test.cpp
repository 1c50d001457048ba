#include "ui/windows/enum_value_view.h"
#include "ui/windows/string_value_view.h"
#include "value_view_fixture.h"

#include <afxcmn.h>

namespace {

class EnumValueView : public ValueViewFixture {
protected:
    std::vector<std::wstring> Shown() {
        std::vector<std::wstring> shown;
        const auto count = static_cast<WPARAM>(SendMessage(list, CB_GETCOUNT, 0, 0));
        for (WPARAM index = 0; index < count; ++index) {
            wchar_t text[256]{};
            SendMessage(list, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text));
            shown.emplace_back(text);
        }
        return shown;
    }
    bool Fill(const std::vector<const char*>& names) {
        return view->SetOptions(names.data(), static_cast<std::uint32_t>(names.size()));
    }
    std::string Selection() {
        std::string name;
        EXPECT_TRUE(view->GetSelection(name));
        return name;
    }

    std::unique_ptr<CEnumValueView> view = Make<CEnumValueView>();
    const HWND list = GetDlgItem(*view, 7007);
};

TEST_F(EnumValueView, ListsTheOptionsInTheirOrder) {
    EXPECT_TRUE(Fill({"Mono8", "BayerRG8", "Mono10"}));
    EXPECT_EQ(Shown(), (std::vector<std::wstring>{L"Mono8", L"BayerRG8", L"Mono10"}));
}

TEST_F(EnumValueView, SkipsOptionsThatAreNotAvailable) {
    EXPECT_TRUE(Fill({"Mono8", nullptr, "Mono10", nullptr}));
    EXPECT_EQ(Shown(), (std::vector<std::wstring>{L"Mono8", L"Mono10"}));
    EXPECT_TRUE(Fill({nullptr, nullptr}));
    EXPECT_EQ(Shown(), std::vector<std::wstring>{});
    EXPECT_TRUE(view->SetOptions(nullptr, 0));
}

TEST_F(EnumValueView, ReplacesTheOptions) {
    Fill({"Mono8", "Mono10"});
    EXPECT_TRUE(Fill({"Off", "On"}));
    EXPECT_EQ(Shown(), (std::vector<std::wstring>{L"Off", L"On"}));
}

TEST_F(EnumValueView, FailsAsSoonAsTheListRefusesAnOption) {
    static WNDPROC before;
    before = reinterpret_cast<WNDPROC>(SetWindowLongPtr(
        list, GWLP_WNDPROC,
        reinterpret_cast<LONG_PTR>(static_cast<WNDPROC>(
            [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
                if (message == CB_ADDSTRING &&
                    std::wstring(L"Mono10") == reinterpret_cast<const wchar_t*>(lParam)) {
                    return CB_ERRSPACE;
                }
                return CallWindowProc(before, window, message, wParam, lParam);
            }))));
    EXPECT_FALSE(Fill({"Mono8", "Mono10", "Mono12"}));
    EXPECT_EQ(Shown(), (std::vector<std::wstring>{L"Mono8"}));
}

TEST_F(EnumValueView, SelectsByWholeNameInAnyCase) {
    Fill({"Mono", "Mono8", "BayerRG8"});
    EXPECT_TRUE(view->SelectOption("mono8"));
    EXPECT_EQ(Selection(), "Mono8");
    EXPECT_TRUE(view->SelectOption("MONO"));
    EXPECT_EQ(Selection(), "Mono");
    EXPECT_TRUE(view->SelectOption("BayerRG8"));
    EXPECT_EQ(Selection(), "BayerRG8");
}

TEST_F(EnumValueView, LooksAtTheFirstEntryLast) {
    Fill({"Mono8", "mono8", "MONO8", "RGB8"});
    EXPECT_TRUE(view->SelectOption("Mono8"));
    EXPECT_EQ(SendMessage(list, CB_GETCURSEL, 0, 0), 1);
    EXPECT_TRUE(view->SelectOption("RGB8"));
    EXPECT_TRUE(view->SelectOption("mono8"));
    EXPECT_EQ(SendMessage(list, CB_GETCURSEL, 0, 0), 1) << "wherever the selection is";
    Fill({"Mono8", "RGB8"});
    EXPECT_TRUE(view->SelectOption("Mono8"));
    EXPECT_EQ(SendMessage(list, CB_GETCURSEL, 0, 0), 0);
}

TEST_F(EnumValueView, SelectsNothingThatIsNotThere) {
    Fill({"Mono8", "Mono10"});
    view->SelectOption("Mono10");
    EXPECT_FALSE(view->SelectOption("Mono"));
    EXPECT_FALSE(view->SelectOption("Mono12"));
    EXPECT_EQ(Selection(), "Mono10");
}

TEST_F(EnumValueView, HasNoSelectionAtFirst) {
    Fill({"Mono8", "Mono10"});
    std::string name = "kept";
    EXPECT_FALSE(view->GetSelection(name));
    EXPECT_EQ(name, "kept");
}

TEST_F(EnumValueView, CommitsNothingWhenTheSelectionChanges) {
    Fill({"Mono8", "Mono10"});
    view->SelectOption("Mono8");
    SetFocus(list);
    Press(VK_DOWN);
    EXPECT_EQ(Selection(), "Mono10");
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(EnumValueView, CommitsOnEnter) {
    Fill({"Mono8", "Mono10"});
    SetFocus(list);
    observer.then = [this] {
        view.reset();
    };
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(observer.told, (Told{true}));
    EXPECT_FALSE(view);
}

TEST_F(EnumValueView, FailsWithoutItsList) {
    DestroyWindow(list);
    EXPECT_FALSE(Fill({"Mono8"}));
    EXPECT_FALSE(view->SelectOption("Mono8"));
    std::string name;
    EXPECT_FALSE(view->GetSelection(name));
}

class StringValueView : public ValueViewFixture {
protected:
    std::string Text() {
        std::string text;
        EXPECT_TRUE(view->GetText(text));
        return text;
    }

    std::unique_ptr<CStringValueView> view = Make<CStringValueView>();
    const HWND edit = GetDlgItem(*view, 7018);
};

TEST_F(StringValueView, ShowsAndReturnsTheText) {
    EXPECT_TRUE(view->SetText("camera \xE2\x82\xAC 7"));
    EXPECT_EQ(TextOf(edit), L"camera \u20AC 7");
    EXPECT_EQ(Text(), "camera \xE2\x82\xAC 7");
    EXPECT_TRUE(view->SetText(""));
    EXPECT_EQ(Text(), "");
}

TEST_F(StringValueView, HoldsALongText) {
    const std::string text(5000, 'x');
    EXPECT_TRUE(view->SetText(text.c_str()));
    EXPECT_EQ(Text(), text);
}

/// Records whether each change of the edit came while the view was writing it.
class WatchedStringView : public CStringValueView {
public:
    std::vector<bool> updates;

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
        if (HIWORD(wParam) == EN_CHANGE) {
            updates.push_back(IsUpdating());
        }
        return CStringValueView::OnCommand(wParam, lParam);
    }
};

TEST_F(StringValueView, GuardsTheTextThatItWrites) {
    const auto watched = Make<WatchedStringView>();
    EXPECT_FALSE(watched->IsUpdating());
    EXPECT_TRUE(watched->SetText("written"));
    ASSERT_FALSE(watched->updates.empty());
    EXPECT_EQ(watched->updates, std::vector<bool>(watched->updates.size(), true));
    EXPECT_FALSE(watched->IsUpdating());
    watched->updates.clear();
    TypeInto(GetDlgItem(*watched, 7018), L"x");
    ASSERT_FALSE(watched->updates.empty());
    EXPECT_EQ(watched->updates, std::vector<bool>(watched->updates.size(), false));
}

TEST_F(StringValueView, CommitsNothingWhileTheUserTypes) {
    TypeInto(edit, L"left");
    EXPECT_EQ(Text(), "left");
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(StringValueView, CommitsOnEnter) {
    SetFocus(edit);
    observer.then = [this] {
        view.reset();
    };
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(observer.told, (Told{true}));
    EXPECT_FALSE(view);
}

TEST_F(StringValueView, FailsWithoutItsEdit) {
    DestroyWindow(edit);
    EXPECT_FALSE(view->SetText("x"));
    std::string text;
    EXPECT_FALSE(view->GetText(text));
}

} // namespace
