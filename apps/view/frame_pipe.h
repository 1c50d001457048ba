// frame_pipe.h - the way of frames from the camera's thread to the screen
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

/// An image as the grabber gave it.
struct GrabbedFrame {
    ImageLayout layout;
    std::vector<std::uint8_t> bytes;
};

/// An image ready to be shown; never changed once it is published.
struct ShownFrame {
    std::shared_ptr<const GrabbedFrame> frame;
    DisplayImage image;
    std::vector<ChannelHistogram> histogram;
};

/// Takes frames in, makes pictures of them on a thread of its own and keeps the newest. Frames that
/// come while a picture is being made replace each other. No lock is held while another's code
/// runs.
class FramePipe {
public:
    /// `tell` is called on the pipe's thread for every new picture.
    explicit FramePipe(std::function<void()> tell);
    ~FramePipe();
    FramePipe(const FramePipe&) = delete;
    FramePipe& operator=(const FramePipe&) = delete;

    /// The frames to come look like this; counts anew. To be called while no frames come.
    void Begin(const ImageLayout& frameLayout);
    /// Takes a copy of an image. Any thread, one at a time.
    void Push(const void* data);

    /// The newest picture, null before the first. Any thread.
    std::shared_ptr<const ShownFrame> Newest() const;
    /// Frames since Begin, shown or not. Any thread.
    std::uint64_t Frames() const;
    /// Frames per second over the last second. Any thread.
    double Rate() const;

private:
    void MakePictures();
    void Publish(std::shared_ptr<const GrabbedFrame> frame);

    const std::function<void()> tell;
    platform::Event work; // a frame waits, or the end

    mutable platform::Mutex mutex;
    ImageLayout layout GUARDED_BY(mutex);
    std::shared_ptr<const GrabbedFrame> waiting GUARDED_BY(mutex);
    std::shared_ptr<const ShownFrame> newest GUARDED_BY(mutex);
    std::uint64_t frames GUARDED_BY(mutex) = 0;
    RateMeter rate GUARDED_BY(mutex);
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all of the above
};
