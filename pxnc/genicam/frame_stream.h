// frame_stream.h - announced frames and the stream that fills them
#pragma once

#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc.h"
#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/skeleton/frame_book.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace genicam {

/// The frames of one open camera: filled without a copy by Aravis' stream thread, and handed back
/// on a thread of this object's own, so that a slow callback does not keep the stream thread from
/// its packets.
///
/// A filled frame stays queued until its callback begins, so that a capture that ends earlier
/// leaves it to the next one.
class FrameStream : public skeleton::FrameBook {
public:
    /// Numbers for the stream module's features.
    struct Statistics {
        std::int64_t announced = 0;
        std::int64_t queued = 0;
        std::int64_t delivered = 0;
        std::int64_t incomplete = 0;
        std::int64_t lost = 0;
        std::int64_t receivedPackets = 0;
        std::int64_t resentPackets = 0;
        std::int64_t missingPackets = 0;
    };

    FrameStream(std::shared_ptr<CameraDevice> cameraDevice, bool resend);
    ~FrameStream() override;

    /// Starts the thread that hands frames back; false when the system refused.
    bool Start();
    void Close() override;
    PxnError Flush() override;
    PxnError StartCapture() override;
    PxnError EndCapture() override;

    /// Ends every wait: the camera is gone. Aravis keeps the queued frames until the capture ends.
    void OnCameraLost();

    /// What has been received into a frame. PxnErrNotFound for a frame that is not announced,
    /// PxnErrNoData for one that was not received.
    PxnError GetReceived(const PxnFrame* frame, ObjectOwner<ArvBuffer>& buffer) const;

    Statistics GetStatistics() const;
    /// Bytes of the kernel's receive buffer to ask for; 0 chooses by the payload.
    std::uint32_t GetSocketBufferSize() const { return socketBufferSize; }
    void SetSocketBufferSize(std::uint32_t bytes) { socketBufferSize = bytes; }
    bool GetPacketResend() const { return packetResend; }
    /// Takes effect with the next start.
    void SetPacketResend(bool resend) { packetResend = resend; }

private:
    static void OnStreamEvent(void* self, ArvStreamCallbackType type, ArvBuffer* buffer);
    static void DeliveryMain(void* self);
    static ArvBuffer* BufferOf(const Slot& slot);

    PxnError OnAnnounced(Slot& slot, const PxnFrame& announced) REQUIRES(mutex) override;
    void OnQueued(Slot& slot) REQUIRES(mutex) override;
    ObjectOwner<ArvStream> CreateStream(std::uint32_t payload);
    void Hand(const Slot& slot) REQUIRES(mutex);
    void OnBufferDone(ArvBuffer* buffer) EXCLUDES(mutex);
    void Deliver() EXCLUDES(mutex);
    void HandBackQueued(std::size_t position) REQUIRES(mutex);
    void CollectStatistics(Statistics& collected) const REQUIRES(mutex);

    const std::shared_ptr<CameraDevice> device;
    std::atomic<std::uint32_t> socketBufferSize = 0;
    std::atomic<bool> packetResend;

    // Starting and ending exclude each other; locked before the device's node mutex and `mutex`.
    platform::Mutex captureMutex;
    ObjectOwner<ArvStream> stream GUARDED_BY(mutex);
    // Aravis may write into the queued frames: from the start until the stream is gone.
    bool isLent GUARDED_BY(mutex) = false;
    // Of the running capture, or of the last one.
    std::uint32_t payloadSize GUARDED_BY(mutex) = 0;
    // Queued frames that wait for their callback, in the order in which they were filled. Has room
    // for all slots.
    std::vector<SlotPointer> filled GUARDED_BY(mutex);
    Statistics statistics GUARDED_BY(mutex);
    bool isStopping GUARDED_BY(mutex) = false;
    skeleton::Condition deliveryWake;
    platform::Thread deliveryThread;
};

} // namespace genicam
