// frame_line.h - the lines of a recording's index
#pragma once

#include "apps/common/frame_stamp.h"
#include "apps/common/host_image.h"

#include <cstdint>
#include <string>

/// Name of the index in a recording's directory: one JSON object on a line for each frame.
inline constexpr const char* kFrameIndexName = "frames.jsonl";

/// "complete", "incomplete", "dropped", "lost", "damaged".
const char* FrameStatusName(FrameStatus status);

/// A frame of a recording.
struct FrameLine {
    std::uint64_t n = 0; ///< from 1, without gaps; the number in the file's name
    FrameStamp stamp;    ///< `hostNs` since 1970, UTC
    FrameStatus status = FrameStatus::kComplete;
    std::string file;         ///< in the recording's directory; empty if it was not recorded
    std::uint64_t offset = 0; ///< in a file with several frames
    std::uint64_t bytes = 0;
    ImageLayout layout;
    std::string note; ///< for people; mostly empty

    /// Appends the line without its end. Of `layout` the members are written that differ from those
    /// of `common`.
    void AppendJson(std::string& text, const ImageLayout& common) const;
};

/// Reads a line. What its layout lacks is that of `common`. Throws CommandFailure with the reason.
FrameLine ParseFrameLine(const std::string& text, const ImageLayout& common);
