// recording_check.cpp - compares a recording's index with its files
#include "apps/recording/recording_check.h"

#include "apps/common/command_failure.h"
#include "apps/recording/frame_reader.h"
#include "apps/recording/ordered_work.h"
#include "apps/recording/recording_directory.h"
#include "apps/recording/recording_summary.h"
#include "platform/file_system.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

namespace {

namespace fs = std::filesystem;

std::string FrameText(std::uint64_t n) {
    return "frame " + std::to_string(n) + ": ";
}

class Checker {
public:
    Checker(const std::string& recordingDirectory, const RecordingIndex& recordingIndex)
        : directory(recordingDirectory), index(recordingIndex) {}

    std::vector<std::string> Run() {
        CheckLines();
        CheckFrames();
        CheckFiles();
        CheckAccount();
        return std::move(findings);
    }

private:
    void Find(const std::string& text) { findings.push_back(text); }

    void CheckLines() {
        for (std::size_t at = 0; at < index.lines.size(); ++at) {
            const FrameLine& line = index.lines[at];
            if (line.n != at + 1) {
                Find("line " + std::to_string(at + 1) + " of the index is of frame " +
                     std::to_string(line.n));
                return; // and so are those that follow
            }
        }
    }

    void CheckFrames() {
        const auto read = [this](std::size_t at) {
            return ProblemOf(index.lines[at]);
        };
        WorkInOrder(index.lines.size(), read, [this](std::size_t at, const std::string& problem) {
            const FrameLine& line = index.lines[at];
            if (!problem.empty()) {
                Find(FrameText(line.n) + problem);
            }
            if (!line.file.empty()) {
                CheckPlace(line);
            }
        });
    }

    /// What is wrong with a line and its frame by themselves. Any thread.
    std::string ProblemOf(const FrameLine& line) const {
        const bool isMissing =
            line.status != FrameStatus::kComplete && line.status != FrameStatus::kIncomplete;
        if (line.file.empty()) {
            return line.status == FrameStatus::kComplete ? "it is complete and has no file" : "";
        }
        if (isMissing) {
            return std::string("it is ") + FrameStatusName(line.status) + " and has a file";
        }
        try {
            std::vector<std::uint8_t> image;
            FrameReader reader(directory, index.description.format);
            reader.Read({line.file, line.offset, line.bytes}, line.layout, image);
            return "";
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
    }

    /// Frames lie one behind the other in their file, or alone in it.
    void CheckPlace(const FrameLine& line) {
        const auto [place, isNew] = ends.try_emplace(line.file, 0);
        const bool isStack = index.description.format == "stack";
        if (index.description.format == "multi-tiff") {
            return; // each page was found where the index says
        }
        if (!isNew && !isStack) {
            Find(FrameText(line.n) + line.file + " is the file of another frame as well");
            return;
        }
        const std::uint64_t wanted = place->second;
        if (line.offset != wanted) {
            Find(FrameText(line.n) + "it is said to begin at byte " + std::to_string(line.offset) +
                 " of " + line.file + ", not at " + std::to_string(wanted));
        }
        if (isStack && line.bytes != line.layout.Size()) {
            Find(FrameText(line.n) + "it is said to have " + std::to_string(line.bytes) +
                 " bytes, not the " + std::to_string(line.layout.Size()) + " of its image");
        }
        place->second = line.offset + line.bytes;
    }

    void CheckFiles() {
        for (const auto& [file, end] : ends) {
            std::error_code error;
            const std::uint64_t size = fs::file_size(platform::JoinPath(directory, file), error);
            if (!error && size != end && index.description.format != "multi-tiff") {
                Find(file + " has " + std::to_string(size) + " bytes, the index says " +
                     std::to_string(end));
            }
        }
        for (const std::string& file : ListFrameFiles(directory)) {
            if (!ends.contains(file)) {
                Find(file + " is named by no line of the index");
            }
        }
    }

    void CheckAccount() {
        const RecordingSummary summary = Summarise(index);
        const RecordedFrames& frames = index.description.frames;
        if (index.isCutOff) {
            Find("the last line of the index is cut off");
        }
        if (frames.recorded != summary.recorded || frames.missing != summary.missing) {
            Find("the description counts " + std::to_string(frames.recorded) + " recorded and " +
                 std::to_string(frames.missing) + " missing frames, the index " +
                 std::to_string(summary.recorded) + " and " + std::to_string(summary.missing));
        }
        if (index.description.complete &&
            (summary.missing != 0 || (frames.wanted && *frames.wanted != summary.recorded))) {
            Find("the description says that the recording is complete, the index does not");
        }
    }

    const std::string& directory;
    const RecordingIndex& index;
    std::vector<std::string> findings;
    std::map<std::string, std::uint64_t> ends; // of the last frame, by file
};

std::string FramesText(const RecordedFrames& frames, bool isComplete) {
    return std::to_string(frames.recorded) + " recorded and " + std::to_string(frames.missing) +
           " missing frames" + (isComplete ? ", complete" : "");
}

/// What the description of the set says of a recording that the recording itself does not.
std::string DifferenceText(const RecordingOfSet& said, const RecordingDescription& is) {
    const bool isSame = said.frames.recorded == is.frames.recorded &&
                        said.frames.missing == is.frames.missing && (!said.complete || is.complete);
    return isSame ? ""
                  : "the description beside the folders says " +
                        FramesText(said.frames, said.complete) + ", that of the folder " +
                        FramesText(is.frames, is.complete);
}

} // namespace

std::vector<std::string> CheckRecording(const std::string& directory, const RecordingIndex& index) {
    return Checker(directory, index).Run();
}

std::vector<std::string> CheckRecordingSet(const std::string& directory, const RecordingSet& set,
                                           const std::vector<RecordingPart>& parts) {
    std::vector<std::string> findings;
    std::vector<std::string> unnamed = ListCameraFolders(directory);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const RecordingOfSet& recording = set.recordings[i];
        std::vector<std::string> own;
        if (parts[i].index) {
            own = CheckRecording(parts[i].directory, *parts[i].index);
            own.push_back(DifferenceText(recording, parts[i].index->description));
        } else {
            own.push_back(parts[i].problem);
        }
        for (const std::string& finding : own) {
            if (!finding.empty()) {
                findings.push_back(recording.folder + ": " + finding);
            }
        }
        std::erase(unnamed, recording.folder);
    }
    for (const std::string& folder : unnamed) {
        findings.push_back(folder + " is named by no line of " + kRecordingDescriptionName);
    }
    return findings;
}
