#include "screenshot.h"
#include "tree_view_fixture.h"
#include "window_pixels.h"

#include <array>
#include <cstdint>
#include <vector>

namespace {

class ColumnTreeDrawing : public TreeViewFixture {
protected:
    COLORREF Color(int index) { return GetSysColor(index); }
    /// The part of a row inside a column.
    CRect Cell(HTREEITEM item, int column) {
        const CRect row = RowRect(item, true);
        const CRect place = ColumnRect(column);
        return CRect(column == 0 ? row.left : place.left, row.top, place.right, row.bottom);
    }
    /// Draws the tree and counts a colour in a row's column.
    int Count(HTREEITEM item, int column, int color) {
        return WindowPixels(Tree()).Count(Cell(item, column), Color(color));
    }
};

TEST_F(ColumnTreeDrawing, PutsEachPartOfTheTextIntoItsColumn) {
    EXPECT_GT(Count(width, 0, COLOR_WINDOWTEXT), 0);
    EXPECT_GT(Count(width, 1, COLOR_WINDOWTEXT), 0);
    EXPECT_GT(Count(category, 0, COLOR_WINDOWTEXT), 0);
    const CRect values = Cell(category, 1);
    EXPECT_EQ(Count(category, 1, COLOR_WINDOW), values.Width() * values.Height());
}

TEST_F(ColumnTreeDrawing, StartsAValueAtTheLeftOfItsColumn) {
    const CRect values = Cell(width, 1);
    const WindowPixels pixels(Tree());
    const CRect start(values.left, values.top, values.left + TextWidth(L"640") + 6, values.bottom);
    EXPECT_EQ(pixels.Count(start, Color(COLOR_WINDOWTEXT)),
              pixels.Count(values, Color(COLOR_WINDOWTEXT)));
}

TEST_F(ColumnTreeDrawing, ClipsTextsAtTheirColumnsEdges) {
    const std::wstring longText(300, L'W');
    Tree().SetItemText(width, (longText + L"\t640").c_str());
    Tree().SetItemText(height, (L"Height\t" + longText).c_str());
    SaveScreenshot(*view, "tree-long-texts");
    const WindowPixels pixels(Tree());
    const CRect values = Cell(width, 1);
    CRect beyondValue = values;
    beyondValue.left += TextWidth(L"640") + 6;
    EXPECT_EQ(pixels.Count(beyondValue, Color(COLOR_WINDOW)),
              beyondValue.Width() * beyondValue.Height());
    CRect beyondColumns = Cell(height, 1);
    EXPECT_GT(pixels.Count(beyondColumns, Color(COLOR_WINDOWTEXT)), 0);
    beyondColumns.left = beyondColumns.right;
    beyondColumns.right = pixels.Width();
    ASSERT_GT(beyondColumns.Width(), 0);
    EXPECT_EQ(pixels.Count(beyondColumns, Color(COLOR_WINDOW)),
              beyondColumns.Width() * beyondColumns.Height());
    const CRect below(0, RowRect(height, true).bottom, pixels.Width(), pixels.Height());
    EXPECT_EQ(pixels.Count(below, Color(COLOR_WINDOWTEXT)), 0);
}

TEST_F(ColumnTreeDrawing, HighlightsTheSelectedRowBehindItsTexts) {
    Tree().SelectItem(width);
    Tree().SetFocus();
    SaveScreenshot(*view, "tree-selected");
    for (const int column : {0, 1}) {
        EXPECT_GT(Count(width, column, COLOR_HIGHLIGHT), 0) << column;
        EXPECT_GT(Count(width, column, COLOR_HIGHLIGHTTEXT), 0) << column;
        EXPECT_EQ(Count(height, column, COLOR_HIGHLIGHT), 0) << column;
    }
    const int part = TextWidth(L"Width") + 6;
    CRect behind = Cell(width, 0);
    behind.right = behind.left + part;
    CRect beside = Cell(width, 0);
    beside.left += part;
    const WindowPixels pixels(Tree());
    EXPECT_GT(pixels.Count(behind, Color(COLOR_HIGHLIGHT)), behind.Width() * behind.Height() / 2);
    EXPECT_EQ(pixels.Count(beside, Color(COLOR_WINDOW)), beside.Width() * beside.Height());
}

TEST_F(ColumnTreeDrawing, KeepsTheHighlightWhenTheFocusLeaves) {
    Tree().SelectItem(width);
    Tree().SetFocus();
    SetFocus(Frame());
    EXPECT_GT(Count(width, 0, COLOR_HIGHLIGHT), 0);
}

TEST_F(ColumnTreeDrawing, WritesReadOnlyRowsInGrey) {
    readOnly = {height};
    Tree().Invalidate();
    SaveScreenshot(*view, "tree-read-only");
    for (const int column : {0, 1}) {
        EXPECT_GT(Count(height, column, COLOR_GRAYTEXT), 0) << column;
        EXPECT_EQ(Count(height, column, COLOR_WINDOWTEXT), 0) << column;
        EXPECT_EQ(Count(width, column, COLOR_GRAYTEXT), 0) << column;
    }
}

TEST_F(ColumnTreeDrawing, KeepsASelectedReadOnlyRowReadable) {
    readOnly = {height};
    Tree().SelectItem(height);
    EXPECT_GT(Count(height, 0, COLOR_HIGHLIGHTTEXT), 0);
    EXPECT_EQ(Count(height, 0, COLOR_GRAYTEXT), 0);
}

TEST_F(ColumnTreeDrawing, LeavesTheTreesButtonsAndLinesAlone) {
    // The tree draws the same left of the texts when nothing is drawn over it.
    const CRect text = RowRect(category, true);
    const CRect left(0, text.top, text.left, text.bottom);
    const WindowPixels drawn(Tree());
    int marks = 0;
    for (int y = left.top; y < left.bottom; ++y) {
        for (int x = 0; x < left.right; ++x) {
            marks += drawn.At(x, y) != Color(COLOR_WINDOW);
        }
    }
    EXPECT_GT(marks, 9);
    EXPECT_EQ(drawn.At(text.left - 1, text.top), Color(COLOR_WINDOW));
}

TEST_F(ColumnTreeDrawing, TakesTheBackgroundFromTheLeftOfTheName) {
    const COLORREF tint = RGB(250, 240, 200);
    Tree().SendMessage(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(tint));
    Tree().Invalidate();
    const WindowPixels pixels(Tree());
    const CRect name = RowRect(width, true);
    ASSERT_EQ(pixels.At(name.left - 1, name.top), tint);
    for (const int column : {0, 1}) {
        EXPECT_EQ(pixels.Count(Cell(width, column), Color(COLOR_WINDOW)), 0) << column;
        EXPECT_GT(pixels.Count(Cell(width, column), tint), 0) << column;
    }
}

TEST_F(ColumnTreeDrawing, ShowsANewTextAtOnce) {
    Pump();
    const int before = Count(width, 1, COLOR_WINDOWTEXT);
    Tree().SetItemText(width, L"Width\t8888888888");
    const int after = Count(width, 1, COLOR_WINDOWTEXT);
    EXPECT_GT(after, 2 * before);
    Tree().SetItemText(width, L"Width\t1");
    EXPECT_LT(Count(width, 1, COLOR_WINDOWTEXT), before);
}

TEST_F(ColumnTreeDrawing, FollowsTheHeader) {
    const std::array<int, 2> widths = {ColumnWidth(0), ColumnWidth(1)};
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = widths[0] + 60;
    Header_SetItem(Header(), 0, &item);
    EXPECT_EQ(Cell(width, 1).left, widths[0] + 60);
    EXPECT_GT(Count(width, 1, COLOR_WINDOWTEXT), 0);
    EXPECT_EQ(WindowPixels(Tree()).Count(
                  CRect(widths[0], Cell(width, 1).top, widths[0] + 60, Cell(width, 1).bottom),
                  Color(COLOR_WINDOWTEXT)),
              0);
}

TEST_F(ColumnTreeDrawing, LeavesOutWhatHasNoColumn) {
    const auto drawn = [&](const wchar_t* text) {
        Tree().SetItemText(width, text);
        const WindowPixels pixels(Tree());
        const CRect row = RowRect(width, false);
        std::vector<COLORREF> colors;
        for (int y = row.top; y < row.bottom; ++y) {
            for (int x = row.left; x < pixels.Width(); ++x) {
                colors.push_back(pixels.At(x, y));
            }
        }
        return colors;
    };
    const auto twoParts = drawn(L"Width\t640");
    EXPECT_NE(drawn(L"Width\t480"), twoParts);
    EXPECT_EQ(drawn(L"Width\t640\t999\tand more"), twoParts);
}

TEST_F(ColumnTreeDrawing, WritesInTheTreesFont) {
    LOGFONT description = {};
    Tree().GetFont()->GetLogFont(&description);
    description.lfHeight *= 2;
    CFont large;
    ASSERT_TRUE(large.CreateFontIndirect(&description));
    Tree().SetFont(&large);
    const int needed = TextWidth(L"640");
    const CRect values = Cell(width, 1);
    const WindowPixels pixels(Tree());
    int last = values.left;
    for (int x = values.left; x < values.right; ++x) {
        if (pixels.Count(CRect(x, values.top, x + 1, values.bottom), Color(COLOR_WINDOWTEXT)) > 0) {
            last = x;
        }
    }
    EXPECT_GT(last - values.left, needed * 3 / 4);
    EXPECT_LT(last - values.left, needed + 6);
    view.reset();
}

/// The drawing objects of this process.
int CountDrawingObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) {
        return static_cast<int>(count);
    }
    // Where the system does not count: the lower half of a handle is its number.
    int count = 0;
    for (std::uintptr_t number = 1; number < 0x10000; ++number) {
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(number)) != 0;
    }
    return count;
}

