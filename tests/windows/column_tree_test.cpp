#include "sent_messages.h"
#include "tree_view_fixture.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

namespace {

using ColumnTree = TreeViewFixture;

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLong(window, GWL_STYLE));
}

std::wstring ClassOf(HWND window) {
    wchar_t name[64]{};
    GetClassName(window, name, 64);
    return name;
}

TEST_F(ColumnTree, IsAVisibleChildNamedTreeOnePixelSmallerThanAskedFor) {
    EXPECT_EQ(TextOf(*view), L"tree");
    EXPECT_EQ(view->GetStyle() & (WS_CHILD | WS_VISIBLE), DWORD{WS_CHILD | WS_VISIBLE});
    EXPECT_EQ(view->GetDlgCtrlID(), IDC_ATTRIBUTE_TREE);
    CRect rect;
    view->GetWindowRect(rect);
    Frame().ScreenToClient(rect);
    EXPECT_TRUE(EqualRect(rect, CRect(0, 0, 500, 300)));
}

TEST_F(ColumnTree, HoldsTheTreeWithItsStyles) {
    const HWND tree = GetDlgItem(*view, 2);
    EXPECT_EQ(tree, Tree().m_hWnd);
    EXPECT_EQ(ClassOf(tree), WC_TREEVIEW);
    constexpr DWORD kWanted = WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES |
                              TVS_LINESATROOT | TVS_NOTOOLTIPS | TVS_NOHSCROLL;
    EXPECT_EQ(StyleOf(tree) & kWanted, kWanted);
}

TEST_F(ColumnTree, HoldsTheHeaderWithItsStyles) {
    EXPECT_EQ(ClassOf(Header()), WC_HEADER);
    constexpr DWORD kWanted = WS_CHILD | WS_VISIBLE | HDS_FULLDRAG;
    EXPECT_EQ(StyleOf(Header()) & kWanted, kWanted);
    ASSERT_EQ(Header_GetItemCount(Header()), 2);
    const wchar_t* const texts[] = {L"Attributes", L"Values"};
    for (int index = 0; index < 2; ++index) {
        wchar_t text[32]{};
        HDITEM item = {};
        item.mask = HDI_TEXT | HDI_FORMAT;
        item.pszText = text;
        item.cchTextMax = 32;
        ASSERT_TRUE(Header_GetItem(Header(), index, &item));
        EXPECT_EQ(std::wstring(text), texts[index]);
        EXPECT_EQ(item.fmt & HDF_JUSTIFYMASK, HDF_CENTER);
    }
}

TEST_F(ColumnTree, HasItsHeaderInTheTreesFontMadeBold) {
    LOGFONT ofTree = {}, ofHeader = {};
    Tree().GetFont()->GetLogFont(&ofTree);
    CFont::FromHandle(reinterpret_cast<HFONT>(SendMessage(Header(), WM_GETFONT, 0, 0)))
        ->GetLogFont(&ofHeader);
    EXPECT_EQ(ofHeader.lfWeight, 700);
    EXPECT_EQ(ofHeader.lfHeight, ofTree.lfHeight);
    EXPECT_STREQ(NarrowText(ofHeader.lfFaceName).c_str(), NarrowText(ofTree.lfFaceName).c_str());

    CFont bold;
    bold.CreateFontIndirect(&ofHeader);
    CClientDC dc(view.get());
    CFont* const before = dc.SelectObject(&bold);
    EXPECT_EQ(PlaceOf(Header()).Height(), dc.GetTextExtent(L"A", 1).cy + 7);
    dc.SelectObject(before);
}

TEST_F(ColumnTree, StartsWithTheRootRow) {
    EXPECT_EQ(TreeItemText(Tree(), root), L"/");
    EXPECT_EQ(Tree().GetNextSiblingItem(root), nullptr);
    EXPECT_EQ(Tree().GetParentItem(root), nullptr);
}

TEST_F(ColumnTree, IsNotMadeWithoutItsRootRow) {
    CAttrTreeView other;
    const SentMessages watch([](const CWPSTRUCT& sent) {
        if (sent.message == HDM_INSERTITEM && sent.wParam == 1) {
            DestroyWindow(GetDlgItem(GetParent(sent.hwnd), 2));
        }
    });
    EXPECT_FALSE(other.Create(this, CRect(0, 0, 100, 100), &Frame(), IDC_ATTRIBUTE_TREE));
    other.DestroyWindow();
}

