// frame_stream.cpp - announced frames and the stream that fills them
#include "pxnc/genicam/frame_stream.h"

#include "pxnc/genicam/frame_result.h"
#include "pxnc/genicam/socket_buffer.h"

#include <algorithm>
#include <utility>

namespace genicam {

FrameStream::FrameStream(std::shared_ptr<CameraDevice> cameraDevice, bool resend)
    : FrameBook(std::make_shared<skeleton::CallbackTurns>()),
      device(std::move(cameraDevice)),
      packetResend(resend) {}

FrameStream::~FrameStream() {
    FrameStream::Close();
    {
        const platform::MutexLock lock(mutex);
        isStopping = true;
        deliveryWake.NotifyAll();
    }
    deliveryThread.Join();
}

bool FrameStream::Start() {
    deliveryThread = platform::Thread::Start(DeliveryMain, this, 0);
    return deliveryThread.IsJoinable();
}

void FrameStream::Close() {
    // No start may come between the end of the capture and the end of the frames.
    const platform::MutexLock captureLock(captureMutex);
    FrameBook::Close();
}

ArvBuffer* FrameStream::BufferOf(const Slot& slot) {
    return static_cast<ArvBuffer*>(slot.attachment.get());
}

PxnError FrameStream::OnAnnounced(Slot& slot, const PxnFrame& announced) {
    if (announced.bufferSize == 0) {
        return PxnErrBadParameter;
    }
    if (slot.state == SlotState::kQueued && isLent) {
        // Aravis has the memory, so all that can be accepted is what is already so.
        const bool isSame =
            slot.buffer == announced.buffer && slot.bufferSize == announced.bufferSize;
        return isSame ? PxnErrSuccess : PxnErrInUse;
    }
    filled.reserve(queue.capacity());
    slot.attachment.reset(
        arv_buffer_new_full(announced.bufferSize, announced.buffer, nullptr, nullptr),
        ObjectRelease());
    return PxnErrSuccess;
}

void FrameStream::OnQueued(Slot& slot) {
    if (stream) {
        Hand(slot);
    }
}

void FrameStream::Hand(const Slot& slot) {
    arv_stream_push_buffer(stream.get(), ARV_BUFFER(g_object_ref(BufferOf(slot))));
}

ObjectOwner<ArvStream> FrameStream::CreateStream(std::uint32_t payload) {
    const platform::MutexLock lock(*device->NodeMutex());
    ErrorOwner error;
    ObjectOwner<ArvStream> created(
        arv_device_create_stream(device->Device(), OnStreamEvent, this, error.Receive()));
    if (!created || !ARV_IS_GV_STREAM(created.get())) {
        return created;
    }
    const std::uint32_t wanted = socketBufferSize;
    const std::uint32_t bytes = wanted != 0 ? wanted : ChooseSocketBufferSize(payload);
    g_object_set(created.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED,
                 "socket-buffer-size", static_cast<gint>(bytes), "packet-resend",
                 packetResend ? ARV_GV_STREAM_PACKET_RESEND_ALWAYS
                              : ARV_GV_STREAM_PACKET_RESEND_NEVER,
                 nullptr);
    // Aravis sets the size when the first packet has arrived, which for a burst is too late: the
    // first frame, and with it a single snap, would be lost.
    SetSocketBuffer(arv_gv_stream_get_port(ARV_GV_STREAM(created.get())), bytes);
    return created;
}

PxnError FrameStream::StartCapture() {
    const platform::MutexLock captureLock(captureMutex);
    {
        const platform::MutexLock lock(mutex);
        if (isClosed) {
            return PxnErrNotAvailable;
        }
        if (stream) {
            return PxnErrSuccess;
        }
    }
    std::uint32_t payload = 0;
    PxnError failed = device->GetPayloadSize(payload);
    ObjectOwner<ArvStream> created;
    if (failed == PxnErrSuccess) {
        created = CreateStream(payload);
        failed = created ? PxnErrSuccess : PxnErrIO;
    }
    if (failed != PxnErrSuccess) {
        return device->IsLost() ? PxnError{PxnErrBadHandle} : failed;
    }
    device->LockTransportParameters(true);
    const platform::MutexLock lock(mutex);
    stream = std::move(created);
    isLent = true;
    payloadSize = payload;
    SetCapturing(true);
    for (const SlotPointer& slot : queue) {
        Hand(*slot);
    }
    return PxnErrSuccess;
}

PxnError FrameStream::EndCapture() {
    const platform::MutexLock captureLock(captureMutex);
    ObjectOwner<ArvStream> ended;
    {
        const platform::MutexLock lock(mutex);
        CollectStatistics(statistics);
        ended = std::move(stream);
        filled.clear(); // their callbacks have not begun, so they are still queued
        SetCapturing(false);
    }
    if (ended) {
        // Its thread ends here, and with it every use of the announced memory.
        ended.reset();
        device->LockTransportParameters(false);
    }
    const platform::MutexLock lock(mutex);
    isLent = false;
    WaitForRunningFrames();
    return PxnErrSuccess;
}

PxnError FrameStream::Flush() {
    const platform::MutexLock captureLock(captureMutex);
    const bool wasCapturing = IsCapturing();
    // Aravis returns a single buffer only when it is filled, so a running stream is replaced.
    EndCapture();
    FrameBook::Flush();
    return wasCapturing ? StartCapture() : PxnError{PxnErrSuccess};
}

void FrameStream::OnCameraLost() {
    const platform::MutexLock lock(mutex);
    isClosed = true;
    changed.NotifyAll();
}

void FrameStream::OnStreamEvent(void* self, ArvStreamCallbackType type, ArvBuffer* buffer) {
    if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE) {
        static_cast<FrameStream*>(self)->OnBufferDone(buffer);
    }
}

