// sdk_session.cpp - the camera SDK from loading to unloading
#include "grabber/sdk_session.h"

#include "platform/file_system.h"
#include "sdk/format_text.h"

namespace pyxen {

namespace {

constexpr const char* kSystemCacheName = "PxnSystem";
constexpr const char* kSdkConfigurationFile = "PxnC.xml";

} // namespace

bool SdkSession::Load(const std::string& configDirectory) {
    // Compatibility: without a directory the file is looked for in the root.
    const std::string path = configDirectory + platform::kPathSeparator + kSdkConfigurationFile;
    const bool exists = platform::IsRegularFile(path);
    log.Information(
        exists ? NameFormat("CMivoraKVNPyxenClass::Init: Using Pyxen config file: %s")
               : NameFormat(
                     "CMivoraKVNPyxenClass::Init: %s not found. Using default Pyxen config file"),
        path.c_str());
    return api.Load(exists ? path.c_str() : nullptr, log);
}

PxnVersionInfo SdkSession::QueryVersion() const {
    PxnVersionInfo version{};
    api.PxnVersionQuery(&version, sizeof version);
    return version;
}

std::string SdkSession::GetVersionText(const char* sdkName, const PxnVersionInfo& version) const {
    return FormatText("%s V%u.%u.%u (%u.%u.%u.%u)", sdkName, version.major, version.minor,
                      version.patch, api.GetFileVersionPart(0), api.GetFileVersionPart(1),
                      api.GetFileVersionPart(2), api.GetFileVersionPart(3));
}

void SdkSession::List() {
    systemCache.Init(kSystemCacheName, &api, PXN_SYSTEM_HANDLE, log);
    ListInterfaces();
}

void SdkSession::ListInterfaces() {
    std::uint32_t needed = 0;
    std::uint32_t found = 0;
    api.PxnInterfacesList(nullptr, 0, &needed, sizeof(PxnInterfaceInfo));
    // Compatibility: the number needed is asked for once, so that the loop ends only when a fill
    // reports exactly that number.
    while (needed != found) {
        if (!interfaceList.Resize(needed)) {
            log.Error("CMivoraKVNPyxenClass::Init: Could not allocate memory for interface list");
            return;
        }
        interfaceCount = needed;
        api.PxnInterfacesList(interfaceList.Get(), needed, &found, sizeof(PxnInterfaceInfo));
    }
}

void SdkSession::Unload() {
    api.Unload();
    systemCache.Clear();
    ForgetInterfaces();
}

void SdkSession::ForgetInterfaces() {
    interfaceList.Free();
    interfaceCount = 0;
}

} // namespace pyxen
