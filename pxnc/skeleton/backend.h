// backend.h - what an implementation of the SDK adds to the skeleton
#pragma once

#include "pxnc/skeleton/entry_call.h"
#include "pxnc/skeleton/function_ref.h"
#include "pxnc/skeleton/handle_table.h"
#include "pxnc/skeleton/invalidations.h"
#include "pxnc/skeleton/module.h"
#include "pxnc/skeleton/text_pool.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace skeleton {

/// Everything between the first startup and the last shutdown. Calls that run hold on to it, so a
/// shutdown on another thread does not destroy it under them. Any thread.
class Backend {
public:
    virtual ~Backend() = default;

    ///@{
    /// What all modules share: texts, handles, and the registrations for changes.
    TextPool& Texts() { return texts; }
    HandleTable& Handles() { return handles; }
    Invalidations& Changes() { return changes; }
    ///@}

    /// False when the handle refers to nothing.
    virtual bool Find(PxnHandle handle, Target& target) { return handles.Find(handle, target); }

    /// The transport layers, with or without interfaces.
    virtual std::vector<PxnTransportLayerInfo> ListTransportLayers() = 0;
    /// The interfaces of all transport layers.
    virtual std::vector<PxnInterfaceInfo> ListInterfaces() = 0;
    /// The cameras that are present.
    virtual std::vector<PxnCameraInfo> ListCameras() = 0;
    /// `id` is the plain or the extended identifier. PxnErrNotFound for a camera that is absent.
    virtual PxnError DescribeCamera(const char* id, PxnCameraInfo& info) = 0;
    /// `camera` is the handle of an open camera.
    virtual PxnError DescribeCamera(PxnHandle camera, PxnCameraInfo& info) = 0;
    /// `accessMode` is PxnAccessModeFull or PxnAccessModeRead.
    virtual PxnError OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) = 0;
    /// `camera` is a camera's handle, whose camera may have vanished. Afterwards no callback of the
    /// camera, its local device or its streams runs or will run.
    virtual PxnError CloseCamera(PxnHandle camera) = 0;
    /// Calls `read` with a handle whose features are the chunks of a received frame. PxnErrNotFound
    /// for a frame that is not announced, PxnErrNoData for one that was not received,
    /// PxnErrNoChunkData for one without chunks.
    virtual PxnError AccessChunks(const PxnFrame& frame, FunctionRef<PxnError(PxnHandle)> read) = 0;
    /// The last shutdown: closes the cameras and ends all threads. Called once, without a lock.
    virtual void Stop() = 0;

private:
    TextPool texts;
    HandleTable handles;
    Invalidations changes;
};

/// The implementation in this library; one object, never destroyed.
class Implementation {
public:
    virtual ~Implementation() = default;

    /// What PxnVersionQuery stores.
    virtual PxnVersionInfo Version() = 0;
    /// Makes the backend of a first startup. `configPath` is null for the default configuration.
    virtual PxnError Start(const wchar_t* configPath, std::shared_ptr<Backend>& started) = 0;
    /// Begins every call, whether the library is started or not. A failure becomes the call's
    /// result, and nothing else happens (PxnShutdown goes on).
    virtual PxnError OnCall(const EntryCall& /*call*/) { return PxnErrSuccess; }
    /// How many elements a list function reports, or bytes one that copies them; `count` is the
    /// true number.
    virtual std::uint32_t ReportedCount(const char* /*entry*/, std::uint32_t count) {
        return count;
    }
};

/// Defined by each implementation.
Implementation& TheImplementation();

} // namespace skeleton
