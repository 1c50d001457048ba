// configuration.cpp - the chosen camera, remembered across runs
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"

namespace {

constexpr const char* kUniqueIdKey = "UniqueId";
constexpr uint32_t kUniqueIdCapacity = 1024;
constexpr uint32_t kSectionCapacity = 64;

} // namespace

MV_ERRCODE CMivoraKVNPyxenClass::LoadGrabberConfig() {
    const MV_ERRCODE result = CPyxenGrabber::LoadGrabberConfig();
    if (result != MV_OK) {
        return result;
    }
    char id[kUniqueIdCapacity] = "";
    if (const CIniFile* const ini = GetIni()) {
        char section[kSectionCapacity];
        InitGrabberSectStr(section, sizeof section, GetSectionNumber());
        ini->GetText(section, kUniqueIdKey, "", id, sizeof id);
    }
    return identity.Select(id) ? MV_OK : MV_REFUSED;
}

MV_ERRCODE CMivoraKVNPyxenClass::SaveGrabberConfig() {
    Logger(GetLogSink()).Information("CMivoraKVNPyxenClass::SaveGrabberConfig");
    CMivoraCameraKVNPyxen* const camera = ActCameraNode();
    const MV_ERRCODE result = CPyxenGrabber::SaveGrabberConfig();
    if (result != MV_OK) {
        return result;
    }
    const char* const id = camera ? camera->Record().cameraIdExtended : nullptr;
    if (CIniFile* const ini = GetIni()) {
        char section[kSectionCapacity];
        InitGrabberSectStr(section, sizeof section, GetSectionNumber());
        ini->WriteText(section, kUniqueIdKey, id ? id : "");
    }
    return MV_OK;
}