/// Gives vertical scroll bars another width for a while.
class ScrollBarWidth {
public:
    explicit ScrollBarWidth(int width) {
        metrics.cbSize = sizeof(metrics);
        SystemParametersInfo(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
        NONCLIENTMETRICS changed = metrics;
        changed.iScrollWidth = width;
        SystemParametersInfo(SPI_SETNONCLIENTMETRICS, sizeof(changed), &changed, 0);
    }
    ~ScrollBarWidth() {
        SystemParametersInfo(SPI_SETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    }
    ScrollBarWidth(const ScrollBarWidth&) = delete;
    ScrollBarWidth& operator=(const ScrollBarWidth&) = delete;

private:
    NONCLIENTMETRICS metrics = {};
};

TEST_F(ColumnTree, GivesThreeFifthsOfItsWidthToTheNames) {
    const ScrollBarWidth seventeen(17);
    ASSERT_EQ(GetSystemMetrics(SM_CXVSCROLL), 17);
    Make(500, 300);
    EXPECT_EQ(ColumnWidth(0), 289);
    EXPECT_EQ(ColumnWidth(1), 194);
}

TEST_F(ColumnTree, SetsTheWidthsAtItsFirstSize) {
    const ScrollBarWidth seventeen(17);
    Make(0, 0);
    view->MoveWindow(0, 0, 500, 300);
    EXPECT_EQ(ColumnWidth(0), 289);
    EXPECT_EQ(ColumnWidth(1), 194);
}

TEST_F(ColumnTree, KeepsTheWidthsAtLaterSizes) {
    const int before = ColumnWidth(0);
    view->MoveWindow(0, 0, 300, 200);
    EXPECT_EQ(ColumnWidth(0), before);
    view->MoveWindow(0, 0, 700, 400);
    EXPECT_EQ(ColumnWidth(0), before);
}

TEST_F(ColumnTree, KeepsTheWidthsThatTheUserDragged) {
    const CRect column = ColumnRect(0);
    const LPARAM divider = MAKELPARAM(column.right, column.Height() / 2);
    PostMessage(Header(), WM_LBUTTONDOWN, MK_LBUTTON, divider);
    const LPARAM farther = MAKELPARAM(column.right - 50, column.Height() / 2);
    PostMessage(Header(), WM_MOUSEMOVE, MK_LBUTTON, farther);
    PostMessage(Header(), WM_LBUTTONUP, 0, farther);
    Pump();
    EXPECT_EQ(ColumnWidth(0), column.Width() - 50);
    view->MoveWindow(0, 0, 600, 400);
    EXPECT_EQ(ColumnWidth(0), column.Width() - 50);
}

TEST_F(ColumnTree, FillsTheViewBelowItsHeader) {
    const CRect header = PlaceOf(Header());
    const CRect tree = PlaceOf(Tree());
    EXPECT_EQ(header.left, 0);
    EXPECT_EQ(header.top, 0);
    EXPECT_EQ(header.right, 500);
    EXPECT_TRUE(EqualRect(tree, CRect(0, header.bottom, 500, 300)));
    view->MoveWindow(0, 0, 600, 200);
    EXPECT_EQ(PlaceOf(Header()).Height(), header.Height());
    EXPECT_TRUE(EqualRect(PlaceOf(Tree()), CRect(0, header.bottom, 600, 200)));
}

TEST_F(ColumnTree, HasNoScrollBarWhileTheColumnsFit) {
    EXPECT_FALSE(view->GetStyle() & WS_HSCROLL);
    ScrollSideways(SB_RIGHT);
    EXPECT_EQ(PlaceOf(Header()).left, 0);
}

class NarrowColumnTree : public ColumnTree {
protected:
    NarrowColumnTree() {
        view->MoveWindow(0, 0, 200, 300);
        sum = ColumnWidth(0) + ColumnWidth(1);
    }

    void ExpectShift(int offset) {
        EXPECT_EQ(PlaceOf(Header()).left, -offset);
        EXPECT_EQ(PlaceOf(Tree()).left, -offset);
        EXPECT_EQ(ScrollBar(*view, SB_HORZ).nPos, offset);
    }

    int sum = 0;
};

TEST_F(NarrowColumnTree, ScrollsOverTheSumOfItsColumns) {
    EXPECT_TRUE(view->GetStyle() & WS_HSCROLL);
    const SCROLLINFO bar = ScrollBar(*view, SB_HORZ);
    EXPECT_EQ(bar.nMin, 0);
    EXPECT_EQ(bar.nMax + 1, sum);
    EXPECT_EQ(bar.nPage, 200u);
    CRect client;
    view->GetClientRect(client);
    EXPECT_LT(client.bottom, 300);
    EXPECT_EQ(PlaceOf(Tree()).bottom, client.bottom);
}

TEST_F(NarrowColumnTree, ScrollsByLines) {
    ScrollSideways(SB_LINERIGHT);
    ExpectShift(15);
    ScrollSideways(SB_LINERIGHT);
    ExpectShift(30);
    ScrollSideways(SB_LINELEFT);
    ExpectShift(15);
    ScrollSideways(SB_LINELEFT);
    ScrollSideways(SB_LINELEFT);
    ExpectShift(0);
}

TEST_F(NarrowColumnTree, ScrollsByPages) {
    ScrollSideways(SB_PAGERIGHT);
    ExpectShift(200);
    ScrollSideways(SB_PAGERIGHT);
    ExpectShift(sum - 200);
    ScrollSideways(SB_PAGELEFT);
    ExpectShift(sum - 400);
    ScrollSideways(SB_PAGELEFT);
    ExpectShift(0);
}

TEST_F(NarrowColumnTree, FollowsTheThumb) {
    ScrollSideways(SB_THUMBTRACK, 77);
    ExpectShift(77);
    ScrollSideways(SB_THUMBPOSITION, 12);
    ExpectShift(12);
    ScrollSideways(SB_THUMBPOSITION, 9999);
    ExpectShift(sum - 200);
}

TEST_F(NarrowColumnTree, GoesToTheEnds) {
    ScrollSideways(SB_RIGHT);
    ExpectShift(sum - 200);
    ScrollSideways(SB_LINERIGHT);
    ExpectShift(sum - 200);
    ScrollSideways(SB_LEFT);
    ExpectShift(0);
}

TEST_F(NarrowColumnTree, ScrollsBackWhenItGrows) {
    ScrollSideways(SB_RIGHT);
    view->MoveWindow(0, 0, 250, 300);
    ExpectShift(sum - 250);
    view->MoveWindow(0, 0, 600, 300);
    ExpectShift(0);
    EXPECT_FALSE(view->GetStyle() & WS_HSCROLL);
}

TEST_F(NarrowColumnTree, FollowsItsColumns) {
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = ColumnWidth(0) + 100;
    Header_SetItem(Header(), 0, &item);
    EXPECT_EQ(ScrollBar(*view, SB_HORZ).nMax + 1, sum + 100);
    ScrollSideways(SB_RIGHT);
    ExpectShift(sum + 100 - 200);
}

TEST_F(NarrowColumnTree, KeepsTheTreesOwnScrollBarInSight) {
    InsertMany(50, category);
    EXPECT_EQ(PlaceOf(Tree()).right, 200);
    ScrollSideways(SB_LINERIGHT);
    EXPECT_EQ(PlaceOf(Tree()).right, 200);
}

TEST_F(ColumnTree, ReportsTheSelectionOfRowsWithoutChildren) {
    Tree().SelectItem(width);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width}));
    Tree().SelectItem(category);
    Tree().SelectItem(root);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width}));
    Tree().SelectItem(height);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width, height}));
}

