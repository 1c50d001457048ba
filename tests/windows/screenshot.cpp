#include "screenshot.h"

#include "window_pixels.h"

#include <gtest/gtest.h>
#include <lodepng.h>

#include <cstdlib>
#include <vector>

void SaveScreenshot(HWND window, const std::string& name) {
    const char* const directory = std::getenv("MIVORA_SCREENSHOTS");
    if (!directory) {
        return;
    }
    const WindowPixels pixels(window, WindowPixels::Area::wholeWindow);
    std::vector<unsigned char> bytes;
    for (int y = 0; y < pixels.Height(); ++y) {
        for (int x = 0; x < pixels.Width(); ++x) {
            const COLORREF color = pixels.At(x, y);
            bytes.insert(bytes.end(), {GetRValue(color), GetGValue(color), GetBValue(color)});
        }
    }
    EXPECT_EQ(lodepng::encode(directory + ("/" + name) + ".png", bytes,
                              static_cast<unsigned>(pixels.Width()),
                              static_cast<unsigned>(pixels.Height()), LCT_RGB),
              0u);
}
