// frame_stream.h - announced frames and the stream that fills them
#pragma once

#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/include/pxnc.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <memory>

namespace genicam {

/// The frames of one open camera: announced, queued, filled without a copy by Aravis' stream
/// thread, and handed to the frame callback on a thread of this object's own, so that a slow
/// callback does not keep the stream thread from its packets.
///
/// A frame is known by the address of the caller's record. The record is written only when its
/// frame completes, so an announced frame that is not queued may lose its memory at any time.
///
/// What waits for a frame callback to end answers PxnErrInvalidCall inside one of the same stream.
class FrameStream {
public:
    /// Numbers for the stream module's features.
    struct Statistics {
        int64_t announced = 0;
        int64_t queued = 0;
        int64_t delivered = 0;
        int64_t incomplete = 0;
        int64_t lost = 0;
        int64_t resentPackets = 0;
        int64_t missingPackets = 0;
        bool isCapturing = false;
    };

    FrameStream(std::shared_ptr<CameraDevice> cameraDevice, PxnHandle camera, PxnHandle stream,
                bool packetResend);
    /// As Close.
    ~FrameStream();

    PxnError Announce(const PxnFrame* frame);
    /// PxnErrInUse while the frame is queued.
    PxnError Revoke(const PxnFrame* frame);
    /// Flushes what is queued, then revokes every frame.
    PxnError RevokeAll();
    PxnError StartCapture();
    /// Frames that no callback has been called for stay queued.
    PxnError EndCapture();
    PxnError Queue(const PxnFrame* frame, PxnFrameCallback callback);
    /// PxnErrNotAvailable for a frame that nothing comes for: it is not queued, no capture runs, or
    /// the camera has vanished; also when that happens while it waits.
    PxnError Wait(const PxnFrame* frame, uint32_t timeoutMs);
    PxnError Flush();
    /// Ends the capture and forgets every frame. No callback runs afterwards.
    void Close();

    /// Ends every wait: the camera is gone.
    void OnCameraLost();

    /// The data that came with a completed frame, for its chunks; null when there is none.
    ObjectOwner<ArvBuffer> BufferOf(const PxnFrame* frame) const;

    Statistics GetStatistics() const;
    /// Bytes of the kernel's receive buffer to ask for; 0 chooses by the payload.
    uint32_t GetSocketBufferSize() const { return socketBufferSize; }
    void SetSocketBufferSize(uint32_t bytes) { socketBufferSize = bytes; }
    bool GetPacketResend() const { return packetResend; }
    /// Takes effect with the next start.
    void SetPacketResend(bool resend) { packetResend = resend; }

private:
    enum class State {
        Idle,
        Queued,
        Filled, // waits for its callback
    };

    struct Entry {
        PxnFrame* frame = nullptr;
        void* memory = nullptr;
        uint32_t memorySize = 0;
        ObjectOwner<ArvBuffer> buffer;
        PxnFrameCallback callback = nullptr;
        State state = State::Idle;
        // Set while there is nothing to wait for: the frame has come, or cannot come.
        platform::Event done;
        PxnError waitResult = PxnErrNotAvailable;

        void EndWait(PxnError result);
    };
    using EntryPointer = std::shared_ptr<Entry>;

    static void OnStreamEvent(void* self, ArvStreamCallbackType type, ArvBuffer* buffer);
    static void DeliveryMain(void* argument);

    bool InsideOwnCallback() const;
    PxnError LostOr(PxnError result) const;
    ObjectOwner<ArvStream> CreateStream(uint32_t payload);
    void OnBufferDone(ArvBuffer* buffer);
    void Complete(Entry& entry) REQUIRES(mutex);
    void EndWaits() REQUIRES(mutex);
    void DeliverNext();
    EntryPointer Find(const PxnFrame* frame) const REQUIRES(mutex);
    void Hand(const Entry& entry) REQUIRES(mutex);
    void CollectStatistics(Statistics& statistics) const REQUIRES(mutex);

    const std::shared_ptr<CameraDevice> device;
    const PxnHandle cameraHandle;
    const PxnHandle streamHandle;
    std::atomic<uint32_t> socketBufferSize = 0;
    std::atomic<bool> packetResend;

    // Starting and ending exclude each other; taken before the device's node mutex.
    platform::Mutex captureMutex;
    // A leaf: nothing else is taken while it is held.
    mutable platform::Mutex mutex;
    ObjectOwner<ArvStream> stream GUARDED_BY(mutex);
    // Of the running capture, or of the last one.
    uint32_t payloadSize GUARDED_BY(mutex) = 0;
    std::map<const PxnFrame*, EntryPointer> entries GUARDED_BY(mutex);
    // Queued frames in order; those that Aravis holds are among them.
    std::list<EntryPointer> queued GUARDED_BY(mutex);
    std::deque<EntryPointer> filled GUARDED_BY(mutex);
    Statistics counts GUARDED_BY(mutex);
    bool stopping GUARDED_BY(mutex) = false;
    platform::Event deliveryWake;
    // Set while no callback runs.
    platform::Event deliveryIdle;
    platform::Thread deliveryThread;
};

} // namespace genicam
