// buffer_debounce.h - many changes of the buffer format, told as one
#pragma once

#include <cstdint>
#include <functional>

/// Tells the beginning at the first change and the end when no change has come for a while.
/// User-interface thread only; the actions may call back in.
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
            running = true;
            actions.BeginBufferChange();
        }
        if (before) {
            actions.StopQuietTimer();
        }
        if (running) {
            actions.StartQuietTimer(kQuietMs);
        }
    }

    void OnQuiet() {
        actions.StopQuietTimer();
        actions.EndBufferChange();
        running = false;
    }

private:
    Actions& actions;
    bool running = false;
};
