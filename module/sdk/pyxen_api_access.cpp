// pyxen_api_access.cpp - loading and starting the camera SDK
#include "sdk/pyxen_api_access.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/text.h"
#include "sdk/invalidation_hub.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/no_throw.h"
#include "sdk/sdk_error.h"

#include <type_traits>

using namespace pyxen;

namespace {

constexpr const char* kHomeVariable = "PYXEN_HOME";
constexpr const char* kHomeSubdirectory = "Bin";
constexpr const char* kLibraryBaseName = "PxnC";
constexpr std::size_t kFullPathCapacity = 260;
constexpr std::uint16_t kNoVersionPart = 65535;

// Empty when there is no home directory. One that does not exist is tried all the same.
std::string FindHomeDirectory() {
    return NoThrow(std::string(), [] {
        std::string directory = platform::GetEnvironment(kHomeVariable);
        if (directory.empty()) {
            return directory;
        }
        if (directory.back() != platform::kPathSeparator) {
            directory += platform::kPathSeparator;
        }
        directory += kHomeSubdirectory;
        while (!directory.empty() && directory.back() == platform::kPathSeparator) {
            directory.pop_back();
        }
        return directory;
    });
}

} // namespace

CPyxenAPIAccess::~CPyxenAPIAccess() {
    Unload();
}

bool CPyxenAPIAccess::Load(const char* configPath, Logger sink) {
    log = sink;
    Unload();
    try {
        LoadSdkLibrary();
        TakeVersionBehind();
        // Never valid, not even for a moment, while an entry is missing: Unload calls one.
        valid = library.IsLoaded() && ResolveEntries();
        if (!valid) {
            log.Error("CPyxenAPIAccess::CPyxenAPIAccess: PyxenAPI is invalid!");
            Unload();
            return false;
        }
        libraryUse.Begin(library.Handle());
        StartSdk(configPath);
        if (valid) {
            invalidations = InvalidationHub::Of(GetLibraryHandle());
        }
    } catch (...) {
        Unload();
    }
    return valid;
}

void CPyxenAPIAccess::Unload() {
    // Before the shutdown, which may be the SDK's last one and drop every registration.
    invalidations.reset();
    // From here on nobody begins a call.
    if (valid.exchange(false)) {
        CloseRememberedCameras(*this);
        PxnShutdown();
    }
    libraryUse.End();
    versionInfo.Clear();
    versionBehind.reset();
#define PYXEN_CLEAR_ENTRY(name) name = nullptr;
    PXN_ENTRIES(PYXEN_CLEAR_ENTRY)
#undef PYXEN_CLEAR_ENTRY
    library.Unload();
    dllName.clear();
}

std::uint16_t CPyxenAPIAccess::GetFileVersionPart(unsigned part) const {
    if (versionBehind) {
        return part < versionBehind->size() ? (*versionBehind)[part] : kNoVersionPart;
    }
    return versionInfo.Part(part);
}

void CPyxenAPIAccess::LoadSdkLibrary() {
    const std::string file = platform::LibraryFileName(kLibraryBaseName);
    const std::string home = FindHomeDirectory();
    if (home.empty()) {
        log.Information(
            "CPyxenAPIAccess::CPyxenAPIAccess: Environment variable PYXEN_HOME not found.");
    } else {
        log.Information("CPyxenAPIAccess::CPyxenAPIAccess: Trying to load %s%c%s", home.c_str(),
                        platform::kPathSeparator, file.c_str());
        if (LoadLibraryFrom(home, file)) {
            return;
        }
        log.Information("CPyxenAPIAccess::CPyxenAPIAccess: Loading %s%c%s failed", home.c_str(),
                        platform::kPathSeparator, file.c_str());
    }
    log.Information("CPyxenAPIAccess::CPyxenAPIAccess: Trying to load %s (default path)",
                    file.c_str());
    if (!LoadLibraryFrom(std::string(), file) && log) {
        log.Error("CPyxenAPIAccess::CPyxenAPIAccess: Loading %s (default path) failed. Giving up.",
                  file.c_str());
    }
}

bool CPyxenAPIAccess::LoadLibraryFrom(const std::string& directory, const std::string& file) {
    dllName = file;
    std::string path = directory;
    if (!path.empty() && path.back() != platform::kPathSeparator) {
        path += platform::kPathSeparator;
    }
    path += dllName;
    const std::string full = platform::FullPath(path, kFullPathCapacity);
    const bool absolute = !full.empty();
    if (absolute) {
        path = full;
    }
    versionInfo.Read(path);
    return library.Load(path, absolute);
}

void CPyxenAPIAccess::TakeVersionBehind() {
    using StoreVersion = void (*)(std::uint16_t*);
    const auto store = reinterpret_cast<StoreVersion>(library.FindSymbol("PxnLibraryVersion"));
    if (store) {
        store(versionBehind.emplace().data());
    }
}

bool CPyxenAPIAccess::ResolveEntries() {
    bool complete = true;
    const auto resolve = [&](auto& entry, const char* name) {
        void* const address = library.FindSymbol(name);
        entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(address);
        complete = complete && address;
        if (!log) {
            return;
        }
        if (address) {
            log.Information("Found %s @0x%p", name, address);
        } else {
            log.Error("PyxenApi: Could not find %s", name);
        }
    };
#define PYXEN_RESOLVE_ENTRY(name) resolve(name, #name);
    PXN_ENTRIES(PYXEN_RESOLVE_ENTRY)
#undef PYXEN_RESOLVE_ENTRY
    return complete;
}

void CPyxenAPIAccess::StartSdk(const char* configPath) {
    log.Information("CPyxenAPIAccess::CPyxenAPIAccess: calling PxnStartup...");
    MallocArray<wchar_t> widePath;
    if (configPath) {
        const std::size_t size = platform::NarrowToWide(configPath, nullptr, 0);
        if (size == 0 || !widePath.Resize(size) ||
            platform::NarrowToWide(configPath, widePath.Get(), size) != size) {
            log.Error(
                "CPyxenAPIAccess::CPyxenAPIAccess: Cannot convert PxnC.xml's filename into wchar!");
            Unload();
            return;
        }
    }
    const PxnError result = PxnStartup(widePath.Get());
    if (result != PxnErrSuccess) {
        ReportSdkError("CPyxenAPIAccess::CPyxenAPIAccess: PxnStartup returned error", result, log);
        // SDKs count a failed start-up, too: it needs its shutdown.
        Unload();
    }
}
