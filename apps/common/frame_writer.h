// frame_writer.h - writes images on a background thread
#pragma once

#include "apps/common/host_image.h"
#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/// Writes copies of images as numbered files into a directory, on its own thread, so that the
/// producer waits for the disk only when many megabytes are queued. One producer thread.
class FrameWriter {
public:
    /// Creates the directory. `format` is png, pnm or raw. Throws CommandFailure.
    FrameWriter(const std::string& directory, const std::string& format);
    /// Writes the images that are still queued.
    ~FrameWriter();
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    /// Returns a buffer for the next image, to be filled by the caller.
    std::vector<std::uint8_t> TakeBuffer(std::size_t size);
    /// Queues an image; blocks while too much is queued. Throws CommandFailure if an earlier image
    /// could not be written.
    void Push(const ImageLayout& layout, std::vector<std::uint8_t> pixels);
    /// Waits until all images are written; throws CommandFailure if one could not be written.
    void Finish();
    std::uint64_t Written() const;

    /// "frame-000001.png"; numbers start at 1.
    static std::string FileName(std::uint64_t number, const std::string& format,
                                const ImageLayout& layout);

private:
    struct Image {
        std::uint64_t number;
        ImageLayout layout;
        std::vector<std::uint8_t> pixels;
    };

    void WriteAll();
    void ThrowFailure();

    const std::string directory;
    const std::string format;
    std::uint64_t pushed = 0;
    platform::Event work;     // an image is queued, or the destructor runs
    platform::Event progress; // an image was processed

    mutable platform::Mutex mutex;
    std::deque<Image> waiting GUARDED_BY(mutex);
    std::uint64_t bytesWaiting GUARDED_BY(mutex) = 0;
    std::vector<std::vector<std::uint8_t>> spare GUARDED_BY(mutex);
    std::uint64_t processed GUARDED_BY(mutex) = 0;
    std::uint64_t written GUARDED_BY(mutex) = 0;
    std::string failure GUARDED_BY(mutex); // reason for the first image that could not be written
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all other members
};
