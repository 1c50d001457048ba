// gfx_mode.h - a graphics mode: how an image looks in the host's memory
#pragma once

#include "mivora/export.h"
#include "mivora/types.h"

/// A node of a camera's list of graphics modes. The module derives from it and answers live; the
/// base answers 0.
class MIVORA_API CMivoraGfxMode {
public:
    CMivoraGfxMode();
    CMivoraGfxMode(const CMivoraGfxMode&) = delete;
    CMivoraGfxMode& operator=(const CMivoraGfxMode&) = delete;

    /* slot  0 */ virtual uint32_t GetxRes();
    /* slot  1 */ virtual uint32_t GetyRes();
    /* slot  2 */ virtual uint32_t GetNumComponents();
    /* slot  3 */ virtual uint32_t GetAllocatedBitPerComponent();
    /* slot  4 */ virtual uint32_t GetBitStartComponent();
    /* slot  5 */ virtual uint32_t GetBitPerComponent();
    /* slot  6 */ virtual MV_COLORCODING GetColorCoding();
    /* slot  7 */ virtual uint32_t GetCFAxOffset();
    /* slot  8 */ virtual uint32_t GetCFAyOffset();
    /* slot  9 */ virtual uint64_t GetNumPixels();
    /// Bytes of the image in the host's layout.
    /* slot 10 */ virtual uint64_t GetImageSize();
    /* slot 11 */ virtual ~CMivoraGfxMode();

    MV_INTERLACE GetInterlace() const;
    CMivoraGfxMode* GetNext() const;
    void SetNext(CMivoraGfxMode* node);

private:
    CMivoraGfxMode* next;
};
