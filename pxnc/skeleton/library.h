// library.h - counted startups and shutdowns
#pragma once

#include "platform/mutex.h"
#include "pxnc/skeleton/backend.h"

#include <atomic>
#include <memory>

namespace skeleton {

/// Owns the backend between the first startup and the last shutdown. Any thread.
///
/// A startup that failed counts as well: hosts shut down after a failure, and that shutdown must
/// not take the library from another user.
class Library {
public:
    static Library& Instance();

    /// `refused` is what OnCall returned. PxnErrInvalidCall, not counted, inside a callback.
    PxnError Startup(const wchar_t* configPath, PxnError refused) EXCLUDES(mutex);
    /// Does nothing without a startup, nor inside a callback, for which it would have to wait.
    void Shutdown() EXCLUDES(mutex);
    /// Null when the library is not started.
    std::shared_ptr<Backend> Current() const EXCLUDES(mutex);
    /// Startups, failed ones included, without those that a shutdown has undone.
    unsigned StartupCount() const { return startups; }

private:
    platform::Mutex sequence;           // serialises startups and shutdowns; locked before `mutex`
    std::atomic<unsigned> startups = 0; // changed with `sequence`
    mutable platform::Mutex mutex;
    std::shared_ptr<Backend> backend GUARDED_BY(mutex);
};

} // namespace skeleton
