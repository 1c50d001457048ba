// frame_listener.h - whom a host has named to hear of each frame
#pragma once

#include "mivora/module_services.h"
#include "platform/mutex.h"

#include <atomic>
#include <memory>
#include <vector>

namespace pyxen {

/// The receiver of a grabber's frames.
///
/// Delivering takes no lock, neither waits nor allocates, and costs one load without a receiver.
/// Any thread may install, also inside the receiver.
class FrameListener {
public:
    FrameListener() = default;
    /// No frame is delivered any more.
    ~FrameListener() = default;
    FrameListener(const FrameListener&) = delete;
    FrameListener& operator=(const FrameListener&) = delete;

    /// Null removes the receiver. The former one is not called afterwards, and a call that runs is
    /// waited for, except inside a frame receiver of any grabber: two that remove each other would
    /// wait for ever. Throws std::bad_alloc without a change.
    void Install(MV_FRAME_RECEIVER receiver, void* context);
    bool HasReceiver() const { return current.load(std::memory_order_relaxed) != nullptr; }
    void Deliver(const MV_FRAME_INFO& info);

private:
    // Not destroyed before the listener, so that whoever has just read `current` may enter it. What
    // it names changes while it is not current and nobody is inside.
    struct Entry {
        std::atomic<unsigned> visitors{0};
        std::atomic<unsigned> installations{0};
        MV_FRAME_RECEIVER receiver = nullptr;
        void* context = nullptr;
    };

    Entry& FindUnused() REQUIRES(mutex);

    std::atomic<Entry*> current{nullptr};
    platform::Mutex mutex; // one installs at a time; not held while waiting
    std::vector<std::unique_ptr<Entry>> entries GUARDED_BY(mutex);
};

} // namespace pyxen
