// recording_set.cpp - the recordings of several cameras at once
#include "apps/recording/recording_set.h"

#include "apps/common/json_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <map>

namespace {

constexpr std::uint64_t kSetSchema = 1;
constexpr std::size_t kLongestSerial = 60;

std::string SafeName(const std::string& text) {
    std::string name = text.substr(0, kLongestSerial);
    for (char& character : name) {
        const bool isSafe = (character >= '0' && character <= '9') ||
                            (character >= 'A' && character <= 'Z') ||
                            (character >= 'a' && character <= 'z') || character == '-';
        character = isSafe ? character : '_';
    }
    return name;
}

std::string InLowerCase(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return text;
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
        JsonObject({{"schema", kSetSchema},
                    {"program", program},
                    {"start", start},
                    {"startedBy", startedBy},
                    {"firstFramesNs", firstFramesNs ? JsonValue(*firstFramesNs) : nullptr},
                    {"cameras", JsonArray(list)},
                    {"complete", IsComplete()}});
    return text.Text() + "\n";
}
