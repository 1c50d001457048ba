// invalidation_receiver.h - where the SDK's invalidation callbacks reach a feature control dialog
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "sdk/logger.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

struct FeatureLeaf;

/// Window messages of a dialog: wParam is the module's handle, lParam the SDK's feature name.
inline constexpr std::uint32_t WM_FEATURE_UPDATE = 0x8000;
inline constexpr std::uint32_t WM_SYNC_FEATURE_INVALIDATED = 0x8001;
inline constexpr std::uint32_t WM_BUFFER_FORMAT_INVALIDATED = 0x8002;
inline constexpr std::uint32_t WM_TIMING_FEATURE_INVALIDATED = 0x8003;

/// Logs what the SDK's threads tell and posts it to the dialog's window.
///
/// Registered with the SDK as the context of the four callbacks, which look it up among those that
/// are open: a call that comes too late, or with a context that is none any more, does nothing.
class InvalidationReceiver {
public:
    /// Posts a message to the dialog; called on the SDK's threads.
    using Post = std::function<void(std::uint32_t message, PxnHandle handle, const char* name)>;

    /// `sink` may be null.
    static std::shared_ptr<InvalidationReceiver> Open(Logger sink, Post post);
    /// From here on nothing is logged or posted. Waits for a call on another thread.
    void Close();

    void* Context() { return this; }
    /// Any thread.
    void Suppress(bool bufferFormat, bool sync);
    /// Makes the feature's qualified name known to the callbacks.
    void Know(const FeatureLeaf& leaf);
    void ForgetAll();

    static void PXN_CALL InvalidationCallback(PxnHandle handle, const char* name, void* context);
    static void PXN_CALL SyncInvalidationCallback(PxnHandle handle, const char* name,
                                                  void* context);
    static void PXN_CALL BufferFormatInvalidationCallback(PxnHandle handle, const char* name,
                                                          void* context);
    static void PXN_CALL ExtNotificationInvalidationCallback(PxnHandle handle, const char* name,
                                                             void* context);

private:
    InvalidationReceiver(Logger sink, Post newPost) : log(sink), post(std::move(newPost)) {}

    static void Tell(void* context, NameFormat format, std::uint32_t message, PxnHandle handle,
                     const char* name, const std::atomic<bool> InvalidationReceiver::*suppressed);

    const Logger log;
    const Post post;
    std::atomic<bool> bufferFormatSuppressed{false};
    std::atomic<bool> syncSuppressed{false};
    std::atomic<bool> neverSuppressed{false};
    platform::Mutex callMutex; // held during a call, so that Close waits for it
    bool open GUARDED_BY(callMutex) = true;
    std::map<std::pair<PxnHandle, std::string>, std::string> paths GUARDED_BY(callMutex);
};
