// sdk_control.h - the control interface that a camera SDK may have beside its 55 entries
#pragma once

#include "platform/shared_library.h"

#include <cstdint>
#include <optional>
#include <string>

/// The file that a grabber module loads by PYXEN_HOME, absolute.
std::string SdkLibraryPath();
/// Why that file cannot be loaded, in the system's words; an empty text when it can.
std::string SdkLibraryProblem();

/// What the SDK counts of buffers and frames, of all cameras since its startup.
struct SdkCounts {
    std::uint64_t announced = 0;
    std::uint64_t revoked = 0;
    std::uint64_t queued = 0;
    std::uint64_t completed = 0; ///< queued buffers that a frame ended
    std::uint64_t callbacks = 0; ///< of those, handed to the module
    std::uint64_t flushed = 0;   ///< queued buffers that were taken out unused
    std::uint64_t dropped = 0;   ///< frames that the camera had no buffer for, or lost

    SdkCounts& operator+=(const SdkCounts& other);
    SdkCounts operator-(const SdkCounts& other) const;
};

/// Reaches "PxnControl" of the library that the grabber module loads: the same file is the same
/// instance. The library stays loaded until the end, so that what was ordered before the grabber
/// is initialised is not forgotten.
class SdkControl {
public:
    /// Passes a command on; throws CommandFailure when the library cannot be loaded or has no such
    /// interface.
    std::int32_t Run(const std::string& command, std::string& answer);
    /// The SDK's counts; nothing when it has no such interface or does not count.
    std::optional<SdkCounts> Counts();
    /// Inside a frame callback: nanoseconds since the frame's timestamp, when the SDK tells it.
    /// Any thread, once Counts has answered.
    std::optional<std::uint64_t> FrameAge() const;

private:
    using ControlFunction = std::int32_t (*)(const char* command, char* answer,
                                             std::uint32_t answerSize);

    void Find();

    platform::SharedLibrary library;
    ControlFunction control = nullptr;
};
