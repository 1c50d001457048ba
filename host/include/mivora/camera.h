// camera.h - a camera in a grabber's list
#pragma once

#include "mivora/export.h"
#include "mivora/gfx_mode.h"
#include "mivora/types.h"

class CMivoraGrabber;

/// A node of a grabber's doubly linked camera list. The host deletes nodes through the virtual
/// destructor. The constructor may throw std::bad_alloc; no operation throws.
///
/// Threads: the list, the names and the graphics modes change only on the thread that initialises
/// or refreshes the grabber. Ids, section number, indices and their setters may be used from any
/// thread.
class MIVORA_API CMivoraCamera {
public:
    CMivoraCamera();
    CMivoraCamera(const CMivoraCamera&) = delete;
    CMivoraCamera& operator=(const CMivoraCamera&) = delete;

    /// Creates a graphics mode that belongs to no grabber. The caller owns it; null when out of
    /// memory.
    /* slot 0 */ virtual CMivoraGfxMode* CreateGfxMode();
    /// A description in addition to the name; empty in the base, never null.
    /* slot 1 */ virtual const char* GetExtraDescription() const;
    /// Fills the list of graphics modes if it is empty and returns their number. The base adds one
    /// mode from CreateGfxMode and ignores `grabber`.
    /* slot 2 */ virtual uint32_t BuildGfxModeList(CMivoraGrabber* grabber);
    /// The module's own record of this camera, or null.
    /* slot 3 */ virtual void* GetCameraRecord();
    /* slot 4 */ virtual ~CMivoraCamera();

    ///@{
    /// The neighbours in the list; null at its ends.
    CMivoraCamera* GetNext() const;
    CMivoraCamera* GetPrev() const;
    void SetNext(CMivoraCamera* node);
    void SetPrev(CMivoraCamera* node);
    ///@}

    ///@{
    /// Never null. SetCameraName keeps at most 255 bytes; null clears the name.
    const char* GetCameraName() const;
    void SetCameraName(const char* name);
    ///@}
    ///@{
    /// The 32-bit key by which the module identifies the camera.
    uint32_t GetCameraUniqueID() const;
    void SetCameraUniqueID(uint32_t id);
    ///@}
    ///@{
    /// The number assigned by the integrator in the camera's ini section; 0 if there is none.
    uint32_t GetQZRCameraID() const;
    void SetQZRCameraID(uint32_t id);
    ///@}
    ///@{
    /// Number of the camera's ini section; -1 if it has none.
    int32_t GetCameraSectionNum() const;
    void SetCameraSectionNum(int32_t number);
    ///@}
    ///@{
    /// Index of the camera control dialog for this camera; 2 is the module's feature control
    /// dialog.
    uint32_t GetCamCntrlDlgIndex() const;
    void SetCamCntrlDlgIndex(uint32_t index);
    ///@}

    /// The number of graphics modes; 0 before BuildGfxModeList.
    uint32_t GetNumGfxModes() const;
    ///@{
    /// A graphics mode, owned by the camera; null if the list is empty or ends before `index`.
    CMivoraGfxMode* GetFirstGfxMode() const;
    CMivoraGfxMode* GetGfxMode(uint32_t index) const;
    ///@}
    /// Appends a mode, which the camera then owns; the first one becomes active. Null is ignored.
    void AddGfxMode(CMivoraGfxMode* mode);
    /// Deletes all graphics modes; none is active afterwards.
    void DeleteGfxModes();
    ///@{
    /// The index of the active mode, -1 for none. The setter returns MV_BAD_VALUE, without any
    /// change, for an index below -1 or past the end of the list.
    int32_t GetActGfxModeIndex() const;
    MV_ERRCODE SetActGfxModeIndex(int32_t index);
    ///@}
    /// The active graphics mode, or null.
    CMivoraGfxMode* GetActGfxMode() const;

private:
    struct Impl;
    Impl* impl;
};
