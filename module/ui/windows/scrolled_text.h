// scrolled_text.h - a static text that scrolls where it does not fit
#pragma once

#include <afxcmn.h>

#include <string>

namespace pyxen {

/// A static text, broken at its width, with a vertical scroll bar as long as it is higher than its
/// place. Attached by SubclassDlgItem. User-interface thread only.
class CScrolledText : public CWnd {
    DECLARE_DYNAMIC(CScrolledText)
public:
    /// How high the text is when it is broken at that width, in pixels.
    int HeightAt(int width) const;
    /// The height of one line.
    int LineHeight() const;

protected:
    void OnPaint();
    BOOL OnEraseBkgnd(CDC* dc);
    void OnSize(UINT type, int width, int height);
    void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    LRESULT OnSetText(WPARAM wParam, LPARAM lParam);
    LRESULT OnNcHitTest(WPARAM wParam, LPARAM lParam);

    DECLARE_MESSAGE_MAP()

private:
    int MeasureHeight(const std::wstring& text, int width) const;
    /// Gives the scroll bar its range, which shows or hides it.
    void FitScrollBar();
    void ScrollTo(int position);
};

} // namespace pyxen
