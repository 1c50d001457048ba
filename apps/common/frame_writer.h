// frame_writer.h - writes images on a thread of its own
#pragma once

#include "apps/common/host_image.h"
#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/// Takes copies of images and writes them as numbered files in a directory, so that who brings the
/// images does not wait for the disk until many megabytes wait to be written. One thread brings.
class FrameWriter {
public:
    /// Makes the directory. `format` is png, pnm or raw. Throws CommandFailure.
    FrameWriter(const std::string& directory, const std::string& format);
    /// Writes what is left.
    ~FrameWriter();
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    /// Memory for the next image, for the caller to fill.
    std::vector<std::uint8_t> TakeBuffer(std::size_t size);
    /// Hands an image over; waits while too many are waiting. Throws the CommandFailure of an
    /// earlier image that could not be written.
    void Push(const ImageLayout& layout, std::vector<std::uint8_t> pixels);
    /// Waits until all are written; throws when one was not.
    void Finish();
    std::uint64_t Written() const;

    /// "frame-000001.png": the first image has number 1.
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
    platform::Event work;     // something to write, or the end
    platform::Event progress; // an image was dealt with

    mutable platform::Mutex mutex;
    std::deque<Image> waiting GUARDED_BY(mutex);
    std::uint64_t bytesWaiting GUARDED_BY(mutex) = 0;
    std::vector<std::vector<std::uint8_t>> spare GUARDED_BY(mutex);
    std::uint64_t dealtWith GUARDED_BY(mutex) = 0;
    std::uint64_t written GUARDED_BY(mutex) = 0;
    std::string failure GUARDED_BY(mutex); // of the first image that was not written
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all of the above
};
