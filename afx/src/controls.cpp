// controls.cpp - operations of controls that need a structure or an object
#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNAMIC(CStatic, CWnd)
IMPLEMENT_DYNAMIC(CButton, CWnd)
IMPLEMENT_DYNAMIC(CEdit, CWnd)
IMPLEMENT_DYNAMIC(CListBox, CWnd)
IMPLEMENT_DYNAMIC(CComboBox, CWnd)
IMPLEMENT_DYNAMIC(CHeaderCtrl, CWnd)
IMPLEMENT_DYNAMIC(CTreeCtrl, CWnd)
IMPLEMENT_DYNAMIC(CListCtrl, CWnd)
IMPLEMENT_DYNAMIC(CSliderCtrl, CWnd)
IMPLEMENT_DYNAMIC(CImageList, CObject)

CImageList* CImageList::FromHandle(HIMAGELIST imageList) {
    return AfxThreadState::Get().Temporary<CImageList>(imageList);
}

BOOL CImageList::Attach(HIMAGELIST imageList) {
    if (m_hImageList || !imageList) {
        return FALSE;
    }
    m_hImageList = imageList;
    return TRUE;
}

HIMAGELIST CImageList::Detach() {
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList() {
    return m_hImageList && ::ImageList_Destroy(Detach());
}

HTREEITEM CTreeCtrl::InsertItem(LPCTSTR text, HTREEITEM parent, HTREEITEM after) {
    TVINSERTSTRUCT insert = {};
    insert.hParent = parent;
    insert.hInsertAfter = after;
    insert.item.mask = TVIF_TEXT;
    insert.item.pszText = const_cast<LPTSTR>(text);
    return InsertItem(&insert);
}

BOOL CTreeCtrl::SetItemText(HTREEITEM item, LPCTSTR text) {
    TVITEM wanted = {};
    wanted.mask = TVIF_HANDLE | TVIF_TEXT;
    wanted.hItem = item;
    wanted.pszText = const_cast<LPTSTR>(text);
    return SetItem(&wanted);
}

DWORD_PTR CTreeCtrl::GetItemData(HTREEITEM item) const {
    TVITEM wanted = {};
    wanted.mask = TVIF_HANDLE | TVIF_PARAM;
    wanted.hItem = item;
    GetItem(&wanted);
    return static_cast<DWORD_PTR>(wanted.lParam);
}

BOOL CTreeCtrl::SetItemData(HTREEITEM item, DWORD_PTR data) {
    TVITEM wanted = {};
    wanted.mask = TVIF_HANDLE | TVIF_PARAM;
    wanted.hItem = item;
    wanted.lParam = static_cast<LPARAM>(data);
    return SetItem(&wanted);
}

HTREEITEM CTreeCtrl::HitTest(CPoint point, UINT* flags) const {
    TVHITTESTINFO info = {};
    info.pt = point;
    const HTREEITEM hit = TreeView_HitTest(m_hWnd, &info);
    if (flags) {
        *flags = info.flags;
    }
    return hit;
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const {
    return AfxThreadState::Get().Temporary<CHeaderCtrl>(ListView_GetHeader(m_hWnd));
}

int CListCtrl::InsertColumn(int index, LPCTSTR heading, int format, int width) {
    LVCOLUMN column = {};
    column.mask = LVCF_TEXT | LVCF_FMT | (width >= 0 ? LVCF_WIDTH : 0u);
    column.fmt = format;
    column.cx = width;
    column.pszText = const_cast<LPTSTR>(heading);
    return InsertColumn(index, &column);
}

int CListCtrl::InsertItem(int index, LPCTSTR text) {
    LVITEM item = {};
    item.mask = LVIF_TEXT;
    item.iItem = index;
    item.pszText = const_cast<LPTSTR>(text);
    return InsertItem(&item);
}

BOOL CListCtrl::SetItemText(int index, int column, LPCTSTR text) {
    LVITEM item = {};
    item.iSubItem = column;
    item.pszText = const_cast<LPTSTR>(text);
    return static_cast<BOOL>(
        SendMessage(LVM_SETITEMTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
}

int CListCtrl::GetItemText(int index, int column, LPTSTR text, int capacity) const {
    LVITEM item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = capacity;
    return static_cast<int>(
        SendMessage(LVM_GETITEMTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
}

DWORD_PTR CListCtrl::GetItemData(int index) const {
    LVITEM item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    GetItem(&item);
    return static_cast<DWORD_PTR>(item.lParam);
}

BOOL CListCtrl::SetItemData(int index, DWORD_PTR data) {
    LVITEM item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    item.lParam = static_cast<LPARAM>(data);
    return SetItem(&item);
}

BOOL CListCtrl::SetItemState(int index, UINT state, UINT mask) {
    LVITEM item = {};
    item.state = state;
    item.stateMask = mask;
    return static_cast<BOOL>(
        SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
}
