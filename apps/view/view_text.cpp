// view_text.cpp - texts of the viewer's status line
#include "apps/view/view_text.h"

#include "apps/common/demosaic.h"
#include "apps/common/picture.h"

#include <cstdio>

namespace {

std::string Fixed(double value, int digits) {
    char text[48];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

std::string Counted(std::uint64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

std::string PixelText(const ImageLayout& layout, const void* data, std::uint32_t x,
                      std::uint32_t y) {
    if (x >= layout.width || y >= layout.height) {
        return {};
    }
    ImageLayout one = layout;
    one.width = 1;
    one.height = 1;
    const auto offset = (std::uint64_t{y} * layout.width + x) * one.Size();
    const Picture pixel = MakePicture(one, static_cast<const std::uint8_t*>(data) + offset, false);
    std::string text = "(" + std::to_string(x) + ", " + std::to_string(y) + ")";
    if (layout.colorCoding == MVCC_RAW_CFA) {
        text += std::string("  ") + FilterLetter(layout, x, y);
        return text + " " + std::to_string(pixel.samples[0]);
    }
    if (pixel.channels == 1) {
        return text + "  " + std::to_string(pixel.samples[0]);
    }
    constexpr const char* kNames[] = {"R", "G", "B", "A"};
    for (std::uint32_t channel = 0; channel < pixel.channels; ++channel) {
        text += std::string("  ") + kNames[channel] + " " + std::to_string(pixel.samples[channel]);
    }
    return text;
}

std::string FormatText(const ImageLayout& layout) {
    if (layout.width == 0 || layout.height == 0) {
        return {};
    }
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + "  " +
           ColorCodingName(layout.colorCoding) + "  " + std::to_string(layout.bits) + " bit";
}

std::string ZoomText(double factor, bool isFit) {
    const double percent = factor * 100;
    const std::string text = Fixed(percent, percent < 10 ? 1 : 0) + " %";
    return isFit ? "Fit (" + text + ")" : text;
}

std::string RateText(double rate) {
    return Fixed(rate, 1) + " frames/s";
}

std::string ErrorCountText(std::uint64_t errors) {
    return errors == 0 ? "no errors" : Counted(errors, "error");
}

std::string FrameCountText(std::uint64_t frames) {
    return Counted(frames, "frame");
}
