// afxcmn.h - the common controls that the dialogs use, and image lists
//
// Members send the control's message of the same name and return its result.
#pragma once

#include <afxwin.h>

/// Owns an image list and destroys it in its destructor.
class CImageList : public CObject {
    DECLARE_DYNAMIC(CImageList)
public:
    HIMAGELIST m_hImageList = nullptr;

    CImageList() = default;
    ~CImageList() override { DeleteImageList(); }

    static CImageList* FromHandle(HIMAGELIST imageList);
    BOOL Attach(HIMAGELIST imageList);
    HIMAGELIST Detach();
    BOOL Create(int width, int height, UINT flags, int initial, int grow) {
        return Attach(::ImageList_Create(width, height, flags, initial, grow));
    }
    BOOL DeleteImageList();
    int Add(HICON icon) { return ::ImageList_AddIcon(m_hImageList, icon); }
    int GetImageCount() const { return ::ImageList_GetImageCount(m_hImageList); }
    HIMAGELIST GetSafeHandle() const { return m_hImageList; }
};

class CHeaderCtrl : public CWnd {
    DECLARE_DYNAMIC(CHeaderCtrl)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_HEADER, nullptr, style, rect, parent, id);
    }
    int GetItemCount() const { return Header_GetItemCount(m_hWnd); }
    int InsertItem(int position, HDITEM* item) { return Header_InsertItem(m_hWnd, position, item); }
    BOOL GetItem(int position, HDITEM* item) const {
        return Header_GetItem(m_hWnd, position, item);
    }
    BOOL SetItem(int position, HDITEM* item) { return Header_SetItem(m_hWnd, position, item); }
    BOOL GetItemRect(int index, LPRECT rect) const {
        return Header_GetItemRect(m_hWnd, index, rect);
    }
};

class CTreeCtrl : public CWnd {
    DECLARE_DYNAMIC(CTreeCtrl)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_TREEVIEW, nullptr, style, rect, parent, id);
    }
    UINT GetCount() const { return TreeView_GetCount(m_hWnd); }
    HTREEITEM InsertItem(TVINSERTSTRUCT* insert) { return TreeView_InsertItem(m_hWnd, insert); }
    HTREEITEM InsertItem(LPCTSTR text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST);
    BOOL DeleteItem(HTREEITEM item) { return TreeView_DeleteItem(m_hWnd, item); }
    BOOL DeleteAllItems() { return TreeView_DeleteAllItems(m_hWnd); }
    BOOL GetItem(TVITEM* item) const { return TreeView_GetItem(m_hWnd, item); }
    BOOL SetItem(TVITEM* item) { return TreeView_SetItem(m_hWnd, item); }
    BOOL SetItemText(HTREEITEM item, LPCTSTR text);
    DWORD_PTR GetItemData(HTREEITEM item) const;
    BOOL SetItemData(HTREEITEM item, DWORD_PTR data);
    UINT GetItemState(HTREEITEM item, UINT mask) const {
        return TreeView_GetItemState(m_hWnd, item, mask);
    }
    HTREEITEM GetNextItem(HTREEITEM item, UINT code) const {
        return TreeView_GetNextItem(m_hWnd, item, code);
    }
    HTREEITEM GetRootItem() const { return GetNextItem(nullptr, TVGN_ROOT); }
    HTREEITEM GetChildItem(HTREEITEM item) const { return GetNextItem(item, TVGN_CHILD); }
    HTREEITEM GetNextSiblingItem(HTREEITEM item) const { return GetNextItem(item, TVGN_NEXT); }
    HTREEITEM GetParentItem(HTREEITEM item) const { return GetNextItem(item, TVGN_PARENT); }
    HTREEITEM GetSelectedItem() const { return GetNextItem(nullptr, TVGN_CARET); }
    BOOL ItemHasChildren(HTREEITEM item) const { return GetChildItem(item) != nullptr; }
    BOOL SelectItem(HTREEITEM item) { return TreeView_SelectItem(m_hWnd, item); }
    BOOL Expand(HTREEITEM item, UINT code) { return TreeView_Expand(m_hWnd, item, code); }
    BOOL EnsureVisible(HTREEITEM item) { return TreeView_EnsureVisible(m_hWnd, item); }
    BOOL SortChildren(HTREEITEM item) { return TreeView_SortChildren(m_hWnd, item, FALSE); }
    BOOL GetItemRect(HTREEITEM item, LPRECT rect, BOOL textOnly) const {
        return TreeView_GetItemRect(m_hWnd, item, rect, textOnly);
    }
    HTREEITEM HitTest(CPoint point, UINT* flags = nullptr) const;
};

