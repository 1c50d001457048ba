// view_geometry.h - where a zoomed image lies in a window
#pragma once

#include <cstdint>

/// A rectangle of a window's client area, in its pixels.
struct ClientRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ClientRect&) const = default;
};

/// Columns and lines of an image.
struct ImageRect {
    std::uint32_t left = 0;
    std::uint32_t top = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool operator==(const ImageRect&) const = default;
};

/// The visible part of an image, whole image pixels, and the place in the client area that they
/// fill; partly visible pixels at the edges reach beyond it.
struct VisiblePart {
    ImageRect image;
    ClientRect client;
};

/// Zoom and position of an image in a client area. An image smaller than the area is centred;
/// a larger one never leaves room beside it. Starts fitting the image in. One thread.
class ViewGeometry {
public:
    void SetImageSize(std::uint32_t width, std::uint32_t height);
    void SetClientSize(int width, int height);

    /// As large as fits, also when the area changes.
    void Fit();
    /// Client pixels per image pixel; what is at the anchor stays there. Kept between 1/32 and 32.
    void SetFactor(double wanted, int anchorX, int anchorY);
    /// The same around the middle of the client area.
    void SetFactor(double wanted) { SetFactor(wanted, clientWidth / 2, clientHeight / 2); }
    /// The next larger (positive) or smaller usual factors.
    void Step(int steps, int anchorX, int anchorY);
    void Step(int steps) { Step(steps, clientWidth / 2, clientHeight / 2); }
    /// Moves the image by client pixels.
    void Pan(int deltaX, int deltaY);

    bool IsFit() const { return fits; }
    bool IsEmpty() const;
    double Factor() const { return factor; }
    /// The whole image's place, rounded outwards; it may reach beyond the client area.
    ClientRect Place() const;
    VisiblePart Visible() const;
    /// The image pixel at a place of the client area; false beside the image.
    bool PixelAt(int clientX, int clientY, std::uint32_t& x, std::uint32_t& y) const;

private:
    void Refit();
    void Settle();

    std::uint32_t imageWidth = 0;
    std::uint32_t imageHeight = 0;
    int clientWidth = 0;
    int clientHeight = 0;
    bool fits = true;
    double factor = 1;
    double originX = 0; // of the image, in the client area
    double originY = 0;
};
