#include "window_pixels.h"

#include <algorithm>

WindowPixels::WindowPixels(HWND window, Area area) {
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT rect{};
    if (area == Area::client) {
        GetClientRect(window, &rect);
    } else {
        GetWindowRect(window, &rect);
    }
    width = rect.right - rect.left;
    height = rect.bottom - rect.top;
    pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const HDC from = area == Area::client ? GetDC(window) : GetWindowDC(window);
    const HDC memory = CreateCompatibleDC(from);
    const HBITMAP bitmap = CreateCompatibleBitmap(from, width, height);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, from, 0, 0, SRCCOPY);
    SelectObject(memory, before);
    BITMAPINFO layout{};
    layout.bmiHeader.biSize = sizeof(layout.bmiHeader);
    layout.bmiHeader.biWidth = width;
    layout.bmiHeader.biHeight = -height;
    layout.bmiHeader.biPlanes = 1;
    layout.bmiHeader.biBitCount = 32;
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &layout, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, from);
}

COLORREF WindowPixels::At(int x, int y) const {
    const std::uint32_t pixel =
        pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x)];
    return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
}

int WindowPixels::Count(const RECT& rect, COLORREF color) const {
    int count = 0;
    for (int y = std::max<int>(rect.top, 0); y < std::min<int>(rect.bottom, height); ++y) {
        for (int x = std::max<int>(rect.left, 0); x < std::min<int>(rect.right, width); ++x) {
            count += At(x, y) == color;
        }
    }
    return count;
}
