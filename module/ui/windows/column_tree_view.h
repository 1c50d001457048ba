// column_tree_view.h - a tree with columns
#pragma once

#include "ui/column_layout.h"
#include "ui/windows/column_tree_ctrl.h"

/// A header above a tree whose rows' texts are cut at tab characters into the header's columns.
/// Both scroll sideways together. User-interface thread only.
class CColumnTreeView : public CView {
    DECLARE_DYNAMIC(CColumnTreeView)
public:
    static constexpr UINT kHeaderId = 1;
    static constexpr UINT kTreeId = 2;

    CColumnTreeCtrl& GetTree() { return tree; }

protected:
    CColumnTreeView() = default;

    /// Whether a row is drawn in grey.
    virtual bool IsReadOnly(HTREEITEM) const { return false; }

    BOOL PreCreateWindow(CREATESTRUCT& create) override;
    /// The owner deletes the view, not its window's end.
    void PostNcDestroy() override {}
    void OnDraw(CDC*) override {}

    void SetColumnWidths(const std::array<int, 2>& widths);
    /// Places header, tree and the sideways scroll bar.
    void Layout();

    int OnCreate(LPCREATESTRUCT create);
    void OnSize(UINT type, int width, int height);
    void OnHScroll(UINT code, UINT position, CScrollBar* bar);
    void OnColumnChanged(NMHDR* notification, LRESULT* result);
    void OnCustomDraw(NMHDR* notification, LRESULT* result);

    DECLARE_MESSAGE_MAP()

    CHeaderCtrl header;
    bool widthsSet = false;

private:
    void DrawRow(CDC& dc, HTREEITEM item);
    int SumOfColumns() const;

    CColumnTreeCtrl tree;
    CFont headerFont;
    int headerHeight = 0;
    int columnsWidth = 0;
    pyxen::ColumnScroll scroll;
};
