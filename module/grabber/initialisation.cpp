// initialisation.cpp - from constructed to usable and back
#include "grabber/discovery_events.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/file_system.h"
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

namespace {

constexpr const char* kSystemCacheName = "PxnSystem";
constexpr const char* kSdkConfigurationFile = "PxnC.xml";

} // namespace

MV_ERRCODE CMivoraKVNPyxenClass::Init() {
    const MV_ERRCODE result = NoThrow(MV_REFUSED, [this] { return InitOrThrow(); });
    if (!initialized) {
        api.Unload();
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::InitOrThrow() {
    const Logger log(GetLogSink());
    log.Information("CMivoraKVNPyxenClass::Init");
    if (initialized) {
        return MV_ALREADY_INITIALISED;
    }
    if (!LoadSdk()) {
        return MV_REFUSED;
    }
    const PxnVersionInfo version = QuerySdkVersion();
    log.Information("CMivoraKVNPyxenClass::Init: Using Pyxen V%u.%u.%u", version.major,
                    version.minor, version.patch);
    WriteVersionText("Pyxen", version);
    systemCache.Init(kSystemCacheName, &api, PXN_SYSTEM_HANDLE, log);
    FillInterfaceList();
    CPyxenGrabber::Init();
    initialized = true;
    const MV_ERRCODE result = BuildInternalList();
    if (result != MV_OK) {
        log.ErrorText(
            "CMivoraKVNPyxenClass::Init: CMivoraKVNPyxenClass::BuildInternalList failed!");
    }
    DiscoveryEvents::Register(*this);
    return result;
}

bool CMivoraKVNPyxenClass::LoadSdk() {
    const Logger log(GetLogSink());
    // The separator stands there without a directory, too: then the root is meant; that is
    // intended.
    const std::string path =
        std::string(GetConfigDirectory()) + platform::kPathSeparator + kSdkConfigurationFile;
    const bool exists = platform::IsRegularFile(path);
    log.Information(
        exists ? NameFormat("CMivoraKVNPyxenClass::Init: Using Pyxen config file: %s")
               : NameFormat(
                     "CMivoraKVNPyxenClass::Init: %s not found. Using default Pyxen config file"),
        path.c_str());
    return api.Load(exists ? path.c_str() : nullptr, log);
}

MV_ERRCODE CMivoraKVNPyxenClass::DeInit() {
    DiscoveryEvents::Release(*this);
    if (stopEvent) {
        // From here on no frame callback starts another cleanup thread.
        stopEvent->Set();
    }
    JoinCleanupThread();
    if (ICamCntrlDialog* const dialog = GetCamCntrlDialogObject()) {
        dialog->Disconnect();
    }
    if (cameraOpen) {
        CloseActCamera();
    }
    {
        // An operation of a serial channel on another thread may still be inside the SDK. Without
        // its camera it comes to an end, and those that begin from here on find none.
        platform::MutexLock lock(serialMutex);
    }
    if (api.IsValid()) {
        api.Unload();
    }
    // Its texts went with the SDK.
    systemCache.Clear();
    interfaceList.Free();
    interfaceCount = 0;
    identity.ForgetOpened();
    DeleteInternalList();
    CPyxenGrabber::DeInit();
    acquisitionState = 0;
    initialized = false;
    const std::unique_ptr<ICamCntrlDialog> dialog(GetCamCntrlDialogObject());
    SetCamCntrlDialogObject(nullptr);
    return MV_OK;
}

const char* CMivoraKVNPyxenClass::GetDriverVersion() {
    if (api.IsValid()) {
        NoThrow(false, [this] {
            // Another spelling of the SDK's name than Init writes; that is intended.
            WriteVersionText("PyxenC", QuerySdkVersion());
            return true;
        });
    }
    return CPyxenGrabber::GetDriverVersion();
}

PxnVersionInfo CMivoraKVNPyxenClass::QuerySdkVersion() const {
    PxnVersionInfo version{};
    api.PxnVersionQuery(&version, sizeof version);
    return version;
}

void CMivoraKVNPyxenClass::WriteVersionText(const char* sdkName, const PxnVersionInfo& version) {
    SetDriverVersion(FormatText("%s V%u.%u.%u (%u.%u.%u.%u)", sdkName, version.major, version.minor,
                                version.patch, api.GetFileVersionPart(0), api.GetFileVersionPart(1),
                                api.GetFileVersionPart(2), api.GetFileVersionPart(3))
                         .c_str());
}

void CMivoraKVNPyxenClass::FillInterfaceList() {
    uint32_t needed = 0;
    uint32_t found = 0;
    api.PxnInterfacesList(nullptr, 0, &needed, sizeof(PxnInterfaceInfo));
    // What is needed is asked for once, so this ends only when a fill reports exactly that; that
    // is intended.
    while (needed != found) {
        if (!interfaceList.Resize(needed)) {
            Logger(GetLogSink())
                .Error("CMivoraKVNPyxenClass::Init: Could not allocate memory for interface list");
            return;
        }
        interfaceCount = needed;
        api.PxnInterfacesList(interfaceList.Get(), needed, &found, sizeof(PxnInterfaceInfo));
    }
}
