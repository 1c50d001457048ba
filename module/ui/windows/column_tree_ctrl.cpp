// column_tree_ctrl.cpp - the tree of a column tree view
#include "ui/windows/column_tree_ctrl.h"

#include "ui/column_layout.h"
#include "ui/row_text.h"
#include "ui/windows/wide_text.h"

using namespace pyxen;

IMPLEMENT_DYNAMIC(CColumnTreeCtrl, CTreeCtrl)

BEGIN_MESSAGE_MAP(CColumnTreeCtrl, CTreeCtrl)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_VSCROLL()
ON_WM_MOUSEWHEEL()
ON_WM_KEYDOWN()
ON_WM_CHAR()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONDBLCLK()
ON_MESSAGE(TVM_SETITEM, &CColumnTreeCtrl::OnSetItem)
END_MESSAGE_MAP()

void CColumnTreeCtrl::OnPaint() {
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    CDC memory;
    memory.CreateCompatibleDC(&dc);
    CBitmap bitmap;
    bitmap.CreateCompatibleBitmap(&dc, client.Width(), client.Height());
    CBitmap* const before = memory.SelectObject(&bitmap);
    memory.FillSolidRect(client, ::GetSysColor(COLOR_WINDOW));
    DefWindowProc(WM_PAINT, reinterpret_cast<WPARAM>(memory.m_hDC), 0);
    dc.BitBlt(0, 0, client.Width(), client.Height(), &memory, 0, 0, SRCCOPY);
    memory.SelectObject(before);
}

// Painting covers everything.
BOOL CColumnTreeCtrl::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CColumnTreeCtrl::OnSize(UINT type, int width, int height) {
    CTreeCtrl::OnSize(type, width, height);
    if (callback) {
        callback->OnTreeResized(height);
    }
}

void CColumnTreeCtrl::OnVScroll(UINT code, UINT position, CScrollBar* bar) {
    CTreeCtrl::OnVScroll(code, position, bar);
    TellScrolled();
}

BOOL CColumnTreeCtrl::OnMouseWheel(UINT flags, short delta, CPoint point) {
    BOOL handled = FALSE;
    TellingScroll([&] { handled = CTreeCtrl::OnMouseWheel(flags, delta, point); });
    return handled;
}

// Keys scroll and expand as well.
void CColumnTreeCtrl::OnKeyDown(UINT key, UINT repeated, UINT flags) {
    TellingScroll([&] { CTreeCtrl::OnKeyDown(key, repeated, flags); });
    const bool mayExpand = key == VK_LEFT || key == VK_RIGHT || key == VK_ADD ||
                           key == VK_SUBTRACT || key == VK_MULTIPLY;
    if (mayExpand && callback) {
        callback->OnTreeExpanded();
    }
}

// The tree goes to the row whose name is typed.
void CColumnTreeCtrl::OnChar(UINT character, UINT repeated, UINT flags) {
    TellingScroll([&] { CTreeCtrl::OnChar(character, repeated, flags); });
}

// A click on a row that is cut at the lower edge brings it into sight.
void CColumnTreeCtrl::OnLButtonDown(UINT flags, CPoint point) {
    const Place place = Find(point);
    if (place == Place::kElsewhere) {
        SetFocus();
        return;
    }
    TellingScroll([&] { CTreeCtrl::OnLButtonDown(flags, point); });
    if (place == Place::kButton && callback) {
        callback->OnTreeExpanded();
    }
}

void CColumnTreeCtrl::OnLButtonDblClk(UINT flags, CPoint point) {
    if (Find(point) == Place::kElsewhere) {
        SetFocus();
        return;
    }
    CTreeCtrl::OnLButtonDblClk(flags, point);
    if (callback) {
        callback->OnTreeExpanded();
    }
}

// The tree repaints only as far as its own text reaches, which is not where the columns stand.
LRESULT CColumnTreeCtrl::OnSetItem(WPARAM wParam, LPARAM lParam) {
    const LRESULT result = DefWindowProc(TVM_SETITEM, wParam, lParam);
    CRect row;
    if (GetItemRect(reinterpret_cast<const TVITEM*>(lParam)->hItem, row, FALSE)) {
        InvalidateRect(row, FALSE);
    }
    return result;
}

CColumnTreeCtrl::Place CColumnTreeCtrl::Find(CPoint point) {
    UINT where = 0;
    const HTREEITEM item = HitTest(point, &where);
    if (!item) {
        return Place::kElsewhere;
    }
    if (where & TVHT_ONITEMBUTTON) {
        return Place::kButton;
    }
    CRect text;
    if (!GetItemRect(item, text, TRUE)) {
        return Place::kElsewhere;
    }
    const std::wstring row = TreeItemText(*this, item);
    const std::wstring_view name = SplitRow(row).front();
    CClientDC dc(this);
    CFont* const before = dc.SelectObject(GetFont());
    const int width = dc.GetTextExtent(name.data(), static_cast<int>(name.size())).cx;
    dc.SelectObject(before);
    return IsOnColumnText(point.x, text.left, width) ? Place::kName : Place::kElsewhere;
}

int CColumnTreeCtrl::ScrollPosition() {
    return GetScrollPos(SB_VERT);
}

template <typename Action>
void CColumnTreeCtrl::TellingScroll(const Action& action) {
    const int before = ScrollPosition();
    action();
    if (ScrollPosition() != before) {
        TellScrolled();
    }
}

void CColumnTreeCtrl::TellScrolled() {
    SCROLLINFO info = {};
    if (callback && GetScrollInfo(SB_VERT, &info)) {
        callback->OnTreeScrolled(static_cast<int>(info.nPage) * info.nPos);
    }
}
