// recording_conversion.h - makes a recording of another one, in another format
#pragma once

#include "apps/recording/frame_store.h"
#include "apps/recording/recording_set.h"

#include <string>
#include <vector>

struct ConversionOptions {
    FrameStoreOptions store;
    std::string directory; ///< of the new recording
    bool overwrite = false;
};

/// Writes the same frames with the same values, numbers, ids and times; only the files differ, and
/// what the description says of them. Frames that are missing stay missing. Throws CommandFailure,
/// before anything is written when the format cannot hold the images. What a failure leaves behind
/// is the description of an incomplete recording with the frames so far.
void ConvertRecording(const std::string& directory, const RecordingIndex& index,
                      const ConversionOptions& options);

/// The same for the recordings of several cameras, into folders of the same names. Throws as well
/// when one of them cannot be read.
void ConvertRecordingSet(const std::string& directory, const RecordingSet& set,
                         const std::vector<RecordingPart>& parts, const ConversionOptions& options);
