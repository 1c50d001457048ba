// mivora_camera_kvn_pyxen.h - a camera of this module in the host's list
#pragma once

#include "mivora/camera.h"
#include "pxnc.h"

/// A camera node with the SDK's record of it.
class CMivoraCameraKVNPyxen final : public CMivoraCamera {
public:
    CMivoraCameraKVNPyxen();

    CMivoraGfxMode* CreateGfxMode() override;
    const char* GetExtraDescription() const override;
    uint32_t BuildGfxModeList(CMivoraGrabber* grabber) override;
    void* GetCameraRecord() override;

    /// The SDK's record, zeroed at construction.
    PxnCameraInfo& Record() { return record; }

private:
    PxnCameraInfo record{};
};
