#include "pxnc/genicam/invalidation.h"

#include "pxnc/genicam/callback_scope.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace genicam {

namespace {

std::string SnapshotOf(const Module& module, const char* name) {
    std::string snapshot;
    module.With(name, [&snapshot](Feature& present) {
        snapshot = present.Snapshot();
        return PxnErrSuccess;
    });
    return snapshot;
}

} // namespace

Invalidation::Invalidation() : thread(platform::Thread::Start(ThreadMain, this, 0)) {}

Invalidation::~Invalidation() {
    Stop();
}

void Invalidation::Stop() {
    {
        const platform::MutexLock lock(mutex);
        stopping = true;
    }
    wake.Set();
    thread.Join();
}

PxnError Invalidation::Register(const std::shared_ptr<Module>& module, const char* name,
                                PxnInvalidationCallback callback, void* context) {
    const Feature* feature = module->Find(name);
    if (feature == nullptr) {
        return PxnErrNotFound;
    }
    auto registration = std::make_shared<Registration>();
    registration->handle = module->Handle();
    registration->name = feature->Name();
    registration->module = module;
    registration->callback = callback;
    registration->context = context;
    registration->idle.Set();
    std::string snapshot = SnapshotOf(*module, feature->Name());
    const platform::MutexLock lock(mutex);
    registrations.push_back(std::move(registration));
    // An earlier registration's baseline stays: a change may be on its way to it.
    baselines.try_emplace({module->Handle(), feature->Name()}, std::move(snapshot));
    return PxnErrSuccess;
}

PxnError Invalidation::Unregister(PxnHandle handle, const char* name,
                                  PxnInvalidationCallback callback) {
    std::vector<std::shared_ptr<Registration>> removed;
    {
        const platform::MutexLock lock(mutex);
        const auto newest =
            std::find_if(registrations.rbegin(), registrations.rend(), [&](const auto& candidate) {
                return candidate->handle == handle && candidate->callback == callback &&
                       std::strcmp(candidate->name, name) == 0;
            });
        if (newest == registrations.rend()) {
            return PxnErrNotFound;
        }
        removed.push_back(*newest);
        registrations.erase(std::next(newest).base());
        DropBaseline({handle, removed.front()->name});
    }
    Wait(removed);
    return PxnErrSuccess;
}

void Invalidation::UnregisterAll(PxnHandle handle) {
    std::vector<std::shared_ptr<Registration>> removed;
    {
        const platform::MutexLock lock(mutex);
        const auto kept = std::stable_partition(
            registrations.begin(), registrations.end(),
            [handle](const auto& candidate) { return candidate->handle != handle; });
        removed.assign(kept, registrations.end());
        registrations.erase(kept, registrations.end());
        for (const auto& registration : removed) {
            DropBaseline({handle, registration->name});
        }
    }
    Wait(removed);
}

void Invalidation::DropBaseline(const Subject& subject) {
    const bool stillWatched =
        std::any_of(registrations.begin(), registrations.end(), [&](const auto& candidate) {
            return candidate->handle == subject.first && candidate->name == subject.second;
        });
    if (!stillWatched) {
        baselines.erase(subject);
    }
}

void Invalidation::Wait(const std::vector<std::shared_ptr<Registration>>& removed) const {
    if (thread.IsCurrent()) {
        return;
    }
    for (const auto& registration : removed) {
        registration->idle.Wait(platform::kInfinite);
    }
}

void Invalidation::ReportWrite(PxnHandle handle, const std::string& written) {
    {
        const platform::MutexLock lock(mutex);
        // Writes in quick succession share one comparison.
        if (reports.empty() || !reports.back().compares || reports.back().handle != handle) {
            reports.push_back({handle, {}, true, {}});
        }
        if (!written.empty()) {
            reports.back().names.push_back(written);
        }
    }
    wake.Set();
}

void Invalidation::ReportEvent(PxnHandle handle, std::vector<std::string> names,
                               std::function<void()> prepare) {
    {
        const platform::MutexLock lock(mutex);
        reports.push_back({handle, std::move(names), false, std::move(prepare)});
    }
    wake.Set();
}

void Invalidation::ThreadMain(void* argument) {
    auto& self = *static_cast<Invalidation*>(argument);
    for (;;) {
        self.wake.Wait(platform::kInfinite);
        Report report = {};
        {
            const platform::MutexLock lock(self.mutex);
            if (self.stopping) {
                return;
            }
            if (self.reports.empty()) {
                self.wake.Reset();
                continue;
            }
            report = std::move(self.reports.front());
            self.reports.pop_front();
        }
        self.Deliver(report);
    }
}

void Invalidation::Deliver(const Report& report) {
    if (report.prepare) {
        report.prepare();
    }
    std::vector<const char*> changed;
    {
        const platform::MutexLock lock(mutex);
        for (const std::string& name : report.names) {
            for (const auto& registration : registrations) {
                if (registration->handle == report.handle && name == registration->name &&
                    std::find(changed.begin(), changed.end(), registration->name) ==
                        changed.end()) {
                    changed.push_back(registration->name);
                }
            }
        }
    }
    if (report.compares) {
        Compare(report.handle, changed);
    }
    for (const char* name : changed) {
        Call(report.handle, name);
    }
}

void Invalidation::Compare(PxnHandle handle, std::vector<const char*>& changed) {
    std::shared_ptr<Module> module;
    std::set<const char*> watched;
    {
        const platform::MutexLock lock(mutex);
        for (const auto& registration : registrations) {
            if (registration->handle == handle) {
                watched.insert(registration->name);
                module = registration->module.lock();
            }
        }
    }
    if (module == nullptr) {
        return;
    }
    for (const char* name : watched) {
        const std::string snapshot = SnapshotOf(*module, name);
        const platform::MutexLock lock(mutex);
        const auto baseline = baselines.find({handle, name});
        if (baseline == baselines.end() || baseline->second == snapshot) {
            continue;
        }
        baseline->second = snapshot;
        if (std::find(changed.begin(), changed.end(), name) == changed.end()) {
            changed.push_back(name);
        }
    }
}

void Invalidation::Call(PxnHandle handle, const char* name) {
    std::vector<std::shared_ptr<Registration>> called;
    {
        const platform::MutexLock lock(mutex);
        for (const auto& registration : registrations) {
            if (registration->handle == handle && registration->name == name) {
                called.push_back(registration);
            }
        }
    }
    for (const auto& registration : called) {
        {
            const platform::MutexLock lock(mutex);
            // A callback before this one may have taken the registration away.
            if (std::find(registrations.begin(), registrations.end(), registration) ==
                registrations.end()) {
                continue;
            }
            registration->idle.Reset();
        }
        {
            const CallbackScope scope(CallbackScope::Kind::Invalidation, this);
            registration->callback(handle, name, registration->context);
        }
        registration->idle.Set();
    }
}

} // namespace genicam
