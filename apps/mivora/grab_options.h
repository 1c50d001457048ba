// grab_options.h - the options of the command "grab"
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The output that stands for standard output.
inline constexpr const char* kStandardOutput = "-";

/// How several cameras start together: as soon as all are prepared, or by a trigger that all of
/// them wait for.
inline constexpr const char* kStartBySoftware = "software";
inline constexpr const char* kStartByTrigger = "trigger";

struct GrabOptions {
    std::uint64_t frames = 0; ///< 0: until the user interrupts
    std::uint64_t buffers = 8;
    std::uint64_t timeoutMs = 5000;
    bool reconnect = false;
    bool progress = false;
    bool json = false;
    std::vector<std::string> set;

    std::uint64_t triggerEveryMs = 0; ///< 0: no software triggers
    std::string start;                ///< kStartBySoftware, kStartByTrigger, or empty

    std::string output; ///< a directory, kStandardOutput, or empty
    std::optional<std::string> format;
    std::optional<std::string> pngLevel;
    bool deflate = false;
    bool overwrite = false;
    std::string whenFull = "drop"; ///< or "stop"
    std::uint64_t queueMegabytes = 256;
    bool isPaced = false; ///< the camera waits for this program; not for users

    bool IsRecorded() const { return !output.empty(); }
    bool IsStream() const { return output == kStandardOutput; }
    /// As given, or the default of the output.
    std::string Format() const { return format.value_or(IsStream() ? "raw" : "png"); }
    bool IsTriggered() const { return start == kStartByTrigger; }
    /// Why the options do not fit together, or not to so many cameras; empty if they do.
    std::string Problem(std::size_t cameras = 1) const;
};
