// mivora_gfx_mode_kvn_pyxen.cpp - the graphics mode that asks the camera
#include "grabber/mivora_gfx_mode_kvn_pyxen.h"

#include "sdk/camera_features.h"
#include "sdk/pyxen_api_access.h"

#include <limits>

using namespace pyxen;

CMivoraGfxModeKVNPyxen::CMivoraGfxModeKVNPyxen(ICameraFeatures* cameraToAsk)
    : features(cameraToAsk) {}

uint32_t CMivoraGfxModeKVNPyxen::GetxRes() {
    return ReadSize(
        "Width", "CMivoraGfxModeKVNPyxen::GetxRes: camera handle is nullptr -> cannot get width",
        "CMivoraGfxModeKVNPyxen::GetxRes: PxnFeatureIntGet reports error -> cannot get width");
}

uint32_t CMivoraGfxModeKVNPyxen::GetyRes() {
    return ReadSize(
        "Height", "CMivoraGfxModeKVNPyxen::GetyRes: camera handle is nullptr -> cannot get height",
        "CMivoraGfxModeKVNPyxen::GetyRes: PxnFeatureIntGet reports error -> cannot get height");
}

uint32_t CMivoraGfxModeKVNPyxen::GetNumComponents() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->components : 0;
}

uint32_t CMivoraGfxModeKVNPyxen::GetAllocatedBitPerComponent() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->allocatedBits : 0;
}

uint32_t CMivoraGfxModeKVNPyxen::GetBitStartComponent() {
    return 0;
}

uint32_t CMivoraGfxModeKVNPyxen::GetBitPerComponent() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->bits : 0;
}

MV_COLORCODING CMivoraGfxModeKVNPyxen::GetColorCoding() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->colorCoding : MVCC_MONO;
}

uint32_t CMivoraGfxModeKVNPyxen::GetCFAxOffset() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->cfaX : 0;
}

uint32_t CMivoraGfxModeKVNPyxen::GetCFAyOffset() {
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    return format ? format->cfaY : 0;
}

uint64_t CMivoraGfxModeKVNPyxen::GetNumPixels() {
    const uint64_t width = GetxRes();
    return width * GetyRes();
}

uint64_t CMivoraGfxModeKVNPyxen::GetImageSize() {
    const uint64_t pixels = GetNumPixels();
    const PixelFormat* format = GetFormatPropertiesByPixelFormat();
    if (!format) {
        return 0;
    }
    // A size that 64 bits cannot hold is more than any memory.
    constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();
    const uint64_t bits = uint64_t{format->components} * format->allocatedBits;
    const uint64_t rest = pixels % 8 * bits / 8;
    return pixels / 8 > (kMost - rest) / bits ? kMost : pixels / 8 * bits + rest;
}

const PixelFormat* CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat() {
    if (!features) {
        return nullptr;
    }
    const PxnHandle camera = features->CameraHandle();
    if (!camera) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: camera handle is NULL -> cannot get pixelformat");
        return nullptr;
    }
    const CPyxenAPIAccess& api = features->Api();
    const char* name = nullptr;
    if (api.PxnFeatureEnumGet(camera, "PixelFormat", &name) != PxnErrSuccess) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: PxnFeatureEnumGet reports error -> cannot get pixelformat");
        return nullptr;
    }
    name = name ? name : "";
    int64_t code = 0;
    if (api.PxnFeatureEnumAsInt(camera, "PixelFormat", name, &code) != PxnErrSuccess) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: m_pfPxnFeatureEnumAsInt failed for %s. Trying to look up pixelformat properties by its name.",
            name);
    } else if (const PixelFormat* format = FindPixelFormatByCode(static_cast<uint32_t>(code))) {
        return format;
    } else {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: Pixelformat 0x%08X alias %s is unknown. Trying to look up pixelformat properties by its name.",
            static_cast<uint32_t>(code), name);
    }
    const PixelFormat* format = FindPixelFormatByName(name);
    if (!format) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: PxnFeatureEnumGet reports pixelformat %s which is not supported!",
            name);
    }
    return format;
}

uint64_t CMivoraGfxModeKVNPyxen::GetIntermediateBufferSize() {
    if (!features) {
        return 0;
    }
    const PxnHandle camera = features->CameraHandle();
    if (!camera) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetIntermediateBufferSize: camera handle is nullptr -> cannot get intermediate buffer size");
        return 0;
    }
    const CPyxenAPIAccess& api = features->Api();
    int64_t size = 0;
    if (api.PxnFeatureIntGet(camera, "ImageSize", &size) != PxnErrSuccess &&
        api.PxnFeatureIntGet(camera, "PayloadSize", &size) != PxnErrSuccess) {
        features->Log().Error(
            "CMivoraGfxModeKVNPyxen::GetIntermediateBufferSize: PxnFeatureIntGet reports error -> cannot get ImageSize nor PayloadSize feature");
        return 0;
    }
    return static_cast<uint64_t>(size);
}

uint32_t CMivoraGfxModeKVNPyxen::ReadSize(const char* feature, LogFormat<> noHandleText,
                                          LogFormat<> failureText) {
    if (!features) {
        return 0;
    }
    const PxnHandle camera = features->CameraHandle();
    if (!camera) {
        features->Log().Error(noHandleText);
        return 0;
    }
    int64_t size = 0;
    if (features->Api().PxnFeatureIntGet(camera, feature, &size) != PxnErrSuccess) {
        features->Log().Error(failureText);
        return 0;
    }
    return static_cast<uint32_t>(size);
}
