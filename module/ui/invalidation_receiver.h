// invalidation_receiver.h - where the SDK's invalidations reach a feature control dialog
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "sdk/invalidation_hub.h"
#include "sdk/logger.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

/// Window messages of a dialog: wParam is the module's handle, lParam the SDK's feature name.
inline constexpr std::uint32_t WM_FEATURE_UPDATE = 0x8000;
inline constexpr std::uint32_t WM_SYNC_FEATURE_INVALIDATED = 0x8001;
inline constexpr std::uint32_t WM_BUFFER_FORMAT_INVALIDATED = 0x8002;
inline constexpr std::uint32_t WM_TIMING_FEATURE_INVALIDATED = 0x8003;

namespace pyxen {

/// What a feature is followed for.
enum class InvalidationKind { kValue, kSync, kBufferFormat, kTiming };

/// Logs what the SDK's threads report and posts it to the dialog's window.
class InvalidationReceiver {
public:
    /// Posts a message to the dialog without waiting; called on the SDK's threads.
    using Post = std::function<void(std::uint32_t message, PxnHandle handle, const char* name)>;

    /// `sink` may be null.
    InvalidationReceiver(Logger sink, Post newPost) : log(sink), post(std::move(newPost)) {}
    /// From here on nothing is posted and no line is begun. Does not wait for a line that another
    /// thread is writing, since the host's sink may send messages to this thread's windows.
    void Close();
    /// Any thread.
    void Suppress(bool bufferFormat, bool sync);

    /// The feature has changed whose qualified name is `path`. On the SDK's threads.
    void Receive(InvalidationKind kind, const Invalidation& event, const std::string& path);

private:
    bool IsSuppressed(InvalidationKind kind) const;
    bool IsOpen() {
        const platform::MutexLock lock(mutex);
        return open;
    }

    const Logger log;
    const Post post;
    std::atomic<bool> bufferFormatSuppressed{false};
    std::atomic<bool> syncSuppressed{false};
    platform::Mutex mutex; // held while a message is posted, but not while the sink is called
    bool open GUARDED_BY(mutex) = true;
};

} // namespace pyxen
