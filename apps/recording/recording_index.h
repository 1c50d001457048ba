// recording_index.h - reads the description and the index of a recording
#pragma once

#include "apps/recording/frame_line.h"
#include "apps/recording/recording_description.h"

#include <string>
#include <vector>

struct RecordingIndex {
    RecordingDescription description;
    std::vector<FrameLine> lines;
    /// The last line was begun and not ended, as it is when a program has been killed; it is not
    /// among the lines.
    bool isCutOff = false;
};

/// Throws CommandFailure naming the file, the line and the reason.
RecordingIndex ReadRecordingIndex(const std::string& directory);
