// recording_directory.h - the directory of a recording before and after it is made
#pragma once

#include <string>
#include <vector>

/// Makes the directory with its parents. One that holds a recording is refused, or with `overwrite`
/// cleared of the files of a recording, also of those of several cameras; others stay. Throws
/// CommandFailure.
void PrepareRecordingDirectory(const std::string& directory, bool overwrite);

/// Replaces the description of the recording. Where no room is left for a second file the present
/// one is written over. Throws CommandFailure.
void WriteRecordingDescription(const std::string& directory, const std::string& json);

/// The files of frames in the directory, in the order of their names: also of those that were left
/// unfinished. Throws CommandFailure.
std::vector<std::string> ListFrameFiles(const std::string& directory);

/// The names of the folders of cameras in the directory that hold a recording, sorted; no links to
/// elsewhere. Empty for a directory that cannot be read.
std::vector<std::string> ListCameraFolders(const std::string& directory);
