// sdk_library.h - who uses a loaded SDK library, and what it has not given back
#pragma once

#include "pxnc.h"

#include <array>
#include <memory>

class CPyxenAPIAccess;

namespace pyxen {

/// Memory that the SDK may write to, on behalf of a camera.
class SdkMemory {
public:
    virtual ~SdkMemory() = default;
    /// The SDK has given all of it back. Any thread.
    virtual void ComeBack() = 0;
};

/// A camera that was opened, with the room to remember it when the SDK refuses to close it.
struct CameraNote {
    void* library = nullptr;
    PxnHandle handle = nullptr;
    /// The handles that become invalid with it, null where there is none.
    std::array<PxnHandle, 3> modules{};
    std::shared_ptr<SdkMemory> memory;
    std::unique_ptr<CameraNote> next; // while it is remembered
};

/// One use of an SDK library by this module, from before its startup until after its shutdown. The
/// grabbers of a library share what is declared here. Any thread; the SDK is called without a lock.
class SdkLibraryUse {
public:
    SdkLibraryUse() = default;
    ~SdkLibraryUse() { End(); }
    SdkLibraryUse(const SdkLibraryUse&) = delete;
    SdkLibraryUse& operator=(const SdkLibraryUse&) = delete;

    /// Must not be in use already.
    void Begin(void* usedLibrary);
    /// The last use of a library leaves nothing behind: the shutdown before it closed all cameras.
    /// Does nothing outside a use.
    void End();

private:
    void* library = nullptr;       // null outside a use
    SdkLibraryUse* next = nullptr; // under the mutex of all uses
};

/// Keeps a camera that the SDK refused to close, together with the memory that the SDK may write
/// to, until closing it succeeds or the use of the library ends. This module stays loaded from then
/// on, since the SDK may call it. The library is in use.
void RememberUnclosedCamera(std::unique_ptr<CameraNote> camera);

/// The SDK has just opened a camera with that handle: a remembered one that had it is closed,
/// whatever closing it returned. The library is in use.
void ForgetReopenedCamera(const CPyxenAPIAccess& api, PxnHandle handle);

/// The SDK has closed the camera and dropped what was registered for its modules.
void ForgetRegistrations(const CPyxenAPIAccess& api, const CameraNote& camera);

/// Tries once more to close the remembered cameras of the library behind `api`, which is valid. One
/// that the SDK no longer knows is closed. Logs nothing. Does nothing inside a frame callback,
/// where the SDK closes no camera.
void CloseRememberedCameras(const CPyxenAPIAccess& api);

} // namespace pyxen