TEST_F(ColumnTree, ReportsASelectionMadeByKeys) {
    Tree().SelectItem(category);
    Tree().SetFocus();
    Press(VK_DOWN);
    Press(VK_DOWN);
    Press(VK_UP);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width, height, width}));
}

TEST_F(ColumnTree, ReportsNothingWhenTheSelectionEnds) {
    Tree().SelectItem(width);
    selected.clear();
    Tree().SelectItem(nullptr);
    EXPECT_TRUE(selected.empty());
}

TEST_F(ColumnTree, SelectsByAClickOnTheName) {
    const CRect text = RowRect(width, true);
    const int middle = (text.top + text.bottom) / 2;
    Click(Tree(), text.left + 2, middle);
    EXPECT_EQ(Tree().GetSelectedItem(), width);
    const CRect other = RowRect(height, true);
    Click(Tree(), other.left + TextWidth(L"Height") + 5, (other.top + other.bottom) / 2);
    EXPECT_EQ(Tree().GetSelectedItem(), height);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width, height}));
}

TEST_F(ColumnTree, OnlyTakesTheFocusByAClickElsewhere) {
    Tree().SelectItem(root);
    const CRect text = RowRect(width, true);
    const int middle = (text.top + text.bottom) / 2;
    const int beyond = text.left + TextWidth(L"Width") + 6;
    for (const int x : {beyond, int{ColumnRect(1).left + 5}}) {
        SetFocus(Frame());
        Click(Tree(), x, middle);
        EXPECT_EQ(Tree().GetSelectedItem(), root) << x;
        EXPECT_EQ(GetFocus(), Tree().m_hWnd);
        SetFocus(Frame());
        DoubleClick(Tree(), x, middle);
        EXPECT_EQ(Tree().GetSelectedItem(), root) << x;
        EXPECT_EQ(GetFocus(), Tree().m_hWnd);
    }
    SetFocus(Frame());
    Click(Tree(), 5, PlaceOf(Tree()).Height() - 5);
    EXPECT_EQ(GetFocus(), Tree().m_hWnd);
    EXPECT_TRUE(selected.empty());
    EXPECT_EQ(expanded, 0);
}

