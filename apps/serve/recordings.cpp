// recordings.cpp - the recordings that a page makes and shows
#include "apps/serve/recordings.h"

#include "apps/recording/recording_description.h"
#include "apps/serve/request_failure.h"
#include "platform/file_system.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace {

constexpr std::size_t kLongestName = 100;

bool HasDescription(const std::string& directory) {
    return platform::IsRegularFile(platform::JoinPath(directory, kRecordingDescriptionName));
}

/// Regular files only: no links, which lead elsewhere.
std::vector<StoredFile> FilesIn(const std::string& directory) {
    std::vector<StoredFile> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        const std::string name = entry->path().filename().string();
        if (entry->symlink_status(unknown).type() == std::filesystem::file_type::regular &&
            IsPlainName(name)) {
            files.push_back({name, entry->file_size(unknown)});
        }
    }
    std::sort(files.begin(), files.end(), [](const StoredFile& left, const StoredFile& right) {
        return left.name < right.name;
    });
    return files;
}

} // namespace

bool IsPlainName(const std::string& name) {
    return !name.empty() && name.size() <= kLongestName && name.front() != '.' &&
           name.back() != '.' && std::all_of(name.begin(), name.end(), [](unsigned char c) {
               return c < 0x80 && (std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.');
           });
}

std::string NewRecordingPath(const std::string& directory, const std::string& name) {
    if (!IsPlainName(name)) {
        throw RequestFailure(kBadRequest, "name takes up to 100 letters, digits, - _ and points, "
                                          "which are not at its ends");
    }
    const std::string path = platform::JoinPath(directory, name);
    if (platform::PathExists(path)) {
        throw RequestFailure(kConflict, "there is a recording " + name + " already");
    }
    return path;
}

std::vector<StoredRecording> ListRecordings(const std::string& directory) {
    std::vector<StoredRecording> recordings;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const std::string path = platform::JoinPath(directory, name);
        if (IsPlainName(name) && HasDescription(path)) {
            recordings.push_back({name, FilesIn(path)});
        }
    }
    std::sort(recordings.begin(), recordings.end(),
              [](const StoredRecording& left, const StoredRecording& right) {
                  return left.name < right.name;
              });
    return recordings;
}

std::unique_ptr<RecordedFile> OpenRecordedFile(const std::string& directory,
                                               const std::string& recording,
                                               const std::string& file) {
    const RequestFailure missing(kNotFound,
                                 "there is no file " + file + " in a recording " + recording);
    const std::string folder = platform::JoinPath(directory, recording);
    if (!IsPlainName(recording) || !IsPlainName(file) || !HasDescription(folder)) {
        throw missing;
    }
    const std::string path = platform::JoinPath(folder, file);
    std::error_code error;
    if (std::filesystem::symlink_status(path, error).type() !=
        std::filesystem::file_type::regular) {
        throw missing;
    }
    const std::uint64_t bytes = std::filesystem::file_size(path, error);
    std::FILE* const opened = error ? nullptr : std::fopen(path.c_str(), "rb");
    if (!opened) {
        throw missing;
    }
    return std::make_unique<RecordedFile>(opened, bytes);
}

RecordedFile::~RecordedFile() {
    std::fclose(file);
}

bool RecordedFile::SendNext(const HttpSink& sink) {
    std::array<char, 65536> part;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, part.size()));
    const std::size_t count = std::fread(part.data(), 1, wanted, file);
    left -= count;
    if (count == 0 || !sink(part.data(), count)) {
        return false; // and the connection ends before the announced length
    }
    return left != 0;
}
