// sdk_control.cpp - the control interface of a camera SDK
#include "apps/common/sdk_control.h"

#include "apps/common/command_failure.h"
#include "platform/environment.h"
#include "platform/file_system.h"

#include <vector>

namespace {

constexpr std::uint32_t kAnswerSize = 1u << 20;
constexpr std::size_t kPathLimit = 4096;

} // namespace

std::string SdkLibraryPath() {
    const std::string home = platform::GetEnvironment("PYXEN_HOME");
    return platform::FullPath(
        platform::JoinPath(platform::JoinPath(home, "Bin"), platform::LibraryFileName("PxnC")),
        kPathLimit);
}

std::string SdkLibraryProblem() {
    const std::string path = SdkLibraryPath();
    if (!platform::PathExists(path)) {
        return "there is no file " + path;
    }
    std::string error;
    platform::SharedLibrary library;
    return library.Load(path, true, &error) ? "" : path + ": " + error;
}

std::int32_t SdkControl::Run(const std::string& command, std::string& answer) {
    Find();
    std::vector<char> buffer(kAnswerSize, '\0');
    const std::int32_t result = control(command.c_str(), buffer.data(), kAnswerSize);
    buffer.back() = '\0';
    answer = buffer.data();
    return result;
}

void SdkControl::Find() {
    if (control) {
        return;
    }
    const std::string path = SdkLibraryPath();
    std::string error;
    if (!library.IsLoaded() && !library.Load(path, true, &error)) {
        throw CommandFailure("cannot load " + path + ": " + error);
    }
    control = reinterpret_cast<ControlFunction>(library.FindSymbol("PxnControl"));
    if (!control) {
        throw CommandFailure(path + " has no control interface");
    }
}
