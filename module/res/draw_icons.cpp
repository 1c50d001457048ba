// draw_icons.cpp - draws the module's icons
//
// A program of its own, run by hand after a change here: draw_icons DIRECTORY writes the .ico files
// that dialogs.rc names. What it writes depends on nothing but this source.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

struct Color {
    double red, green, blue;
};

constexpr Color kGreen = {0.10, 0.55, 0.20};
constexpr Color kBlue = {0.10, 0.36, 0.72};
constexpr Color kSteel = {0.25, 0.30, 0.38};
constexpr Color kLens = {0.72, 0.84, 0.95};
constexpr Color kRed = {0.78, 0.15, 0.12};
constexpr Color kWhite = {1.0, 1.0, 1.0};

/// A picture of 16 by 16 units at any number of pixels, with coverage from 8 by 8 samples a pixel.
class Canvas {
public:
    explicit Canvas(int pixels) : size(pixels), samples(Index(Wide(), 0)) {}

    using Shape = std::function<bool(double x, double y)>;

    void Fill(const Shape& inside, Color color) {
        const double unit = 16.0 / Wide();
        for (int row = 0; row < Wide(); ++row) {
            for (int column = 0; column < Wide(); ++column) {
                if (inside((column + 0.5) * unit, (row + 0.5) * unit)) {
                    Sample& sample = samples[Index(row, column)];
                    sample = {color, true};
                }
            }
        }
    }

    /// Blue, green, red and opacity of a pixel.
    std::array<std::uint8_t, 4> Pixel(int x, int y) const {
        double red = 0, green = 0, blue = 0, covered = 0;
        for (int row = y * kFine; row < (y + 1) * kFine; ++row) {
            for (int column = x * kFine; column < (x + 1) * kFine; ++column) {
                const Sample& sample = samples[Index(row, column)];
                if (sample.set) {
                    red += sample.color.red;
                    green += sample.color.green;
                    blue += sample.color.blue;
                    covered += 1;
                }
            }
        }
        const double count = std::max(covered, 1.0);
        return {Byte(blue / count), Byte(green / count), Byte(red / count),
                Byte(covered / (kFine * kFine))};
    }

private:
    static constexpr int kFine = 8;
    struct Sample {
        Color color;
        bool set;
    };

    int Wide() const { return size * kFine; }
    std::size_t Index(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(Wide()) +
               static_cast<std::size_t>(column);
    }
    static std::uint8_t Byte(double part) {
        return static_cast<std::uint8_t>(std::lround(part * 255.0));
    }

    const int size;
    std::vector<Sample> samples;
};

// ---- shapes ----

struct Point {
    double x, y;
};

