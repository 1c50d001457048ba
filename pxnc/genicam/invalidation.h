// invalidation.h - tells whoever registered that a feature has changed
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc/genicam/module.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace genicam {

/// Keeps the registrations of invalidation callbacks and calls them, one after the other and
/// without a lock, on a thread of its own.
///
/// After a write the features with a registration are compared with what they were before: value,
/// limits and access. Asking the camera is more work than following the dependencies that its
/// description declares, but descriptions leave many of them out.
class Invalidation {
public:
    Invalidation();
    /// As Stop.
    ~Invalidation();
    /// Ends the thread; nothing is called any more.
    void Stop();

    /// PxnErrNotFound when the module has no such feature.
    PxnError Register(const std::shared_ptr<Module>& module, const char* name,
                      PxnInvalidationCallback callback, void* context);
    /// Removes the newest registration and, unless called from inside a callback, waits until its
    /// callback has returned. PxnErrNotFound when there is none.
    PxnError Unregister(PxnHandle handle, const char* name, PxnInvalidationCallback callback);
    /// Removes every registration of a module, as Unregister does.
    void UnregisterAll(PxnHandle handle);

    /// Something was written to the module: its registrations are compared, and those of `written`
    /// (empty for none) are called in any case.
    void ReportWrite(PxnHandle handle, const std::string& written);
    /// Calls the registrations of `names`, in that order, after `prepare` has run on the thread.
    void ReportEvent(PxnHandle handle, std::vector<std::string> names,
                     std::function<void()> prepare);

private:
    struct Registration {
        PxnHandle handle;
        // A text of the pool: equal names are equal pointers.
        const char* name;
        // Does not keep a closing camera.
        std::weak_ptr<Module> module;
        PxnInvalidationCallback callback;
        void* context;
        // Set while the callback is not running.
        platform::Event idle;
    };

    struct Report {
        PxnHandle handle;
        std::vector<std::string> names;
        bool compares;
        std::function<void()> prepare;
    };

    using Subject = std::pair<PxnHandle, const char*>;

    static void ThreadMain(void* argument);
    void Deliver(const Report& report);
    void Compare(PxnHandle handle, std::vector<const char*>& changed);
    void Call(PxnHandle handle, const char* name);
    void Wait(const std::vector<std::shared_ptr<Registration>>& removed) const;
    void DropBaseline(const Subject& subject) REQUIRES(mutex);

    platform::Mutex mutex;
    std::vector<std::shared_ptr<Registration>> registrations GUARDED_BY(mutex);
    // What a subject looked like when it was last looked at.
    std::map<Subject, std::string> baselines GUARDED_BY(mutex);
    std::deque<Report> reports GUARDED_BY(mutex);
    bool stopping GUARDED_BY(mutex) = false;
    platform::Event wake;
    platform::Thread thread;
};

} // namespace genicam
