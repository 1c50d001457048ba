// mivora_gfx_mode_kvn_pyxen.h - the graphics mode that asks the camera
#pragma once

#include "imaging/pixel_format.h"
#include "mivora/gfx_mode.h"
#include "sdk/log_format.h"

namespace pyxen {
class ICameraFeatures;
}

/// Reads every value from the open camera's features; nothing is cached. A mode without a camera to
/// ask returns 0 or null.
class CMivoraGfxModeKVNPyxen final : public CMivoraGfxMode {
public:
    explicit CMivoraGfxModeKVNPyxen(pyxen::ICameraFeatures* cameraToAsk);

    uint32_t GetxRes() override;
    uint32_t GetyRes() override;
    uint32_t GetNumComponents() override;
    uint32_t GetAllocatedBitPerComponent() override;
    uint32_t GetBitStartComponent() override;
    uint32_t GetBitPerComponent() override;
    MV_COLORCODING GetColorCoding() override;
    uint32_t GetCFAxOffset() override;
    uint32_t GetCFAyOffset() override;
    uint64_t GetNumPixels() override;
    uint64_t GetImageSize() override;

    /// The entry of the camera's current pixel format, or null.
    virtual const pyxen::PixelFormat* GetFormatPropertiesByPixelFormat();
    /// Bytes that the camera delivers per image; 0 when they cannot be read.
    virtual uint64_t GetIntermediateBufferSize();

private:
    uint32_t ReadSize(const char* feature, pyxen::LogFormat<> noHandleText,
                      pyxen::LogFormat<> failureText);

    pyxen::ICameraFeatures* const features; // the grabber's; null for a mode made without one
};
