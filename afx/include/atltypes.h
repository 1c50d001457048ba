// atltypes.h - points, sizes and rectangles with operations
#pragma once

#include <windows.h>

class CSize : public tagSIZE {
public:
    CSize() : tagSIZE{0, 0} {}
    CSize(int width, int height) : tagSIZE{width, height} {}
    CSize(SIZE size) : tagSIZE(size) {}
};

class CPoint : public tagPOINT {
public:
    CPoint() : tagPOINT{0, 0} {}
    CPoint(int pointX, int pointY) : tagPOINT{pointX, pointY} {}
    CPoint(POINT point) : tagPOINT(point) {}
    /// Unpacks the signed coordinates of a mouse message.
    explicit CPoint(LPARAM packed)
        : tagPOINT{static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))} {}

    void Offset(int dx, int dy) {
        x += dx;
        y += dy;
    }
};

class CRect : public tagRECT {
public:
    CRect() : tagRECT{0, 0, 0, 0} {}
    CRect(int leftEdge, int topEdge, int rightEdge, int bottomEdge)
        : tagRECT{leftEdge, topEdge, rightEdge, bottomEdge} {}
    CRect(const RECT& rect) : tagRECT(rect) {}
    CRect(POINT point, SIZE size)
        : tagRECT{point.x, point.y, point.x + size.cx, point.y + size.cy} {}

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
    BOOL PtInRect(POINT point) const { return ::PtInRect(this, point); }
    void SetRect(int leftEdge, int topEdge, int rightEdge, int bottomEdge) {
        ::SetRect(this, leftEdge, topEdge, rightEdge, bottomEdge);
    }
    void SetRectEmpty() { ::SetRectEmpty(this); }
    void InflateRect(int dx, int dy) { ::InflateRect(this, dx, dy); }
    void DeflateRect(int dx, int dy) { ::InflateRect(this, -dx, -dy); }
    void OffsetRect(int dx, int dy) { ::OffsetRect(this, dx, dy); }
    BOOL IntersectRect(LPCRECT first, LPCRECT second) {
        return ::IntersectRect(this, first, second);
    }

    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
};
