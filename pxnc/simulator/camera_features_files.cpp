#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <array>
#include <string>

namespace pxsim {
namespace {

constexpr const char* kFileAccessControl = "/FileAccessControl";
constexpr std::size_t kBufferBytes = 256;
constexpr std::size_t kLargestFile = 64 * 1024;

/// The camera's files. Used with the camera's mutex held.
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

template <typename T>
T& Named(Camera& camera, const char* name) {
    return dynamic_cast<T&>(*camera.Find(name));
}

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
    Named<RawFeature>(camera, "FileAccessBuffer").Set(std::move(piece));
    return Finish(state, "Success", read);
}

PxnError WriteFile(Camera& camera, Files& state, Files::File& file) {
    const auto offset = static_cast<std::size_t>(camera.IntValue("FileAccessOffset"));
    const auto length = static_cast<std::size_t>(camera.IntValue("FileAccessLength"));
    if (!file.open || !file.writable || offset + length > kLargestFile) {
        return Finish(state, "Failure", 0);
    }
    const std::string bytes = Named<RawFeature>(camera, "FileAccessBuffer").Get();
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
    camera.Enum("FileSelector")
        .Entries({"UserData", "FirmwareInfo", "Calibration"})
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .Affects({"FileSize"})
        .Text("File that the features below belong to.");
    camera.Enum("FileOperationSelector")
        .Entries({"Open", "Close", "Read", "Write", "Delete"})
        .SelectedBy("FileSelector")
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("What is done with the file.");
    camera.Enum("FileOpenMode")
        .Entries({"Read", "Write", "ReadWrite"})
        .SelectedBy("FileSelector")
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("What the file is opened for.");
    camera.Raw("FileAccessBuffer")
        .Value(std::string(kBufferBytes, '\0'))
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("Bytes that were read or will be written.");
    camera.Int("FileAccessOffset")
        .Range(0, kLargestFile)
        .Unit("B")
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("Where in the file.");
    camera.Int("FileAccessLength")
        .Range(0, kBufferBytes)
        .Unit("B")
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("How many bytes.");
    camera.Enum("FileOperationStatus")
        .Entries({"Success", "Failure"})
        .Computed([state] { return state->status; })
        .In(kFileAccessControl)
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("How the last operation ended.");
    camera.Int("FileOperationResult")
        .Computed([state] { return state->result; })
        .Unit("B")
        .In(kFileAccessControl)
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("Bytes that the last operation moved.");
    camera.Int("FileSize")
        .SelectedBy("FileSelector")
        .Computed([&camera, state] {
            const auto index = static_cast<std::size_t>(camera.EnumIntValue("FileSelector"));
            return static_cast<std::int64_t>(state->files[index].content.size());
        })
        .Unit("B")
        .In(kFileAccessControl)
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("Bytes of the file.");
    camera.Command("FileOperationExecute")
        .SelectedBy("FileSelector")
        .Runs([&camera, state] { return Execute(camera, *state); })
        .In(kFileAccessControl)
        .For(PxnVisibilityGuru)
        .Affects({"FileOperationStatus", "FileOperationResult", "FileSize", "FileAccessBuffer"})
        .Text("Does it.");
}

} // namespace pxsim
