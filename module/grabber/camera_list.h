// camera_list.h - the host's list of cameras, made from the SDK's
#pragma once

#include "pxnc.h"

#include <cstdint>

class CMivoraCamera;

namespace pyxen {

class CameraIdentity;

/// A list of camera nodes that nobody owns yet.
struct CameraNodes {
    CMivoraCamera* first = nullptr; ///< null for an empty list
    std::int32_t chosen = -1;       ///< index of the last camera with the chosen identifier
};

/// Makes one node for each record, in the same order; each has a record, a key and a name, no
/// section yet and no modes. False when out of memory: nothing is made then.
bool MakeCameraNodes(const PxnCameraInfo* records, std::uint32_t count,
                     const CameraIdentity& identity, CameraNodes& nodes);

/// Deletes a node and those behind it; null is allowed.
void DeleteCameraNodes(CMivoraCamera* node);

} // namespace pyxen
