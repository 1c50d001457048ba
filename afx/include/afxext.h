// afxext.h - form views
#pragma once

#include <afxwin.h>

/// A view made from a dialog template of this binary. The template is a child without frame and
/// not visible; keys in its controls belong to the dialog that the view stands in.
class CFormView : public CView {
    DECLARE_DYNAMIC(CFormView)
public:
    virtual void OnInitialUpdate() {}

protected:
    explicit CFormView(UINT templateId) : m_nIDTemplate(templateId) {}

    /// Makes the form in `rect` of `parent`; `style` adds WS_VISIBLE, the rest is the template's.
    BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                UINT id, CCreateContext* context = nullptr) override;
    void OnDraw(CDC*) override {}

    UINT m_nIDTemplate;

private:
    // FALSE leaves the focus where it is.
    LRESULT HandleInitDialog(WPARAM, LPARAM) { return FALSE; }
    DECLARE_MESSAGE_MAP()
};
