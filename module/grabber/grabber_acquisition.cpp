// grabber_acquisition.cpp - the grabber's slots for acquiring
#include "grabber/mivora_kvn_pyxen_class.h"
#include "grabber/mode_layout.h"

using namespace pyxen;

MV_ERRCODE CMivoraKVNPyxenClass::PrepareFrameBuffers(uint64_t count) {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    if (acquisition.IsInside()) {
        return MV_BUSY;
    }
    CMivoraGfxModeKVNPyxen* const mode = ActMode();
    if (!mode) {
        return MV_NO_VIDEO_MODE;
    }
    if (acquisition.Number() != kIdle) {
        return MV_BUSY;
    }
    ModeLayout layout(*mode);
    return acquisition.Prepare(count, layout);
}

void* CMivoraKVNPyxenClass::GetFrameBuffer(uint64_t index) {
    return acquisition.FrameBuffer(index);
}

MV_ERRCODE CMivoraKVNPyxenClass::Snap(uint32_t mode) {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    if (!GetActCamera()) {
        return MV_NO_CAMERA;
    }
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    return ActMode() ? acquisition.Snap(mode) : MV_NO_VIDEO_MODE;
}

MV_ERRCODE CMivoraKVNPyxenClass::StopSnap() {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    acquisition.Stop();
    return MV_OK;
}

void CMivoraKVNPyxenClass::FrameCallback(PxnFrame* frame) {
    acquisition.Receive(frame);
}

uint32_t CMivoraKVNPyxenClass::GetAcquisitionState() {
    return acquisition.Number();
}

void CMivoraKVNPyxenClass::SetAcquisitionState(uint32_t state) {
    acquisition.SetNumber(state);
}

void CMivoraKVNPyxenClass::OnFrame(PxnFrame* frame) {
    FrameCallback(frame);
}

void CMivoraKVNPyxenClass::HandOver(uint64_t index, bool isFromCallback) {
    DoPostProcess(index, isFromCallback ? 1 : 0);
}

void CMivoraKVNPyxenClass::ChooseDialog() {
    const CMivoraCamera* const camera = GetActCamera();
    servedByFeatureControl = camera && camera->GetCamCntrlDlgIndex() == kFeatureControlDialogIndex;
}

void CMivoraKVNPyxenClass::MarkDialog(bool isChanging) {
    ICamCntrlDialog* const dialog = servedByFeatureControl ? GetCamCntrlDialogObject() : nullptr;
    if (dialog) {
        dialog->SetAcquisitionMarks(isChanging, false);
    }
}

MV_ERRCODE CMivoraKVNPyxenClass::PrepareHostBuffers(uint64_t count, uint64_t& requested) {
    const MV_ERRCODE result = CPyxenGrabber::PrepareFrameBuffers(count);
    requested = GetRequestedBufferCount();
    return result;
}
