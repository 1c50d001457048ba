#include "pxnc/genicam/frame_stream.h"

#include "pxnc/genicam/callback_scope.h"
#include "pxnc/genicam/frame_result.h"
#include "pxnc/genicam/result_codes.h"
#include "pxnc/genicam/socket_buffer.h"

#include <algorithm>
#include <utility>

namespace genicam {

FrameStream::FrameStream(std::shared_ptr<CameraDevice> cameraDevice, PxnHandle camera,
                         PxnHandle streamModule, bool resend)
    : device(std::move(cameraDevice)),
      cameraHandle(camera),
      streamHandle(streamModule),
      packetResend(resend) {
    deliveryIdle.Set();
    deliveryThread = platform::Thread::Start(DeliveryMain, this, 0);
}

FrameStream::~FrameStream() {
    Close();
    {
        const platform::MutexLock lock(mutex);
        stopping = true;
    }
    deliveryWake.Set();
    deliveryThread.Join();
}

bool FrameStream::InsideOwnCallback() const {
    return CallbackScope::CurrentKind() == CallbackScope::Kind::Frame &&
           CallbackScope::CurrentOwner() == this;
}

PxnError FrameStream::LostOr(PxnError result) const {
    return device->IsLost() ? PxnError{PxnErrBadHandle} : result;
}

FrameStream::EntryPointer FrameStream::Find(const PxnFrame* frame) const {
    const auto found = entries.find(frame);
    return found != entries.end() ? found->second : nullptr;
}

PxnError FrameStream::Announce(const PxnFrame* frame) {
    if (frame->buffer == nullptr || frame->bufferSize == 0) {
        return PxnErrBadParameter;
    }
    const platform::MutexLock lock(mutex);
    EntryPointer& entry = entries[frame];
    if (entry == nullptr) {
        entry = std::make_shared<Entry>();
        entry->EndWait(PxnErrNotAvailable);
        // The record is the caller's, who passes it without const to be filled later.
        entry->frame = const_cast<PxnFrame*>(frame);
    } else if (entry->state != State::Idle && stream != nullptr) {
        // Aravis has the memory, so all that can be accepted is what is already so.
        const bool same = entry->memory == frame->buffer && entry->memorySize == frame->bufferSize;
        return same ? PxnErrSuccess : PxnErrInUse;
    }
    entry->memory = frame->buffer;
    entry->memorySize = frame->bufferSize;
    entry->buffer.reset(arv_buffer_new_full(frame->bufferSize, frame->buffer, nullptr, nullptr));
    return PxnErrSuccess;
}

PxnError FrameStream::Revoke(const PxnFrame* frame) {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    EntryPointer revoked;
    {
        const platform::MutexLock lock(mutex);
        revoked = Find(frame);
        if (revoked == nullptr) {
            return PxnErrNotFound;
        }
        if (revoked->state != State::Idle) {
            return PxnErrInUse;
        }
        entries.erase(frame);
    }
    deliveryIdle.Wait(platform::kInfinite);
    return LostOr(PxnErrSuccess);
}

PxnError FrameStream::RevokeAll() {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    std::map<const PxnFrame*, EntryPointer> revoked;
    bool isFree = false;
    while (!isFree) {
        {
            const platform::MutexLock lock(mutex);
            isFree = queued.empty() && filled.empty();
            if (isFree) {
                revoked.swap(entries);
            }
        }
        if (!isFree) {
            Flush();
        }
    }
    deliveryIdle.Wait(platform::kInfinite);
    return LostOr(PxnErrSuccess);
}

ObjectOwner<ArvStream> FrameStream::CreateStream(uint32_t payload) {
    const platform::MutexLock lock(*device->NodeMutex());
    ErrorOwner error;
    ObjectOwner<ArvStream> created(
        arv_device_create_stream(device->Device(), OnStreamEvent, this, error.Receive()));
    if (created == nullptr || !ARV_IS_GV_STREAM(created.get())) {
        return created;
    }
    const uint32_t wanted = socketBufferSize;
    const uint32_t bytes = wanted != 0 ? wanted : ChooseSocketBufferSize(payload);
    g_object_set(created.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED,
                 "socket-buffer-size", static_cast<gint>(bytes), "packet-resend",
                 packetResend ? ARV_GV_STREAM_PACKET_RESEND_ALWAYS
                              : ARV_GV_STREAM_PACKET_RESEND_NEVER,
                 nullptr);
    // Aravis sets the size when the first packet has come, which for a burst is too late: the
    // first frame, and with it a single snap, would be lost.
    SetSocketBuffer(arv_gv_stream_get_port(ARV_GV_STREAM(created.get())), bytes);
    return created;
}

PxnError FrameStream::StartCapture() {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    if (!device->IsWriteable()) {
        return PxnErrInvalidAccess;
    }
    const platform::MutexLock captureLock(captureMutex);
    {
        const platform::MutexLock lock(mutex);
        if (stream != nullptr) {
            return PxnErrSuccess;
        }
    }
    uint32_t payload = 0;
    if (const PxnError failed = device->GetPayloadSize(payload)) {
        return LostOr(failed);
    }
    ObjectOwner<ArvStream> created = CreateStream(payload);
    if (created == nullptr) {
        return LostOr(PxnErrIO);
    }
    device->LockTransportParameters(true);
    const platform::MutexLock lock(mutex);
    stream = std::move(created);
    payloadSize = payload;
    counts.isCapturing = true;
    for (const EntryPointer& entry : queued) {
        entry->done.Reset();
        Hand(*entry);
    }
    return PxnErrSuccess;
}

void FrameStream::Hand(const Entry& entry) {
    arv_stream_push_buffer(stream.get(), ARV_BUFFER(g_object_ref(entry.buffer.get())));
}

PxnError FrameStream::EndCapture() {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    const platform::MutexLock captureLock(captureMutex);
    ObjectOwner<ArvStream> ended;
    {
        const platform::MutexLock lock(mutex);
        CollectStatistics(counts);
        counts.isCapturing = false;
        ended = std::move(stream);
        while (!filled.empty()) {
            filled.back()->state = State::Queued;
            queued.push_front(filled.back());
            filled.pop_back();
        }
        EndWaits();
    }
    if (ended != nullptr) {
        // Its thread ends here, and with it every use of the announced memory.
        ended.reset();
        device->LockTransportParameters(false);
    }
    deliveryIdle.Wait(platform::kInfinite);
    return LostOr(PxnErrSuccess);
}

PxnError FrameStream::Queue(const PxnFrame* frame, PxnFrameCallback callback) {
    const platform::MutexLock lock(mutex);
    const EntryPointer entry = Find(frame);
    if (entry == nullptr) {
        return PxnErrNotFound;
    }
    if (entry->state != State::Idle) {
        return PxnErrAlready;
    }
    entry->callback = callback;
    entry->state = State::Queued;
    queued.push_back(entry);
    if (stream != nullptr) {
        entry->done.Reset();
        Hand(*entry);
    } else {
        entry->EndWait(PxnErrNotAvailable);
    }
    return PxnErrSuccess;
}

PxnError FrameStream::Wait(const PxnFrame* frame, uint32_t timeoutMs) {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    EntryPointer entry;
    {
        const platform::MutexLock lock(mutex);
        entry = Find(frame);
        if (entry == nullptr) {
            return PxnErrNotFound;
        }
        if (entry->state != State::Idle && device->IsLost()) {
            return PxnErrNotAvailable;
        }
    }
    if (!entry->done.Wait(timeoutMs)) {
        return PxnErrTimeout;
    }
    const platform::MutexLock lock(mutex);
    return entry->waitResult;
}

PxnError FrameStream::Flush() {
    if (InsideOwnCallback()) {
        return PxnErrInvalidCall;
    }
    bool wasCapturing = false;
    {
        const platform::MutexLock lock(mutex);
        wasCapturing = stream != nullptr;
    }
    // Aravis gives single buffers back only when they are filled, so a running stream is replaced.
    EndCapture();
    {
        const platform::MutexLock lock(mutex);
        for (const EntryPointer& entry : queued) {
            entry->state = State::Idle;
            entry->EndWait(PxnErrNotAvailable);
        }
        queued.clear();
    }
    return LostOr(wasCapturing ? StartCapture() : PxnError{PxnErrSuccess});
}

void FrameStream::Close() {
    EndCapture();
    Flush();
    RevokeAll();
}

void FrameStream::OnCameraLost() {
    const platform::MutexLock lock(mutex);
    EndWaits();
}

void FrameStream::EndWaits() {
    for (const EntryPointer& entry : queued) {
        entry->EndWait(PxnErrNotAvailable);
    }
}

void FrameStream::Entry::EndWait(PxnError result) {
    waitResult = result;
    done.Set();
}

void FrameStream::OnStreamEvent(void* self, ArvStreamCallbackType type, ArvBuffer* buffer) {
    if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE) {
        static_cast<FrameStream*>(self)->OnBufferDone(buffer);
    }
}

