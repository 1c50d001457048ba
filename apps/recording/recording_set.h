// recording_set.h - the recordings of several cameras at once
#pragma once

#include "apps/recording/recording_index.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What a folder is named after.
struct FolderCamera {
    std::string serial; ///< empty: not known
    std::uint32_t uniqueId = 0;
};

/// What the name of a camera's folder begins with.
inline constexpr const char* kCameraFolderBegin = "camera-";

/// The name of each camera's folder: its serial number, or its unique id where that is not known or
/// not the only one. Names that every file system takes, also one that ignores the case.
std::vector<std::string> CameraFolders(const std::vector<FolderCamera>& cameras);

/// One of the recordings.
struct RecordingOfSet {
    std::string folder;
    RecordedCamera camera;
    RecordedFrames frames;
    bool complete = false;
    std::string reason; ///< why not
};

/// The recordings of one run: the contents of recording.json in the directory that has a folder for
/// each camera.
struct RecordingSet {
    std::string program;
    std::string start;                          ///< time, as RecordingDescription has it
    std::string startedBy;                      ///< "software" or "trigger"
    std::optional<std::uint64_t> firstFramesNs; ///< from the first to the last camera's first frame
    std::vector<RecordingOfSet> recordings;

    bool IsComplete() const;
    /// One line, with its end.
    std::string Json() const;
};

/// Reads it from a directory; nullopt when that holds the recording of one camera. Throws
/// CommandFailure naming the file and the reason.
std::optional<RecordingSet> ReadRecordingSet(const std::string& directory);

/// The recording of one camera in its folder.
struct RecordingPart {
    std::string directory;
    std::optional<RecordingIndex> index;
    std::string problem; ///< why there is no index
};

/// The recordings of the set, in its order.
std::vector<RecordingPart> ReadRecordingParts(const std::string& directory,
                                              const RecordingSet& set);
