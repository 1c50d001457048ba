// afxext.h - form views
#pragma once

#include <afxwin.h>

/// A view created from a dialog template of this binary. The template must describe an invisible
/// child window without a border and without a window class of its own. Keys in its controls are
/// handled by the enclosing dialog.
class CFormView : public CView {
    DECLARE_DYNAMIC(CFormView)
public:
    virtual void OnInitialUpdate() {}
    /// Does nothing: forms of this library never scroll.
    void SetScrollSizes(int, SIZE) {}

protected:
    explicit CFormView(UINT templateId) : m_nIDTemplate(templateId) {}

    /// Creates the form at `rect` in `parent`. Of `style` only WS_VISIBLE is used; class, title and
    /// all other styles are those of the template. FALSE on failure.
    BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                UINT id, CCreateContext* context = nullptr) override;
    void OnDraw(CDC*) override {}

    UINT m_nIDTemplate;

private:
    // FALSE keeps the system from setting the focus.
    LRESULT HandleInitDialog(WPARAM, LPARAM) { return FALSE; }
    DECLARE_MESSAGE_MAP()
};
