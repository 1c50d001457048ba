// sdk_control.h - the optional control interface of a camera SDK
#pragma once

#include "platform/shared_library.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The absolute path of the SDK library that a grabber module loads, according to PYXEN_HOME.
std::string SdkLibraryPath();

/// A file that is taken as the SDK's library if it can be loaded.
struct SdkLibraryPlace {
    std::string path;
    std::string problem; ///< why it cannot be loaded, with the path; empty if it can
};

/// Those that a grabber module tries, in its order, up to the first that can be loaded.
std::vector<SdkLibraryPlace> SdkLibraryPlaces();
/// Each file that a grabber module tries to load as the SDK's library, and the system's reason why
/// it cannot; the same for the library whose calls are traced. Empty if one can be loaded.
std::vector<std::string> SdkLibraryProblems();

/// The SDK's counts of buffers and frames, over all cameras since its startup.
struct SdkCounts {
    std::uint64_t announced = 0;
    std::uint64_t revoked = 0;
    std::uint64_t queued = 0;
    std::uint64_t completed = 0; ///< queued buffers that received a frame
    std::uint64_t callbacks = 0; ///< of those, reported to the module
    std::uint64_t flushed = 0;   ///< queued buffers that were removed unused
    std::uint64_t dropped = 0;   ///< frames that were lost or for which the camera had no buffer

    SdkCounts& operator+=(const SdkCounts& other);
    SdkCounts operator-(const SdkCounts& other) const;
};

/// Calls "PxnControl" of the library that the grabber module loads; both get the same instance,
/// because it is the same file. The library stays loaded as long as this object, so that commands
/// issued before the grabber is initialised stay in effect.
class SdkControl {
public:
    /// Runs a command and returns its result. Throws CommandFailure if the library cannot be loaded
    /// or has no control interface.
    std::int32_t Run(const std::string& command, std::string& answer);
    /// Runs the lines of a file. Throws CommandFailure if the SDK refuses one.
    void RunScript(const std::string& file);
    /// The SDK's counts; empty if it has no control interface or does not count.
    std::optional<SdkCounts> Counts();
    /// Within a frame callback: nanoseconds since the frame's timestamp, if the SDK provides it.
    /// Any thread, after a call of Counts.
    std::optional<std::uint64_t> FrameAge() const;

private:
    using ControlFunction = std::int32_t (*)(const char* command, char* answer,
                                             std::uint32_t answerSize);

    void Find();

    platform::SharedLibrary library;
    ControlFunction control = nullptr;
};
