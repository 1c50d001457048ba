// frame_pipe.h - passes frames from the camera's thread to the screen
#pragma once

#include "apps/common/host_image.h"
#include "apps/view/display_image.h"
#include "apps/view/image_histogram.h"
#include "apps/view/rate_meter.h"
#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// An image as delivered by the grabber.
struct GrabbedFrame {
    ImageLayout layout;
    std::vector<std::uint8_t> bytes;
};

/// An image ready to be shown; immutable once published.
struct ShownFrame {
    std::shared_ptr<const GrabbedFrame> frame;
    DisplayImage image;
    std::vector<ChannelHistogram> histogram;
};

/// Receives frames, converts them to pictures on its own thread and keeps the newest. A frame that
/// arrives while a picture is being made replaces the one waiting. No lock is held during
/// callbacks.
class FramePipe {
public:
    /// `onPicture` is called on the pipe's thread for every new picture.
    explicit FramePipe(std::function<void()> onPicture);
    ~FramePipe();
    FramePipe(const FramePipe&) = delete;
    FramePipe& operator=(const FramePipe&) = delete;

    /// Sets the layout of the following frames and resets the counts. Must not be called while
    /// frames arrive.
    void Begin(const ImageLayout& frameLayout);
    /// Copies an image. Any thread, one at a time.
    void Push(const void* data);

    /// The newest picture; null before the first. Any thread.
    std::shared_ptr<const ShownFrame> Newest() const;
    /// Frames since Begin, shown or not. Any thread.
    std::uint64_t Frames() const;
    /// Frames per second over the last second. Any thread.
    double Rate() const;

private:
    void MakePictures();
    void Publish(std::shared_ptr<const GrabbedFrame> frame);

    const std::function<void()> onPicture;
    platform::Event work; // a frame is waiting, or the destructor runs

    mutable platform::Mutex mutex;
    ImageLayout layout GUARDED_BY(mutex);
    std::shared_ptr<const GrabbedFrame> waiting GUARDED_BY(mutex);
    std::shared_ptr<const ShownFrame> newest GUARDED_BY(mutex);
    std::uint64_t frames GUARDED_BY(mutex) = 0;
    RateMeter rate GUARDED_BY(mutex);
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all other members
};
