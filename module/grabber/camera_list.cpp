// camera_list.cpp - the cameras as the host sees them, and choosing one
#include "grabber/camera_key.h"
#include "grabber/grabber_dialogs.h"
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/no_throw.h"

MV_ERRCODE CMivoraKVNPyxenClass::BuildInternalList() {
    PxnCameraInfo* listed = nullptr;
    const uint32_t count = api.AllocateAndGetCameraList(&listed);
    MallocArray<PxnCameraInfo> records;
    records.Adopt(listed);
    if (CMivoraCameraKVNPyxen* const camera = ActCameraNode()) {
        const char* const id = camera->Record().cameraIdExtended;
        if (!identity.Select(id ? id : "")) {
            return MV_REFUSED;
        }
    }
    if (GetFirstCamera()) {
        const MV_ERRCODE result = DeleteInternalList();
        if (result != MV_OK) {
            return result;
        }
    }
    StoreActCameraIndex(-1);
    CMivoraCamera* first = nullptr;
    CMivoraCamera* last = nullptr;
    for (uint32_t index = 0; index < count; ++index) {
        CMivoraCamera* const added =
            AppendCamera(records[index], static_cast<int32_t>(index), last);
        if (!added) {
            SetFirstCamera(first);
            DeleteInternalList();
            return MV_REFUSED;
        }
        first = first ? first : added;
        last = added;
    }
    SetFirstCamera(first);
    return MV_OK;
}

CMivoraCamera* CMivoraKVNPyxenClass::AppendCamera(const PxnCameraInfo& record, int32_t index,
                                                  CMivoraCamera* last) {
    auto* const node = static_cast<CMivoraCameraKVNPyxen*>(CreateCamera());
    if (!node) {
        return nullptr;
    }
    node->SetPrev(last);
    if (last) {
        last->SetNext(node);
    }
    node->SetCameraSectionNum(-1);
    node->Record() = record;
    const uint32_t key = CameraKey(record.cameraIdExtended);
    node->SetCameraUniqueID(key);
    node->SetCameraName(record.modelName);
    if (identity.IsSelected(key)) {
        StoreActCameraIndex(index);
    }
    node->BuildGfxModeList(this);
    return node;
}

MV_ERRCODE CMivoraKVNPyxenClass::RefreshCameraList() {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    CloseActCamera();
    const CMivoraCamera* const camera = GetActCamera();
    const bool hadCamera = camera != nullptr;
    const uint32_t key = hadCamera ? camera->GetCameraUniqueID() : 0;
    DeleteInternalList();
    BuildInternalList();
    StoreActCameraIndex(hadCamera ? GetCameraIndexByCameraUniqueID(key) : -1);
    UpdateCamCntrlDialogs(kMvUpdateAll);
    return MV_OK;
}

MV_ERRCODE CMivoraKVNPyxenClass::SelectCameraDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    if (!initialized) {
        GrabberDialogs::ShowMessage(parent, "MivoraKVNPyxen has not been properly initalized!",
                                    "Error", false, GetLogSink());
        return MV_NOT_INITIALISED;
    }
    MV_DLG_EXITCODE ending = MV_DLG_CANCEL;
    const MV_ERRCODE result = NoThrow(MV_REFUSED, [&] { return ChooseCamera(parent, ending); });
    if (exitCode) {
        *exitCode = ending;
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::ChooseCamera(MV_WINDOW parent, MV_DLG_EXITCODE& ending) {
    std::string chosen = identity.GetSelected();
    const MV_ERRCODE shown =
        GrabberDialogs::RunDeviceFinder(parent, api, GetLogSink(), chosen, ending);
    if (shown != MV_OK || ending != MV_DLG_OK) {
        return shown;
    }
    if (!identity.Select(chosen.c_str())) {
        return MV_REFUSED;
    }
    const MV_ERRCODE result = RefreshCameraList();
    StoreActCameraIndex(GetCameraIndexByCameraUniqueID(CameraKey(chosen.c_str())));
    return result;
}
