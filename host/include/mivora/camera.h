// camera.h - a camera in a grabber's list
#pragma once

#include "mivora/export.h"
#include "mivora/gfx_mode.h"
#include "mivora/types.h"

class CMivoraGrabber;

/// A node of a grabber's doubly linked camera list; the list is changed only on the thread that
/// initialises or refreshes the grabber. The host deletes nodes through the virtual destructor.
class MIVORA_API CMivoraCamera {
public:
    CMivoraCamera();
    CMivoraCamera(const CMivoraCamera&) = delete;
    CMivoraCamera& operator=(const CMivoraCamera&) = delete;

    /// A new graphics mode node without grabber, owned by the caller; null when memory is out.
    /* slot 0 */ virtual CMivoraGfxMode* CreateGfxMode();
    /* slot 1 */ virtual const char* GetExtraDescription() const;
    /// Fills the list of graphics modes when it is empty; answers how many there are.
    /* slot 2 */ virtual uint32_t BuildGfxModeList(CMivoraGrabber* grabber);
    /// The module's own record of this camera, or null.
    /* slot 3 */ virtual void* GetCameraRecord();
    /* slot 4 */ virtual ~CMivoraCamera();

    CMivoraCamera* GetNext() const;
    CMivoraCamera* GetPrev() const;
    void SetNext(CMivoraCamera* node);
    void SetPrev(CMivoraCamera* node);

    /// At most 255 bytes are kept.
    const char* GetCameraName() const;
    void SetCameraName(const char* name);
    /// The module's 32-bit key of the camera.
    uint32_t GetCameraUniqueID() const;
    void SetCameraUniqueID(uint32_t id);
    /// A number that the integrator gave the camera in its ini section; 0 when none.
    uint32_t GetQZRCameraID() const;
    void SetQZRCameraID(uint32_t id);
    /// Number of the camera's ini section; -1 when it has none.
    int32_t GetCameraSectionNum() const;
    void SetCameraSectionNum(int32_t number);
    /// Which camera control dialog serves it; 2 is the module's feature control dialog.
    uint32_t GetCamCntrlDlgIndex() const;
    void SetCamCntrlDlgIndex(uint32_t index);

    uint32_t GetNumGfxModes() const;
    CMivoraGfxMode* GetFirstGfxMode() const;
    CMivoraGfxMode* GetGfxMode(uint32_t index) const;
    /// Appends a node; the camera owns it from now on. The first one becomes active.
    void AddGfxMode(CMivoraGfxMode* mode);
    void DeleteGfxModes();
    int32_t GetActGfxModeIndex() const;
    MV_ERRCODE SetActGfxModeIndex(int32_t index);
    /// The active graphics mode, or null.
    CMivoraGfxMode* GetActGfxMode() const;

private:
    struct Impl;
    Impl* impl;
};