TEST_F(ColumnTree, MeasuresTheNameInTheTreesFont) {
    LOGFONT description = {};
    Tree().GetFont()->GetLogFont(&description);
    description.lfHeight *= 2;
    CFont large;
    ASSERT_TRUE(large.CreateFontIndirect(&description));
    const int before = TextWidth(L"Width");
    Tree().SetFont(&large);
    ASSERT_GT(TextWidth(L"Width"), before + 12);
    const CRect text = RowRect(width, true);
    Click(Tree(), text.left + TextWidth(L"Width") + 5, (text.top + text.bottom) / 2);
    EXPECT_EQ(selected, (std::vector<HTREEITEM>{width}));
    view.reset();
}

/// The middle of an item's expand button, found as a user would: left of the text.
CPoint ButtonOf(CColumnTreeCtrl& tree, HTREEITEM item) {
    CRect text;
    tree.GetItemRect(item, text, TRUE);
    const int middle = (text.top + text.bottom) / 2;
    for (int x = text.left - 1; x >= 0; --x) {
        UINT flags = 0;
        if (tree.HitTest(CPoint(x, middle), &flags) == item && flags & TVHT_ONITEMBUTTON) {
            return CPoint(x - 3, middle);
        }
    }
    ADD_FAILURE() << "no button";
    return CPoint();
}

bool IsExpanded(CColumnTreeCtrl& tree, HTREEITEM item) {
    return tree.GetItemState(item, TVIS_EXPANDED) & TVIS_EXPANDED;
}

TEST_F(ColumnTree, TellsOfAClickOnAnExpandButton) {
    const CPoint button = ButtonOf(Tree(), category);
    Click(Tree(), button.x, button.y);
    EXPECT_FALSE(IsExpanded(Tree(), category));
    EXPECT_EQ(expanded, 1);
    Click(Tree(), button.x, button.y);
    EXPECT_TRUE(IsExpanded(Tree(), category));
    EXPECT_EQ(expanded, 2);
}

TEST_F(ColumnTree, TellsOfADoubleClickOnAnItem) {
    const CRect text = RowRect(category, true);
    DoubleClick(Tree(), text.left + 2, (text.top + text.bottom) / 2);
    EXPECT_FALSE(IsExpanded(Tree(), category));
    EXPECT_EQ(expanded, 1);
}

