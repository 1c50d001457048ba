// mivora_camera_kvn_pyxen.cpp - a camera of this module in the host's list
#include "grabber/mivora_camera_kvn_pyxen.h"

#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/no_throw.h"

using namespace pyxen;

CMivoraCameraKVNPyxen::CMivoraCameraKVNPyxen() {
    SetCamCntrlDlgIndex(kFeatureControlDialogIndex);
}

CMivoraGfxMode* CMivoraCameraKVNPyxen::CreateGfxMode() {
    return NoThrow<CMivoraGfxMode*>(nullptr, [] { return new CMivoraGfxModeKVNPyxen(nullptr); });
}

const char* CMivoraCameraKVNPyxen::GetExtraDescription() const {
    return "";
}

uint32_t CMivoraCameraKVNPyxen::BuildGfxModeList(CMivoraGrabber* grabber) {
    if (GetNumGfxModes() > 0) {
        return GetNumGfxModes();
    }
    return NoThrow<uint32_t>(0, [&]() -> uint32_t {
        auto* const owner = static_cast<CMivoraKVNPyxenClass*>(grabber);
        AddGfxMode(new CMivoraGfxModeKVNPyxen(owner ? &owner->Features() : nullptr));
        return 1;
    });
}

void* CMivoraCameraKVNPyxen::GetCameraRecord() {
    return &record;
}
