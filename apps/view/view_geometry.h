// view_geometry.h - zoom and position of an image in a window
#pragma once

#include <cstdint>

/// A rectangle of a window's client area, in pixels.
struct ClientRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ClientRect&) const = default;
};

/// A rectangle of an image, in image pixels.
struct ImageRect {
    std::uint32_t left = 0;
    std::uint32_t top = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool operator==(const ImageRect&) const = default;
};

/// The visible part of an image in whole image pixels, and the rectangle that they cover in the
/// client area; pixels that are only partly visible extend beyond its edges.
struct VisiblePart {
    ImageRect image;
    ClientRect client;
};

/// Zoom and position of an image in a client area. An image smaller than the area is centred; a
/// larger one always reaches its edges. Initially the image is fitted to the area. One thread.
class ViewGeometry {
public:
    void SetImageSize(std::uint32_t width, std::uint32_t height);
    void SetClientSize(int width, int height);

    /// Makes the image as large as fits, and keeps it so when the area changes.
    void Fit();
    /// Sets the client pixels per image pixel, limited to 1/32 to 32; the point at the anchor stays
    /// in place.
    void SetFactor(double wanted, int anchorX, int anchorY);
    /// The same around the centre of the client area.
    void SetFactor(double wanted) { SetFactor(wanted, clientWidth / 2, clientHeight / 2); }
    /// Zooms to the next larger (positive) or smaller presets.
    void Step(int steps, int anchorX, int anchorY);
    void Step(int steps) { Step(steps, clientWidth / 2, clientHeight / 2); }
    /// Moves the image by client pixels.
    void Pan(int deltaX, int deltaY);

    bool IsFit() const { return fits; }
    bool IsEmpty() const;
    double Factor() const { return factor; }
    /// The rectangle of the whole image, rounded outwards; may extend beyond the client area.
    ClientRect Place() const;
    VisiblePart Visible() const;
    /// The image pixel at a position of the client area; false outside the image.
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