TEST_F(ColumnTree, TellsNothingOfASingleClickOnAnItem) {
    const CRect text = RowRect(category, true);
    Click(Tree(), text.left + 2, (text.top + text.bottom) / 2);
    EXPECT_EQ(expanded, 0);
}

TEST_F(ColumnTree, TellsThePageTimesThePositionWhenItScrolls) {
    InsertMany(100, category);
    Tree().SendMessage(WM_VSCROLL, SB_LINEDOWN);
    SCROLLINFO bar = ScrollBar(Tree(), SB_VERT);
    ASSERT_GT(bar.nPage, 1u);
    EXPECT_EQ(bar.nPos, 1);
    EXPECT_EQ(scrolled, (std::vector<int>{static_cast<int>(bar.nPage)}));
    Tree().SendMessage(WM_VSCROLL, SB_PAGEDOWN);
    bar = ScrollBar(Tree(), SB_VERT);
    ASSERT_EQ(scrolled.size(), 2u);
    EXPECT_EQ(scrolled.back(), static_cast<int>(bar.nPage) * bar.nPos);
}

TEST_F(ColumnTree, TellsOfTheWheelOnlyWhenItMovedTheRows) {
    InsertMany(100, category);
    Tree().SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_TRUE(scrolled.empty());
    Tree().SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    const SCROLLINFO bar = ScrollBar(Tree(), SB_VERT);
    EXPECT_GT(bar.nPos, 0);
    EXPECT_EQ(scrolled, (std::vector<int>{static_cast<int>(bar.nPage) * bar.nPos}));
}

TEST_F(ColumnTree, TellsWhenATypedNameScrollsTheRows) {
    InsertMany(100, category);
    const HTREEITEM last = Insert(L"Zebra", root);
    Insert(L"Stripes\t7", last);
    Tree().SelectItem(root);
    Tree().SetFocus();
    Type(L"z");
    ASSERT_EQ(Tree().GetSelectedItem(), last);
    const SCROLLINFO bar = ScrollBar(Tree(), SB_VERT);
    EXPECT_GT(bar.nPos, 0);
    EXPECT_EQ(scrolled, (std::vector<int>{static_cast<int>(bar.nPage) * bar.nPos}));
}

TEST_F(ColumnTree, TellsWhenAClickScrollsTheRows) {
    InsertMany(100, category);
    CRect client;
    Tree().GetClientRect(client);
    const int rowHeight = RowRect(width, false).Height();
    // The view made so high that half of a row is cut.
    view->MoveWindow(0, 0, 500, 300 - client.Height() % rowHeight + rowHeight / 2);
    Tree().GetClientRect(client);
    HTREEITEM cut = Tree().GetNextItem(nullptr, TVGN_FIRSTVISIBLE);
    while (RowRect(cut, false).bottom <= client.bottom) {
        cut = Tree().GetNextItem(cut, TVGN_NEXTVISIBLE);
    }
    const CRect row = RowRect(cut, true);
    ASSERT_LT(row.top + 2, client.bottom);
    scrolled.clear();
    Click(Tree(), row.left + 2, row.top + 2);
    EXPECT_EQ(Tree().GetSelectedItem(), cut);
    const SCROLLINFO bar = ScrollBar(Tree(), SB_VERT);
    ASSERT_EQ(bar.nPos, 1);
    EXPECT_EQ(scrolled, (std::vector<int>{static_cast<int>(bar.nPage)}));
}

TEST_F(ColumnTree, TellsItsHeightWhenItIsResized) {
    resized.clear();
    view->MoveWindow(0, 0, 500, 200);
    ASSERT_FALSE(resized.empty());
    CRect client;
    Tree().GetClientRect(client);
    EXPECT_EQ(resized.back(), client.Height());
}

TEST_F(ColumnTree, TellsNobodyWithoutACallback) {
    Tree().SetNotifyCallback(nullptr);
    resized.clear();
    InsertMany(100, category);
    view->MoveWindow(0, 0, 500, 200);
    Tree().SendMessage(WM_VSCROLL, SB_LINEDOWN);
    EXPECT_TRUE(resized.empty());
    EXPECT_TRUE(scrolled.empty());
}

} // namespace
