// acquisition.h - moving frames from the camera to the host
#pragma once

#include "acquisition/acquisition_host.h"
#include "acquisition/acquisition_state.h"
#include "acquisition/frame_listener.h"
#include "acquisition/undo_lists.h"
#include "imaging/conversion_helpers.h"
#include "imaging/frame_notes.h"
#include "imaging/frame_pool.h"
#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "sdk/logger.h"
#include "sdk/pyxen_api_access.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

struct AcquisitionInsides;

namespace pyxen {

/// An image as the camera has sent it.
struct SentImage {
    const char* format = ""; ///< as "PixelFormat" names it; never freed
    std::vector<std::uint8_t> bytes;
};

/// How long the camera is left alone after a stop, in milliseconds.
inline constexpr std::uint32_t kSettlingPauseMs = 1000;

/// Prepares buffers, runs the modes of Snap and ends them.
///
/// Host threads call Prepare, Snap, Stop and the operations on the camera; the SDK calls OnFrame on
/// its own threads; an asynchronous single snap ends on a short-lived thread of this class. The
/// host does not prepare, snap, open and close at the same time as one another; Stop may come from
/// any thread and from inside a frame callback.
class Acquisition {
public:
    /// `frameOwner` is context word 0 of the frames. `buffers` excludes preparing from the traffic
    /// of the serial channels. Everything outlives this object.
    Acquisition(void* frameOwner, CPyxenAPIAccess& access, const std::atomic<PxnHandle>& openCamera,
                platform::Mutex& buffers, IAcquisitionHost& acquisitionHost, Logger logger);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    /// Makes the events anew; what cannot be made stays absent and refuses every snap.
    void CreateEvents();

    // ---- what the host reads and writes ----
    std::uint32_t Number() const { return state.Number(); }
    void SetNumber(std::uint32_t number) { state.SetNumber(number); }
    std::uint64_t FramesReceived() const { return framesReceived; }
    /// The address of an image, or null without such a buffer.
    void* FrameBuffer(std::uint64_t index);
    /// True inside a frame callback of any grabber and inside the hand-over of a synchronous snap
    /// of this one, on the calling thread: the camera cannot be closed there.
    bool IsInside() const;

    // ---- frames one by one ----
    /// What is known of the frame received last into a buffer; false without such a buffer. Never
    /// waits. Any thread at any time.
    bool LoadFrameInfo(std::uint64_t index, MV_FRAME_INFO& info) const {
        return notes.Load(index, info);
    }
    /// Whom each frame is reported to, before it is handed over. Any thread.
    FrameListener& Listener() { return listener; }
    /// True when the calling thread hands over that buffer's frame at this moment: until it
    /// returns, the frame stays as it is and the camera open.
    bool IsHandingOver(std::uint64_t index) const;
    /// Reads the chunks of the frame received last into a buffer by `callback`, which may read
    /// features and nothing else. Unless IsHandingOver the caller keeps the camera from being
    /// closed, and the frame is kept from being queued. MV_SERVICE_SDK_FAILED with `error`.
    MV_SERVICE_RESULT ReadChunks(std::uint64_t index, PxnChunkAccessCallback callback,
                                 void* context, PxnError& error);
    /// Copies the image of the frame received last into a buffer, under the same conditions.
    MV_SERVICE_RESULT CopySentImage(std::uint64_t index, SentImage& image);

    // ---- the camera ----
    /// Null while none is open.
    PxnHandle CameraHandle() const { return cameraHandle; }
    /// Whether frames are queued before the capture is started.
    void UseStrategy(bool queueFirst) { firstQueueThenSnap = queueFirst; }
    /// How many threads convert a large image, the SDK's included, from the next Prepare on.
    void UseConversionThreads(std::uint32_t count) { conversionThreads = count; }
    bool QueuesFirst() const { return firstQueueThenSnap; }
    /// Closes the camera with what it has of the frames and returns the SDK's result. A camera that
    /// the SDK refuses to close is remembered together with the memory it may write to; `camera` is
    /// null then.
    PxnError CloseCamera(std::unique_ptr<CameraNote>& camera);
    /// The camera is not used any more; it is closed later.
    void LeaveCamera(std::unique_ptr<CameraNote> camera);
    /// The camera has gone: buffers have to be prepared anew.
    void ForgetBuffers() { buffersPrepared = false; }

    // ---- acquiring ----
    /// MV_OK or MV_REFUSED: too many, out of memory, or the SDK still has frames.
    MV_ERRCODE Prepare(std::uint64_t count, IFrameLayout& layout);
    /// The host's checks have been made but for the number.
    MV_ERRCODE Snap(std::uint32_t mode);
    /// What runs in mode 1 or 2 has ended, or is being ended by another thread when called from
    /// inside a frame callback. The number is not asked here.
    void Stop();
    /// No thread of this class runs any more; afterwards the state is idle.
    void End();
    void Finish() { state.Finish(); }
    /// Slot FrameCallback.
    void Receive(PxnFrame* frame);

private:
    friend struct ::AcquisitionInsides; // tests
    class ShapingMark;

