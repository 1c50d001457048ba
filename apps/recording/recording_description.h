// recording_description.h - what a recording is: the contents of recording.json
#pragma once

#include "apps/common/host_image.h"
#include "apps/common/json_text.h"
#include "apps/recording/clock_relation.h"

#include <cstdint>
#include <optional>
#include <string>

/// Name of the description in a recording's directory.
inline constexpr const char* kRecordingDescriptionName = "recording.json";

/// The camera of a recording; empty what could not be read.
struct RecordedCamera {
    std::optional<std::string> vendor;
    std::optional<std::string> model;
    std::optional<std::string> serial;
    std::optional<std::string> userName;
    std::optional<std::string> id;         ///< unique among the cameras of the SDK
    std::optional<std::string> extendedId; ///< names the interface as well
    std::optional<std::string> interfaceName;

    JsonValue Json() const;
    bool operator==(const RecordedCamera&) const = default;
};

/// How many frames. Each frame from the first to the last is either recorded or missing.
struct RecordedFrames {
    std::optional<std::uint64_t> wanted; ///< empty: until the user ends it
    std::uint64_t recorded = 0;
    std::uint64_t missing = 0;

    JsonValue Json() const;
    bool operator==(const RecordedFrames&) const = default;
};

/// A recording as a whole; empty what could not be read.
struct RecordingDescription {
    std::string program;
    RecordedCamera camera;
    std::optional<std::string> sdkVersion;
    std::optional<std::string> moduleName;
    std::optional<std::string> moduleVersion;
    std::optional<std::string> pixelFormat; ///< of the camera, before the module's conversion
    ImageLayout layout;                     ///< of the images
    std::optional<std::int64_t> offsetX;    ///< on the sensor
    std::optional<std::int64_t> offsetY;
    std::optional<double> exposureUs;
    std::optional<double> frameRate;    ///< frames per second
    std::optional<ClockRelation> clock; ///< of the camera's timestamps
    std::string start;                  ///< "2026-01-31T12:00:00.123456789Z"
    std::string format;                 ///< as FrameStoreOptions has it
    RecordedFrames frames;
    bool complete = false; ///< the wanted number of frames was recorded, and none is missing
    std::string reason;    ///< why not

    /// One line, with its end.
    std::string Json() const;

    bool operator==(const RecordingDescription&) const = default;
};

/// Throws CommandFailure with the reason.
RecordingDescription ParseRecordingDescription(const std::string& text);

/// Nanoseconds since 1970 (UTC) as "2026-01-31T12:00:00.123456789Z".
std::string TimeText(std::uint64_t unixNs);
