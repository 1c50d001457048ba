// event_hub.h - what happens, for all who follow it
#pragma once

#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

struct ServeEvent {
    const char* name = nullptr; ///< a literal
    std::string data;           ///< JSON on one line
};

/// Keeps the newest events. Whoever reads too slowly misses the oldest. Any thread; nobody waits
/// for a reader.
class EventHub {
public:
    void Publish(const char* name, std::string data);
    /// The position behind the newest event.
    std::uint64_t End() const;
    /// Appends those from `position` on, waiting for one up to `timeoutMs` milliseconds; returns
    /// the position behind them.
    std::uint64_t Read(std::uint64_t position, std::uint32_t timeoutMs,
                       std::vector<ServeEvent>& events);

private:
    mutable platform::Mutex mutex;
    platform::Condition published;
    std::deque<ServeEvent> kept GUARDED_BY(mutex);
    std::uint64_t end GUARDED_BY(mutex) = 0; // of the events ever published
};

/// An event as it is sent: "event: NAME", "data: ..." and an empty line.
std::string EventText(const ServeEvent& event);
