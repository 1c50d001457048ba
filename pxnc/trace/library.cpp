// library.cpp - what stands between the host and an SDK in this process
#include "pxnc/trace/library.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/file_version.h"
#include "platform/printable_text.h"

#include <atomic>
#include <charconv>
#include <cstdio>
#include <exception>

namespace sdktrace {
namespace {

constexpr std::size_t kPathLimit = 4096;
constexpr std::size_t kMostMegabytes = 1024 * 1024;

std::atomic<bool> isInUse = false;

void Report(const std::string& message) {
    std::fprintf(stderr, "PxnC: %s\n", platform::PrintableText(message).c_str());
}

/// Ends the trace when the process ends.
struct AtExit {
    ~AtExit() {
        if (isInUse) {
            Library::Instance().Finish();
        }
    }
} atExit;

bool ReadMegabytes(const std::string& text, std::size_t& megabytes) {
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, megabytes);
    return read.ec == std::errc() && read.ptr == end && megabytes >= 1 &&
           megabytes <= kMostMegabytes;
}

} // namespace

Library& Library::Instance() {
    static Library& library = *new Library;
    return library;
}

Library::Library() noexcept {
    version.fill(0xFFFF); // unknown
    platform::KeepThisLibraryLoaded();
    isInUse = true;
    try {
        std::string problem;
        isReady = SetUp(problem);
        if (!isReady) {
            Report(problem);
            recorder.reset();
            player.reset();
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "PxnC: %s\n", failure.what());
    }
}

bool Library::SetUp(std::string& problem) {
    const std::string replay = platform::GetEnvironment("PYXEN_TRACE_REPLAY");
    if (!replay.empty()) {
        player = Player::Open(replay, problem);
        if (!player) {
            return false;
        }
        version = player->Version();
    } else if (!LoadBehind(platform::GetEnvironment("PYXEN_TRACE_SDK"), problem)) {
        return false;
    }
    const std::string path = platform::GetEnvironment("PYXEN_TRACE_FILE");
    return path.empty() || BeginTrace(path, problem);
}

bool Library::LoadBehind(const std::string& home, std::string& problem) {
    if (home.empty()) {
        problem = "PYXEN_TRACE_SDK names no camera SDK";
        return false;
    }
    const std::string path = platform::FullPath(
        platform::JoinPath(platform::JoinPath(home, "Bin"), platform::LibraryFileName("PxnC")),
        kPathLimit);
    if (!behind.Load(path, true, &problem)) {
        problem = "cannot load " + path + ": " + problem;
        return false;
    }
    std::string missing;
    const auto find = [&](auto& function, const char* name) {
        void* const symbol = behind.FindSymbol(name);
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(symbol);
        if (!symbol) {
            missing += std::string(" ") + name;
        }
    };
#define PXN_TRACE_FIND(name) find(functions.name, #name);
    PXN_ENTRIES(PXN_TRACE_FIND)
#undef PXN_TRACE_FIND
    if (!missing.empty()) {
        problem = path + " lacks" + missing;
        return false;
    }
    functions.control = reinterpret_cast<ControlFunction>(behind.FindSymbol("PxnControl"));
    platform::FileVersion file;
    file.Read(path);
    for (unsigned part = 0; part < version.size(); ++part) {
        version[part] = file.Part(part);
    }
    return true;
}

bool Library::BeginTrace(const std::string& path, std::string& problem) {
    WriterOptions options;
    options.path = path;
    options.libraryVersion = version;
    const std::string size = platform::GetEnvironment("PYXEN_TRACE_SIZE");
    if (!size.empty() && !ReadMegabytes(size, options.megabytes)) {
        problem = "PYXEN_TRACE_SIZE=" + size + " is no size in MB";
        return false;
    }
    recorder = std::make_unique<Recorder>();
    if (!recorder->Create(options, !platform::GetEnvironment("PYXEN_TRACE_FRAMES").empty(),
                          problem)) {
        problem = "cannot write the trace " + path + ": " + problem;
        return false;
    }
    return true;
}

bool Library::Finish() noexcept {
    if (recorder) {
        recorder->Finish();
    }
    return isReady && (!player || player->Finish());
}

} // namespace sdktrace
