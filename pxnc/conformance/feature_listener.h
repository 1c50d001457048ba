// feature_listener.h - a registration for changes of a feature
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace conformance {

/// The context of one registration and what its callback has seen. Any thread.
class FeatureListener {
public:
    /// What a callback saw: the order tells which of several listeners came first.
    struct Event {
        const FeatureListener* listener;
        PxnHandle handle;
        std::string feature;
    };
    /// Shared by listeners whose order matters.
    class Record {
    public:
        void Add(Event event) EXCLUDES(mutex) {
            platform::MutexLock lock(mutex);
            events.push_back(std::move(event));
        }
        std::vector<Event> Events() const EXCLUDES(mutex) {
            platform::MutexLock lock(mutex);
            return events;
        }

    private:
        mutable platform::Mutex mutex;
        std::vector<Event> events GUARDED_BY(mutex);
    };

    explicit FeatureListener(Record& commonRecord) : record(commonRecord) {}
    FeatureListener(const FeatureListener&) = delete;
    FeatureListener& operator=(const FeatureListener&) = delete;

    /// Run by the first callback, before it counts. Set before the registration.
    std::function<void(PxnHandle handle, const char* feature)> onFirst;

    std::uint64_t Begun() const { return begun; }
    std::uint64_t Ended() const { return ended; }

    static void PXN_CALL OnChange(PxnHandle handle, const char* feature, void* context) {
        auto& self = *static_cast<FeatureListener*>(context);
        self.record.Add({&self, handle, feature ? feature : ""});
        if (++self.begun == 1 && self.onFirst) {
            self.onFirst(handle, feature);
        }
        ++self.ended;
    }

private:
    Record& record;
    std::atomic<std::uint64_t> begun = 0;
    std::atomic<std::uint64_t> ended = 0;
};

} // namespace conformance
