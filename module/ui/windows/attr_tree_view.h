// attr_tree_view.h - the tree of attributes and their values
#pragma once

#include "ui/windows/column_tree_view.h"

class CAttrTreeView : public CColumnTreeView {
    DECLARE_DYNCREATE(CAttrTreeView)
public:
    class IObserver {
    public:
        /// The user selected a row without children.
        virtual void AttrSelected(HTREEITEM item) = 0;
        /// Whether a row is to be drawn as read-only.
        virtual bool IsAttrReadOnly(HTREEITEM item) const = 0;

    protected:
        ~IObserver() = default;
    };

    /// Makes the view in `rect`, shortened by one pixel to the right and bottom, with its two
    /// columns and the root row "/". False when there is no root row.
    bool Create(IObserver* newObserver, const RECT& rect, CWnd* parent, UINT id);
    /// Divides the view's present width between the columns, as its first size did.
    void FitColumns();

protected:
    using CColumnTreeView::Create;
    bool IsReadOnly(HTREEITEM item) const override;

    void OnSize(UINT type, int width, int height);
    void OnSelectionChanged(NMHDR* notification, LRESULT* result);

    DECLARE_MESSAGE_MAP()

private:
    void SetWidthsOnce(int width);

    IObserver* observer = nullptr;
};
