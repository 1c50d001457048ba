// container_view.cpp - the pane that a value editor stands in
#include "ui/windows/container_view.h"

IMPLEMENT_DYNCREATE(CContainerView, CView)

BEGIN_MESSAGE_MAP(CContainerView, CView)
ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

bool CContainerView::Create(const RECT& rect, CWnd* parent, UINT id) {
    return CView::Create(nullptr, TEXT("cntview"), WS_CHILD | WS_VISIBLE, rect, parent, id);
}

// Keys that move the focus find the editor's controls inside.
BOOL CContainerView::PreCreateWindow(CREATESTRUCT& create) {
    create.dwExStyle |= WS_EX_CONTROLPARENT;
    create.style |= WS_CLIPCHILDREN;
    return CView::PreCreateWindow(create);
}

BOOL CContainerView::OnEraseBkgnd(CDC* dc) {
    CRect client;
    GetClientRect(client);
    dc->FillSolidRect(client, ::GetSysColor(COLOR_BTNFACE));
    return TRUE;
}
