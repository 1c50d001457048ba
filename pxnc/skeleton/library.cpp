// library.cpp - counted startups and shutdowns
#include "pxnc/skeleton/library.h"

#include "pxnc/skeleton/callback_scope.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <cstdio>
#include <utility>

namespace skeleton {

Library& Library::Instance() {
    static NeverDestroyed<Library> instance;
    return instance.Get();
}

PxnError Library::Startup(const wchar_t* configPath, PxnError refused) {
    if (InsideCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock serialise(sequence);
    ++startups;
    if (refused != PxnErrSuccess || Current()) {
        return refused;
    }
    std::shared_ptr<Backend> started;
    const PxnError result = TheImplementation().Start(configPath, started);
    if (result == PxnErrSuccess) {
        platform::MutexLock lock(mutex);
        backend = std::move(started);
    }
    return result;
}

void Library::Shutdown() {
    if (InsideCallback()) {
        std::fputs("PxnC: a shutdown inside a callback is ignored\n", stderr);
        return;
    }
    platform::MutexLock serialise(sequence);
    if (startups == 0 || --startups > 0) {
        return;
    }
    std::shared_ptr<Backend> last;
    {
        platform::MutexLock lock(mutex);
        last = std::move(backend);
    }
    if (last) {
        last->Stop();
    }
}

std::shared_ptr<Backend> Library::Current() const {
    platform::MutexLock lock(mutex);
    return backend;
}

} // namespace skeleton
