// recording_directory.cpp - the directory of a recording before and after it is made
#include "apps/recording/recording_directory.h"

#include "apps/common/command_failure.h"
#include "apps/recording/frame_line.h"
#include "apps/recording/recording_description.h"
#include "apps/recording/recording_set.h"
#include "platform/file_system.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFrameName = "frame-";
constexpr std::size_t kLeastDigits = 6;
constexpr std::string_view kDigits = "0123456789";

// "frame-000001.png", "frames.stack" and what was left of them when a program was killed.
bool IsFrameFile(const std::string& name) {
    if (name.starts_with("frames.stack") || name.starts_with("frames.tiff")) {
        return true;
    }
    if (!name.starts_with(kFrameName)) {
        return false;
    }
    const std::size_t end = name.find_first_not_of(kDigits, kFrameName.size());
    return end != std::string::npos && end >= kFrameName.size() + kLeastDigits && name[end] == '.';
}

bool HoldsRecording(const std::string& directory) {
    return platform::PathExists(platform::JoinPath(directory, kRecordingDescriptionName)) ||
           platform::PathExists(platform::JoinPath(directory, kFrameIndexName));
}

void RemoveRecording(const std::string& directory) {
    std::vector<fs::path> files;
    for (const std::string& file : ListFrameFiles(directory)) {
        files.emplace_back(platform::JoinPath(directory, file));
    }
    for (const std::string& name : ListCameraFolders(directory)) {
        const std::string folder = platform::JoinPath(directory, name);
        RemoveRecording(folder);
        std::error_code notEmpty; // of files that stay
        fs::remove(folder, notEmpty);
    }
    std::error_code error;
    // The description last: until then the directory holds a recording.
    files.emplace_back(platform::JoinPath(directory, kFrameIndexName));
    files.emplace_back(platform::JoinPath(directory, kRecordingDescriptionName));
    for (const fs::path& file : files) {
        if (!error) {
            fs::remove(file, error);
        }
    }
    if (error) {
        throw CommandFailure("cannot remove the recording in " + directory + ": " +
                             error.message());
    }
}

bool WriteOver(const std::string& path, const std::string& content) {
    std::FILE* const file = std::fopen(path.c_str(), "r+b");
    if (!file) {
        return false;
    }
    const bool isWritten = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    const bool isClosed = std::fclose(file) == 0;
    std::error_code error;
    if (isWritten && isClosed) {
        fs::resize_file(path, content.size(), error);
    }
    return isWritten && isClosed && !error;
}

} // namespace

void PrepareRecordingDirectory(const std::string& directory, bool overwrite) {
    if (!platform::CreateDirectories(directory)) {
        throw CommandFailure("cannot make the directory " + directory);
    }
    if (!HoldsRecording(directory)) {
        return;
    }
    if (!overwrite) {
        throw CommandFailure("the directory " + directory +
                             " holds a recording: name another one, or replace it with "
                             "--overwrite");
    }
    RemoveRecording(directory);
}

void WriteRecordingDescription(const std::string& directory, const std::string& json) {
    const std::string path = platform::JoinPath(directory, kRecordingDescriptionName);
    std::string error;
    if (!platform::ReplaceWholeFile(path, json, &error) && !WriteOver(path, json)) {
        throw CommandFailure("cannot write " + path + ": " + error);
    }
}

std::vector<std::string> ListFrameFiles(const std::string& directory) {
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (IsFrameFile(name)) {
            names.push_back(std::move(name));
        }
    }
    if (error) {
        throw CommandFailure("cannot read the directory " + directory + ": " + error.message());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> ListCameraFolders(const std::string& directory) {
    std::vector<std::string> folders;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (name.starts_with(kCameraFolderBegin) && !entry->is_symlink(unknown) &&
            entry->is_directory(unknown) && HoldsRecording(platform::JoinPath(directory, name))) {
            folders.push_back(std::move(name));
        }
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}