Canvas::Shape Line(const std::vector<Point>& points, double width) {
    return [points, width](double x, double y) {
        for (std::size_t index = 1; index < points.size(); ++index) {
            const Point from = points[index - 1], to = points[index];
            const double dx = to.x - from.x, dy = to.y - from.y;
            const double along =
                std::clamp(((x - from.x) * dx + (y - from.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
            if (std::hypot(x - from.x - along * dx, y - from.y - along * dy) <= width / 2) {
                return true;
            }
        }
        return false;
    };
}

Canvas::Shape Box(double left, double top, double right, double bottom, double radius) {
    return [=](double x, double y) {
        const double nearX = std::clamp(x, left + radius, right - radius);
        const double nearY = std::clamp(y, top + radius, bottom - radius);
        return std::hypot(x - nearX, y - nearY) <= radius;
    };
}

Canvas::Shape Disc(double centerX, double centerY, double radius) {
    return [=](double x, double y) {
        return std::hypot(x - centerX, y - centerY) <= radius;
    };
}

/// Part of a ring, from one angle to another in degrees, clockwise from the right.
Canvas::Shape Arc(double centerX, double centerY, double radius, double width, double from,
                  double to) {
    return [=](double x, double y) {
        const double turn = std::atan2(y - centerY, x - centerX) * 180.0 / 3.14159265358979323846;
        const double angle = turn < from ? turn + 360.0 : turn;
        return std::abs(std::hypot(x - centerX, y - centerY) - radius) <= width / 2 && angle <= to;
    };
}

Canvas::Shape Triangle(Point first, Point second, Point third) {
    return [=](double x, double y) {
        const auto side = [&](Point from, Point to) {
            return (to.x - from.x) * (y - from.y) - (to.y - from.y) * (x - from.x) >= 0;
        };
        return side(first, second) == side(second, third) &&
               side(second, third) == side(third, first);
    };
}

// ---- pictures ----

void DrawCamera(Canvas& canvas, double top) {
    canvas.Fill(Box(1, top, 11, top + 8, 1), kSteel);
    canvas.Fill(Box(10.5, top + 1.5, 15, top + 6.5, 0.5), kSteel);
    canvas.Fill(Box(12.2, top + 2.5, 14.2, top + 5.5, 0.3), kLens);
}

void DrawCameraFree(Canvas& canvas) {
    DrawCamera(canvas, 2);
    canvas.Fill(Disc(5.2, 10.8, 5.0), kWhite);
    canvas.Fill(Disc(5.2, 10.8, 4.3), kGreen);
    canvas.Fill(Line({{3.2, 10.9}, {4.7, 12.4}, {7.3, 9.3}}, 1.4), kWhite);
}

void DrawCameraInUse(Canvas& canvas) {
    DrawCamera(canvas, 2);
    canvas.Fill(Disc(5.2, 10.8, 5.0), kWhite);
    canvas.Fill(Disc(5.2, 10.8, 4.3), kRed);
    canvas.Fill(Box(2.7, 10.0, 7.7, 11.6, 0.2), kWhite);
}

void DrawApply(Canvas& canvas) {
    canvas.Fill(Line({{2.5, 8.5}, {6.3, 12.3}, {13.5, 3.7}}, 2.4), kGreen);
}

void DrawRevert(Canvas& canvas) {
    canvas.Fill(Arc(9.0, 9.0, 4.6, 2.2, -90.0, 90.0), kBlue);
    canvas.Fill(Box(5.5, 3.3, 9.2, 5.5, 0.1), kBlue);
    canvas.Fill(Box(4.0, 12.5, 9.2, 14.7, 0.1), kBlue);
    canvas.Fill(Triangle({1.2, 4.4}, {6.4, 0.4}, {6.4, 8.4}), kBlue);
}

void DrawFeatureControl(Canvas& canvas) {
    const std::array<Point, 3> knobs = {{{5.0, 3.5}, {11.0, 8.0}, {6.5, 12.5}}};
    for (const Point knob : knobs) {
        canvas.Fill(Line({{1.5, knob.y}, {14.5, knob.y}}, 1.3), kSteel);
        canvas.Fill(Disc(knob.x, knob.y, 2.1), kWhite);
        canvas.Fill(Disc(knob.x, knob.y, 1.9), kBlue);
    }
}

void DrawDeviceFinder(Canvas& canvas) {
    DrawCamera(canvas, 1.5);
    canvas.Fill(Disc(9.0, 9.2, 4.9), kWhite);
    canvas.Fill(Line({{11.5, 11.7}, {14.6, 14.8}}, 2.2), kBlue);
    canvas.Fill(Disc(9.0, 9.2, 4.2), kBlue);
    canvas.Fill(Disc(9.0, 9.2, 2.8), kLens);
}

// ---- the file format ----

void Put(std::string& bytes, std::uint32_t number, int count) {
    for (int index = 0; index < count; ++index) {
        bytes.push_back(static_cast<char>(number >> (8 * index)));
    }
}

/// One picture as the icon format holds it: 32 bits a pixel from the bottom up, then one bit a
/// pixel for where it is transparent.
std::string Picture(int size, const std::function<void(Canvas&)>& draw) {
    Canvas canvas(size);
    draw(canvas);
    std::string bytes;
    Put(bytes, 40, 4);
    Put(bytes, static_cast<std::uint32_t>(size), 4);
    Put(bytes, static_cast<std::uint32_t>(2 * size), 4);
    Put(bytes, 1, 2);
    Put(bytes, 32, 2);
    bytes.append(24, '\0');
    std::string mask;
    for (int y = size - 1; y >= 0; --y) {
        std::string line(static_cast<std::size_t>((size + 31) / 32 * 4), '\0');
        for (int x = 0; x < size; ++x) {
            const auto pixel = canvas.Pixel(x, y);
            bytes.append(pixel.begin(), pixel.end());
            if (pixel[3] == 0) {
                char& byte = line[static_cast<std::size_t>(x / 8)];
                byte = static_cast<char>(byte | (0x80 >> (x % 8)));
            }
        }
        mask += line;
    }
    return bytes + mask;
}

bool WriteIcon(const std::string& path, const std::function<void(Canvas&)>& draw) {
    constexpr std::array<int, 4> kSizes = {16, 20, 24, 32};
    std::string directory, pictures;
    Put(directory, 0, 2);
    Put(directory, 1, 2);
    Put(directory, kSizes.size(), 2);
    for (const int size : kSizes) {
        const std::string picture = Picture(size, draw);
        Put(directory, static_cast<std::uint32_t>(size), 1);
        Put(directory, static_cast<std::uint32_t>(size), 1);
        Put(directory, 0, 2);
        Put(directory, 1, 2);
        Put(directory, 32, 2);
        Put(directory, static_cast<std::uint32_t>(picture.size()), 4);
        Put(directory, static_cast<std::uint32_t>(6 + 16 * kSizes.size() + pictures.size()), 4);
        pictures += picture;
    }
    std::ofstream file(path, std::ios::binary);
    file << directory << pictures;
    return file.flush().good();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: draw_icons DIRECTORY\n", stderr);
        return 2;
    }
    const std::string directory = arguments[1];
    const bool written = WriteIcon(directory + "/camera_free.ico", DrawCameraFree) &&
                         WriteIcon(directory + "/camera_in_use.ico", DrawCameraInUse) &&
                         WriteIcon(directory + "/value_apply.ico", DrawApply) &&
                         WriteIcon(directory + "/value_revert.ico", DrawRevert) &&
                         WriteIcon(directory + "/feature_control.ico", DrawFeatureControl) &&
                         WriteIcon(directory + "/device_finder.ico", DrawDeviceFinder);
    return written ? 0 : 1;
}
