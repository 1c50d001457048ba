// camera_list.cpp - the host's list of cameras, made from the SDK's
#include "grabber/camera_list.h"

#include "grabber/camera_identity.h"
#include "grabber/camera_key.h"
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "sdk/no_throw.h"

namespace pyxen {

namespace {

CMivoraCameraKVNPyxen* MakeNode(const PxnCameraInfo& record) {
    auto* const node =
        NoThrow<CMivoraCameraKVNPyxen*>(nullptr, [] { return new CMivoraCameraKVNPyxen; });
    if (node) {
        node->SetCameraSectionNum(-1);
        node->Record() = record;
        node->SetCameraUniqueID(CameraKey(record.cameraIdExtended));
        node->SetCameraName(record.modelName);
    }
    return node;
}

} // namespace

void DeleteCameraNodes(CMivoraCamera* node) {
    while (node) {
        CMivoraCamera* const next = node->GetNext();
        delete node;
        node = next;
    }
}

bool MakeCameraNodes(const PxnCameraInfo* records, std::uint32_t count,
                     const CameraIdentity& identity, CameraNodes& nodes) {
    CameraNodes made;
    CMivoraCamera* last = nullptr;
    for (std::uint32_t index = 0; index < count; ++index) {
        CMivoraCameraKVNPyxen* const node = MakeNode(records[index]);
        if (!node) {
            DeleteCameraNodes(made.first);
            return false;
        }
        node->SetPrev(last);
        if (last) {
            last->SetNext(node);
        } else {
            made.first = node;
        }
        last = node;
        if (identity.IsSelected(node->GetCameraUniqueID())) {
            made.chosen = static_cast<std::int32_t>(index);
        }
    }
    nodes = made;
    return true;
}

} // namespace pyxen
