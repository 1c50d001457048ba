// atltypes.h - declarations shaped like those of Visual C++: points, sizes and rectangles
#pragma once

#include <windows.h>

class CPoint;

class CSize : public tagSIZE {
public:
    CSize();
    CSize(int width, int height);
    CSize(SIZE size);
    CSize(POINT point);
    CSize(DWORD packed);
};

class CPoint : public tagPOINT {
public:
    CPoint();
    CPoint(int pointX, int pointY);
    CPoint(POINT point);
    CPoint(SIZE size);
    CPoint(LPARAM packed);
};

class CRect : public tagRECT {
public:
    CRect();
    CRect(int leftEdge, int topEdge, int rightEdge, int bottomEdge);
    CRect(const RECT& rect);
    CRect(LPCRECT rect);
    CRect(POINT point, SIZE size);
    CRect(POINT topLeft, POINT bottomRight);

    int Width() const;
    int Height() const;
    CSize Size() const;
    BOOL IntersectRect(LPCRECT first, LPCRECT second);
    operator LPRECT();
    operator LPCRECT() const;
};
