// afxext.h - declarations shaped like the Microsoft Foundation Classes: form views
#pragma once

#include <afxwin.h>

class CScrollView : public CView {
    DECLARE_DYNAMIC(CScrollView)
public:
    void SetScrollSizes(int mapMode, SIZE total);

protected:
    CScrollView();

    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnHScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    DECLARE_MESSAGE_MAP()
};

class CFormView : public CScrollView {
    DECLARE_DYNAMIC(CFormView)
protected:
    CFormView(LPCTSTR templateName);
    CFormView(UINT templateId);

    BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                UINT id, CCreateContext* context) override;
    void OnDraw(CDC* dc) override;
    DECLARE_MESSAGE_MAP()
};
