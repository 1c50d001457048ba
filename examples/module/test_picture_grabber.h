// test_picture_grabber.h - a grabber with one camera, which makes a test picture
#pragma once

#include "picture_source.h"

#include <mivora/grabber.h>

#include <atomic>
#include <cstdint>
#include <vector>

/// How the pictures look to the host.
class TestPictureMode final : public CMivoraGfxMode {
public:
    uint32_t GetxRes() override { return kPictureWidth; }
    uint32_t GetyRes() override { return kPictureHeight; }
    uint32_t GetNumComponents() override { return 1; }
    uint32_t GetAllocatedBitPerComponent() override { return 8; }
    uint32_t GetBitPerComponent() override { return 8; }
    uint64_t GetNumPixels() override { return uint64_t{kPictureWidth} * kPictureHeight; }
    uint64_t GetImageSize() override { return GetNumPixels(); }
};

class TestPictureCamera final : public CMivoraCamera {
public:
    CMivoraGfxMode* CreateGfxMode() override;
};

/// Implements what the base class leaves to modules. The host calls operations one at a time, also
/// from inside its receivers on the thread of the picture source.
class TestPictureGrabber final : public CMivoraGrabber {
public:
    explicit TestPictureGrabber(void* instance);
    ~TestPictureGrabber() override;

    // Initialisation and cameras.
    MV_ERRCODE Init() override;
    MV_ERRCODE DeInit() override;
    MV_ERRCODE OpenActCamera() override;
    uint32_t IsCameraOpen() override { return isOpen ? 1 : 0; }
    MV_ERRCODE CloseActCamera() override;
    MV_ERRCODE RefreshCameraList() override;
    CMivoraCamera* CreateCamera() override;

    // Buffers and acquisition.
    MV_ERRCODE PrepareFrameBuffers(uint64_t count) override;
    void* GetFrameBuffer(uint64_t index) override;
    MV_ERRCODE Snap(uint32_t mode) override;
    MV_ERRCODE StopSnap() override;
    uint32_t GetAcquisitionState() override { return state; }
    void SetAcquisitionState(uint32_t newState) override { state = newState; }
    MV_ERRCODE GetGrabberParam(uint32_t id, uint64_t* value1, uint64_t* value2) override;
    void GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) override;
    void SetTimerMicroseconds(uint64_t exposure, uint64_t interval) override;

    // Dialogs and command channels, of which this module has none.
    MV_ERRCODE SelectCameraDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    MV_ERRCODE GrabberConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    uint32_t GetNumCmdChannelTypes() override { return 0; }
    CCmdChannel* CreateCmdChannel(uint32_t) override { return nullptr; }
    void DeleteCmdChannel(CCmdChannel*) override {}

private:
    /// Hands a picture over; false after the only one of a single snap.
    bool Deliver(uint32_t mode, uint32_t fromCallback);

    bool isInitialised = false;
    bool isOpen = false;
    std::vector<std::vector<uint8_t>> buffers; // unchanged while pictures come
    std::atomic<uint32_t> state = 0;           // the mode of the acquisition
    std::atomic<uint64_t> received = 0;        // pictures since the last snap
    PictureSource source;
};
