// sdk_control.h - the control interface that a camera SDK may have beside its 55 entries
#pragma once

#include "platform/shared_library.h"

#include <cstdint>
#include <string>

/// The file that a grabber module loads by PYXEN_HOME, absolute.
std::string SdkLibraryPath();
/// Why that file cannot be loaded, in the system's words; an empty text when it can.
std::string SdkLibraryProblem();

/// Reaches "PxnControl" of the library that the grabber module loads: the same file is the same
/// instance. The library stays loaded until the end, so that what was ordered before the grabber
/// is initialised is not forgotten.
class SdkControl {
public:
    /// Passes a command on; throws CommandFailure when the library cannot be loaded or has no such
    /// interface.
    std::int32_t Run(const std::string& command, std::string& answer);

private:
    using ControlFunction = std::int32_t (*)(const char* command, char* answer,
                                             std::uint32_t answerSize);

    void Find();

    platform::SharedLibrary library;
    ControlFunction control = nullptr;
};