void FrameStream::OnBufferDone(ArvBuffer* buffer) {
    const platform::MutexLock lock(mutex);
    if (!stream || isClosed) {
        return; // the capture is ending; the frame stays queued
    }
    // Aravis has put the buffer into its list of results, where nobody else fetches it.
    const ObjectOwner<ArvBuffer> result(arv_stream_try_pop_buffer(stream.get()));
    const auto found = std::find_if(queue.begin(), queue.end(), [buffer](const auto& slot) {
        return BufferOf(*slot) == buffer;
    });
    const ArvBufferStatus status = arv_buffer_get_status(buffer);
    if (found == queue.end() || status == ARV_BUFFER_STATUS_ABORTED ||
        status == ARV_BUFFER_STATUS_CLEARED) {
        return;
    }
    if ((*found)->callback) {
        filled.push_back(*found);
        deliveryWake.NotifyAll();
    } else {
        HandBackQueued(static_cast<std::size_t>(found - queue.begin()));
    }
}

void FrameStream::HandBackQueued(std::size_t position) {
    const SlotPointer slot = TakeQueued(position);
    WriteFrameResult(BufferOf(*slot), payloadSize, *slot->frame);
    if (slot->frame->receiveStatus == PxnFrameStatusComplete) {
        ++statistics.delivered;
    } else {
        ++statistics.incomplete;
    }
    HandBack(slot);
}

void FrameStream::DeliveryMain(void* self) {
    static_cast<FrameStream*>(self)->Deliver();
}

void FrameStream::Deliver() {
    const platform::MutexLock lock(mutex);
    while (!isStopping) {
        if (filled.empty() || isClosed) {
            deliveryWake.Wait(mutex);
            continue;
        }
        const RunningFrame running(*this);
        const auto position = std::find(queue.begin(), queue.end(), filled.front());
        filled.erase(filled.begin());
        HandBackQueued(static_cast<std::size_t>(position - queue.begin()));
    }
}

PxnError FrameStream::GetReceived(const PxnFrame* frame, ObjectOwner<ArvBuffer>& buffer) const {
    const platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    if (slot->state != SlotState::kDone) {
        return PxnErrNoData;
    }
    buffer.reset(ARV_BUFFER(g_object_ref(BufferOf(*slot))));
    return PxnErrSuccess;
}

void FrameStream::CollectStatistics(Statistics& collected) const {
    if (!stream) {
        return;
    }
    guint64 completed = 0;
    guint64 failures = 0;
    guint64 underruns = 0;
    arv_stream_get_statistics(stream.get(), &completed, &failures, &underruns);
    collected.lost += static_cast<std::int64_t>(underruns);
    if (ARV_IS_GV_STREAM(stream.get())) {
        guint64 resent = 0;
        guint64 missing = 0;
        arv_gv_stream_get_statistics(ARV_GV_STREAM(stream.get()), &resent, &missing);
        collected.receivedPackets += static_cast<std::int64_t>(
            arv_stream_get_info_uint64_by_name(stream.get(), "n_received_packets"));
        collected.resentPackets += static_cast<std::int64_t>(resent);
        collected.missingPackets += static_cast<std::int64_t>(missing);
    }
}

FrameStream::Statistics FrameStream::GetStatistics() const {
    const platform::MutexLock lock(mutex);
    Statistics present = statistics;
    present.announced = AnnouncedFrames();
    present.queued = static_cast<std::int64_t>(queue.size() - filled.size());
    CollectStatistics(present);
    return present;
}

} // namespace genicam
