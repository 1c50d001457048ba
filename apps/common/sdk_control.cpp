// sdk_control.cpp - the optional control interface of a camera SDK
#include "apps/common/sdk_control.h"

#include "apps/common/command_failure.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "platform/environment.h"
#include "platform/file_system.h"

#include <array>
#include <map>
#include <vector>

namespace {

constexpr std::pair<const char*, std::uint64_t SdkCounts::*> kCounts[] = {
    {"announced", &SdkCounts::announced}, {"revoked", &SdkCounts::revoked},
    {"queued", &SdkCounts::queued},       {"completed", &SdkCounts::completed},
    {"callbacks", &SdkCounts::callbacks}, {"flushed", &SdkCounts::flushed},
    {"dropped", &SdkCounts::dropped},
};

constexpr std::uint32_t kAnswerSize = 1u << 20;
constexpr std::size_t kLibraryPathLimit = 4096;

std::string LibraryBelow(const std::string& home) {
    return platform::FullPath(
        platform::JoinPath(platform::JoinPath(home, "Bin"), platform::LibraryFileName("PxnC")),
        kLibraryPathLimit);
}

std::string InCurrentDirectory() {
    return platform::FullPath(platform::LibraryFileName("PxnC"), kLibraryPathLimit);
}

std::string LibraryProblem(const std::string& path) {
    if (!platform::PathExists(path)) {
        return "there is no file " + path;
    }
    std::string error;
    platform::SharedLibrary library;
    return library.Load(path, true, &error) ? "" : path + ": " + error;
}

} // namespace

SdkCounts& SdkCounts::operator+=(const SdkCounts& other) {
    for (const auto& [name, count] : kCounts) {
        this->*count += other.*count;
    }
    return *this;
}

SdkCounts SdkCounts::operator-(const SdkCounts& other) const {
    SdkCounts difference;
    for (const auto& [name, count] : kCounts) {
        difference.*count = this->*count - other.*count;
    }
    return difference;
}

std::string SdkLibraryPath() {
    return LibraryBelow(platform::GetEnvironment("PYXEN_HOME"));
}

std::vector<SdkLibraryPlace> SdkLibraryPlaces() {
    std::vector<SdkLibraryPlace> places;
    // The module's second choice is the current directory.
    for (const std::string& path : {SdkLibraryPath(), InCurrentDirectory()}) {
        places.push_back({path, LibraryProblem(path)});
        if (places.back().problem.empty()) {
            break;
        }
    }
    return places;
}

std::vector<std::string> SdkLibraryProblems() {
    std::vector<std::string> problems;
    for (const SdkLibraryPlace& place : SdkLibraryPlaces()) {
        if (place.problem.empty()) {
            problems.clear();
        } else {
            problems.push_back(place.problem);
        }
    }
    const std::string traced = platform::GetEnvironment("PYXEN_TRACE_SDK");
    if (problems.empty() && !traced.empty()) {
        const std::string problem = LibraryProblem(LibraryBelow(traced));
        if (!problem.empty()) {
            problems.push_back(problem);
        }
    }
    return problems;
}

std::int32_t SdkControl::Run(const std::string& command, std::string& answer) {
    Find();
    std::vector<char> buffer(kAnswerSize, '\0');
    const std::int32_t result = control(command.c_str(), buffer.data(), kAnswerSize);
    buffer.back() = '\0';
    answer = buffer.data();
    return result;
}

void SdkControl::RunScript(const std::string& file) {
    std::string answer;
    const std::int32_t code = Run("script " + file, answer);
    if (code != 0) {
        throw CommandFailure("the camera SDK refuses the script (" + std::to_string(code) +
                             "): " + answer);
    }
}

std::optional<SdkCounts> SdkControl::Counts() {
    std::string answer;
    try {
        if (Run("status", answer) != 0) {
            return std::nullopt;
        }
    } catch (const CommandFailure&) {
        return std::nullopt; // this SDK has no such interface
    }
    const std::map<std::string, std::uint64_t> status = JsonCounts(answer);
    SdkCounts counts;
    for (const auto& [name, count] : kCounts) {
        const auto found = status.find(name);
        if (found == status.end()) {
            return std::nullopt;
        }
        counts.*count = found->second;
    }
    return counts;
}

std::optional<std::uint64_t> SdkControl::FrameAge() const {
    std::array<char, 32> answer{};
    if (!control || control("frame-age", answer.data(), answer.size()) != 0) {
        return std::nullopt;
    }
    return ParseUnsigned(answer.data());
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
