// chunk_access.h - reading the chunks that came with a frame
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/skeleton/backend.h"

#include <memory>
#include <vector>

namespace genicam {

class CameraDevice;

/// Reads the chunks of one camera's frames: a second copy of the camera's description, whose chunk
/// features read from a buffer; all others read from the camera, and none can be written. Making a
/// copy means parsing the description, so copies are kept. Any thread.
class ChunkReaders {
public:
    ChunkReaders(skeleton::Backend& backendOfModules, std::shared_ptr<CameraDevice> cameraDevice);

    /// Calls `read` with a handle that reads the chunks of a received frame. PxnErrNoChunkData for
    /// a frame without chunks.
    PxnError Read(ArvBuffer* buffer, skeleton::FunctionRef<PxnError(PxnHandle)> read);

private:
    struct Reader {
        ObjectOwner<ArvGc> description;
        std::shared_ptr<Module> module;
    };

    /// An unused reader; its description is null when Aravis cannot parse it.
    Reader Take() EXCLUDES(mutex);

    skeleton::Backend& backend;
    const std::shared_ptr<CameraDevice> device;
    platform::Mutex mutex;
    std::vector<Reader> unused GUARDED_BY(mutex);
};

} // namespace genicam
