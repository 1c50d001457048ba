// recording_set.cpp - the recordings of several cameras at once
#include "apps/recording/recording_set.h"

#include "apps/common/command_failure.h"
#include "apps/common/json_text.h"
#include "apps/common/whole_file.h"
#include "apps/recording/recording_json.h"
#include "platform/file_system.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <map>

namespace {

constexpr std::size_t kLongestSerial = 60;

bool IsSafe(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '-' || character == '_';
}

std::string SafeName(const std::string& text) {
    std::string name = text.substr(0, kLongestSerial);
    for (char& character : name) {
        character = IsSafe(character) ? character : '_';
    }
    return name;
}

std::string InLowerCase(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return text;
}

/// No other folder is read for a camera's.
std::string FolderOf(const nlohmann::json& object) {
    std::string folder = Needed(TextOf(object, "folder"), "folder");
    if (!folder.starts_with(kCameraFolderBegin) ||
        !std::all_of(folder.begin(), folder.end(), IsSafe)) {
        throw CommandFailure("\"" + folder + "\" is no name of a camera's folder");
    }
    return folder;
}

RecordingSet ParseSet(const nlohmann::json& object) {
    CheckSchema(object);
    RecordingSet set;
    set.program = TextOf(object, "program").value_or("");
    set.start = TextOf(object, "start").value_or("");
    set.startedBy = TextOf(object, "startedBy").value_or("");
    set.firstFramesNs = NumberOf(object, "firstFramesNs");
    for (const nlohmann::json& member : object["cameras"]) {
        RecordingOfSet recording;
        recording.folder = FolderOf(member);
        recording.camera = ReadRecordedCamera(member);
        recording.frames = ReadRecordedFrames(member);
        recording.complete = IsTrue(member, "complete");
        recording.reason = TextOf(member, "reason").value_or("");
        set.recordings.push_back(recording);
    }
    return set;
}

} // namespace

std::vector<std::string> CameraFolders(const std::vector<FolderCamera>& cameras) {
    std::map<std::string, int> uses;
    for (const FolderCamera& camera : cameras) {
        ++uses[InLowerCase(SafeName(camera.serial))];
    }
    std::vector<std::string> folders;
    for (const FolderCamera& camera : cameras) {
        const std::string serial = SafeName(camera.serial);
        std::array<char, 16> id{};
        std::snprintf(id.data(), id.size(), "0x%08X", camera.uniqueId);
        std::string name = kCameraFolderBegin;
        if (serial.empty()) {
            name += id.data();
        } else if (uses[InLowerCase(serial)] > 1) {
            name += serial + "-" + id.data();
        } else {
            name += serial;
        }
        folders.push_back(name);
    }
    return folders;
}

bool RecordingSet::IsComplete() const {
    return std::all_of(recordings.begin(), recordings.end(),
                       [](const RecordingOfSet& recording) { return recording.complete; });
}

std::string RecordingSet::Json() const {
    std::vector<JsonValue> list;
    for (const RecordingOfSet& recording : recordings) {
        list.push_back(JsonObject(
            {{"folder", recording.folder},
             {"camera", recording.camera.Json()},
             {"frames", recording.frames.Json()},
             {"complete", recording.complete},
             {"reason", recording.reason.empty() ? JsonValue(nullptr) : recording.reason}}));
    }
    const JsonValue text =
        JsonObject({{"schema", kRecordingSchema},
                    {"program", program},
                    {"start", start},
                    {"startedBy", startedBy},
                    {"firstFramesNs", firstFramesNs ? JsonValue(*firstFramesNs) : nullptr},
                    {"cameras", JsonArray(list)},
                    {"complete", IsComplete()}});
    return text.Text() + "\n";
}

std::optional<RecordingSet> ReadRecordingSet(const std::string& directory) {
    const std::string file = platform::JoinPath(directory, kRecordingDescriptionName);
    const nlohmann::json object = nlohmann::json::parse(ReadWholeFile(file), nullptr, false);
    if (!object.is_object() || !object.contains("cameras")) {
        return std::nullopt;
    }
    try {
        return ParseSet(object);
    } catch (const CommandFailure& failure) {
        throw CommandFailure(file + ": " + failure.what());
    }
}

std::vector<RecordingPart> ReadRecordingParts(const std::string& directory,
                                              const RecordingSet& set) {
    std::vector<RecordingPart> parts;
    for (const RecordingOfSet& recording : set.recordings) {
        RecordingPart part;
        part.directory = platform::JoinPath(directory, recording.folder);
        try {
            part.index = ReadRecordingIndex(part.directory);
        } catch (const CommandFailure& failure) {
            part.problem = failure.what();
        }
        parts.push_back(std::move(part));
    }
    return parts;
}
