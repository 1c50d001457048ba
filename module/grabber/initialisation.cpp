// initialisation.cpp - from constructed to usable and back
#include "grabber/discovery_events.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

using namespace pyxen;

MV_ERRCODE CMivoraKVNPyxenClass::Init() {
    Logger(GetLogSink()).Information("CMivoraKVNPyxenClass::Init");
    if (initialized) {
        return MV_ALREADY_INITIALISED; // without the lock, for which no callback may wait
    }
    const ServiceLockHold hold(services.Lock());
    const MV_ERRCODE result = NoThrow(MV_REFUSED, [this] { return InitOrThrow(); });
    if (!initialized) {
        session.Unload();
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::InitOrThrow() {
    const Logger log(GetLogSink());
    if (!session.Load(GetConfigDirectory())) {
        return MV_REFUSED;
    }
    const PxnVersionInfo version = session.QueryVersion();
    log.Information("CMivoraKVNPyxenClass::Init: Using Pyxen V%u.%u.%u", version.major,
                    version.minor, version.patch);
    SetDriverVersion(session.GetVersionText("Pyxen", version).c_str());
    session.List();
    CPyxenGrabber::Init();
    initialized = true;
    const MV_ERRCODE result = BuildInternalList();
    if (result != MV_OK) {
        log.ErrorText(
            "CMivoraKVNPyxenClass::Init: CMivoraKVNPyxenClass::BuildInternalList failed!");
    }
    discovery_events::Register(*this);
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::DeInit() {
    if (IsWaitedFor()) {
        return MV_BUSY;
    }
    discovery_events::Release(*this);
    acquisition.End();
    if (ICamCntrlDialog* const dialog = GetCamCntrlDialogObject()) {
        dialog->Disconnect();
    }
    {
        // From here on: what was waited for before may be receivers, which call operations.
        const ServiceLockHold hold(services.Lock());
        if (cameraOpen) {
            CloseActCamera();
        }
        {
            // An operation of a serial channel on another thread may still be inside the SDK.
            // Without its camera it comes to an end, and those that begin from here on find none.
            platform::MutexLock lock(serialMutex);
        }
        services.LeaveSdk();
        session.Unload();
        identity.ForgetOpened();
        DeleteInternalList();
        CPyxenGrabber::DeInit();
        acquisition.Finish();
        initialized = false;
    }
    const std::unique_ptr<ICamCntrlDialog> dialog(GetCamCntrlDialogObject());
    SetCamCntrlDialogObject(nullptr);
    return MV_OK;
}

const char* CMivoraKVNPyxenClass::GetDriverVersion() {
    if (session.Api().IsValid()) {
        NoThrow(false, [this] {
            // Compatibility: another spelling of the SDK's name than Init writes.
            SetDriverVersion(session.GetVersionText("PyxenC", session.QueryVersion()).c_str());
            return true;
        });
    }
    return CPyxenGrabber::GetDriverVersion();
}
