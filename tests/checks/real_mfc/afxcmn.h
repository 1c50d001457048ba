// afxcmn.h - declarations shaped like the Microsoft Foundation Classes: common controls
#pragma once

#include <afxwin.h>

#include <commctrl.h>

class CImageList : public CObject {
    DECLARE_DYNCREATE(CImageList)
public:
    CImageList();

    BOOL Create(int width, int height, UINT flags, int initial, int grow);
    int Add(HICON icon);
    int Add(CBitmap* image, CBitmap* mask);
    int Add(CBitmap* image, COLORREF mask);
};

class CHeaderCtrl : public CWnd {
    DECLARE_DYNAMIC(CHeaderCtrl)
public:
    CHeaderCtrl();

    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetItemCount() const;
    int InsertItem(int position, HDITEM* item);
    BOOL GetItem(int position, HDITEM* item) const;
    BOOL SetItem(int position, HDITEM* item);
    BOOL GetItemRect(int index, LPRECT rect) const;
};

class CTreeCtrl : public CWnd {
    DECLARE_DYNAMIC(CTreeCtrl)
public:
    CTreeCtrl();

    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    HTREEITEM InsertItem(LPTVINSERTSTRUCT insert);
    HTREEITEM InsertItem(LPCTSTR text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST);
    BOOL DeleteItem(HTREEITEM item);
    BOOL GetItem(TVITEM* item) const;
    BOOL SetItemText(HTREEITEM item, LPCTSTR text);
    DWORD_PTR GetItemData(HTREEITEM item) const;
    UINT GetItemState(HTREEITEM item, UINT mask) const;
    BOOL GetItemRect(HTREEITEM item, LPRECT rect, BOOL textOnly) const;
    HTREEITEM GetNextItem(HTREEITEM item, UINT code) const;
    HTREEITEM GetRootItem() const;
    HTREEITEM GetChildItem(HTREEITEM item) const;
    HTREEITEM GetParentItem(HTREEITEM item) const;
    HTREEITEM GetSelectedItem() const;
    HTREEITEM GetNextSiblingItem(HTREEITEM item) const;
    BOOL ItemHasChildren(HTREEITEM item) const;
    BOOL SelectItem(HTREEITEM item);
    BOOL Expand(HTREEITEM item, UINT code);
    BOOL EnsureVisible(HTREEITEM item);
    BOOL SortChildren(HTREEITEM item);
    HTREEITEM HitTest(CPoint point, UINT* flags = nullptr) const;
    HTREEITEM HitTest(TVHITTESTINFO* info) const;
};

class CListCtrl : public CWnd {
    DECLARE_DYNAMIC(CListCtrl)
public:
    CListCtrl();

    virtual BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    DWORD GetExtendedStyle() const;
    DWORD SetExtendedStyle(DWORD style);
    CHeaderCtrl* GetHeaderCtrl();
    CImageList* SetImageList(CImageList* imageList, int kind);
    int InsertColumn(int index, const LVCOLUMN* column);
    int InsertColumn(int index, LPCTSTR heading, int format = LVCFMT_LEFT, int width = -1,
                     int subItem = -1);
    int GetColumnWidth(int index) const;
    BOOL DeleteColumn(int index);
    int InsertItem(const LVITEM* item);
    int InsertItem(int index, LPCTSTR text);
    int InsertItem(int index, LPCTSTR text, int image);
    BOOL DeleteItem(int index);
    int GetItemCount() const;
    int GetNextItem(int index, int flags) const;
    int FindItem(LVFINDINFO* wanted, int start = -1) const;
    DWORD_PTR GetItemData(int index) const;
    BOOL SetItemData(int index, DWORD_PTR data);
    BOOL SetItemText(int index, int column, LPCTSTR text);
    BOOL SetItemState(int index, LVITEM* item);
    BOOL SetItemState(int index, UINT state, UINT mask);
    BOOL EnsureVisible(int index, BOOL partialOk);
};