void FrameStream::OnBufferDone(ArvBuffer* buffer) {
    const platform::MutexLock lock(mutex);
    if (stream == nullptr) {
        // The capture is ending; the frame stays queued.
        return;
    }
    // Aravis has put the buffer into its list of results, where nobody else fetches it.
    const ObjectOwner<ArvBuffer> result(arv_stream_try_pop_buffer(stream.get()));
    const auto found = std::find_if(queued.begin(), queued.end(), [buffer](const auto& entry) {
        return entry->buffer.get() == buffer;
    });
    const ArvBufferStatus status = arv_buffer_get_status(buffer);
    if (found == queued.end() || status == ARV_BUFFER_STATUS_ABORTED ||
        status == ARV_BUFFER_STATUS_CLEARED) {
        return;
    }
    const EntryPointer entry = *found;
    queued.erase(found);
    if (entry->callback == nullptr) {
        Complete(*entry);
        return;
    }
    entry->state = State::Filled;
    filled.push_back(entry);
    deliveryWake.Set();
}

void FrameStream::Complete(Entry& entry) {
    WriteFrameResult(entry.buffer.get(), payloadSize, *entry.frame);
    if (entry.frame->receiveStatus == PxnFrameStatusComplete) {
        ++counts.delivered;
    } else {
        ++counts.incomplete;
    }
    entry.state = State::Idle;
    entry.EndWait(PxnErrSuccess);
}

