// test_picture_grabber.cpp - a grabber with one camera, which makes a test picture
#include "test_picture_grabber.h"

#include <mivora/module_definition.h>

#include <new>
#include <system_error>

MIVORA_DEFINE_MODULE(TestPictureGrabber)

namespace {

constexpr uint32_t kContinuous = 1;
constexpr uint32_t kAsynchronous = 2;
constexpr uint32_t kLastMode = 5; // 3 to 5 are synchronous
constexpr uint32_t kCameraId = 0x7E57;
constexpr uint64_t kMostBuffers = 256;
constexpr uint64_t kDefaultInterval = 10000; // microseconds

/// Microseconds in a unit of the time base, a power of ten of a second.
uint64_t UnitMicroseconds(int32_t timeBase) {
    uint64_t unit = 1;
    for (int32_t exponent = -6; exponent < timeBase; ++exponent) {
        unit *= 10;
    }
    return unit;
}

MV_ERRCODE NoDialog(MV_DLG_EXITCODE* exitCode) {
    if (exitCode) {
        *exitCode = MV_DLG_CANCEL;
    }
    return MV_NOT_AVAILABLE;
}

} // namespace

CMivoraGfxMode* TestPictureCamera::CreateGfxMode() {
    return new (std::nothrow) TestPictureMode;
}

TestPictureGrabber::TestPictureGrabber(void* instance) : CMivoraGrabber(instance) {
    SetDriverName("TestPicture");
    SetDriverDesc("Test picture");
    SetDriverVersion("1.0.0");
}

TestPictureGrabber::~TestPictureGrabber() {
    TestPictureGrabber::DeInit();
}

MV_ERRCODE TestPictureGrabber::Init() {
    const MV_ERRCODE result = CMivoraGrabber::Init();
    if (result != MV_OK) {
        return result;
    }
    isInitialised = true;
    return RefreshCameraList();
}

MV_ERRCODE TestPictureGrabber::DeInit() {
    StopSnap();
    CloseActCamera();
    isInitialised = false;
    return CMivoraGrabber::DeInit();
}

MV_ERRCODE TestPictureGrabber::RefreshCameraList() {
    if (!isInitialised) {
        return MV_NOT_INITIALISED;
    }
    if (state != 0) {
        return MV_BUSY;
    }
    CMivoraCamera* const camera = CreateCamera();
    if (!camera || camera->BuildGfxModeList(this) == 0) {
        delete camera;
        return MV_REFUSED;
    }
    CloseActCamera();
    DeleteInternalList();
    SetFirstCamera(camera); // the grabber owns it from here on
    return MV_OK;
}

CMivoraCamera* TestPictureGrabber::CreateCamera() {
    try {
        auto* const camera = new TestPictureCamera;
        camera->SetCameraName("Test picture");
        camera->SetCameraUniqueID(kCameraId);
        return camera;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

MV_ERRCODE TestPictureGrabber::OpenActCamera() {
    if (!isInitialised) {
        return MV_NOT_INITIALISED;
    }
    if (!GetActCamera()) {
        return MV_NO_CAMERA;
    }
    isOpen = true;
    return MV_OK;
}

MV_ERRCODE TestPictureGrabber::CloseActCamera() {
    StopSnap();
    const MV_ERRCODE result = CMivoraGrabber::CloseActCamera();
    isOpen = false;
    return result;
}

MV_ERRCODE TestPictureGrabber::PrepareFrameBuffers(uint64_t count) {
    if (!isOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    if (state != 0) {
        return MV_BUSY;
    }
    buffers.clear();
    const MV_ERRCODE result = CMivoraGrabber::PrepareFrameBuffers(count); // the ring of the host
    if (result != MV_OK || count > kMostBuffers) {
        return MV_REFUSED;
    }
    try {
        const std::vector<uint8_t> image(size_t{kPictureWidth} * kPictureHeight);
        buffers.assign(static_cast<size_t>(count), image);
    } catch (const std::bad_alloc&) {
        return MV_REFUSED;
    }
    return MV_OK;
}

void* TestPictureGrabber::GetFrameBuffer(uint64_t index) {
    return index < buffers.size() ? buffers[static_cast<size_t>(index)].data() : nullptr;
}

MV_ERRCODE TestPictureGrabber::Snap(uint32_t mode) {
    if (!isOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    if (buffers.empty()) {
        return MV_BUFFERS_NOT_PREPARED;
    }
    if (mode < kContinuous || mode > kLastMode) {
        return MV_BAD_VALUE;
    }
    if (state != 0 || source.IsCurrent()) {
        return MV_BUSY; // a receiver can stop the pictures, but not begin anew
    }
    source.Stop(); // a single picture may have come, and its thread not ended yet
    received = 0;
    state = mode;
    if (mode > kAsynchronous) {
        Deliver(mode, 0);
        return MV_OK;
    }
    uint64_t interval = 0;
    GetTimerMicroseconds(nullptr, &interval);
    try {
        source.Start(std::chrono::microseconds(interval != 0 ? interval : kDefaultInterval),
                     [this, mode] { return Deliver(mode, 1); });
    } catch (const std::exception&) {
        state = 0;
        return MV_ACQUISITION_FAILED;
    }
    return MV_OK;
}

MV_ERRCODE TestPictureGrabber::StopSnap() {
    source.Stop();
    state = 0;
    return MV_OK;
}

bool TestPictureGrabber::Deliver(uint32_t mode, uint32_t fromCallback) {
    const uint64_t number = received++;
    const size_t index = static_cast<size_t>(number % buffers.size());
    DrawPicture(number, buffers[index]);
    if (mode != kContinuous) {
        state = 0; // before the receivers, which may snap again
    }
    DoPostProcess(index, fromCallback);
    return mode == kContinuous;
}

MV_ERRCODE TestPictureGrabber::GetGrabberParam(uint32_t id, uint64_t* value1, uint64_t* value2) {
    uint64_t value = 0;
    switch (id) {
    case MVGF_ACQUISITION_CAPABILITIES:
        value = kMvCapSingleSnap | kMvCapContinuous;
        break;
    case MVGF_FRAMES_RECEIVED:
        value = received;
        break;
    default:
        return CMivoraGrabber::GetGrabberParam(id, value1, value2);
    }
    if (value1) {
        *value1 = value;
    }
    if (value2) {
        *value2 = id == MVGF_FRAMES_RECEIVED ? value : 0;
    }
    return MV_OK;
}

void TestPictureGrabber::GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) {
    const uint64_t unit = UnitMicroseconds(GetTimeBase());
    if (exposure) {
        *exposure = GetExposureValue() * unit;
    }
    if (interval) {
        *interval = GetIntervalValue() * unit;
    }
}

void TestPictureGrabber::SetTimerMicroseconds(uint64_t exposure, uint64_t interval) {
    const uint64_t unit = UnitMicroseconds(GetTimeBase());
    ChangeTimerTB(static_cast<uint32_t>(exposure / unit), static_cast<uint32_t>(interval / unit),
                  GetTimerEnabled());
}

MV_ERRCODE TestPictureGrabber::SelectCameraDialog(MV_WINDOW, MV_DLG_EXITCODE* exitCode) {
    return NoDialog(exitCode);
}

MV_ERRCODE TestPictureGrabber::GrabberConfigDialog(MV_WINDOW, MV_DLG_EXITCODE* exitCode) {
    return NoDialog(exitCode);
}
