// shared_registrations.h - the invalidations that all feature control dialogs have asked for
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"

#include <map>
#include <string>
#include <tuple>
#include <vector>

class CPyxenAPIAccess;

/// Registers features with the SDK for every dialog of the process.
///
/// Dialogs of several grabbers may show one interface, and the SDK tells registrations of one
/// callback apart by their age only: it takes back the newest, whosever it is. So those that are
/// newer than the one to go are registered again. Any thread.
class SharedRegistrations {
public:
    static SharedRegistrations& Instance();

    void Register(CPyxenAPIAccess& api, PxnHandle handle, const std::string& name,
                  PxnInvalidationCallback callback, void* context);
    /// What the SDK refused to register is left alone.
    void Unregister(CPyxenAPIAccess& api, PxnHandle handle, const std::string& name,
                    PxnInvalidationCallback callback, void* context);

private:
    /// The SDK's library, as each has handles of its own, module, feature and callback.
    using Subject = std::tuple<void*, PxnHandle, std::string, PxnInvalidationCallback>;

    // Held during SDK calls: the SDK waits there for running callbacks, which never come here.
    platform::Mutex mutex;
    /// Contexts by age, the oldest first.
    std::map<Subject, std::vector<void*>> contexts GUARDED_BY(mutex);
};
