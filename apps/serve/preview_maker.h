// preview_maker.h - frames as JPEG, made once for all who look
#pragma once

#include "apps/serve/frame_holder.h"
#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <list>
#include <memory>
#include <vector>

struct Preview {
    std::uint64_t frame = 0;
    std::vector<std::uint8_t> jpeg;
};

using PreviewPointer = std::shared_ptr<const Preview>;

inline constexpr std::uint32_t kLeastPreviewWidth = 16;
inline constexpr std::uint32_t kMostPreviewWidth = 8192;

/// Any thread. The first that asks for a frame at a size and quality makes the preview, on its own
/// thread; others who ask meanwhile wait for it.
class PreviewMaker {
public:
    PreviewMaker();
    ~PreviewMaker();
    PreviewMaker(const PreviewMaker&) = delete;
    PreviewMaker& operator=(const PreviewMaker&) = delete;

    /// At most `width` pixels wide; `quality` from 1 to 100. Throws CommandFailure when the frame
    /// cannot be compressed.
    PreviewPointer Make(const FramePointer& frame, std::uint32_t width, std::uint32_t quality);
    /// How many were made.
    std::uint64_t Made() const;

private:
    struct Entry {
        std::uint64_t frame;
        std::uint32_t width;
        std::uint32_t quality;
        PreviewPointer preview; // null while it is made
    };
    using Entries = std::list<Entry>;
    class Compressor;

    PreviewPointer Compress(const ServedFrame& frame, std::uint32_t width, std::uint32_t quality);
    std::unique_ptr<Compressor> TakeCompressor();

    mutable platform::Mutex mutex;
    platform::Condition made;
    Entries entries GUARDED_BY(mutex); // the newest first
    std::vector<std::unique_ptr<Compressor>> spare GUARDED_BY(mutex);
    std::uint64_t count GUARDED_BY(mutex) = 0;
};
