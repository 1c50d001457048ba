// frame_store.cpp - where the frames of a recording are kept
#include "apps/recording/frame_store.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_encoder.h"
#include "platform/file_system.h"
#include "platform/output_file.h"

#include <cstdio>

namespace {

constexpr const char* kStackName = "frames.stack";

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
        if (options.format == "png") {
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
        const std::string path = platform::JoinPath(directory, name);
        platform::OutputFile file;
        std::string error;
        if (!file.Create(path, &error) || !AppendTo(file, frame, error)) {
            ThrowNotWritten(path, error);
        }
        const std::uint64_t bytes = file.Size();
        if (!file.Finish(false, &error)) {
            ThrowNotWritten(path, error);
        }
        return {name, 0, bytes};
    }
    void Finish() override {}

private:
    std::string Ending(const ImageLayout& layout) const {
        return options.format != "pnm" ? options.format : layout.components > 1 ? "ppm" : "pgm";
    }

    const FrameStoreOptions options;
    const std::string directory;
};

/// One file, in which the images follow one another.
class Stack : public FrameStore {
public:
    explicit Stack(const std::string& directory) : path(platform::JoinPath(directory, kStackName)) {
        std::string error;
        if (!file.Create(path, &error)) {
            ThrowNotWritten(path, error);
        }
    }

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override {
        EncodeRaw(layout, image, result);
    }
    StoredFrame Append(std::uint64_t, const ImageLayout&, const EncodedFrame& frame) override {
        const std::uint64_t offset = file.Size();
        std::string error;
        if (!AppendTo(file, frame, error)) {
            ThrowNotWritten(path, error);
        }
        return {kStackName, offset, file.Size() - offset};
    }
    void Finish() override {
        std::string error;
        if (file.Size() == 0) {
            file.Discard();
        } else if (!file.Finish(false, &error)) {
            ThrowNotWritten(path, error);
        }
    }

private:
    const std::string path;
    platform::OutputFile file;
};

} // namespace

std::unique_ptr<FrameStore> MakeFrameStore(const FrameStoreOptions& options,
                                           const std::string& directory) {
    if (!platform::CreateDirectories(directory)) {
        throw CommandFailure("cannot make the directory " + directory);
    }
    if (options.format == "png" || options.format == "pnm" || options.format == "raw") {
        return std::make_unique<SingleFiles>(options, directory);
    }
    if (options.format == "stack") {
        return std::make_unique<Stack>(directory);
    }
    throw CommandFailure("frames cannot be kept as \"" + options.format + "\"");
}
