// recording_report.h - what the command "recording" says of recordings
#pragma once

#include "apps/common/json_text.h"
#include "apps/recording/recording_set.h"
#include "apps/recording/recording_summary.h"

#include <string>
#include <vector>

/// Why a recording is not complete, as its description has it.
std::string IncompleteText(const std::string& reason);

///@{
/// Prints, or adds to the members of a JSON object, what a recording is.
void PrintSummary(const RecordingIndex& index, const RecordingSummary& summary);
void AppendMembers(std::vector<JsonMember>& members, const RecordingIndex& index,
                   const RecordingSummary& summary);
///@}

///@{
/// The same for the recordings of several cameras, and their sums; a recording that cannot be read
/// has its problem instead.
void PrintSummaries(const RecordingSet& set, const std::vector<RecordingPart>& parts);
void AppendMembers(std::vector<JsonMember>& members, const RecordingSet& set,
                   const std::vector<RecordingPart>& parts);
///@}
