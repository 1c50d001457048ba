// video_export.h - a recording as a video, by a program that is installed
#pragma once

#include "apps/recording/recording_index.h"

#include <cstdint>
#include <string>

/// What has become of a video.
struct ExportedVideo {
    std::string program; ///< that wrote it
    std::uint64_t frames = 0;
    double seconds = 0; ///< from the first frame to the last
};

/// Why a file name names no video: it ends in .mp4, .mkv or .avi; empty when it does.
std::string VideoFileNameProblem(const std::string& path);

/// Has FFmpeg write the recorded frames, or GStreamer where there is no FFmpeg: both are looked for
/// in PATH. Each frame is shown at its recorded time, until the next one comes; an AVI file, which
/// knows no times, repeats frames instead. The file has its name when it is whole. Throws
/// CommandFailure: when neither program is there, with what it printed when it failed, or when a
/// frame cannot be read.
ExportedVideo ExportVideo(const std::string& directory, const RecordingIndex& index,
                          const std::string& file);
