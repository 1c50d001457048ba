// recording_check.h - compares a recording's index with its files
#pragma once

#include "apps/recording/recording_set.h"

#include <string>
#include <vector>

/// Reads every frame and compares: lines are numbered from 1 on, statuses fit what is there, every
/// file is there, has the size that the index says and can be decoded to the layout, frames of one
/// file follow one another, no file of frames is there that no line names, and the description
/// counts what the lines do. Returns what is wrong, in the order of the lines; nothing for a
/// recording that is whole, which may have missing frames. Does not change anything.
std::vector<std::string> CheckRecording(const std::string& directory, const RecordingIndex& index);

/// The same for the recordings of several cameras, each finding behind the name of its folder: all
/// are there, each by itself, they and the set count the same, and no folder is there that the set
/// does not name.
std::vector<std::string> CheckRecordingSet(const std::string& directory, const RecordingSet& set,
                                           const std::vector<RecordingPart>& parts);
