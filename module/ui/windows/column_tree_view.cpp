// column_tree_view.cpp - a tree with columns
#include "ui/windows/column_tree_view.h"

#include "ui/row_text.h"
#include "ui/windows/wide_text.h"

#include <algorithm>
#include <optional>

using namespace pyxen;

IMPLEMENT_DYNAMIC(CColumnTreeView, CView)

BEGIN_MESSAGE_MAP(CColumnTreeView, CView)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_HSCROLL()
ON_NOTIFY(HDN_ITEMCHANGED, kHeaderId, &CColumnTreeView::OnColumnChanged)
ON_NOTIFY(NM_CUSTOMDRAW, kTreeId, &CColumnTreeView::OnCustomDraw)
END_MESSAGE_MAP()

namespace {

constexpr int kTextMargin = 3;
constexpr int kHeaderMargins = 7;

std::optional<ColumnScroll::Step> StepOf(UINT code) {
    switch (code) {
    case SB_LINELEFT:
        return ColumnScroll::Step::kLineLeft;
    case SB_LINERIGHT:
        return ColumnScroll::Step::kLineRight;
    case SB_PAGELEFT:
        return ColumnScroll::Step::kPageLeft;
    case SB_PAGERIGHT:
        return ColumnScroll::Step::kPageRight;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        return ColumnScroll::Step::kToThumb;
    case SB_LEFT:
        return ColumnScroll::Step::kLeftEnd;
    case SB_RIGHT:
        return ColumnScroll::Step::kRightEnd;
    default:
        return std::nullopt;
    }
}

} // namespace

// Keys that move the focus find the tree inside.
BOOL CColumnTreeView::PreCreateWindow(CREATESTRUCT& create) {
    create.dwExStyle |= WS_EX_CONTROLPARENT;
    create.style |= WS_CLIPCHILDREN;
    return CView::PreCreateWindow(create);
}

int CColumnTreeView::OnCreate(LPCREATESTRUCT create) {
    if (CView::OnCreate(create) == -1 ||
        !tree.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                         TVS_LINESATROOT | TVS_NOTOOLTIPS | TVS_NOHSCROLL,
                     CRect(), this, kTreeId) ||
        !header.Create(WS_CHILD | WS_VISIBLE | HDS_FULLDRAG, CRect(), this, kHeaderId)) {
        return -1;
    }
    LOGFONT font = {};
    tree.GetFont()->GetLogFont(&font);
    font.lfWeight = FW_BOLD;
    headerFont.CreateFontIndirect(&font);
    header.SetFont(&headerFont);
    CClientDC dc(this);
    CFont* const before = dc.SelectObject(&headerFont);
    headerHeight = dc.GetTextExtent(TEXT("A"), 1).cy + kHeaderMargins;
    dc.SelectObject(before);
    return 0;
}

void CColumnTreeView::OnSize(UINT type, int width, int height) {
    CView::OnSize(type, width, height);
    Layout();
}

void CColumnTreeView::SetColumnWidths(const std::array<int, 2>& widths) {
    widthsSet = true;
    for (int index = 0; index < static_cast<int>(widths.size()); ++index) {
        HDITEM item = {};
        item.mask = HDI_WIDTH;
        item.cxy = widths[static_cast<std::size_t>(index)];
        header.SetItem(index, &item);
    }
    Layout();
}

int CColumnTreeView::SumOfColumns() const {
    int sum = 0;
    for (int index = 0; index < header.GetItemCount(); ++index) {
        HDITEM item = {};
        item.mask = HDI_WIDTH;
        header.GetItem(index, &item);
        sum += item.cxy;
    }
    return sum;
}

// The tree ends where the client area does, so that its own scroll bar stays in sight.
void CColumnTreeView::Layout() {
    CRect client;
    GetClientRect(client);
    columnsWidth = SumOfColumns();
    scroll.Fit(columnsWidth, client.Width());
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = std::max(columnsWidth - 1, 0);
    info.nPage = static_cast<UINT>(client.Width());
    info.nPos = scroll.GetOffset();
    SetScrollInfo(SB_HORZ, &info);
    // The bar, coming or going, has changed the height.
    GetClientRect(client);
    const int offset = scroll.GetOffset();
    const int shownTo = offset + client.Width();
    header.MoveWindow(-offset, 0, std::max(columnsWidth, shownTo), headerHeight);
    tree.MoveWindow(-offset, headerHeight, shownTo, std::max(client.Height() - headerHeight, 0));
}

