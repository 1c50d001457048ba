#include "ui/windows/float_value_view.h"
#include "ui/windows/sint_value_view.h"
#include "value_view_fixture.h"

#include <afxcmn.h>

#include <clocale>
#include <cstdio>

namespace {

class SintValueView : public ValueViewFixture {
protected:
    int SliderPosition() { return static_cast<int>(SendMessage(slider, TBM_GETPOS, 0, 0)); }
    int SliderMin() { return static_cast<int>(SendMessage(slider, TBM_GETRANGEMIN, 0, 0)); }
    int SliderMax() { return static_cast<int>(SendMessage(slider, TBM_GETRANGEMAX, 0, 0)); }
    std::wstring Text() { return TextOf(edit); }
    std::int64_t Value() {
        std::int64_t value = 0;
        EXPECT_TRUE(view->GetValue(value));
        return value;
    }
    /// As the slider itself does when its thumb is dragged.
    void Drag(int position) {
        SendMessage(slider, TBM_SETPOS, TRUE, position);
        SendMessage(*view, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, position),
                    reinterpret_cast<LPARAM>(slider));
    }

    std::unique_ptr<CSintValueView> view = Make<CSintValueView>();
    const HWND slider = GetDlgItem(*view, 7020);
    const HWND edit = GetDlgItem(*view, 7022);
};

TEST_F(SintValueView, HasASliderOfTheNumbersThemselves) {
    EXPECT_TRUE(view->SetRange(0, 65535));
    EXPECT_EQ(SliderMin(), 0);
    EXPECT_EQ(SliderMax(), 65535);
    EXPECT_TRUE(view->SetRange(-40, 90));
    EXPECT_TRUE(view->SetValue(-7));
    EXPECT_EQ(SliderMin(), -40);
    EXPECT_EQ(SliderMax(), 90);
    EXPECT_EQ(SliderPosition(), -7);
}

TEST_F(SintValueView, HasASliderOfPartsForAWideRange) {
    EXPECT_TRUE(view->SetRange(0, 65536));
    EXPECT_EQ(SliderMin(), 0);
    EXPECT_EQ(SliderMax(), 65535);
    EXPECT_TRUE(view->SetRange(0, 6553600));
    EXPECT_TRUE(view->SetValue(101));
    EXPECT_EQ(SliderPosition(), 2);
}

TEST_F(SintValueView, DoesNotOffsetTheSliderByTheMinimum) {
    view->SetRange(1000000, 1000000 + 6553600);
    view->SetValue(1000000);
    EXPECT_EQ(SliderPosition(), 10000);
}

TEST_F(SintValueView, ShowsAValueInsideItsRange) {
    view->SetRange(10, 20);
    EXPECT_TRUE(view->SetValue(15));
    EXPECT_EQ(Text(), L"15");
    EXPECT_EQ(Value(), 15);
    EXPECT_TRUE(view->SetValue(25));
    EXPECT_EQ(Text(), L"20");
    EXPECT_EQ(Value(), 20);
    EXPECT_TRUE(view->SetValue(-3));
    EXPECT_EQ(Text(), L"10");
    EXPECT_EQ(SliderPosition(), 10);
}