class CListCtrl : public CWnd {
    DECLARE_DYNAMIC(CListCtrl)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(WC_LISTVIEW, nullptr, style, rect, parent, id);
    }
    CHeaderCtrl* GetHeaderCtrl() const;
    DWORD GetExtendedStyle() const { return ListView_GetExtendedListViewStyle(m_hWnd); }
    DWORD SetExtendedStyle(DWORD style) { return ListView_SetExtendedListViewStyle(m_hWnd, style); }
    CImageList* SetImageList(CImageList* imageList, int kind) {
        return CImageList::FromHandle(
            ListView_SetImageList(m_hWnd, imageList ? imageList->m_hImageList : nullptr, kind));
    }
    int InsertColumn(int index, const LVCOLUMN* column) {
        return ListView_InsertColumn(m_hWnd, index, column);
    }
    int InsertColumn(int index, LPCTSTR heading, int format = LVCFMT_LEFT, int width = -1);
    BOOL SetColumn(int index, const LVCOLUMN* column) {
        return ListView_SetColumn(m_hWnd, index, column);
    }
    BOOL GetColumn(int index, LVCOLUMN* column) const {
        return ListView_GetColumn(m_hWnd, index, column);
    }
    BOOL DeleteColumn(int index) { return ListView_DeleteColumn(m_hWnd, index); }
    int GetColumnWidth(int index) const { return ListView_GetColumnWidth(m_hWnd, index); }
    BOOL SetColumnWidth(int index, int width) {
        return ListView_SetColumnWidth(m_hWnd, index, width);
    }
    int GetItemCount() const { return ListView_GetItemCount(m_hWnd); }
    int InsertItem(const LVITEM* item) { return ListView_InsertItem(m_hWnd, item); }
    int InsertItem(int index, LPCTSTR text);
    BOOL DeleteItem(int index) { return ListView_DeleteItem(m_hWnd, index); }
    BOOL DeleteAllItems() { return ListView_DeleteAllItems(m_hWnd); }
    BOOL GetItem(LVITEM* item) const { return ListView_GetItem(m_hWnd, item); }
    BOOL SetItem(const LVITEM* item) { return ListView_SetItem(m_hWnd, item); }
    BOOL SetItemText(int index, int column, LPCTSTR text);
    int GetItemText(int index, int column, LPTSTR text, int capacity) const;
    DWORD_PTR GetItemData(int index) const;
    BOOL SetItemData(int index, DWORD_PTR data);
    UINT GetItemState(int index, UINT mask) const {
        return ListView_GetItemState(m_hWnd, index, mask);
    }
    BOOL SetItemState(int index, UINT state, UINT mask);
    int GetNextItem(int index, int flags) const {
        return ListView_GetNextItem(m_hWnd, index, flags);
    }
    /// Index of the first item after `start` that matches `wanted`; -1 when there is none.
    int FindItem(LVFINDINFO* wanted, int start = -1) const {
        return ListView_FindItem(m_hWnd, start, wanted);
    }
    int HitTest(LVHITTESTINFO* info) const { return ListView_HitTest(m_hWnd, info); }
    BOOL GetItemRect(int index, LPRECT rect, UINT area) const {
        rect->left = static_cast<LONG>(area);
        return static_cast<BOOL>(SendMessage(LVM_GETITEMRECT, static_cast<WPARAM>(index),
                                             reinterpret_cast<LPARAM>(rect)));
    }
    BOOL EnsureVisible(int index, BOOL partialOk) {
        return ListView_EnsureVisible(m_hWnd, index, partialOk);
    }
};

class CSliderCtrl : public CWnd {
    DECLARE_DYNAMIC(CSliderCtrl)
public:
    using CWnd::Create;
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
        return CWnd::Create(TRACKBAR_CLASS, nullptr, style, rect, parent, id);
    }
    int GetPos() const { return static_cast<int>(SendMessage(TBM_GETPOS)); }
    void SetPos(int position) { SendMessage(TBM_SETPOS, TRUE, position); }
    int GetRangeMin() const { return static_cast<int>(SendMessage(TBM_GETRANGEMIN)); }
    int GetRangeMax() const { return static_cast<int>(SendMessage(TBM_GETRANGEMAX)); }
    void SetRange(int min, int max, BOOL redraw = FALSE) {
        SendMessage(TBM_SETRANGEMIN, FALSE, min);
        SendMessage(TBM_SETRANGEMAX, static_cast<WPARAM>(redraw), max);
    }
};
