// scrolled_text.cpp - a static text that scrolls where it does not fit
#include "ui/windows/scrolled_text.h"

#include "ui/windows/wide_text.h"

namespace pyxen {

namespace {

constexpr UINT kTextFormat = DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;
constexpr int kWheelLines = 3;

} // namespace

IMPLEMENT_DYNAMIC(CScrolledText, CWnd)

BEGIN_MESSAGE_MAP(CScrolledText, CWnd)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_VSCROLL()
ON_WM_MOUSEWHEEL()
ON_MESSAGE(WM_SETTEXT, &CScrolledText::OnSetText)
ON_MESSAGE(WM_NCHITTEST, &CScrolledText::OnNcHitTest)
END_MESSAGE_MAP()

int CScrolledText::MeasureHeight(const std::wstring& text, int width) const {
    CClientDC dc(const_cast<CScrolledText*>(this));
    CFont* const before = dc.SelectObject(GetFont());
    CRect rect(0, 0, width, 0);
    dc.DrawText(text.data(), static_cast<int>(text.size()), rect, DT_CALCRECT | kTextFormat);
    dc.SelectObject(before);
    return rect.Height();
}

int CScrolledText::HeightAt(int width) const {
    return MeasureHeight(WindowText(m_hWnd), width);
}

int CScrolledText::LineHeight() const {
    return MeasureHeight(L"A", 0);
}

void CScrolledText::OnPaint() {
    CPaintDC dc(this);
    const auto background = reinterpret_cast<HBRUSH>(
        ::SendMessage(::GetParent(m_hWnd), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc.m_hDC),
                      reinterpret_cast<LPARAM>(m_hWnd)));
    CRect client;
    GetClientRect(client);
    ::FillRect(dc, client, background);
    dc.SetBkMode(TRANSPARENT);
    CFont* const before = dc.SelectObject(GetFont());
    const std::wstring text = WindowText(m_hWnd);
    CRect place(0, -GetScrollPos(SB_VERT), client.right, client.bottom);
    dc.DrawText(text.data(), static_cast<int>(text.size()), place, kTextFormat);
    dc.SelectObject(before);
}

// Painting covers everything.
BOOL CScrolledText::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CScrolledText::OnSize(UINT type, int width, int height) {
    CWnd::OnSize(type, width, height);
    FitScrollBar();
}

// The bar takes width from the text, which may then break into more lines.
void CScrolledText::FitScrollBar() {
    CRect whole;
    GetWindowRect(whole);
    int height = HeightAt(whole.Width());
    if (height > whole.Height()) {
        height = HeightAt(whole.Width() - ::GetSystemMetrics(SM_CXVSCROLL));
    }
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMax = height > whole.Height() ? height - 1 : 0;
    info.nPage = static_cast<UINT>(whole.Height());
    SetScrollInfo(SB_VERT, &info);
    Invalidate(FALSE);
}

void CScrolledText::ScrollTo(int position) {
    const int before = GetScrollPos(SB_VERT);
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_POS; // moved into the range
    info.nPos = position;
    SetScrollInfo(SB_VERT, &info);
    if (GetScrollPos(SB_VERT) != before) {
        Invalidate(FALSE);
    }
}

void CScrolledText::OnVScroll(UINT code, UINT position, CScrollBar*) {
    SCROLLINFO info = {};
    GetScrollInfo(SB_VERT, &info);
    const int page = static_cast<int>(info.nPage);
    switch (code) {
    case SB_LINEUP:
        ScrollTo(info.nPos - LineHeight());
        break;
    case SB_LINEDOWN:
        ScrollTo(info.nPos + LineHeight());
        break;
    case SB_PAGEUP:
        ScrollTo(info.nPos - page);
        break;
    case SB_PAGEDOWN:
        ScrollTo(info.nPos + page);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        ScrollTo(static_cast<int>(position));
        break;
    case SB_TOP:
        ScrollTo(info.nMin);
        break;
    case SB_BOTTOM:
        ScrollTo(info.nMax);
        break;
    default:
        break;
    }
}

BOOL CScrolledText::OnMouseWheel(UINT, short delta, CPoint) {
    ScrollTo(GetScrollPos(SB_VERT) - delta * kWheelLines * LineHeight() / WHEEL_DELTA);
    return TRUE;
}

LRESULT CScrolledText::OnSetText(WPARAM wParam, LPARAM lParam) {
    const LRESULT result = DefWindowProc(WM_SETTEXT, wParam, lParam);
    ScrollTo(0);
    FitScrollBar();
    return result;
}

// The mouse passes through a static text, but must reach the scroll bar.
LRESULT CScrolledText::OnNcHitTest(WPARAM wParam, LPARAM lParam) {
    return ::DefWindowProc(m_hWnd, WM_NCHITTEST, wParam, lParam);
}

} // namespace pyxen
