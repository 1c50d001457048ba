// gdi.cpp - device contexts and drawing objects
#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNAMIC(CGdiObject, CObject)
IMPLEMENT_DYNAMIC(CFont, CGdiObject)
IMPLEMENT_DYNAMIC(CBitmap, CGdiObject)
IMPLEMENT_DYNAMIC(CBrush, CGdiObject)
IMPLEMENT_DYNAMIC(CDC, CObject)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)

BOOL CGdiObject::Attach(HGDIOBJ object) {
    if (m_hObject || !object) {
        return FALSE;
    }
    m_hObject = object;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach() {
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject() {
    return m_hObject && ::DeleteObject(Detach());
}

CFont* CFont::FromHandle(HFONT font) {
    return AfxThreadState::Get().Temporary<CFont>(font);
}

CBitmap* CBitmap::FromHandle(HBITMAP bitmap) {
    return AfxThreadState::Get().Temporary<CBitmap>(bitmap);
}

CBrush* CBrush::FromHandle(HBRUSH brush) {
    return AfxThreadState::Get().Temporary<CBrush>(brush);
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height) {
    return Attach(::CreateCompatibleBitmap(dc->m_hDC, width, height));
}

CDC* CDC::FromHandle(HDC dc) {
    return AfxThreadState::Get().Temporary<CDC>(dc);
}

BOOL CDC::Attach(HDC dc) {
    if (m_hDC || !dc) {
        return FALSE;
    }
    m_hDC = dc;
    return TRUE;
}

HDC CDC::Detach() {
    return std::exchange(m_hDC, nullptr);
}

BOOL CDC::DeleteDC() {
    return m_hDC && ::DeleteDC(Detach());
}

CFont* CDC::SelectObject(CFont* font) {
    return CFont::FromHandle(static_cast<HFONT>(::SelectObject(m_hDC, *font)));
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    return CBitmap::FromHandle(static_cast<HBITMAP>(::SelectObject(m_hDC, *bitmap)));
}

CBrush* CDC::SelectObject(CBrush* brush) {
    return CBrush::FromHandle(static_cast<HBRUSH>(::SelectObject(m_hDC, *brush)));
}

CSize CDC::GetTextExtent(LPCTSTR text, int length) const {
    CSize size;
    ::GetTextExtentPoint32(m_hDC, text, length, &size);
    return size;
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF color) {
    ::SetBkColor(m_hDC, color);
    ::ExtTextOut(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
}

CClientDC::CClientDC(CWnd* wnd) : m_hWnd(wnd->m_hWnd) {
    Attach(::GetDC(m_hWnd));
}

CClientDC::~CClientDC() {
    ::ReleaseDC(m_hWnd, Detach());
}

CPaintDC::CPaintDC(CWnd* wnd) : m_hWnd(wnd->m_hWnd) {
    Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC() {
    ::EndPaint(m_hWnd, &m_ps);
    Detach();
}
