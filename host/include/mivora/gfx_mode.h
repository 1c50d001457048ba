// gfx_mode.h - a graphics mode: the layout of an image in the host's memory
#pragma once

#include "mivora/export.h"
#include "mivora/types.h"

/// A node of a camera's list of graphics modes. The module derives from it and returns the current
/// values of the camera; the base returns 0 and MVCC_MONO. Nodes are created, linked and deleted on
/// the thread that owns the camera list.
class MIVORA_API CMivoraGfxMode {
public:
    CMivoraGfxMode();
    CMivoraGfxMode(const CMivoraGfxMode&) = delete;
    CMivoraGfxMode& operator=(const CMivoraGfxMode&) = delete;

    ///@{
    /// Width and height in pixels.
    /* slot  0 */ virtual uint32_t GetxRes();
    /* slot  1 */ virtual uint32_t GetyRes();
    ///@}
    /// Components of a pixel: 1 for mono and raw images, 3 or 4 for colour.
    /* slot  2 */ virtual uint32_t GetNumComponents();
    ///@{
    /// Bits that a component occupies in memory, the position of its lowest used bit, and the
    /// number of used bits.
    /* slot  3 */ virtual uint32_t GetAllocatedBitPerComponent();
    /* slot  4 */ virtual uint32_t GetBitStartComponent();
    /* slot  5 */ virtual uint32_t GetBitPerComponent();
    ///@}
    /// What the components mean.
    /* slot  6 */ virtual MV_COLORCODING GetColorCoding();
    ///@{
    /// Column and row of the first pixel within the colour filter pattern, each 0 or 1: GR is 0, 0;
    /// RG is 1, 0; GB is 1, 1; BG is 0, 1.
    /* slot  7 */ virtual uint32_t GetCFAxOffset();
    /* slot  8 */ virtual uint32_t GetCFAyOffset();
    ///@}
    /// Width times height.
    /* slot  9 */ virtual uint64_t GetNumPixels();
    /// Size of the image in bytes, in the host's layout.
    /* slot 10 */ virtual uint64_t GetImageSize();
    /* slot 11 */ virtual ~CMivoraGfxMode();

    /// Always MV_PROGRESSIVE.
    MV_INTERLACE GetInterlace() const;
    ///@{
    /// The next mode of the camera, or null.
    CMivoraGfxMode* GetNext() const;
    void SetNext(CMivoraGfxMode* node);
    ///@}

private:
    CMivoraGfxMode* next;
};
