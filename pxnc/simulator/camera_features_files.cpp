// camera_features_files.cpp - the files that the camera keeps
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace pxsim {
namespace {

constexpr std::size_t kBufferBytes = 256;
constexpr std::size_t kLargestFile = 64 * 1024;

constexpr FeatureRow kFileRows[] = {
    {"FileSelector", Enum{"UserData FirmwareInfo Calibration"}, kGuru, "File to access.",
     Extra{.affects = "FileSize"}},
    {"FileOperationSelector", Enum{"Open Close Read Write Delete"}, kGuru | kNotStored,
     "Operation to execute.", Extra{.selectors = "FileSelector"}},
    {"FileOpenMode", Enum{"Read Write ReadWrite"}, kGuru | kNotStored,
     "Access mode in which the file is opened.", Extra{.selectors = "FileSelector"}},
    {"FileAccessBuffer", Raw{kBufferBytes}, kGuru | kNotStored,
     "Data that was read or is to be written."},
    {"FileAccessOffset", Int{.min = 0, .max = kLargestFile}, kGuru | kNotStored,
     "Offset in the file.", Extra{.unit = "B"}},
    {"FileAccessLength", Int{.min = 0, .max = kBufferBytes}, kGuru | kNotStored,
     "Number of bytes to read or write.", Extra{.unit = "B"}},
    {"FileOperationStatus", Enum{"Success Failure"}, kGuru | kReadOnly,
     "Status of the last operation."},
    {"FileOperationResult", Int{}, kGuru | kReadOnly,
     "Number of bytes that the last operation transferred.", Extra{.unit = "B"}},
    {"FileSize", Int{}, kGuru | kReadOnly, "Size of the file.",
     Extra{.unit = "B", .selectors = "FileSelector"}},
    {"FileOperationExecute", Command{}, kGuru, "Executes the selected operation.",
     Extra{.selectors = "FileSelector",
           .affects = "FileOperationStatus FileOperationResult FileSize FileAccessBuffer"}},
};

/// The camera's files. The caller must hold the camera's mutex.
struct Files {
    struct File {
        std::string content;
        bool open = false;
        bool writable = false;
    };
    std::array<File, 3> files;
    const char* status = "Success";
    std::int64_t result = 0;
};

PxnError Finish(Files& state, const char* status, std::int64_t result) {
    state.status = status;
    state.result = result;
    return PxnErrSuccess;
}

PxnError OpenFile(Camera& camera, Files& state, Files::File& file) {
    if (file.open) {
        return Finish(state, "Failure", 0);
    }
    file.open = true;
    file.writable = !camera.EnumIs("FileOpenMode", "Read");
    return Finish(state, "Success", 0);
}

PxnError ReadFile(Camera& camera, Files& state, const Files::File& file) {
    const auto offset = static_cast<std::size_t>(camera.IntValue("FileAccessOffset"));
    const auto length = static_cast<std::size_t>(camera.IntValue("FileAccessLength"));
    if (!file.open || offset > file.content.size()) {
        return Finish(state, "Failure", 0);
    }
    std::string piece = file.content.substr(offset, length);
    const auto read = static_cast<std::int64_t>(piece.size());
    piece.resize(kBufferBytes);
    camera.Get<Raw>("FileAccessBuffer").Set(std::move(piece));
    return Finish(state, "Success", read);
}

PxnError WriteFile(Camera& camera, Files& state, Files::File& file) {
    const auto offset = static_cast<std::size_t>(camera.IntValue("FileAccessOffset"));
    const auto length = static_cast<std::size_t>(camera.IntValue("FileAccessLength"));
    if (!file.open || !file.writable || offset + length > kLargestFile) {
        return Finish(state, "Failure", 0);
    }
    const std::string& bytes = camera.Get<Raw>("FileAccessBuffer").Get();
    file.content.resize(std::max(file.content.size(), offset + length));
    file.content.replace(offset, length, bytes, 0, length);
    return Finish(state, "Success", static_cast<std::int64_t>(length));
}

PxnError Execute(Camera& camera, Files& state) {
    auto& file = state.files[static_cast<std::size_t>(camera.EnumIntValue("FileSelector"))];
    if (camera.EnumIs("FileOperationSelector", "Open")) {
        return OpenFile(camera, state, file);
    }
    if (camera.EnumIs("FileOperationSelector", "Close")) {
        const bool wasOpen = file.open;
        file.open = false;
        return Finish(state, wasOpen ? "Success" : "Failure", 0);
    }
    if (camera.EnumIs("FileOperationSelector", "Read")) {
        return ReadFile(camera, state, file);
    }
    if (camera.EnumIs("FileOperationSelector", "Write")) {
        return WriteFile(camera, state, file);
    }
    if (file.open) { // "Delete"
        return Finish(state, "Failure", 0);
    }
    file.content.clear();
    return Finish(state, "Success", 0);
}

} // namespace

void AddFileAccessControl(Camera& camera) {
    auto state = std::make_shared<Files>();
    state->files[1].content = "Pyxen SDK simulator 1.4.0.2\n";
    camera.AddTable("/FileAccessControl", kFileRows);
    camera.Get<Enum>("FileOperationStatus").Computed([state] { return state->status; });
    camera.Get<Int>("FileOperationResult").Computed([state] { return state->result; });
    camera.Get<Int>("FileSize").Computed([&camera, state] {
        const auto index = static_cast<std::size_t>(camera.EnumIntValue("FileSelector"));
        return static_cast<std::int64_t>(state->files[index].content.size());
    });
    camera.Get<Command>("FileOperationExecute").Runs([&camera, state] {
        return Execute(camera, *state);
    });
}

} // namespace pxsim
