// written_recording_set.h - recordings of two cameras that a test writes by itself
#pragma once

#include "apps/recording/recording_set.h"
#include "tests/support/written_recording.h"

namespace support {

/// Whatever a test changes before Write is in the recordings.
struct WrittenRecordingSet {
    WrittenRecordingSet() {
        set.program = "a test";
        set.start = "2026-01-31T12:00:00.000000000Z";
        set.startedBy = "software";
        set.firstFramesNs = 4711;
        for (const char* const folder : {"camera-A", "camera-B"}) {
            recordings.emplace_back();
            recordings.back().Add();
            recordings.back().Add();
            RecordingOfSet of;
            of.folder = folder;
            of.camera = recordings.back().description.camera;
            of.frames = recordings.back().description.frames;
            of.complete = true;
            set.recordings.push_back(of);
        }
    }
    void Write(const TemporaryDirectory& directory) const {
        directory.Write(kRecordingDescriptionName, set.Json());
        for (std::size_t i = 0; i < recordings.size(); ++i) {
            recordings[i].WriteTo(directory, set.recordings[i].folder + "/");
        }
    }

    RecordingSet set;
    std::vector<WrittenRecording> recordings;
};

} // namespace support
