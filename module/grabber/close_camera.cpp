// close_camera.cpp - closing the open camera
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/logger.h"

using namespace pyxen;

MV_ERRCODE CMivoraKVNPyxenClass::CloseActCamera() {
    if (CameraHandle() && IsWaitedFor()) {
        return MV_BUSY;
    }
    const ServiceLockHold hold(services.Lock());
    Logger(GetLogSink()).Information("CMivoraKVNPyxenClass::CloseActCamera");
    if (CameraHandle()) {
        services.LeaveCamera();
        parameters.KeepForSaving();
        openCamera.Close(acquisition);
        if (CMivoraCameraKVNPyxen* const node = ActCameraNode()) {
            node->Record().streamCount = 0;
            node->Record().localDeviceHandle = nullptr;
        }
    } else {
        cameraOpen = false;
    }
    openCamera.Clear();
    acquisition.ForgetBuffers();
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    const MV_ERRCODE result = CPyxenGrabber::CloseActCamera();
    cameraOpen = false;
    return result;
}
