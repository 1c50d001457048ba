// acquisition_state.h - the one state of an acquisition
#pragma once

#include <atomic>
#include <cstdint>

namespace pyxen {

/// Values of the acquisition number: kContinuous to kLastSynchronousSingle are the modes of Snap.
inline constexpr std::uint32_t kIdle = 0;
inline constexpr std::uint32_t kContinuous = 1;
inline constexpr std::uint32_t kAsynchronousSingle = 2;
inline constexpr std::uint32_t kFirstSynchronousSingle = 3;
inline constexpr std::uint32_t kLastSynchronousSingle = 5;

/// What an acquisition is doing, and the number that the host reads and writes beside it.
///
///     from                    by                                    to
///     any, number 0           Start: a snap in a mode               Starting, number = mode
///     Starting                Started: the camera runs, or modes    Running
///                             1 and 2 failed and wait for a stop
///     at rest, Starting, Running  WindUp: the frame of mode 2 came      WindingUp
///     WindingUp               WindUpFailed: there is no thread      Running
///     any                     BeginStop: StopSnap                   Stopping
///     any                     Finish: a synchronous snap, a stop    Idle, number = 0
///                             or a wind-up has ended
///
/// Compatibility: hosts may write the number at any time. It decides what Snap, StopSnap and the
/// frame callback do; the phase decides who may end the acquisition. Lock-free; any thread.
class AcquisitionState {
public:
    /// Both at one moment, and which snap it was.
    class Moment {
    public:
        std::uint32_t Number() const { return static_cast<std::uint32_t>(word); }

    private:
        friend class AcquisitionState;
        explicit Moment(std::uint64_t packed) : word(packed) {}
        std::uint64_t word;
    };

    Moment Now() const { return Moment(word); }
    std::uint32_t Number() const { return Now().Number(); }
    void SetNumber(std::uint32_t number) {
        Change([number](Parts& parts) {
            parts.number = number;
            return true;
        });
    }

    /// False when the number is not 0.
    bool Start(std::uint32_t mode) {
        return Change([mode](Parts& parts) {
            if (parts.number != kIdle) {
                return false;
            }
            parts = {mode, Phase::kStarting, parts.snap + 1};
            return true;
        });
    }
    void Started() {
        Change([](Parts& parts) {
            const bool isStarting = parts.phase == Phase::kStarting;
            parts.phase = Phase::kRunning;
            return isStarting;
        });
    }
    /// True for one callback alone: none that began in another snap, or before this one was ended.
    bool WindUp(Moment seen) {
        const Parts then = Unpack(seen.word);
        return Change([&then](Parts& parts) {
            const bool isRunning =
                parts.phase == Phase::kStarting || parts.phase == Phase::kRunning;
            const bool wasIdle = parts.phase == Phase::kAtRest && then.phase == Phase::kAtRest;
            parts.phase = Phase::kWindingUp;
            return parts.snap == then.snap && (isRunning || wasIdle);
        });
    }
    void WindUpFailed() {
        Change([](Parts& parts) {
            const bool isWindingUp = parts.phase == Phase::kWindingUp;
            parts.phase = Phase::kRunning;
            return isWindingUp;
        });
    }
    bool IsWindingUp() const { return Unpack(word).phase == Phase::kWindingUp; }
    void BeginStop() {
        Change([](Parts& parts) {
            parts.phase = Phase::kStopping;
            return true;
        });
    }
    void Finish() {
        Change([](Parts& parts) {
            parts.number = kIdle;
            parts.phase = Phase::kAtRest;
            return true;
        });
    }

private:
    enum class Phase : std::uint8_t { kAtRest, kStarting, kRunning, kStopping, kWindingUp };
    struct Parts {
        std::uint32_t number;
        Phase phase;
        std::uint32_t snap; // counts, 24 bits
    };

    static Parts Unpack(std::uint64_t packed) {
        return {static_cast<std::uint32_t>(packed), static_cast<Phase>(packed >> 32 & 0xFF),
                static_cast<std::uint32_t>(packed >> 40)};
    }
    static std::uint64_t Pack(const Parts& parts) {
        return parts.number | std::uint64_t{static_cast<std::uint8_t>(parts.phase)} << 32 |
               std::uint64_t{parts.snap} << 40;
    }
    // Applies a transition, which returns whether it is possible.
    template <typename Transition>
    bool Change(Transition transition) {
        std::uint64_t before = word;
        for (;;) {
            Parts parts = Unpack(before);
            if (!transition(parts)) {
                return false;
            }
            if (word.compare_exchange_weak(before, Pack(parts))) {
                return true;
            }
        }
    }

    std::atomic<std::uint64_t> word{0};
};

} // namespace pyxen
