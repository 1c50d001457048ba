#include "ui/column_layout.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

using Widths = std::array<int, 2>;
using ScrollStep = ColumnScroll::Step;

TEST(SplitColumnWidths, GivesThreeFifthsToTheNames) {
    EXPECT_EQ(SplitColumnWidths(500, 17), (Widths{289, 194}));
    EXPECT_EQ(SplitColumnWidths(117, 17), (Widths{60, 40}));
}

TEST(SplitColumnWidths, HasNothingToGiveInANarrowView) {
    EXPECT_EQ(SplitColumnWidths(17, 17), (Widths{0, 0}));
    EXPECT_EQ(SplitColumnWidths(5, 17), (Widths{0, 0}));
}

TEST(IsOnColumnText, ReachesSixPixelsBeyondTheText) {
    EXPECT_FALSE(IsOnColumnText(39, 40, 100));
    EXPECT_TRUE(IsOnColumnText(40, 40, 100));
    EXPECT_TRUE(IsOnColumnText(145, 40, 100));
    EXPECT_FALSE(IsOnColumnText(146, 40, 100));
}

TEST(ColumnScroll, StepsByFifteenPixels) {
    ColumnScroll scroll;
    EXPECT_TRUE(scroll.Take(ScrollStep::kLineRight, 0, 500, 200));
    EXPECT_TRUE(scroll.Take(ScrollStep::kLineRight, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 30);
    EXPECT_TRUE(scroll.Take(ScrollStep::kLineLeft, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 15);
}

TEST(ColumnScroll, StepsByPages) {
    ColumnScroll scroll;
    EXPECT_TRUE(scroll.Take(ScrollStep::kPageRight, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 200);
    EXPECT_TRUE(scroll.Take(ScrollStep::kPageLeft, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 0);
}

TEST(ColumnScroll, FollowsTheThumbAndGoesToTheEnds) {
    ColumnScroll scroll;
    EXPECT_TRUE(scroll.Take(ScrollStep::kToThumb, 123, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 123);
    EXPECT_TRUE(scroll.Take(ScrollStep::kRightEnd, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 300);
    EXPECT_TRUE(scroll.Take(ScrollStep::kLeftEnd, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 0);
}

TEST(ColumnScroll, StopsAtTheEndsOfTheColumns) {
    ColumnScroll scroll;
    EXPECT_FALSE(scroll.Take(ScrollStep::kLineLeft, 0, 500, 200));
    EXPECT_TRUE(scroll.Take(ScrollStep::kToThumb, 5000, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 300);
    EXPECT_FALSE(scroll.Take(ScrollStep::kPageRight, 0, 500, 200));
    EXPECT_FALSE(scroll.Take(ScrollStep::kRightEnd, 0, 500, 200));
    EXPECT_EQ(scroll.GetOffset(), 300);
}

TEST(ColumnScroll, DoesNotMoveWhatFits) {
    ColumnScroll scroll;
    EXPECT_FALSE(scroll.Take(ScrollStep::kLineRight, 0, 150, 200));
    EXPECT_FALSE(scroll.Take(ScrollStep::kRightEnd, 0, 150, 200));
    EXPECT_EQ(scroll.GetOffset(), 0);
}

TEST(ColumnScroll, FollowsAGrowingWindow) {
    ColumnScroll scroll;
    scroll.Take(ScrollStep::kRightEnd, 0, 500, 200);
    scroll.Fit(500, 350);
    EXPECT_EQ(scroll.GetOffset(), 150);
    scroll.Fit(500, 700);
    EXPECT_EQ(scroll.GetOffset(), 0);
}

} // namespace
