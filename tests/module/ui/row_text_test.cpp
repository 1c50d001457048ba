#include "ui/row_text.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

using Columns = std::vector<std::wstring_view>;

TEST(SplitRow, CutsAtTabs) {
    EXPECT_EQ(SplitRow(L"Width\t640"), (Columns{L"Width", L"640"}));
    EXPECT_EQ(SplitRow(L"a\tb\tc"), (Columns{L"a", L"b", L"c"}));
}

TEST(SplitRow, KeepsEmptyColumns) {
    EXPECT_EQ(SplitRow(L""), (Columns{L""}));
    EXPECT_EQ(SplitRow(L"Name\t"), (Columns{L"Name", L""}));
    EXPECT_EQ(SplitRow(L"\tvalue"), (Columns{L"", L"value"}));
}

TEST(SplitRow, LeavesATextWithoutTabWhole) {
    EXPECT_EQ(SplitRow(L"/ImageFormatControl"), (Columns{L"/ImageFormatControl"}));
}

} // namespace
