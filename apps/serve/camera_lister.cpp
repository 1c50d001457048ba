// camera_lister.cpp - which cameras are there, while one of them is open
#include "apps/serve/camera_lister.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "mivora/grabber.h"

CameraLister::CameraLister(IGrabberMaker& grabberMaker)
    : maker(grabberMaker), grabber(maker.Create()) {
    std::string reason;
    if (IMivoraModuleServices* const offered = maker.Services(grabber, reason)) {
        services = std::make_unique<ServiceClient>(*offered);
    }
    const MV_ERRCODE code = grabber->Init();
    if (code != MV_OK) {
        maker.Delete(grabber);
        Check("Init", code, "the list of cameras");
    }
}

CameraLister::~CameraLister() {
    maker.Delete(grabber);
}

std::vector<KnownCamera> CameraLister::List() {
    Check("RefreshCameraList", grabber->RefreshCameraList());
    return ListKnownCameras(*grabber, services.get());
}