void CColumnTreeView::OnHScroll(UINT code, UINT position, CScrollBar*) {
    CRect client;
    GetClientRect(client);
    const auto step = StepOf(code);
    if (step && scroll.Take(*step, static_cast<int>(position), columnsWidth, client.Width())) {
        SetScrollPos(SB_HORZ, scroll.GetOffset());
        Layout();
    }
}

void CColumnTreeView::OnColumnChanged(NMHDR*, LRESULT*) {
    const bool before = widthsSet;
    widthsSet = true;
    Layout();
    widthsSet = before;
    tree.Invalidate(FALSE);
}

void CColumnTreeView::OnCustomDraw(NMHDR* notification, LRESULT* result) {
    const auto* const draw = reinterpret_cast<const NMTVCUSTOMDRAW*>(notification);
    switch (draw->nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        *result = CDRF_NOTIFYITEMDRAW;
        break;
    case CDDS_ITEMPREPAINT:
        *result = CDRF_NOTIFYPOSTPAINT;
        break;
    case CDDS_ITEMPOSTPAINT:
        DrawRow(*CDC::FromHandle(draw->nmcd.hdc),
                reinterpret_cast<HTREEITEM>(draw->nmcd.dwItemSpec));
        *result = CDRF_DODEFAULT;
        break;
    default:
        *result = CDRF_DODEFAULT;
        break;
    }
}

void CColumnTreeView::DrawRow(CDC& dc, HTREEITEM item) {
    CRect row;
    if (!tree.GetItemRect(item, row, TRUE)) {
        return;
    }
    const std::wstring text = TreeItemText(tree, item);
    const bool selected = tree.GetItemState(item, TVIS_SELECTED) & TVIS_SELECTED;
    const COLORREF besideOrNone = dc.GetPixel(row.left - 1, row.top);
    const COLORREF beside =
        besideOrNone == CLR_INVALID ? ::GetSysColor(COLOR_WINDOW) : besideOrNone;
    CRect client;
    tree.GetClientRect(client);
    // The tree's lines and buttons end with the first column, even where the indent does not.
    CRect first;
    const int fillFrom = header.GetItemRect(0, first) ? std::min(row.left, first.right) : row.left;
    dc.FillSolidRect(CRect(fillFrom, row.top, std::max(client.right, row.right), row.bottom),
                     beside);
    // A selected row keeps the highlight's colours, on which grey could not be read.
    dc.SetTextColor(::GetSysColor(selected           ? COLOR_HIGHLIGHTTEXT
                                  : IsReadOnly(item) ? COLOR_GRAYTEXT
                                                     : COLOR_WINDOWTEXT));
    CFont* const fontBefore = dc.SelectObject(tree.GetFont());
    dc.SetBkMode(TRANSPARENT);
    int index = 0;
    for (const std::wstring_view part : SplitRow(text)) {
        CRect column;
        if (!header.GetItemRect(index, column)) {
            break;
        }
        const int left = index == 0 ? row.left : column.left;
        const int length = static_cast<int>(part.size());
        const int width = dc.GetTextExtent(part.data(), length).cx + 2 * kTextMargin;
        CRect cell(left, row.top, std::min<int>(left + width, column.right), row.bottom);
        if (index > 0) {
            dc.FillSolidRect(CRect(column.left, row.top, column.right, row.bottom), beside);
        }
        // A column may end left of where its text begins: the indent takes all of it.
        if (cell.left < cell.right) {
            dc.FillSolidRect(cell, selected ? ::GetSysColor(COLOR_HIGHLIGHT) : beside);
        }
        cell.left += kTextMargin;
        if (cell.left < cell.right) {
            dc.DrawText(part.data(), length, cell, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
        }
        ++index;
    }
    dc.SelectObject(fontBefore);
}
