// afxgdi_.h - owners of device contexts, fonts, bitmaps and brushes
//
// Included by afxwin.h. FromHandle and SelectObject return pointers to temporary objects, which are
// valid until the current message has been handled.
#pragma once

#include <afx.h>
#include <atltypes.h>

class CWnd;

/// Owns a GDI object and deletes it in its destructor.
class CGdiObject : public CObject {
    DECLARE_DYNAMIC(CGdiObject)
public:
    HGDIOBJ m_hObject = nullptr;

    CGdiObject() = default;
    ~CGdiObject() override { DeleteObject(); }

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    /// Takes ownership of `object`. FALSE when it is null or when an object is owned already.
    BOOL Attach(HGDIOBJ object);
    /// Gives up ownership and returns the object.
    HGDIOBJ Detach();
    BOOL DeleteObject();
};

class CFont : public CGdiObject {
    DECLARE_DYNAMIC(CFont)
public:
    static CFont* FromHandle(HFONT font);
    BOOL CreateFontIndirect(const LOGFONT* font) { return Attach(::CreateFontIndirect(font)); }
    int GetLogFont(LOGFONT* font) { return ::GetObject(m_hObject, sizeof(LOGFONT), font); }
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
};

class CBitmap : public CGdiObject {
    DECLARE_DYNAMIC(CBitmap)
public:
    static CBitmap* FromHandle(HBITMAP bitmap);
    BOOL CreateCompatibleBitmap(class CDC* dc, int width, int height);
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
};

class CBrush : public CGdiObject {
    DECLARE_DYNAMIC(CBrush)
public:
    static CBrush* FromHandle(HBRUSH brush);
    BOOL CreateSolidBrush(COLORREF color) { return Attach(::CreateSolidBrush(color)); }
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
};

/// Owns a device context created by CreateCompatibleDC and deletes it in its destructor. The
/// derived classes release the device context of a window instead.
class CDC : public CObject {
    DECLARE_DYNAMIC(CDC)
public:
    HDC m_hDC = nullptr;

    CDC() = default;
    ~CDC() override { DeleteDC(); }

    static CDC* FromHandle(HDC dc);
    BOOL Attach(HDC dc);
    HDC Detach();
    HDC GetSafeHdc() const { return m_hDC; }
    operator HDC() const { return m_hDC; }
    BOOL CreateCompatibleDC(CDC* dc) {
        return Attach(::CreateCompatibleDC(dc ? dc->m_hDC : nullptr));
    }
    BOOL DeleteDC();

    CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    CBrush* SelectObject(CBrush* brush);
    int SaveDC() { return ::SaveDC(m_hDC); }
    BOOL RestoreDC(int saved) { return ::RestoreDC(m_hDC, saved); }

    COLORREF SetTextColor(COLORREF color) { return ::SetTextColor(m_hDC, color); }
    COLORREF SetBkColor(COLORREF color) { return ::SetBkColor(m_hDC, color); }
    int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
    COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }

    CSize GetTextExtent(LPCTSTR text, int length) const;
    int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format) {
        return ::DrawText(m_hDC, text, length, rect, format);
    }
    BOOL BitBlt(int x, int y, int width, int height, CDC* from, int fromX, int fromY, DWORD code) {
        return ::BitBlt(m_hDC, x, y, width, height, from->m_hDC, fromX, fromY, code);
    }
    void FillRect(LPCRECT rect, CBrush* brush) { ::FillRect(m_hDC, rect, *brush); }
    /// Fills `rect` and sets the background colour to `color`.
    void FillSolidRect(LPCRECT rect, COLORREF color);
    int GetClipBox(LPRECT rect) const { return ::GetClipBox(m_hDC, rect); }
    int IntersectClipRect(LPCRECT rect) {
        return ::IntersectClipRect(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
    }
    int ExcludeClipRect(LPCRECT rect) {
        return ::ExcludeClipRect(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
    }
    int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hDC, index); }
};

/// Device context of a window's client area.
class CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)
public:
    explicit CClientDC(CWnd* wnd);
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

/// Device context for painting a window in its WM_PAINT handler.
class CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)
public:
    PAINTSTRUCT m_ps = {};

    explicit CPaintDC(CWnd* wnd);
    ~CPaintDC() override;

protected:
    HWND m_hWnd;
};