void FrameStream::DeliveryMain(void* argument) {
    auto& self = *static_cast<FrameStream*>(argument);
    for (;;) {
        self.deliveryWake.Wait(platform::kInfinite);
        {
            const platform::MutexLock lock(self.mutex);
            if (self.stopping) {
                return;
            }
        }
        self.DeliverNext();
    }
}

void FrameStream::DeliverNext() {
    EntryPointer entry;
    PxnFrameCallback callback = nullptr;
    {
        const platform::MutexLock lock(mutex);
        if (filled.empty()) {
            deliveryWake.Reset();
            return;
        }
        entry = filled.front();
        filled.pop_front();
        callback = entry->callback;
        deliveryIdle.Reset();
        Complete(*entry);
    }
    {
        const CallbackScope scope(CallbackScope::Kind::Frame, this);
        callback(cameraHandle, streamHandle, entry->frame);
    }
    deliveryIdle.Set();
}

ObjectOwner<ArvBuffer> FrameStream::BufferOf(const PxnFrame* frame) const {
    const platform::MutexLock lock(mutex);
    const EntryPointer entry = Find(frame);
    if (entry == nullptr || entry->state != State::Idle) {
        return nullptr;
    }
    return ObjectOwner<ArvBuffer>(ARV_BUFFER(g_object_ref(entry->buffer.get())));
}

void FrameStream::CollectStatistics(Statistics& statistics) const {
    if (stream == nullptr) {
        return;
    }
    guint64 completed = 0;
    guint64 failures = 0;
    guint64 underruns = 0;
    arv_stream_get_statistics(stream.get(), &completed, &failures, &underruns);
    statistics.lost += static_cast<int64_t>(underruns);
    if (ARV_IS_GV_STREAM(stream.get())) {
        guint64 resent = 0;
        guint64 missing = 0;
        arv_gv_stream_get_statistics(ARV_GV_STREAM(stream.get()), &resent, &missing);
        statistics.resentPackets += static_cast<int64_t>(resent);
        statistics.missingPackets += static_cast<int64_t>(missing);
    }
}

FrameStream::Statistics FrameStream::GetStatistics() const {
    const platform::MutexLock lock(mutex);
    Statistics statistics = counts;
    statistics.announced = static_cast<int64_t>(entries.size());
    statistics.queued = static_cast<int64_t>(queued.size());
    CollectStatistics(statistics);
    return statistics;
}

} // namespace genicam
