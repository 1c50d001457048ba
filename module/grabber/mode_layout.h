// mode_layout.h - the images of a graphics mode, for the frame records
#pragma once

#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "imaging/frame_layout.h"

namespace pyxen {

/// Asks a graphics mode, which outlives it.
class ModeLayout final : public IFrameLayout {
public:
    explicit ModeLayout(CMivoraGfxModeKVNPyxen& graphicsMode) : mode(graphicsMode) {}

    const PixelFormat* Format() override { return mode.GetFormatPropertiesByPixelFormat(); }
    std::uint64_t ImageSize() override { return mode.GetImageSize(); }
    std::uint64_t PayloadSize() override { return mode.GetIntermediateBufferSize(); }
    std::uint32_t Width() override { return mode.GetxRes(); }
    std::uint32_t Height() override { return mode.GetyRes(); }

private:
    CMivoraGfxModeKVNPyxen& mode;
};

} // namespace pyxen
