// frame_pipe.cpp - passes frames from the camera's thread to the screen
#include "apps/view/frame_pipe.h"

#include "apps/common/command_failure.h"
#include "apps/common/picture.h"
#include "platform/clock.h"

#include <new>
#include <utility>

FramePipe::FramePipe(std::function<void()> pictureCallback)
    : onPicture(std::move(pictureCallback)) {
    const auto procedure = [](void* self) {
        static_cast<FramePipe*>(self)->MakePictures();
    };
    thread = platform::Thread::Start(procedure, this, 0);
    if (!thread.IsJoinable()) {
        throw CommandFailure("cannot start a thread for pictures");
    }
}

FramePipe::~FramePipe() {
    {
        const platform::MutexLock lock(mutex);
        ending = true;
    }
    work.Set();
    thread.Join();
}

void FramePipe::Begin(const ImageLayout& frameLayout) {
    const platform::MutexLock lock(mutex);
    layout = frameLayout;
    waiting = nullptr;
    frames = 0;
    rate = RateMeter();
}

void FramePipe::Push(const void* data) {
    const std::uint64_t now = platform::MonotonicNanoseconds();
    auto frame = std::make_shared<GrabbedFrame>();
    {
        const platform::MutexLock lock(mutex);
        frame->layout = layout;
        ++frames;
        rate.Add(now);
    }
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    frame->bytes.assign(bytes, bytes + static_cast<std::size_t>(frame->layout.Size()));
    std::shared_ptr<const GrabbedFrame> replaced = std::move(frame);
    {
        const platform::MutexLock lock(mutex);
        waiting.swap(replaced);
    }
    work.Set();
}

std::shared_ptr<const ShownFrame> FramePipe::Newest() const {
    const platform::MutexLock lock(mutex);
    return newest;
}

std::uint64_t FramePipe::Frames() const {
    const platform::MutexLock lock(mutex);
    return frames;
}

double FramePipe::Rate() const {
    const platform::MutexLock lock(mutex);
    return rate.Rate(platform::MonotonicNanoseconds());
}

void FramePipe::MakePictures() {
    for (;;) {
        work.Wait(platform::kInfinite);
        work.Reset();
        std::shared_ptr<const GrabbedFrame> frame;
        {
            const platform::MutexLock lock(mutex);
            if (ending) {
                return;
            }
            frame.swap(waiting);
        }
        if (!frame) {
            continue;
        }
        // Out of memory: this picture is skipped; the next one may be smaller.
        try {
            Publish(std::move(frame));
        } catch (const std::bad_alloc&) {
            continue;
        }
        onPicture();
    }
}

void FramePipe::Publish(std::shared_ptr<const GrabbedFrame> frame) {
    const Picture picture = MakePicture(frame->layout, frame->bytes.data(), true);
    const auto shown = std::make_shared<ShownFrame>();
    shown->image = MakeDisplayImage(picture);
    shown->histogram = MakeImageHistogram(picture);
    shown->frame = std::move(frame);
    std::shared_ptr<const ShownFrame> replaced = shown;
    const platform::MutexLock lock(mutex);
    newest.swap(replaced);
}