    MV_ERRCODE SnapContinuous();
    MV_ERRCODE SnapAsynchronous();
    MV_ERRCODE SnapSynchronous();
    bool QueueAsynchronous(UndoList steps);
    bool QueueSynchronous();
    MV_ERRCODE TakeSynchronous();
    MV_ERRCODE QueueAllBuffers();
    MV_ERRCODE StartCamera();
    void Undo(UndoList steps);

    PxnError Announce(FrameRecord& record);
    PxnError Queue(FrameRecord& record, PxnFrameCallback callback) {
        return Queue(record.Frame(), &record, callback);
    }
    /// `record` is what the frame names as its own, or null.
    PxnError Queue(PxnFrame* frame, FrameRecord* record, PxnFrameCallback callback);
    /// The same when the frame is the SDK's already, or `chunkMutex` is held.
    PxnError QueueUnlocked(PxnFrame* frame, FrameRecord* record, PxnFrameCallback callback);
    PxnError Flush();
    PxnError RevokeAll();
    bool ShapeFrameRecords(FramePool::Reshaping& reshaping, std::uint64_t count,
                           IFrameLayout& layout) REQUIRES(bufferMutex);
    /// Asks the SDK for the frames that it has. It may refuse.
    void TakeFramesBack();

    void StopRunning() REQUIRES(stopMutex);
    void StopCamera() REQUIRES(requeueMutex);
    void Requeue(PxnFrame* frame, FrameRecord* record);
    /// Converts the frame of the buffer; true when a conversion was done.
    bool Convert(FrameRecord& record, std::uint64_t index);
    /// Keeps what is known of a frame and reports it. `isImageReady` when the host's image is that
    /// of the frame.
    void NoteFrame(const PxnFrame& frame, FrameRecord* record, bool isImageReady);
    /// Runs `access` on a record that is home while its frame cannot be queued, and returns its
    /// result. It must not throw.
    template <typename Access>
    MV_SERVICE_RESULT WhileAtHome(std::uint64_t index, Access access);
    MV_SERVICE_RESULT FindAtHome(std::uint64_t index, FrameRecord*& record) REQUIRES(chunkMutex);
    MV_SERVICE_RESULT AccessChunks(const PxnFrame& frame, PxnChunkAccessCallback callback,
                                   void* context, PxnError& error);
    void LogReceiveError(const PxnFrame& frame);
    void StartCleanupThread(AcquisitionState::Moment seen);
    /// Not inside a frame callback, for which the thread may be waiting.
    void JoinCleanupThread();
    static void SingleSnapCleanupThreadProc(void* acquisition);
    void WindUpSingleSnap();
    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame);

    CPyxenAPIAccess& api;
    const std::atomic<PxnHandle>& cameraHandle;
    platform::Mutex& bufferMutex; // held while the frame records are shaped
    IAcquisitionHost& host;
    const Logger log;

    AcquisitionState state;
    std::atomic<std::uint64_t> framesReceived{0};
    std::atomic<bool> buffersPrepared{false};
    bool firstQueueThenSnap = false; // chosen when the camera is opened

    std::unique_ptr<platform::Event> acquisitionEvents[2]; // reset at each snap
    std::unique_ptr<platform::Event> stopEvent;            // set: the callback does not requeue

    // One stop at a time. Held across the whole stop; a frame callback only tries it, because the
    // stop may be waiting for that callback.
    platform::Mutex stopMutex;
    // Requeueing by the frame callback (only tried) against tear-down by Stop (waits). Held across
    // SDK calls: the SDK waits for a running callback, which never waits for this mutex.
    platform::Mutex requeueMutex;
    // The cleanup thread's handle between the frame callback and whoever joins it.
    platform::Mutex cleanupMutex;
    platform::Thread cleanupThread GUARDED_BY(cleanupMutex);

    std::atomic<std::uint64_t> framesOfAnyStatus{0}; // since the last snap
    FrameNotes notes;
    FrameListener listener;
    // Reading what a frame that is home has brought against queueing it. Not taken where a frame
    // callback queues its frame again: that one is not home. Held across the SDK's reading, which
    // waits for nothing.
    platform::Mutex chunkMutex;
    bool areRecordsShaped GUARDED_BY(chunkMutex) = false;

    std::atomic<std::uint32_t> conversionThreads{1};
    ConversionHelpers helpers; // made by Prepare, ended where the camera is closed or left

    FramePool frames; // shaped under bufferMutex while idle
};

} // namespace pyxen
