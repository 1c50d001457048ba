// device_finder_ending_test.cpp - how the dialog in which the user picks a camera ends
#include "device_finder_fixture.h"

namespace {

TEST_F(DeviceFinder, EndsWithOkOnADoubleClick) {
    const INT_PTR ending = Run("ext-left", [&] {
        const CRect rect = RectOf(list, 2);
        host.DoubleClick(list, rect.left + 10, (rect.top + rect.bottom) / 2);
    });
    EXPECT_EQ(ending, IDOK);
    EXPECT_EQ(chosen, "ext-right");
}

TEST_F(DeviceFinder, EndsWithOkOnEnterInTheList) {
    const INT_PTR ending = Run("ext-left", [&] {
        host.Press(VK_DOWN);
        host.Press(VK_RETURN);
    });
    EXPECT_EQ(ending, IDOK);
    EXPECT_EQ(chosen, "ext-middle");
}

TEST_F(DeviceFinder, StaysOpenOnARightClick) {
    Run("ext-left", [&] {
        const CRect rect = RectOf(list, 1);
        host.RightClick(list, rect.left + 10, (rect.top + rect.bottom) / 2);
        EXPECT_TRUE(IsOpen());
        EXPECT_EQ(Selected(), "ext-middle");
        Push(IDCANCEL);
    });
}

TEST_F(DeviceFinder, EndsOnTheListsMessageForAChoiceOnly) {
    const INT_PTR ending = Run("ext-left", [&] {
        SendMessage(dialog, WM_APP + 3, 1, 0);
        SendMessage(dialog, WM_APP + 3, 2, 0);
        EXPECT_TRUE(IsOpen());
        SendMessage(dialog, WM_APP + 3, 0, 0);
    });
    EXPECT_EQ(ending, IDOK);
}

TEST_F(DeviceFinder, EndsOnEnterInTheOkButtonOnly) {
    const INT_PTR ending = Run("ext-left", [&] {
        SendMessage(dialog, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(IsOpen());
        host.Press(VK_TAB);
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDOK));
        host.Press(VK_RETURN);
    });
    EXPECT_EQ(ending, IDOK);
    EXPECT_EQ(chosen, "ext-left");
}

TEST_F(DeviceFinder, EndsWithCancelOnEveryWayOut) {
    const std::function<void()> ways[] = {[&] { Push(IDCANCEL); }, [&] { host.Press(VK_ESCAPE); },
                                          [&] {
                                              host.Press(VK_TAB);
                                              host.Press(VK_TAB);
                                              EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDCANCEL));
                                              host.Press(VK_RETURN);
                                          },
                                          [&] {
                                              PostMessage(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
                                              host.Pump();
                                          }};
    for (const auto& way : ways) {
        EXPECT_EQ(Run("ext-left", way), IDCANCEL);
    }
}

} // namespace
