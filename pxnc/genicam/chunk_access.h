// chunk_access.h - reading the chunks that came with a frame
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/module.h"
#include "pxnc/include/pxnc.h"

#include <memory>
#include <vector>

namespace genicam {

class CameraDevice;
class Library;
class TextPool;

/// A second copy of the camera's description whose chunk features read from a buffer; all others
/// read from the camera, and none can be written.
struct ChunkReader {
    ObjectOwner<ArvGc> description;
    std::shared_ptr<Module> module;
};

/// The readers of one camera. Making one means parsing the description, so they are kept.
class ChunkReaders {
public:
    explicit ChunkReaders(std::shared_ptr<CameraDevice> cameraDevice);
    ~ChunkReaders();

    /// An unused reader; its description is null when there is no memory for one.
    ChunkReader Take(TextPool& texts, PxnHandle newHandle);
    void GiveBack(ChunkReader reader);

private:
    const std::shared_ptr<CameraDevice> device;
    platform::Mutex mutex;
    std::vector<ChunkReader> unused GUARDED_BY(mutex);
};

/// Calls `callback` with a handle that reads the chunks of a completed frame. PxnErrNotFound for a
/// frame that is not announced or not completed, PxnErrNoChunkData for one without chunks, and
/// PxnErrUserCallbackException when the callback throws; else what the callback answers.
PxnError AccessChunks(Library& library, const PxnFrame* frame, PxnChunkAccessCallback callback,
                      void* context);

} // namespace genicam
