// picture.cpp - a pattern rendered once and copied into every frame
#include "pxnc/simulator/picture.h"

#include "pxnc/simulator/packing.h"

#include <algorithm>
#include <cstring>

namespace pxsim {
namespace {

// The component that passes the Bayer filter, whose name gives its top left corner.
std::uint16_t BayerComponent(Order order, std::uint32_t x, std::uint32_t line, const Rgb16& color) {
    const bool startsWithColor = order == Order::kBayerRG || order == Order::kBayerBG;
    const bool redFirst = order == Order::kBayerRG || order == Order::kBayerGR;
    const bool evenLine = line % 2 == 0;
    const bool green = (x % 2 == 0) != (evenLine == startsWithColor);
    if (green) {
        return color.green;
    }
    return evenLine == redFirst ? color.red : color.blue;
}

// `column` is the pixel's place on the filter, `x` the place in the picture that it sees.
void AppendPixel(const ImageSetup& setup, std::uint32_t column, std::uint32_t x, std::uint32_t line,
                 std::vector<std::uint16_t>& out) {
    const unsigned bits = setup.format->bits;
    const auto add = [&](std::uint16_t value) {
        out.push_back(ReduceTo(value, bits));
    };
    if (setup.format->order == Order::kMono) {
        return add(PictureMono(setup.pattern, setup.seed, x, line));
    }
    constexpr std::uint16_t kOpaque = 0xFFFF;
    const Rgb16 color = PictureColor(setup.pattern, setup.seed, x, line);
    switch (setup.format->order) {
    case Order::kArgb:
        add(kOpaque);
        [[fallthrough]];
    case Order::kRgb:
    case Order::kRgba:
        add(color.red);
        add(color.green);
        add(color.blue);
        break;
    case Order::kBgr:
    case Order::kBgra:
        add(color.blue);
        add(color.green);
        add(color.red);
        break;
    default:
        add(BayerComponent(setup.format->order, column, line, color));
        break;
    }
    if (setup.format->order == Order::kRgba || setup.format->order == Order::kBgra) {
        add(kOpaque);
    }
}

} // namespace

void Picture::Prepare(const ImageSetup& newSetup) {
    ImageSetup comparable = newSetup;
    // The picture does not depend on which of its lines are shown.
    comparable.height = setup.height;
    comparable.offsetY = setup.offsetY;
    const bool same = !memory.empty() && comparable == setup;
    setup = newSetup;
    if (!same) {
        Render();
    }
}

void Picture::Render() {
    const std::uint32_t stride = setup.LineBytesInMemory();
    memory.assign(std::size_t{stride} * kPictureLines, 0);
    std::vector<std::uint16_t> components;
    components.reserve(std::size_t{setup.width} * 4);
    for (std::uint32_t line = 0; line < kPictureLines; ++line) {
        components.clear();
        for (std::uint32_t column = 0; column < setup.width; ++column) {
            const std::uint32_t sensorX = setup.offsetX + column;
            const std::uint32_t x = setup.reverseX ? setup.sensorWidth - 1 - sensorX : sensorX;
            AppendPixel(setup, column, x, line, components);
        }
        PackLine(*setup.format, components, setup.width, memory.data() + line * stride);
    }
}

void Picture::CopyFrame(std::uint64_t frameId, std::uint32_t lines, std::uint8_t* out) const {
    const std::uint32_t stride = setup.LineBytesInMemory();
    std::uint32_t source = (setup.offsetY + ScrollOf(*setup.format, frameId)) % kPictureLines;
    while (lines > 0) {
        const std::uint32_t run = std::min(lines, kPictureLines - source);
        const std::size_t bytes = std::size_t{stride} * run;
        std::memcpy(out, memory.data() + std::size_t{stride} * source, bytes);
        out += bytes;
        lines -= run;
        source = 0;
    }
}

} // namespace pxsim
