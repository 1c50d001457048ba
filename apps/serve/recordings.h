// recordings.h - the recordings that a page makes and shows
#pragma once

#include "apps/serve/http_server.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

struct StoredFile {
    std::string name;
    std::uint64_t bytes = 0;
};

struct StoredRecording {
    std::string name;
    std::vector<StoredFile> files; ///< by name
};

/// True for 1 to 100 letters, digits, - _ and points, which are not at the beginning: what is no
/// path, on no system.
bool IsPlainName(const std::string& name);

/// Where a recording of this name is made. Throws RequestFailure when the name is none, or there is
/// one.
std::string NewRecordingPath(const std::string& directory, const std::string& name);

/// The directories that hold a recording; none when there is no such directory.
std::vector<StoredRecording> ListRecordings(const std::string& directory);

/// A file as a stream.
class RecordedFile final : public IHttpStream {
public:
    RecordedFile(std::FILE* openFile, std::uint64_t size)
        : file(openFile), bytes(size), left(size) {}
    ~RecordedFile() override;
    RecordedFile(const RecordedFile&) = delete;
    RecordedFile& operator=(const RecordedFile&) = delete;

    std::uint64_t Bytes() const { return bytes; }
    /// Sends at most `bytes` in all, also when the file has grown.
    bool SendNext(const HttpSink& sink) override;

private:
    std::FILE* const file;
    const std::uint64_t bytes;
    std::uint64_t left;
};

/// Throws RequestFailure when there is no such file in that recording.
std::unique_ptr<RecordedFile> OpenRecordedFile(const std::string& directory,
                                               const std::string& recording,
                                               const std::string& file);