TEST_F(SintValueView, FollowsTheSlider) {
    view->SetRange(0, 6553600);
    Drag(3);
    EXPECT_EQ(Text(), L"300");
    EXPECT_EQ(Value(), 300);
    Drag(65535);
    EXPECT_EQ(Value(), 6553600);
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(SintValueView, LeavesTheSliderWhereTheUserPutIt) {
    view->SetRange(1000000, 1000000 + 6553600);
    Drag(0);
    EXPECT_EQ(Text(), L"1000000");
    EXPECT_EQ(SliderPosition(), 0);
}

TEST_F(SintValueView, FollowsTheSlidersKeys) {
    view->SetRange(0, 100);
    view->SetValue(50);
    SetFocus(slider);
    Press(VK_RIGHT);
    EXPECT_EQ(Text(), L"51");
    Press(VK_HOME);
    EXPECT_EQ(Value(), 0);
    Press(VK_END);
    EXPECT_EQ(Value(), 100);
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(SintValueView, IgnoresOtherScrollBars) {
    view->SetRange(0, 100);
    view->SetValue(50);
    SendMessage(slider, TBM_SETPOS, TRUE, 70);
    SendMessage(*view, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 70), 0);
    EXPECT_EQ(Value(), 50);
}

TEST_F(SintValueView, TakesTheTypedNumberAtOnce) {
    view->SetRange(0, 1000);
    TypeInto(edit, L"640");
    EXPECT_EQ(Value(), 640);
    EXPECT_EQ(SliderPosition(), 640);
    TypeInto(edit, L"12px");
    EXPECT_EQ(Value(), 12);
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(SintValueView, KeepsItsValueWhileNoNumberIsTyped) {
    view->SetRange(0, 1000);
    view->SetValue(640);
    TypeInto(edit, L"abc");
    EXPECT_EQ(Text(), L"abc");
    EXPECT_EQ(Value(), 640);
    EXPECT_EQ(SliderPosition(), 640);
}

TEST_F(SintValueView, ClampsATypedValueOnEnterOnly) {
    view->SetRange(0, 1000);
    TypeInto(edit, L"5000");
    EXPECT_EQ(Value(), 5000);
    EXPECT_EQ(Text(), L"5000");
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(Value(), 1000);
    EXPECT_EQ(Text(), L"1000");
    EXPECT_EQ(SliderPosition(), 1000);
    EXPECT_EQ(observer.told, (Told{true}));
}

TEST_F(SintValueView, CommitsOnEnterFromTheSliderToo) {
    view->SetRange(0, 1000);
    view->SetValue(7);
    SetFocus(slider);
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(observer.told, (Told{true}));
}

TEST_F(SintValueView, MayBeDeletedWhenItCommits) {
    view->SetRange(0, 1000);
    SetFocus(edit);
    observer.then = [this] {
        view.reset();
    };
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_FALSE(view);
}

TEST_F(SintValueView, FailsWithoutItsControls) {
    DestroyWindow(slider);
    EXPECT_FALSE(view->SetRange(0, 10));
    EXPECT_FALSE(view->SetValue(5));
    DestroyWindow(edit);
    std::int64_t value = 0;
    EXPECT_FALSE(view->GetValue(value));
}

class FloatValueView : public ValueViewFixture {
protected:
    std::wstring Text() { return TextOf(edit); }
    double Value() {
        double value = 0;
        EXPECT_TRUE(view->GetValue(value));
        return value;
    }

    std::unique_ptr<CFloatValueView> view = Make<CFloatValueView>();
    const HWND edit = GetDlgItem(*view, 7010);
};

TEST_F(FloatValueView, ShowsSixDigitsAfterThePoint) {
    EXPECT_TRUE(view->SetRange(0.0, 100.0));
    EXPECT_TRUE(view->SetValue(12.5));
    EXPECT_EQ(Text(), L"12.500000");
    EXPECT_EQ(Value(), 12.5);
}

TEST_F(FloatValueView, HoldsTheValueThatItWasGiven) {
    view->SetRange(0.0, 1.0);
    SetFocus(edit);
    view->SetValue(7.123456789);
    EXPECT_EQ(Text(), L"7.123457");
    EXPECT_EQ(Value(), 7.123456789);
}

TEST_F(FloatValueView, TakesTheTypedNumberAtOnce) {
    view->SetRange(0.0, 100.0);
    TypeInto(edit, L"12abc");
    EXPECT_EQ(Value(), 12.0);
    TypeInto(edit, L"2.5e1");
    EXPECT_EQ(Value(), 2.5);
    EXPECT_EQ(observer.told, Told{});
}

TEST_F(FloatValueView, KeepsItsValueWhileNoNumberIsTyped) {
    view->SetRange(0.0, 100.0);
    view->SetValue(42.0);
    TypeInto(edit, L"abc");
    EXPECT_EQ(Value(), 42.0);
}

TEST_F(FloatValueView, ClampsItsValueAlsoWhenNoNumberIsTyped) {
    view->SetRange(0.0, 1.0);
    view->SetValue(7.5);
    TypeInto(edit, L"abc");
    EXPECT_EQ(Value(), 1.0);
    view->SetValue(-7.5);
    SetFocus(edit);
    SetWindowText(edit, L"");
    EXPECT_EQ(Value(), 0.0);
    view->SetValue(7.5);
    SetWindowText(edit, L"-");
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(Value(), 1.0);
    EXPECT_EQ(Text(), L"1.000000");
}

/// While it lives, the C library writes numbers as in Germany.
class GermanNumbers {
public:
    GermanNumbers() : former(std::setlocale(LC_NUMERIC, nullptr)) {
        for (const char* const name : {"German", "de-DE", "de_DE.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name)) {
                break;
            }
        }
    }
    ~GermanNumbers() { std::setlocale(LC_NUMERIC, former.c_str()); }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

private:
    const std::string former;
};

TEST_F(FloatValueView, WritesAndReadsADecimalPointInEveryLocale) {
    const GermanNumbers german;
    char text[16] = "";
    std::snprintf(text, sizeof text, "%.1f", 1.5);
    ASSERT_STREQ(text, "1,5") << "no such locale";
    view->SetRange(0.0, 100.0);
    EXPECT_TRUE(view->SetValue(12.5));
    EXPECT_EQ(Text(), L"12.500000");
    TypeInto(edit, L"2.75");
    EXPECT_EQ(Value(), 2.75);
    TypeInto(edit, L"3,75");
    EXPECT_EQ(Value(), 3.0);
    TypeInto(edit, L"2.75");
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(Text(), L"2.750000");
}

TEST_F(FloatValueView, ClampsTheTypedNumber) {
    view->SetRange(10.0, 100.0);
    TypeInto(edit, L"5000");
    EXPECT_EQ(Value(), 100.0);
    EXPECT_EQ(Text(), L"5000");
    TypeInto(edit, L"-3");
    EXPECT_EQ(Value(), 10.0);
}

TEST_F(FloatValueView, IgnoresChangesWithoutTheFocus) {
    view->SetRange(0.0, 100.0);
    view->SetValue(42.0);
    SetFocus(Frame());
    SetWindowText(edit, L"13");
    EXPECT_EQ(Value(), 42.0);
}

TEST_F(FloatValueView, RewritesTheTextOnEnter) {
    view->SetRange(0.0, 100.0);
    TypeInto(edit, L"12.3456789");
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(Text(), L"12.345679");
    EXPECT_EQ(Value(), 12.3456789);
    EXPECT_EQ(observer.told, (Told{true}));
    TypeInto(edit, L"5000");
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_EQ(Text(), L"100.000000");
    EXPECT_EQ(Value(), 100.0);
}

TEST_F(FloatValueView, MayBeDeletedWhenItCommits) {
    SetFocus(edit);
    observer.then = [this] {
        view.reset();
    };
    EXPECT_TRUE(view->CommitOnEnter());
    EXPECT_FALSE(view);
}

TEST_F(FloatValueView, FailsWithoutItsEdit) {
    DestroyWindow(edit);
    EXPECT_FALSE(view->SetRange(0, 1));
    EXPECT_FALSE(view->SetValue(0.5));
    double value = 0;
    EXPECT_FALSE(view->GetValue(value));
}

} // namespace
