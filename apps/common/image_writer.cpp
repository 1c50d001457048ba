// image_writer.cpp - writes image files
#include "apps/common/image_writer.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_encoder.h"
#include "apps/common/tiff_encoder.h"
#include "apps/common/whole_file.h"
#include "platform/text.h"

namespace {

std::string Ending(const std::string& path) {
    const std::size_t dot = path.find_last_of('.');
    std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
    for (const char* known : {"png", "tif", "tiff", "pgm", "ppm", "pnm", "raw"}) {
        if (platform::CompareNoCase(ending.c_str(), known) == 0) {
            return known;
        }
    }
    return {};
}

void Encode(const std::string& path, const ImageLayout& layout, const void* data,
            const ImageFileOptions& options, EncodedFrame& result) {
    const std::string ending = Ending(path);
    if (ending == "raw") {
        EncodeRaw(layout, data, result);
        return;
    }
    if (ending.empty()) {
        throw CommandFailure("cannot tell an image format by the name " + path +
                             "; known endings are .png .tif .tiff .pgm .ppm .pnm .raw");
    }
    if (ending == "png") {
        EncodePng(layout, data, options.pngLevel, result);
        return;
    }
    if (ending == "tif" || ending == "tiff") {
        EncodeTiff(layout, data, options.deflate, result);
        return;
    }
    const bool colour = ending == "ppm" || (ending == "pnm" && layout.components > 1);
    if (!colour && layout.components > 1) {
        throw CommandFailure(path + " would hold a grey image, this one has colour: use .ppm");
    }
    EncodePnm(layout, data, colour, result);
}

} // namespace

std::string ImageFileNameProblem(const std::string& path) {
    return Ending(path).empty() ? "the file name must end in .png .tif .tiff .pgm .ppm .pnm or .raw"
                                : "";
}

void WriteImage(const std::string& path, const ImageLayout& layout, const void* data,
                const ImageFileOptions& options) {
    EncodedFrame frame;
    Encode(path, layout, data, options, frame);
    WriteEncodedFrame(path, frame);
}
