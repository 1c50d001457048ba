// library_facts.cpp - looks at the library of the camera SDK, as the grabber module will
#include "apps/doctor/library_facts.h"

#include "apps/common/app_options.h"
#include "apps/common/sdk_control.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "platform/text.h"
#include "pxnc.h"
#include "pxnc_entries.h"

namespace {

std::vector<std::string> MissingEntries(const std::string& path) {
    std::vector<std::string> missing;
    platform::SharedLibrary library;
    if (!library.Load(path, true)) {
        return missing;
    }
#define MIVORA_LOOK_FOR(name)                                                                      \
    if (!library.FindSymbol(#name)) {                                                              \
        missing.emplace_back(#name);                                                               \
    }
    PXN_ENTRIES(MIVORA_LOOK_FOR)
#undef MIVORA_LOOK_FOR
    return missing;
}

std::wstring Wide(const std::string& text) {
    std::wstring wide(platform::NarrowToWide(text.c_str(), nullptr, 0), L'\0');
    platform::NarrowToWide(text.c_str(), wide.data(), wide.size());
    return wide;
}

} // namespace

SdkFacts GatherLibraryFacts(const AppOptions& options) {
    SdkFacts sdk;
    sdk.searched = ApplySdk(options);
    sdk.places = SdkLibraryPlaces();
    if (!sdk.places.empty() && sdk.places.back().problem.empty()) {
        sdk.missing = MissingEntries(sdk.places.back().path);
    }
    return sdk;
}

std::optional<std::int32_t> StartUpResult(const AppOptions& options, const SdkFacts& sdk) {
    platform::SharedLibrary library;
    if (!sdk.missing.empty() || sdk.places.empty() || !sdk.places.back().problem.empty() ||
        !library.Load(sdk.places.back().path, true)) {
        return std::nullopt;
    }
    const auto startUp = reinterpret_cast<decltype(&PxnStartup)>(library.FindSymbol("PxnStartup"));
    const auto shutDown =
        reinterpret_cast<decltype(&PxnShutdown)>(library.FindSymbol("PxnShutdown"));
    const std::string file =
        platform::JoinPath(platform::DirectoryOf(options.configFile), "PxnC.xml");
    const bool isConfigured = !options.configFile.empty() && platform::PathExists(file);
    const std::int32_t result = startUp(isConfigured ? Wide(file).c_str() : nullptr);
    shutDown(); // of one that failed as well
    return result;
}
