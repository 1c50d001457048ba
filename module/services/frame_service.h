// frame_service.h - what hosts get to know of each frame
#pragma once

#include "mivora/module_services.h"
#include "services/service_context.h"

#include <cstdint>

namespace pyxen {

/// What IMivoraModuleServices offers about frames. Arguments have been checked. Throws
/// std::bad_alloc. Any thread.
class FrameService {
public:
    explicit FrameService(ServiceContext& shared) : context(shared) {}

    /// Never waits; the lock is not taken.
    ServiceOutcome GetInfo(std::uint64_t bufferIndex, MV_FRAME_INFO& info) const;
    /// Takes the lock unless the calling thread hands over that frame, which keeps the camera open.
    ServiceOutcome ReadChunks(std::uint64_t bufferIndex, MV_CHUNK_RECEIVER receiver,
                              void* receiverContext);
    /// The same for the image as it was sent.
    ServiceOutcome ReadSentImage(std::uint64_t bufferIndex, MV_DATA_RECEIVER receiver,
                                 void* receiverContext);
    /// Null removes the receiver. The lock is not taken.
    ServiceOutcome InstallReceiver(MV_FRAME_RECEIVER receiver, void* receiverContext);

private:
    /// Runs `read`, which returns a ServiceOutcome, with the lock where it is needed.
    template <typename Read>
    ServiceOutcome WhileFrameStays(std::uint64_t bufferIndex, Read read);

    ServiceContext& context;
};

} // namespace pyxen
