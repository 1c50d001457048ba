// frame_store.cpp - where the frames of a recording are kept
#include "apps/recording/frame_store.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_encoder.h"
#include "apps/common/tiff_encoder.h"
#include "apps/common/whole_file.h"
#include "platform/file_system.h"
#include "platform/output_file.h"

#include <cstdio>

namespace {

constexpr const char* kStackName = "frames.stack";
constexpr const char* kPagesName = "frames.tiff";

[[noreturn]] void ThrowNotWritten(const std::string& path, const std::string& reason) {
    throw CommandFailure("cannot write " + path + ": " + reason);
}

bool AppendTo(platform::OutputFile& file, const EncodedFrame& frame, std::string& error) {
    return file.Append({{frame.head.data(), frame.head.size()},
                        {frame.pixels, frame.pixelBytes},
                        {frame.tail.data(), frame.tail.size()}},
                       &error);
}

/// A file for each frame.
class SingleFiles : public FrameStore {
public:
    SingleFiles(const FrameStoreOptions& storeOptions, const std::string& storeDirectory)
        : options(storeOptions), directory(storeDirectory) {}

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override {
        if (options.format == "tiff") {
            EncodeTiff(layout, image, options.deflate, result);
        } else if (options.format == "png") {
            EncodePng(layout, image, options.pngLevel, result);
        } else if (options.format == "pnm") {
            EncodePnm(layout, image, layout.components > 1, result);
        } else {
            EncodeRaw(layout, image, result);
        }
    }
    StoredFrame Append(std::uint64_t number, const ImageLayout& layout,
                       const EncodedFrame& frame) override {
        char digits[24];
        std::snprintf(digits, sizeof digits, "%06llu", static_cast<unsigned long long>(number));
        const std::string name = std::string("frame-") + digits + "." + Ending(layout);
        WriteEncodedFrame(platform::JoinPath(directory, name), frame);
        return {name, 0, frame.head.size() + frame.pixelBytes + frame.tail.size()};
    }
    void Finish() override {}

private:
    std::string Ending(const ImageLayout& layout) const {
        return options.format != "pnm" ? options.format : layout.components > 1 ? "ppm" : "pgm";
    }

    const FrameStoreOptions options;
    const std::string directory;
};

/// One file for all frames.
class OneFile : public FrameStore {
public:
    OneFile(const std::string& directory, const char* fileName)
        : name(fileName), path(platform::JoinPath(directory, name)) {
        std::string error;
        if (!file.Create(path, &error)) {
            ThrowNotWritten(path, error);
        }
    }

    void Finish() override {
        std::string error;
        if (file.Size() == 0) {
            file.Discard();
        } else if (!file.Finish(false, &error)) {
            ThrowNotWritten(path, error);
        }
    }

protected:
    const std::string name;
    const std::string path;
    platform::OutputFile file;
};

/// The images follow one another.
class Stack : public OneFile {
public:
    explicit Stack(const std::string& directory) : OneFile(directory, kStackName) {}

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override {
        EncodeRaw(layout, image, result);
    }
    StoredFrame Append(std::uint64_t, const ImageLayout&, const EncodedFrame& frame) override {
        const std::uint64_t offset = file.Size();
        std::string error;
        if (!AppendTo(file, frame, error)) {
            ThrowNotWritten(path, error);
        }
        return {name, offset, file.Size() - offset};
    }
};

/// TIFF pages, each linked to the next.
class Pages : public OneFile {
public:
    Pages(const FrameStoreOptions& storeOptions, const std::string& directory)
        : OneFile(directory, kPagesName), options(storeOptions) {}

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override {
        EncodeTiffStrips(layout, image, options.deflate, result);
    }
    StoredFrame Append(std::uint64_t, const ImageLayout& layout,
                       const EncodedFrame& frame) override {
        const bool isFirst = file.Size() == 0;
        if (isFirst) {
            isBig = options.expectedFrames == 0 ||
                    MayWantBigTiff(options.expectedFrames, layout.Size());
        }
        const std::uint64_t start = isFirst ? TiffHeaderBytes(isBig) : file.Size();
        TiffPage page = TiffPageOf(layout, frame, options.deflate, isBig, start);
        if (!isFirst) {
            page.header.clear();
        }
        std::string error;
        if (!file.Append({{page.header.data(), page.header.size()},
                          {frame.pixels, frame.pixelBytes},
                          {page.tail.data(), page.tail.size()}},
                         &error) ||
            (!isFirst && !Link(page.directory, error))) {
            ThrowNotWritten(path, error);
        }
        nextDirectory = page.nextDirectory;
        return {name, page.directory, frame.pixelBytes + page.tail.size()};
    }

private:
    /// Makes the page a part of the file; until then it is merely behind its end.
    bool Link(std::uint64_t directory, std::string& error) {
        const auto classic = static_cast<std::uint32_t>(directory);
        return isBig ? file.Overwrite(nextDirectory, {&directory, sizeof directory}, &error)
                     : file.Overwrite(nextDirectory, {&classic, sizeof classic}, &error);
    }

    const FrameStoreOptions options;
    bool isBig = false;
    std::uint64_t nextDirectory = 0; ///< where the last page's link to the next one is
};

} // namespace

std::unique_ptr<FrameStore> MakeFrameStore(const FrameStoreOptions& options,
                                           const std::string& directory) {
    if (!platform::CreateDirectories(directory)) {
        throw CommandFailure("cannot make the directory " + directory);
    }
    if (options.format == "tiff" || options.format == "png" || options.format == "pnm" ||
        options.format == "raw") {
        return std::make_unique<SingleFiles>(options, directory);
    }
    if (options.format == "stack") {
        return std::make_unique<Stack>(directory);
    }
    if (options.format == "multi-tiff") {
        return std::make_unique<Pages>(options, directory);
    }
    throw CommandFailure("frames cannot be kept as \"" + options.format + "\"");
}
