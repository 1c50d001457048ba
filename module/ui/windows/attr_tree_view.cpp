// attr_tree_view.cpp - the tree of attributes and their values
#include "ui/windows/attr_tree_view.h"

using namespace pyxen;

IMPLEMENT_DYNCREATE(CAttrTreeView, CColumnTreeView)

BEGIN_MESSAGE_MAP(CAttrTreeView, CColumnTreeView)
ON_WM_SIZE()
ON_NOTIFY(TVN_SELCHANGED, kTreeId, &CAttrTreeView::OnSelectionChanged)
END_MESSAGE_MAP()

namespace {

bool InsertColumn(CHeaderCtrl& header, int index, const wchar_t* text) {
    HDITEM item = {};
    item.mask = HDI_TEXT | HDI_FORMAT;
    item.fmt = HDF_CENTER | HDF_STRING;
    item.pszText = const_cast<LPTSTR>(text);
    return header.InsertItem(index, &item) >= 0;
}

} // namespace

bool CAttrTreeView::Create(IObserver* newObserver, const RECT& rect, CWnd* parent, UINT id) {
    const CRect shortened(rect.left, rect.top, rect.right - 1, rect.bottom - 1);
    observer = newObserver;
    if (!CColumnTreeView::Create(nullptr, TEXT("tree"), WS_CHILD | WS_VISIBLE, shortened, parent,
                                 id) ||
        !InsertColumn(header, 0, TEXT("Attributes")) || !InsertColumn(header, 1, TEXT("Values"))) {
        return false;
    }
    SetWidthsOnce(shortened.Width());
    return GetTree().InsertItem(TEXT("/"), TVI_ROOT, TVI_FIRST) != nullptr;
}

void CAttrTreeView::OnSize(UINT type, int width, int height) {
    SetWidthsOnce(width);
    CColumnTreeView::OnSize(type, width, height);
}

// The window's first size comes before there are columns.
void CAttrTreeView::SetWidthsOnce(int width) {
    if (!widthsSet && width > 0 && header.GetItemCount() == 2) {
        SetColumnWidths(SplitColumnWidths(width, ::GetSystemMetrics(SM_CXVSCROLL)));
    }
}

void CAttrTreeView::FitColumns() {
    CRect client;
    GetClientRect(client);
    widthsSet = false;
    SetWidthsOnce(client.Width());
}

void CAttrTreeView::OnSelectionChanged(NMHDR* notification, LRESULT*) {
    const HTREEITEM item = reinterpret_cast<const NMTREEVIEW*>(notification)->itemNew.hItem;
    if (item && !GetTree().ItemHasChildren(item)) {
        observer->AttrSelected(item);
    }
}

bool CAttrTreeView::IsReadOnly(HTREEITEM item) const {
    return observer && observer->IsAttrReadOnly(item);
}
