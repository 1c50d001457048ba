// invalidation_receiver.cpp - where the SDK's invalidation callbacks reach a dialog
#include "ui/invalidation_receiver.h"

#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "ui/feature_leaf.h"

namespace {

/// The receivers that are open, by their contexts.
class Receivers {
public:
    void Add(const std::shared_ptr<InvalidationReceiver>& receiver) {
        const platform::MutexLock lock(mutex);
        receivers[receiver->Context()] = receiver;
    }
    void Remove(void* context) {
        const platform::MutexLock lock(mutex);
        receivers.erase(context);
    }
    std::shared_ptr<InvalidationReceiver> Find(void* context) {
        const platform::MutexLock lock(mutex);
        const auto found = receivers.find(context);
        return found == receivers.end() ? nullptr : found->second;
    }

private:
    platform::Mutex mutex; // never held while a receiver is called
    std::map<void*, std::shared_ptr<InvalidationReceiver>> receivers GUARDED_BY(mutex);
};

Receivers& TheReceivers() {
    static Receivers receivers;
    return receivers;
}

} // namespace

std::shared_ptr<InvalidationReceiver> InvalidationReceiver::Open(Logger sink, Post post) {
    std::shared_ptr<InvalidationReceiver> receiver(new InvalidationReceiver(sink, std::move(post)));
    TheReceivers().Add(receiver);
    return receiver;
}

void InvalidationReceiver::Close() {
    {
        const platform::MutexLock lock(callMutex);
        open = false;
    }
    TheReceivers().Remove(Context());
}

void InvalidationReceiver::Suppress(bool bufferFormat, bool sync) {
    bufferFormatSuppressed = bufferFormat;
    syncSuppressed = sync;
}

void InvalidationReceiver::Know(const FeatureLeaf& leaf) {
    const platform::MutexLock lock(callMutex);
    paths[{leaf.handle, leaf.name}] = leaf.path;
}

void InvalidationReceiver::ForgetAll() {
    const platform::MutexLock lock(callMutex);
    paths.clear();
}

void InvalidationReceiver::Tell(void* context, NameFormat format, std::uint32_t message,
                                PxnHandle handle, const char* name,
                                const std::atomic<bool> InvalidationReceiver::*suppressed) {
    NoThrow(false, [&] {
        const std::shared_ptr<InvalidationReceiver> receiver = TheReceivers().Find(context);
        if (!receiver || !name) {
            return false;
        }
        const platform::MutexLock lock(receiver->callMutex);
        if (!receiver->open) {
            return false;
        }
        if (receiver->log) {
            const auto path = receiver->paths.find({handle, name});
            receiver->log.Information(format, path == receiver->paths.end() ? "<not available>"
                                                                            : path->second.c_str());
        }
        if (!((*receiver).*suppressed)) {
            receiver->post(message, handle, name);
        }
        return true;
    });
}

void InvalidationReceiver::InvalidationCallback(PxnHandle handle, const char* name, void* context) {
    Tell(context, "CKVNPyxenFeatureCtrlDialog::InvalidationCallback: %s", WM_FEATURE_UPDATE, handle,
         name, &InvalidationReceiver::neverSuppressed);
}

void InvalidationReceiver::SyncInvalidationCallback(PxnHandle handle, const char* name,
                                                    void* context) {
    Tell(context, "CKVNPyxenFeatureCtrlDialog::SyncInvalidationCallback: %s",
         WM_SYNC_FEATURE_INVALIDATED, handle, name, &InvalidationReceiver::syncSuppressed);
}

void InvalidationReceiver::BufferFormatInvalidationCallback(PxnHandle handle, const char* name,
                                                            void* context) {
    Tell(context, "CKVNPyxenFeatureCtrlDialog::BufferFormatInvalidationCallback: %s",
         WM_BUFFER_FORMAT_INVALIDATED, handle, name, &InvalidationReceiver::bufferFormatSuppressed);
}

void InvalidationReceiver::ExtNotificationInvalidationCallback(PxnHandle handle, const char* name,
                                                               void* context) {
    Tell(context, "CKVNPyxenFeatureCtrlDialog::ExtNotificationInvalidationCallback: %s",
         WM_TIMING_FEATURE_INVALIDATED, handle, name, &InvalidationReceiver::neverSuppressed);
}
