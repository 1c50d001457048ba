// image_writer.cpp - writes image files
#include "apps/common/image_writer.h"

#include "apps/common/command_failure.h"
#include "apps/common/whole_file.h"
#include "platform/text.h"

#include <lodepng.h>

namespace {

constexpr std::uint32_t kGrey = 1;
constexpr std::uint32_t kRgb = 3;

std::string Ending(const std::string& path) {
    const std::size_t dot = path.find_last_of('.');
    std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
    for (const char* known : {"png", "pgm", "ppm", "pnm", "raw"}) {
        if (platform::CompareNoCase(ending.c_str(), known) == 0) {
            return known;
        }
    }
    return {};
}

void CheckLayout(const ImageLayout& layout) {
    const bool isShown =
        (layout.components == 1 || layout.components == 3 || layout.components == 4) &&
        (layout.allocatedBits == 8 || layout.allocatedBits == 16) && layout.bits > 0 &&
        layout.bits <= layout.allocatedBits;
    if (layout.width == 0 || layout.height == 0 || !isShown) {
        throw CommandFailure("cannot write an image of " + std::to_string(layout.width) + " x " +
                             std::to_string(layout.height) + " pixels with " +
                             std::to_string(layout.components) + " components of " +
                             std::to_string(layout.bits) + " bits");
    }
}

void PutSample(std::string& bytes, std::uint32_t sample, bool twoBytes) {
    if (twoBytes) {
        bytes += static_cast<char>(sample >> 8);
    }
    bytes += static_cast<char>(sample & 0xFF);
}

LodePNGColorType PngColorType(std::uint32_t channels) {
    return channels == kGrey ? LCT_GREY : channels == kRgb ? LCT_RGB : LCT_RGBA;
}

std::string Encode(const std::string& path, const ImageLayout& layout, const void* data) {
    const std::string ending = Ending(path);
    if (ending == "raw") {
        return {static_cast<const char*>(data), static_cast<std::size_t>(layout.Size())};
    }
    if (ending.empty()) {
        throw CommandFailure("cannot tell an image format by the name " + path +
                             "; known endings are .png .pgm .ppm .pnm .raw");
    }
    CheckLayout(layout);
    if (ending == "png") {
        return EncodePng(MakePicture(layout, data, true));
    }
    const bool colour = ending == "ppm" || (ending == "pnm" && layout.components > 1);
    if (!colour && layout.components > 1) {
        throw CommandFailure(path + " would hold a grey image, this one has colour: use .ppm");
    }
    return EncodePnm(MakePicture(layout, data, colour), colour);
}

} // namespace

std::string ImageFileNameProblem(const std::string& path) {
    return Ending(path).empty() ? "the file name must end in .png .pgm .ppm .pnm or .raw" : "";
}

void WriteImage(const std::string& path, const ImageLayout& layout, const void* data) {
    WriteWholeFile(path, Encode(path, layout, data));
}

std::string EncodePng(const Picture& picture) {
    const bool twoBytes = picture.bits > 8;
    const std::uint32_t shift = (twoBytes ? 16 : 8) - picture.bits;
    std::string bytes;
    bytes.reserve(picture.samples.size() * (twoBytes ? 2 : 1));
    for (const std::uint16_t sample : picture.samples) {
        PutSample(bytes, static_cast<std::uint32_t>(sample) << shift, twoBytes);
    }
    std::vector<unsigned char> png;
    const unsigned error =
        lodepng::encode(png, reinterpret_cast<const unsigned char*>(bytes.data()), picture.width,
                        picture.height, PngColorType(picture.channels), twoBytes ? 16 : 8);
    if (error != 0) {
        throw CommandFailure(std::string("cannot encode a PNG image: ") +
                             lodepng_error_text(error));
    }
    return {reinterpret_cast<const char*>(png.data()), png.size()};
}

std::string EncodePnm(const Picture& picture, bool colour) {
    const std::uint32_t most = (1u << picture.bits) - 1;
    std::string file = (colour ? "P6\n" : "P5\n") + std::to_string(picture.width) + " " +
                       std::to_string(picture.height) + "\n" + std::to_string(most) + "\n";
    const std::size_t pixels = std::size_t{picture.width} * picture.height;
    const std::uint32_t written = colour ? kRgb : kGrey;
    for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
        for (std::uint32_t channel = 0; channel < written; ++channel) {
            const std::uint32_t from = picture.channels == kGrey ? 0 : channel;
            PutSample(file, picture.samples[pixel * picture.channels + from], picture.bits > 8);
        }
    }
    return file;
}
