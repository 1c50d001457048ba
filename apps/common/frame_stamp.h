// frame_stamp.h - what is known of a frame besides its image
#pragma once

#include <cstdint>
#include <optional>

/// What became of a frame.
enum class FrameStatus {
    kComplete,
    kIncomplete, ///< parts of it are missing, or it could not be used
    kDropped,    ///< lost by the camera or its SDK: a gap in the camera's numbers
    kLost,       ///< lost because the program was too slow
    kDamaged,    ///< written over by the camera while it was being copied
};

/// Number and times of a frame; empty where they are not known.
struct FrameStamp {
    std::optional<std::uint64_t> frameId;     ///< the camera's number
    std::optional<std::uint64_t> timestampNs; ///< the camera's clock
    std::optional<std::uint64_t> hostNs;      ///< this computer's clock, on arrival

    bool operator==(const FrameStamp&) const = default;
};

/// Frames one after another that are missing for one reason.
struct FrameGap {
    FrameStatus status = FrameStatus::kDropped;
    FrameStamp first; ///< the following ones have the following numbers
    std::uint64_t count = 1;
    const char* note = nullptr; ///< a literal for people, when the number of frames is not known

    bool operator==(const FrameGap&) const = default;
};
