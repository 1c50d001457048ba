// grabber.cpp - construction and initialisation of a grabber, driver texts and camera list
#include "grabber_impl.h"

#include "copy_text.h"

#include <cstring>

CMivoraGrabber::CMivoraGrabber(void* moduleInstance)
    : impl(new Impl(moduleInstance, MivoraInstalledLogSink())) {}

CMivoraGrabber::~CMivoraGrabber() {
    DeleteInternalList();
    // The derived part is already destroyed, so the module's DeleteCmdChannel cannot be called for
    // the channels that remain in the list.
    CCmdChannel* channel = impl->TakeChannels();
    while (channel) {
        CCmdChannel* const next = channel->GetNext();
        channel->Close();
        if (channel->GetChannelKind() == MVCMD_SERIAL) {
            DeleteCmdSerialInstance(channel);
        } else {
            delete channel;
        }
        channel = next;
    }
    delete impl;
}

MV_ERRCODE CMivoraGrabber::Init() {
    return impl->initialised.exchange(true) ? MV_ALREADY_INITIALISED : MV_OK;
}

MV_ERRCODE CMivoraGrabber::DeInit() {
    DeleteInternalList();
    impl->ring.Reset(0);
    return impl->initialised.exchange(false) ? MV_OK : MV_NOT_INITIALISED;
}

MV_ERRCODE CMivoraGrabber::CloseActCamera() {
    return IsCameraOpen() ? MV_OK : MV_CAMERA_NOT_OPEN;
}

const char* CMivoraGrabber::GetDriverDesc() {
    return impl->driverDesc.text;
}

const char* CMivoraGrabber::GetDriverName() {
    return impl->driverName.text;
}

const char* CMivoraGrabber::GetDriverVersion() {
    return impl->driverVersion.text;
}

namespace {

// An unchanged text is not written again: another thread may be reading it.
void StoreText(DriverText& target, const char* text) {
    DriverText cut;
    CopyText(text ? text : "", cut.text, sizeof cut.text);
    if (std::strcmp(target.text, cut.text) != 0) {
        target = cut;
    }
}

} // namespace

void CMivoraGrabber::SetDriverDesc(const char* text) {
    StoreText(impl->driverDesc, text);
}

void CMivoraGrabber::SetDriverName(const char* text) {
    StoreText(impl->driverName, text);
}

void CMivoraGrabber::SetDriverVersion(const char* text) {
    StoreText(impl->driverVersion, text);
}

std::uint32_t CMivoraGrabber::GetNumCameras() {
    std::uint32_t count = 0;
    for (const CMivoraCamera* camera = GetFirstCamera(); camera; camera = camera->GetNext()) {
        ++count;
    }
    return count;
}

std::int32_t CMivoraGrabber::GetActCameraIndex() {
    return impl->actCamera;
}

std::int32_t CMivoraGrabber::GetCameraIndexByQZRCameraID(std::uint32_t id) {
    std::int32_t index = 0;
    for (const CMivoraCamera* camera = GetFirstCamera(); camera; camera = camera->GetNext()) {
        // 0 means that the integrator has not assigned a number to the camera.
        if (id != 0 && camera->GetQZRCameraID() == id) {
            return index;
        }
        ++index;
    }
    return -1;
}

std::int32_t CMivoraGrabber::GetCameraIndexByCameraUniqueID(std::uint32_t id) {
    std::int32_t index = 0;
    for (const CMivoraCamera* camera = GetFirstCamera(); camera; camera = camera->GetNext()) {
        if (camera->GetCameraUniqueID() == id) {
            return index;
        }
        ++index;
    }
    return -1;
}

CMivoraCamera* CMivoraGrabber::GetFirstCamera() {
    return impl->firstCamera;
}

CMivoraCamera* CMivoraGrabber::GetCamera(std::int32_t index) {
    if (index < 0) {
        return nullptr;
    }
    CMivoraCamera* camera = GetFirstCamera();
    for (; camera && index > 0; --index) {
        camera = camera->GetNext();
    }
    return camera;
}

CMivoraCamera* CMivoraGrabber::GetActCamera() {
    return GetCamera(GetActCameraIndex());
}

CMivoraCamera* CMivoraGrabber::GetLastCamera() {
    CMivoraCamera* camera = GetFirstCamera();
    while (camera && camera->GetNext()) {
        camera = camera->GetNext();
    }
    return camera;
}

MV_ERRCODE CMivoraGrabber::SetActCameraIndex(std::int32_t index) {
    if (index != -1 && !GetCamera(index)) {
        return MV_NO_CAMERA;
    }
    if (GetAcquisitionState() != 0) {
        return MV_BUSY;
    }
    if (index != GetActCameraIndex() && IsCameraOpen()) {
        const MV_ERRCODE result = CloseActCamera();
        if (result != MV_OK) {
            return result;
        }
    }
    StoreActCameraIndex(index);
    return MV_OK;
}

MV_ERRCODE CMivoraGrabber::SelectModeDialog(MV_WINDOW /*parent*/, MV_DLG_EXITCODE* exitCode) {
    if (exitCode) {
        *exitCode = MV_DLG_CANCEL;
    }
    const CMivoraCamera* const camera = GetActCamera();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    if (!camera->GetActGfxMode()) {
        return MV_NO_VIDEO_MODE;
    }
    // Compatibility: cameras have a single mode, so there is nothing to choose and no dialog, but
    // hosts continue only after a confirmed choice.
    if (exitCode) {
        *exitCode = MV_DLG_OK;
    }
    return MV_OK;
}

void CMivoraGrabber::SetFirstCamera(CMivoraCamera* camera) {
    impl->firstCamera = camera;
    if (camera) {
        camera->SetPrev(nullptr);
        impl->ApplyCameraSections();
    }
}

MV_ERRCODE CMivoraGrabber::DeleteInternalList() {
    StoreActCameraIndex(-1);
    CMivoraCamera* camera = impl->firstCamera.exchange(nullptr);
    while (camera) {
        CMivoraCamera* const next = camera->GetNext();
        delete camera;
        camera = next;
    }
    return MV_OK;
}

void CMivoraGrabber::StoreActCameraIndex(std::int32_t index) {
    impl->actCamera = index;
}

ILogSink* CMivoraGrabber::GetLogSink() const {
    return impl->sink;
}

void* CMivoraGrabber::GetModuleInstance() const {
    return impl->moduleInstance;
}
