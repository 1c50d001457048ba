// change_watch.h - searches for the features that a write has changed
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/skeleton/backend.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace genicam {

/// Compares the registered features of a module with what they were before: value, limits and
/// access. Asking the camera is more work than following the dependencies that its description
/// declares, but descriptions leave many of them out.
///
/// The comparison runs on the event thread. Any thread.
class ChangeWatch {
public:
    explicit ChangeWatch(skeleton::Backend& backendOfModules) : backend(backendOfModules) {}

    /// A host is about to register for a feature of `module`, whose handle is `handle`.
    void OnWatched(PxnHandle handle, skeleton::Module& module, const char* name);
    /// Features of the module may have changed. The registrations of `written` (null for none) are
    /// called in any case.
    void Search(PxnHandle handle, const char* written = nullptr);
    /// The handle has been removed.
    void Forget(PxnHandle handle);

private:
    using Subject = std::pair<PxnHandle, const char*>;

    /// The names of the module's features that have been written or have changed.
    std::vector<const char*> Compare(PxnHandle handle);

    skeleton::Backend& backend;
    platform::Mutex mutex;
    // What a feature was when it was last compared. Baselines of features that are not registered
    // any more are replaced at the next registration.
    std::map<Subject, std::string> baselines GUARDED_BY(mutex);
    // The modules whose comparison has been posted, with the features written since.
    std::map<PxnHandle, std::vector<const char*>> posted GUARDED_BY(mutex);
};

} // namespace genicam
