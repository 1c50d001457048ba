// event_hub.cpp - what happens, for all who follow it
#include "apps/serve/event_hub.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostKept = 1000;

} // namespace

void EventHub::Publish(const char* name, std::string data) {
    {
        const platform::MutexLock lock(mutex);
        kept.push_back({name, std::move(data)});
        if (kept.size() > kMostKept) {
            kept.pop_front();
        }
        ++end;
    }
    published.NotifyAll();
}

std::uint64_t EventHub::End() const {
    const platform::MutexLock lock(mutex);
    return end;
}

std::uint64_t EventHub::Read(std::uint64_t position, std::uint32_t timeoutMs,
                             std::vector<ServeEvent>& events) {
    const platform::MutexLock lock(mutex);
    if (position >= end) {
        published.WaitFor(mutex, timeoutMs);
    }
    const std::uint64_t first = end - kept.size();
    for (std::uint64_t next = std::max(position, first); next < end; ++next) {
        events.push_back(kept[static_cast<std::size_t>(next - first)]);
    }
    return end;
}

std::string EventText(const ServeEvent& event) {
    return std::string("event: ") + event.name + "\ndata: " + event.data + "\n\n";
}