TEST_F(ColumnTreeDrawing, KeepsNoDrawingObject) {
    constexpr int kPaints = 1000;
    view->MoveWindow(0, 0, 120, 80);
    readOnly = {height};
    const auto paint = [&] {
        RedrawWindow(Tree(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    };
    paint();
    const int before = CountDrawingObjects();
    for (int time = 0; time < kPaints; ++time) {
        paint();
    }
    EXPECT_LE(CountDrawingObjects(), before + 1) << "over ten thousand, ten";
    std::vector<HBRUSH> brushes;
    for (BYTE index = 0; index < 50; ++index) {
        brushes.push_back(CreateSolidBrush(RGB(index, 7, 9)));
    }
    EXPECT_GE(CountDrawingObjects(), before + 40) << "objects are not counted";
    for (const HBRUSH brush : brushes) {
        DeleteObject(brush);
    }
}

TEST_F(ColumnTreeDrawing, DrawsNothingBesideAColumnNarrowerThanTheIndent) {
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = 5;
    Header_SetItem(Header(), 0, &item);
    Tree().SelectItem(category);
    Tree().SetFocus();
    SaveScreenshot(*view, "tree-narrow-column");
    const CRect text = RowRect(category, true);
    ASSERT_GT(text.left, ColumnRect(0).right);
    const WindowPixels pixels(Tree());
    const CRect beside(ColumnRect(0).right, text.top, pixels.Width(), text.bottom);
    for (const int color : {COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT, COLOR_WINDOWTEXT}) {
        if (Color(color) != Color(COLOR_WINDOW)) {
            EXPECT_EQ(pixels.Count(beside, Color(color)), 0) << color;
        }
    }
}

TEST_F(ColumnTreeDrawing, EndsLinesAndButtonsWithTheFirstColumn) {
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = 5;
    Header_SetItem(Header(), 0, &item);
    const CRect text = RowRect(category, true);
    const WindowPixels pixels(Tree());
    const CRect beside(ColumnRect(0).right, text.top, pixels.Width(), text.bottom);
    EXPECT_EQ(pixels.Count(beside, Color(COLOR_WINDOW)), beside.Width() * beside.Height());
}

/// A column tree as it is without a class of its own for its rows.
class PlainColumnTree : public CColumnTreeView {
public:
    using CColumnTreeView::Create;
    using CColumnTreeView::IsReadOnly;
};

TEST_F(ColumnTreeDrawing, HasNoReadOnlyRowsOfItsOwn) {
    PlainColumnTree plain;
    ASSERT_TRUE(plain.Create(nullptr, L"plain", WS_CHILD, CRect(0, 0, 100, 100), &Frame(), 9));
    const HTREEITEM row = plain.GetTree().InsertItem(L"row", TVI_ROOT, TVI_LAST);
    ASSERT_NE(row, nullptr);
    EXPECT_FALSE(plain.IsReadOnly(row));
    plain.DestroyWindow();
}

TEST_F(ColumnTreeDrawing, FollowsAHeaderThatLeavesItsOwnSizeAlone) {
    Count(width, 1, COLOR_WINDOWTEXT); // drawn where it stood
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = ColumnWidth(0) - 60;
    Header_SetItem(Header(), 0, &item);
    CRect text = Cell(width, 1);
    text.right = text.left + TextWidth(L"640") + 6;
    EXPECT_GT(WindowPixels(Tree()).Count(text, Color(COLOR_WINDOWTEXT)), 0);
}

} // namespace
