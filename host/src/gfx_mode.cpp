// gfx_mode.cpp - the empty graphics mode from which modules derive
#include "mivora/gfx_mode.h"

#include <cstdint>

CMivoraGfxMode::CMivoraGfxMode() : next(nullptr) {}

CMivoraGfxMode::~CMivoraGfxMode() = default;

std::uint32_t CMivoraGfxMode::GetxRes() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetyRes() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetNumComponents() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetAllocatedBitPerComponent() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetBitStartComponent() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetBitPerComponent() {
    return 0;
}

MV_COLORCODING CMivoraGfxMode::GetColorCoding() {
    return MVCC_MONO;
}

std::uint32_t CMivoraGfxMode::GetCFAxOffset() {
    return 0;
}

std::uint32_t CMivoraGfxMode::GetCFAyOffset() {
    return 0;
}

std::uint64_t CMivoraGfxMode::GetNumPixels() {
    return 0;
}

std::uint64_t CMivoraGfxMode::GetImageSize() {
    return 0;
}

MV_INTERLACE CMivoraGfxMode::GetInterlace() const {
    return MV_PROGRESSIVE;
}

CMivoraGfxMode* CMivoraGfxMode::GetNext() const {
    return next;
}

void CMivoraGfxMode::SetNext(CMivoraGfxMode* node) {
    next = node;
}
