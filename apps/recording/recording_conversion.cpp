// recording_conversion.cpp - makes a recording of another one, in another format
#include "apps/recording/recording_conversion.h"

#include "apps/common/command_failure.h"
#include "apps/recording/frame_reader.h"
#include "apps/recording/index_file.h"
#include "apps/recording/ordered_work.h"
#include "apps/recording/recording_directory.h"
#include "platform/file_system.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kAlphaComponents = 4;
constexpr const char* kNotEnded = "the conversion did not end";

/// A frame on its way from one format to the other.
struct ConvertedFrame {
    std::vector<std::uint8_t> image; // the encoded one may point into it
    EncodedFrame encoded;
};

void CheckFormat(const RecordingIndex& index, const std::string& format) {
    for (const FrameLine& line : index.lines) {
        if (!line.file.empty() && format == "pnm" && line.layout.components == kAlphaComponents) {
            throw CommandFailure("a PNM file holds no alpha, which frame " +
                                 std::to_string(line.n) + " has");
        }
    }
}

bool IsSameDirectory(const fs::path& left, const fs::path& right) {
    std::error_code error;
    return fs::equivalent(left, right, error) && !error;
}

/// What is in the target's directory is replaced, with the folders of several cameras.
void CheckPlace(const std::string& source, const std::string& target) {
    bool isReplaced = IsSameDirectory(source, target);
    for (const std::string& folder : ListCameraFolders(target)) {
        isReplaced |= IsSameDirectory(source, platform::JoinPath(target, folder));
    }
    if (isReplaced) {
        throw CommandFailure("the new recording would replace the one that it is made of");
    }
}

class Conversion {
public:
    Conversion(const std::string& sourceDirectory, const RecordingIndex& sourceIndex,
               const ConversionOptions& conversionOptions)
        : source(sourceDirectory),
          index(sourceIndex),
          options(conversionOptions),
          description(sourceIndex.description) {
        description.format = options.store.format;
        description.frames.recorded = 0;
        description.frames.missing = 0;
        description.complete = false;
        description.reason = kNotEnded;
    }

    void Run() {
        FrameStoreOptions storeOptions = options.store;
        storeOptions.expectedFrames = index.lines.size();
        store = MakeFrameStore(storeOptions, options.directory);
        WriteRecordingDescription(options.directory, description.Json());
        file.Create(platform::JoinPath(options.directory, kFrameIndexName));
        std::string failure;
        try {
            ConvertFrames();
        } catch (const CommandFailure& failed) {
            failure = failed.what();
        }
        Finish(failure);
        if (!failure.empty()) {
            throw CommandFailure(failure);
        }
    }

private:
    void ConvertFrames() {
        const auto convert = [this](std::size_t at) {
            auto frame = std::make_unique<ConvertedFrame>();
            const FrameLine& line = index.lines[at];
            if (!line.file.empty()) {
                FrameReader reader(source, index.description.format);
                reader.Read({line.file, line.offset, line.bytes}, line.layout, frame->image);
                store->Encode(line.layout, frame->image.data(), frame->encoded);
            }
            return frame;
        };
        WorkInOrder(index.lines.size(), convert,
                    [this](std::size_t at, const std::unique_ptr<ConvertedFrame>& frame) {
                        Write(index.lines[at], *frame);
                    });
    }

    void Write(FrameLine line, const ConvertedFrame& frame) {
        if (!line.file.empty()) {
            const StoredFrame stored = store->Append(line.n, line.layout, frame.encoded);
            line.file = stored.file;
            line.offset = stored.offset;
            line.bytes = stored.bytes;
        }
        std::string text;
        line.AppendJson(text, description.layout);
        file.Append(text + "\n");
        ++(line.file.empty() ? description.frames.missing : description.frames.recorded);
    }

    /// What fails here is the failure unless there was one before.
    void Finish(std::string& failure) {
        const auto attempt = [&failure](const auto& step) {
            try {
                step();
            } catch (const CommandFailure& failed) {
                failure = failure.empty() ? failed.what() : failure;
            }
        };
        attempt([this] { store->Finish(); });
        attempt([this] { file.Close(); });
        description.complete = failure.empty() && index.description.complete;
        description.reason = failure.empty() ? index.description.reason : failure;
        attempt([this] { WriteRecordingDescription(options.directory, description.Json()); });
    }

    const std::string& source;
    const RecordingIndex& index;
    const ConversionOptions& options;
    RecordingDescription description;
    std::unique_ptr<FrameStore> store;
    IndexFile file;
};

} // namespace

void ConvertRecording(const std::string& directory, const RecordingIndex& index,
                      const ConversionOptions& options) {
    CheckFormat(index, options.store.format);
    CheckPlace(directory, options.directory);
    PrepareRecordingDirectory(options.directory, options.overwrite);
    Conversion(directory, index, options).Run();
}

void ConvertRecordingSet(const std::string& directory, const RecordingSet& set,
                         const std::vector<RecordingPart>& parts,
                         const ConversionOptions& options) {
    CheckPlace(directory, options.directory);
    for (const RecordingPart& part : parts) {
        if (!part.index) {
            throw CommandFailure(part.problem);
        }
        CheckFormat(*part.index, options.store.format);
        CheckPlace(part.directory, options.directory);
    }
    PrepareRecordingDirectory(options.directory, options.overwrite);
    RecordingSet converted = set;
    for (RecordingOfSet& recording : converted.recordings) {
        recording.complete = false;
        recording.reason = kNotEnded;
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        WriteRecordingDescription(options.directory, converted.Json());
        ConversionOptions own = options;
        own.directory = platform::JoinPath(options.directory, set.recordings[i].folder);
        ConvertRecording(parts[i].directory, *parts[i].index, own);
        converted.recordings[i] = set.recordings[i];
    }
    WriteRecordingDescription(options.directory, converted.Json());
}
