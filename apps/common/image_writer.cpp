// image_writer.cpp - writes image files
#include "apps/common/image_writer.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_encoder.h"
#include "apps/common/layout_members.h"
#include "apps/common/parse_number.h"
#include "apps/common/tiff_encoder.h"
#include "apps/common/whole_file.h"
#include "platform/text.h"

void EncodeImage(const std::string& path, const ImageLayout& layout, const void* data,
                 const ImageFileOptions& options, EncodedFrame& result) {
    const ImageFileFormat format = ImageFileFormatOf(path);
    switch (format) {
    case ImageFileFormat::kRaw:
        EncodeRaw(layout, data, result);
        return;
    case ImageFileFormat::kPng:
        EncodePng(layout, data, options.pngLevel, result);
        return;
    case ImageFileFormat::kTiff:
        EncodeTiff(layout, data, options.deflate, result);
        return;
    case ImageFileFormat::kUnknown:
        throw CommandFailure("cannot tell an image format by the name " + path +
                             "; known endings are .png .tif .tiff .pgm .ppm .pnm .raw");
    case ImageFileFormat::kPgm:
    case ImageFileFormat::kPpm:
    case ImageFileFormat::kPnm:
        break;
    }
    const bool colour = format == ImageFileFormat::kPpm ||
                        (format == ImageFileFormat::kPnm && layout.components > 1);
    if (!colour && layout.components > 1) {
        throw CommandFailure(path + " would hold a grey image, this one has colour: use .ppm");
    }
    EncodePnm(layout, data, colour, result);
}

ImageFileFormat ImageFileFormatOf(const std::string& path) {
    static constexpr struct {
        const char* ending;
        ImageFileFormat format;
    } kEndings[] = {{"raw", ImageFileFormat::kRaw},  {"png", ImageFileFormat::kPng},
                    {"tif", ImageFileFormat::kTiff}, {"tiff", ImageFileFormat::kTiff},
                    {"pgm", ImageFileFormat::kPgm},  {"ppm", ImageFileFormat::kPpm},
                    {"pnm", ImageFileFormat::kPnm}};
    const std::size_t dot = path.find_last_of('.');
    const std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
    for (const auto& known : kEndings) {
        if (platform::CompareNoCase(ending.c_str(), known.ending) == 0) {
            return known.format;
        }
    }
    return ImageFileFormat::kUnknown;
}

std::string PngLevelProblem(const std::string& text) {
    static constexpr std::uint64_t kHighest = 9;
    return ParseUnsigned(text).value_or(kHighest + 1) <= kHighest
               ? ""
               : "\"" + text + "\" is no level from 0 to 9";
}

std::string ImageFileNameProblem(const std::string& path) {
    return ImageFileFormatOf(path) == ImageFileFormat::kUnknown
               ? "the file name must end in .png .tif .tiff .pgm .ppm .pnm or .raw"
               : "";
}

void WriteImage(const std::string& path, const ImageLayout& layout, const void* data,
                const ImageFileOptions& options) {
    EncodedFrame frame;
    EncodeImage(path, layout, data, options, frame);
    WriteEncodedFrame(path, frame);
    if (ImageFileFormatOf(path) == ImageFileFormat::kRaw) {
        WriteWholeFile(path + ".json",
                       JsonObject({{"schema", 1}, {"layout", LayoutJson(layout)}}).Text() + "\n");
    }
}
