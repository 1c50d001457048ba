// window_pixels.h - what a window shows
#pragma once

#include <afxwin.h>

#include <cstdint>
#include <vector>

/// The pixels of a window as they stood when this was made.
class WindowPixels {
public:
    enum class Area { client, wholeWindow };

    explicit WindowPixels(HWND window, Area area = Area::client);

    int Width() const { return width; }
    int Height() const { return height; }
    COLORREF At(int x, int y) const;
    /// How many pixels of that colour `rect` holds.
    int Count(const RECT& rect, COLORREF color) const;

private:
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};
