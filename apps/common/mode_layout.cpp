// mode_layout.cpp - the layout that a mode of the host reports
//
// Apart from the layout itself, which is used without the host's library as well.
#include "apps/common/host_image.h"
#include "mivora/gfx_mode.h"

ImageLayout DescribeImage(CMivoraGfxMode& mode) {
    ImageLayout layout;
    layout.width = mode.GetxRes();
    layout.height = mode.GetyRes();
    layout.components = mode.GetNumComponents();
    layout.allocatedBits = mode.GetAllocatedBitPerComponent();
    layout.bits = mode.GetBitPerComponent();
    layout.colorCoding = mode.GetColorCoding();
    layout.cfaX = mode.GetCFAxOffset();
    layout.cfaY = mode.GetCFAyOffset();
    return layout;
}
