// buffer_debounce.h - many changes of the buffer format, told as one
#pragma once

#include "platform/clock.h"

#include <cstdint>
#include <functional>

namespace pyxen {

/// Notifies the beginning at the first change, and the end once no change has come for kQuietMs by
/// platform::MonotonicNanoseconds. User-interface thread only; the actions may call back in.
class BufferDebounce {
public:
    static constexpr std::uint32_t kQuietMs = 500;

    class Actions {
    public:
        virtual void BeginBufferChange() = 0;
        virtual void EndBufferChange() = 0;
        /// Starts the one timer anew.
        virtual void StartQuietTimer(std::uint32_t milliseconds) = 0;
        virtual void StopQuietTimer() = 0;

    protected:
        ~Actions() = default;
    };

    explicit BufferDebounce(Actions& newActions) : actions(newActions) {}

    /// A feature has changed. While no change is under way `isImpacting` says whether this one
    /// begins one.
    void OnChange(const std::function<bool()>& isImpacting) {
        const bool before = running;
        if (!running && isImpacting()) {
            // Compatibility: a change that the host makes while it is notified counts as another
            // beginning, and the host is notified of that one, too.
            actions.BeginBufferChange();
            running = true;
        }
        if (before) {
            actions.StopQuietTimer();
        }
        if (running) {
            quietAt = platform::MonotonicNanoseconds() + kQuietMs * kNanosecondsPerMillisecond;
            actions.StartQuietTimer(kQuietMs);
        }
    }

    /// The timer has expired. A timer counts in ticks of its own and may be early: it then runs
    /// again for the rest.
    void OnTimer() {
        const std::uint64_t now = platform::MonotonicNanoseconds();
        if (running && now < quietAt) {
            const std::uint64_t rest = quietAt - now + kNanosecondsPerMillisecond - 1;
            actions.StartQuietTimer(static_cast<std::uint32_t>(rest / kNanosecondsPerMillisecond));
            return;
        }
        actions.StopQuietTimer();
        actions.EndBufferChange();
        running = false;
    }

private:
    static constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;

    Actions& actions;
    bool running = false;
    std::uint64_t quietAt = 0; // while a change is under way
};

} // namespace pyxen
