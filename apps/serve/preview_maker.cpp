// preview_maker.cpp - frames as JPEG, made once for all who look
#include "apps/serve/preview_maker.h"

#include "apps/common/command_failure.h"
#include "apps/serve/shown_image.h"

#include <turbojpeg.h>

#include <algorithm>
#include <new>
#include <utility>

namespace {

/// Sizes that are looked at at the same time; those that are not made again soon are forgotten.
constexpr std::size_t kMostPreviews = 8;
constexpr std::uint32_t kWaitForPreviewMs = 100;

} // namespace

/// A compressor of the library with memory for its result.
class PreviewMaker::Compressor {
public:
    Compressor() : handle(tjInitCompress()) {
        if (!handle) {
            throw std::bad_alloc();
        }
    }
    ~Compressor() { tjDestroy(handle); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    std::vector<std::uint8_t> Compress(const ShownImage& image, int quality) {
        const int width = static_cast<int>(image.width);
        const int height = static_cast<int>(image.height);
        const int sampling = image.channels == 1 ? TJSAMP_GRAY : TJSAMP_420;
        const unsigned long most = tjBufSize(width, height, sampling);
        buffer.resize(std::max<std::size_t>(buffer.size(), most));
        unsigned char* output = buffer.data();
        auto size = static_cast<unsigned long>(buffer.size());
        if (tjCompress2(handle, image.pixels, width, 0, height,
                        image.channels == 1 ? TJPF_GRAY : TJPF_RGB, &output, &size, sampling,
                        quality, TJFLAG_NOREALLOC | TJFLAG_FASTDCT) != 0) {
            throw CommandFailure(std::string("the preview cannot be compressed: ") +
                                 tjGetErrorStr2(handle));
        }
        return {output, output + size};
    }

private:
    tjhandle handle;
    std::vector<std::uint8_t> buffer;
};

PreviewMaker::PreviewMaker() = default;

PreviewMaker::~PreviewMaker() = default;

PreviewPointer PreviewMaker::Make(const FramePointer& frame, std::uint32_t width,
                                  std::uint32_t quality) {
    // Wider than the frame is not another size.
    const std::uint32_t shownWidth = std::min(std::max(width, 1u), frame->layout.width);
    Entries::iterator own;
    {
        const platform::MutexLock lock(mutex);
        for (;;) {
            const auto found =
                std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
                    return entry.frame == frame->number && entry.width == shownWidth &&
                           entry.quality == quality;
                });
            if (found == entries.end()) {
                break;
            }
            if (found->preview) {
                return found->preview;
            }
            made.WaitFor(mutex, kWaitForPreviewMs);
        }
        own = entries.insert(entries.begin(), {frame->number, shownWidth, quality, nullptr});
    }
    PreviewPointer preview;
    try {
        preview = Compress(*frame, shownWidth, quality);
    } catch (...) {
        const platform::MutexLock lock(mutex);
        entries.erase(own);
        made.NotifyAll();
        throw;
    }
    std::vector<PreviewPointer> forgotten; // freed after the lock
    const platform::MutexLock lock(mutex);
    own->preview = preview;
    ++count;
    for (auto entry = entries.end(); entries.size() > kMostPreviews && entry != entries.begin();) {
        --entry;
        if (entry->preview) {
            forgotten.push_back(std::move(entry->preview));
            entry = entries.erase(entry);
        }
    }
    made.NotifyAll();
    return preview;
}

std::uint64_t PreviewMaker::Made() const {
    const platform::MutexLock lock(mutex);
    return count;
}

std::unique_ptr<PreviewMaker::Compressor> PreviewMaker::TakeCompressor() {
    const platform::MutexLock lock(mutex);
    if (spare.empty()) {
        return std::make_unique<Compressor>();
    }
    std::unique_ptr<Compressor> compressor = std::move(spare.back());
    spare.pop_back();
    return compressor;
}

PreviewPointer PreviewMaker::Compress(const ServedFrame& frame, std::uint32_t width,
                                      std::uint32_t quality) {
    std::unique_ptr<Compressor> compressor = TakeCompressor();
    auto preview = std::make_shared<Preview>();
    preview->frame = frame.number;
    preview->jpeg = compressor->Compress(ShowReduced(frame, width), static_cast<int>(quality));
    const platform::MutexLock lock(mutex);
    spare.push_back(std::move(compressor));
    return preview;
}
