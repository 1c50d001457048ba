// display_scale.cpp - sizes and fonts for the display
#include "apps/view/windows/display_scale.h"

namespace {

HFONT MakeDisplayFont() {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

int DisplayDpi() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
}

} // namespace

int ScaledToDisplay(int length) {
    static const int dpi = DisplayDpi();
    return MulDiv(length, dpi, 96);
}

HFONT DisplayFont() {
    static const HFONT font = MakeDisplayFont();
    return font;
}
