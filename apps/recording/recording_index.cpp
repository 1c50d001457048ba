// recording_index.cpp - reads the description and the index of a recording
#include "apps/recording/recording_index.h"

#include "apps/common/command_failure.h"
#include "apps/common/whole_file.h"
#include "platform/file_system.h"

namespace {

CommandFailure InFile(const std::string& place, const CommandFailure& failure) {
    return CommandFailure(place + ": " + failure.what());
}

} // namespace

RecordingIndex ReadRecordingIndex(const std::string& directory) {
    RecordingIndex index;
    const std::string descriptionFile = platform::JoinPath(directory, kRecordingDescriptionName);
    const std::string indexFile = platform::JoinPath(directory, kFrameIndexName);
    const std::string description = ReadWholeFile(descriptionFile);
    try {
        index.description = ParseRecordingDescription(description);
    } catch (const CommandFailure& failure) {
        throw InFile(descriptionFile, failure);
    }
    const std::string text = ReadWholeFile(indexFile);
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         begin = end + 1, end = text.find('\n', begin)) {
        try {
            index.lines.push_back(
                ParseFrameLine(text.substr(begin, end - begin), index.description.layout));
        } catch (const CommandFailure& failure) {
            throw InFile(indexFile + ":" + std::to_string(index.lines.size() + 1), failure);
        }
    }
    index.isCutOff = begin != text.size();
    return index;
}
