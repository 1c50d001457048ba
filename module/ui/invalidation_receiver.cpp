// invalidation_receiver.cpp - where the SDK's invalidations reach a feature control dialog
#include "ui/invalidation_receiver.h"

#include <cstddef>

namespace pyxen {

namespace {

struct KindMessage {
    NameFormat format;
    std::uint32_t message;
};

// In the order of InvalidationKind.
constexpr KindMessage kKindMessages[] = {
    {"CKVNPyxenFeatureCtrlDialog::InvalidationCallback: %s", WM_FEATURE_UPDATE},
    {"CKVNPyxenFeatureCtrlDialog::SyncInvalidationCallback: %s", WM_SYNC_FEATURE_INVALIDATED},
    {"CKVNPyxenFeatureCtrlDialog::BufferFormatInvalidationCallback: %s",
     WM_BUFFER_FORMAT_INVALIDATED},
    {"CKVNPyxenFeatureCtrlDialog::ExtNotificationInvalidationCallback: %s",
     WM_TIMING_FEATURE_INVALIDATED},
};

} // namespace

void InvalidationReceiver::Close() {
    const platform::MutexLock lock(mutex);
    open = false;
}

void InvalidationReceiver::Suppress(bool bufferFormat, bool sync) {
    bufferFormatSuppressed = bufferFormat;
    syncSuppressed = sync;
}

bool InvalidationReceiver::IsSuppressed(InvalidationKind kind) const {
    switch (kind) {
    case InvalidationKind::kSync:
        return syncSuppressed;
    case InvalidationKind::kBufferFormat:
        return bufferFormatSuppressed;
    default:
        return false;
    }
}

void InvalidationReceiver::Receive(InvalidationKind kind, const Invalidation& event,
                                   const std::string& path) {
    if (!event.name || !IsOpen()) {
        return;
    }
    const auto& [format, message] = kKindMessages[static_cast<std::size_t>(kind)];
    log.Information(format, path.c_str());
    if (IsSuppressed(kind)) {
        return;
    }
    const platform::MutexLock lock(mutex);
    if (open && event.IsWanted()) {
        post(message, event.handle, event.name);
    }
}

} // namespace pyxen
