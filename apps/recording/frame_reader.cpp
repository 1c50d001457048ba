// frame_reader.cpp - reads the frames of a recording back
#include "apps/recording/frame_reader.h"

#include "apps/common/command_failure.h"
#include "apps/common/whole_file.h"
#include "apps/recording/image_decoder.h"
#include "platform/file_system.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace {

constexpr std::array<std::string_view, 6> kFormats = {"tiff", "multi-tiff", "png",
                                                      "pnm",  "raw",        "stack"};

std::string PixelsText(const ImageLayout& layout) {
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + " pixels with " +
           std::to_string(layout.components) + " components of " + std::to_string(layout.bits) +
           " bits";
}

} // namespace

FrameReader::FrameReader(std::string recordingDirectory, std::string frameFormat)
    : directory(std::move(recordingDirectory)), format(std::move(frameFormat)) {
    if (std::find(kFormats.begin(), kFormats.end(), format) == kFormats.end()) {
        throw CommandFailure("frames that are kept as \"" + format + "\" cannot be read");
    }
}

void FrameReader::Read(const StoredFrame& frame, const ImageLayout& layout,
                       std::vector<std::uint8_t>& image) {
    if (!IsPossibleImage(layout)) {
        throw CommandFailure("no image has " + PixelsText(layout));
    }
    if (format == "raw" || format == "stack") {
        ReadBytes(frame, layout, image);
        return;
    }
    const std::string path = platform::JoinPath(directory, frame.file);
    const bool isTiff = format.ends_with("tiff");
    const std::string content = isTiff ? "" : ReadWholeFile(path);
    try {
        if (isTiff) {
            ReadPage(frame, layout, image);
        } else if (format == "png") {
            DecodePng(content, layout, samples, image);
        } else {
            DecodePnm(content, layout, image);
        }
    } catch (const CommandFailure& failure) {
        throw CommandFailure(path + ": " + failure.what());
    }
}

void FrameReader::ReadPage(const StoredFrame& frame, const ImageLayout& layout,
                           std::vector<std::uint8_t>& image) {
    if (!pages || frame.file != openName) {
        pages.reset();
        pages = std::make_unique<TiffFile>(platform::JoinPath(directory, frame.file));
        openName = frame.file;
    }
    pages->Read(frame.offset, layout, samples, image);
}

void FrameReader::Open(const std::string& name) {
    if (file.is_open() && name == openName) {
        return;
    }
    const std::string path = platform::JoinPath(directory, name);
    file.close();
    file.clear();
    file.open(path, std::ios::binary);
    file.seekg(0, std::ios::end);
    const std::streamoff end = file.tellg();
    if (!file || end < 0) {
        file.close();
        throw CommandFailure("cannot read " + path);
    }
    openName = name;
    fileBytes = static_cast<std::uint64_t>(end);
}

void FrameReader::ReadBytes(const StoredFrame& frame, const ImageLayout& layout,
                            std::vector<std::uint8_t>& image) {
    Open(frame.file);
    const std::string path = platform::JoinPath(directory, frame.file);
    const std::uint64_t size = layout.Size();
    // Before memory is asked for: a damaged index may name any size.
    if (frame.offset > fileBytes || size > fileBytes - frame.offset) {
        throw CommandFailure(path + ": it ends at byte " + std::to_string(fileBytes) +
                             ", the frame at " + std::to_string(frame.offset) + " has " +
                             std::to_string(size) + " bytes");
    }
    if (format == "raw" && size != fileBytes) {
        throw CommandFailure(path + ": it has " + std::to_string(fileBytes) + " bytes, not the " +
                             std::to_string(size) + " of " + PixelsText(layout));
    }
    image.resize(static_cast<std::size_t>(size));
    file.clear();
    file.seekg(static_cast<std::streamoff>(frame.offset));
    file.read(reinterpret_cast<char*>(image.data()), static_cast<std::streamsize>(size));
    if (static_cast<std::uint64_t>(file.gcount()) != size) {
        throw CommandFailure(path + ": it cannot be read at byte " + std::to_string(frame.offset));
    }
}
