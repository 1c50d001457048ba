// tree_view_fixture.h - an attribute tree in the test's window
#pragma once

#include "res/resource.h"
#include "test_host.h"
#include "ui/windows/attr_tree_view.h"

#include <memory>
#include <set>
#include <vector>

class TreeViewFixture : public TestHost,
                        public CAttrTreeView::IObserver,
                        public CColumnTreeCtrl::INotifyCallback {
protected:
    TreeViewFixture();

    void AttrSelected(HTREEITEM item) override { selected.push_back(item); }
    bool IsAttrReadOnly(HTREEITEM item) const override { return readOnly.count(item) != 0; }
    void OnTreeScrolled(int value) override { scrolled.push_back(value); }
    void OnTreeResized(int extent) override { resized.push_back(extent); }
    void OnTreeExpanded() override { ++expanded; }

    /// Makes the view with that client width (an extra pixel goes) and the rows below.
    void Make(int width, int height);
    HTREEITEM Insert(const wchar_t* text, HTREEITEM parent);
    /// Adds that many rows to `parent`.
    void InsertMany(int count, HTREEITEM parent);

    CColumnTreeCtrl& Tree() { return view->GetTree(); }
    HWND Header() { return GetDlgItem(*view, 1); }
    int ColumnWidth(int index);
    CRect ColumnRect(int index);
    /// A window's rectangle in the view's client area.
    CRect PlaceOf(HWND window);
    CRect RowRect(HTREEITEM item, bool textOnly);
    /// The width of a text in the tree's font.
    int TextWidth(const wchar_t* text);
    SCROLLINFO ScrollBar(HWND window, int bar);
    void ScrollSideways(UINT code, UINT position = 0);

    std::unique_ptr<CAttrTreeView> view;
    HTREEITEM root = nullptr;
    HTREEITEM category = nullptr; ///< holds width and height
    HTREEITEM width = nullptr;
    HTREEITEM height = nullptr;

    std::vector<HTREEITEM> selected;
    std::set<HTREEITEM> readOnly;
    std::vector<int> scrolled;
    std::vector<int> resized;
    int expanded = 0;
};
