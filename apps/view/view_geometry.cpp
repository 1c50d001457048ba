// view_geometry.cpp - zoom and position of an image in a window
#include "apps/view/view_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kMinFactor = 1.0 / 32;
constexpr double kMaxFactor = 32;
constexpr std::array<double, 21> kPresets = {
    1.0 / 32, 1.0 / 24, 1.0 / 16, 1.0 / 12, 1.0 / 8, 1.0 / 6, 1.0 / 4, 1.0 / 3, 1.0 / 2, 2.0 / 3, 1,
    1.5,      2,        3,        4,        6,       8,       12,      16,      24,      32};
/// Factors this close to a preset count as equal to it.
constexpr double kNear = 1e-6;

double SettledOrigin(double origin, double scaled, int client) {
    return scaled <= client ? std::floor((client - scaled) / 2)
                            : std::clamp(origin, client - scaled, 0.0);
}

/// The range of image pixels that are visible in one direction.
void Visible(double origin, double factor, int client, std::uint32_t image, std::uint32_t& first,
             std::uint32_t& count) {
    const double begin = std::max(0.0, std::floor((0 - origin) / factor));
    const double end = std::min<double>(image, std::ceil((client - origin) / factor));
    first = static_cast<std::uint32_t>(begin);
    count = end > begin ? static_cast<std::uint32_t>(end - begin) : 0;
}

int Rounded(double value) {
    return static_cast<int>(std::lround(value));
}

} // namespace

void ViewGeometry::SetImageSize(std::uint32_t width, std::uint32_t height) {
    if (width == imageWidth && height == imageHeight) {
        return;
    }
    imageWidth = width;
    imageHeight = height;
    Refit();
}

void ViewGeometry::SetClientSize(int width, int height) {
    // Keep the centre of the area in place.
    originX += (width - clientWidth) / 2.0;
    originY += (height - clientHeight) / 2.0;
    clientWidth = width;
    clientHeight = height;
    Refit();
}

void ViewGeometry::Fit() {
    fits = true;
    Refit();
}

void ViewGeometry::SetFactor(double wanted, int anchorX, int anchorY) {
    const double next = std::clamp(wanted, kMinFactor, kMaxFactor);
    originX = anchorX - (anchorX - originX) / factor * next;
    originY = anchorY - (anchorY - originY) / factor * next;
    factor = next;
    fits = false;
    Settle();
}

void ViewGeometry::Step(int steps, int anchorX, int anchorY) {
    double next = factor;
    for (; steps > 0; --steps) {
        const auto* const larger = std::upper_bound(kPresets.begin(), kPresets.end(), next + kNear);
        next = larger == kPresets.end() ? kMaxFactor : *larger;
    }
    for (; steps < 0; ++steps) {
        const auto* const notSmaller =
            std::lower_bound(kPresets.begin(), kPresets.end(), next - kNear);
        next = notSmaller == kPresets.begin() ? kMinFactor : *(notSmaller - 1);
    }
    SetFactor(next, anchorX, anchorY);
}

void ViewGeometry::Pan(int deltaX, int deltaY) {
    originX += deltaX;
    originY += deltaY;
    Settle();
}

bool ViewGeometry::IsEmpty() const {
    return imageWidth == 0 || imageHeight == 0 || clientWidth <= 0 || clientHeight <= 0;
}

ClientRect ViewGeometry::Place() const {
    const int left = static_cast<int>(std::floor(originX));
    const int top = static_cast<int>(std::floor(originY));
    const int right = static_cast<int>(std::ceil(originX + imageWidth * factor));
    const int bottom = static_cast<int>(std::ceil(originY + imageHeight * factor));
    return {left, top, right - left, bottom - top};
}

VisiblePart ViewGeometry::Visible() const {
    VisiblePart part;
    if (IsEmpty()) {
        return part;
    }
    ::Visible(originX, factor, clientWidth, imageWidth, part.image.left, part.image.width);
    ::Visible(originY, factor, clientHeight, imageHeight, part.image.top, part.image.height);
    part.client.left = Rounded(originX + part.image.left * factor);
    part.client.top = Rounded(originY + part.image.top * factor);
    const std::uint32_t right = part.image.left + part.image.width;
    const std::uint32_t bottom = part.image.top + part.image.height;
    part.client.width = Rounded(originX + right * factor) - part.client.left;
    part.client.height = Rounded(originY + bottom * factor) - part.client.top;
    return part;
}

bool ViewGeometry::PixelAt(int clientX, int clientY, std::uint32_t& x, std::uint32_t& y) const {
    if (IsEmpty()) {
        return false;
    }
    // The centre of the client pixel, which lies in exactly one image pixel.
    const double column = std::floor((clientX + 0.5 - originX) / factor);
    const double line = std::floor((clientY + 0.5 - originY) / factor);
    if (column < 0 || line < 0 || column >= imageWidth || line >= imageHeight) {
        return false;
    }
    x = static_cast<std::uint32_t>(column);
    y = static_cast<std::uint32_t>(line);
    return true;
}

void ViewGeometry::Refit() {
    if (fits && !IsEmpty()) {
        factor = std::min({static_cast<double>(clientWidth) / imageWidth,
                           static_cast<double>(clientHeight) / imageHeight, kMaxFactor});
    }
    Settle();
}

void ViewGeometry::Settle() {
    if (IsEmpty()) {
        return;
    }
    originX = SettledOrigin(originX, imageWidth * factor, clientWidth);
    originY = SettledOrigin(originY, imageHeight * factor, clientHeight);
}
