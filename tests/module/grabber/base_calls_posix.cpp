// base_calls_posix.cpp - the calls that the grabber makes of its base class, redirected by the
// linker
#include "tests/module/grabber/base_calls.h"

namespace {

BaseCalls* watching = nullptr;

} // namespace

BaseCalls::BaseCalls() {
    watching = this;
}

BaseCalls::~BaseCalls() {
    watching = nullptr;
}

extern "C" {
MV_ERRCODE __real__ZN14CMivoraGrabber4InitEv(CMivoraGrabber* grabber);
MV_ERRCODE __wrap__ZN14CMivoraGrabber4InitEv(CMivoraGrabber* grabber);
MV_ERRCODE __real__ZN14CMivoraGrabber14CamCntrlDialogEPv(CMivoraGrabber* grabber, MV_WINDOW parent);
MV_ERRCODE __wrap__ZN14CMivoraGrabber14CamCntrlDialogEPv(CMivoraGrabber* grabber, MV_WINDOW parent);
MV_ERRCODE __real__ZN14CMivoraGrabber17LoadGrabberConfigEv(CMivoraGrabber* grabber);
MV_ERRCODE __wrap__ZN14CMivoraGrabber17LoadGrabberConfigEv(CMivoraGrabber* grabber);
MV_ERRCODE __real__ZN14CMivoraGrabber19PrepareFrameBuffersEm(CMivoraGrabber* grabber,
                                                             std::uint64_t count);
MV_ERRCODE __wrap__ZN14CMivoraGrabber19PrepareFrameBuffersEm(CMivoraGrabber* grabber,
                                                             std::uint64_t count);
}

MV_ERRCODE __wrap__ZN14CMivoraGrabber4InitEv(CMivoraGrabber* grabber) {
    if (watching && watching->onInit) {
        watching->onInit();
    }
    return __real__ZN14CMivoraGrabber4InitEv(grabber);
}

MV_ERRCODE __wrap__ZN14CMivoraGrabber14CamCntrlDialogEPv(CMivoraGrabber* grabber,
                                                         MV_WINDOW parent) {
    if (watching && watching->onCamCntrlDialog) {
        watching->onCamCntrlDialog(parent);
    }
    return __real__ZN14CMivoraGrabber14CamCntrlDialogEPv(grabber, parent);
}

MV_ERRCODE __wrap__ZN14CMivoraGrabber17LoadGrabberConfigEv(CMivoraGrabber* grabber) {
    return watching && watching->loadResult
               ? *watching->loadResult
               : __real__ZN14CMivoraGrabber17LoadGrabberConfigEv(grabber);
}

MV_ERRCODE __wrap__ZN14CMivoraGrabber19PrepareFrameBuffersEm(CMivoraGrabber* grabber,
                                                             std::uint64_t count) {
    if (watching && watching->onPrepareFrameBuffers) {
        watching->onPrepareFrameBuffers(count);
    }
    return __real__ZN14CMivoraGrabber19PrepareFrameBuffersEm(grabber, count);
}
