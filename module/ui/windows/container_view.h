// container_view.h - the pane that a value editor stands in
#pragma once

#include <afxwin.h>

class CContainerView : public CView {
    DECLARE_DYNCREATE(CContainerView)
public:
    /// Makes the visible pane in `rect` of `parent`.
    bool Create(const RECT& rect, CWnd* parent, UINT id);

protected:
    using CView::Create;
    BOOL PreCreateWindow(CREATESTRUCT& create) override;
    /// The owner deletes the view, not its window's end.
    void PostNcDestroy() override {}
    void OnDraw(CDC*) override {}

    BOOL OnEraseBkgnd(CDC* dc);

    DECLARE_MESSAGE_MAP()
};
