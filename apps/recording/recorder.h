// recorder.h - records the frames of one camera
#pragma once

#include "apps/common/frame_stamp.h"
#include "apps/common/host_image.h"
#include "apps/recording/frame_line.h"
#include "apps/recording/frame_store.h"
#include "apps/recording/index_file.h"
#include "apps/recording/recording_description.h"
#include "platform/condition.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct RecorderOptions {
    std::string directory;             ///< empty: no description and no index
    std::uint64_t queueBytes = 0;      ///< of frames that wait
    std::uint32_t threads = 0;         ///< that compress; 0: as many as there are cores
    std::uint64_t unixMinusHostNs = 0; ///< from the times of frames to those since 1970
};

/// What has become of the frames so far.
struct RecorderCounts {
    std::uint64_t recorded = 0;             ///< in the store, and in the index
    std::uint64_t waiting = 0;              ///< to be compressed or written
    std::uint64_t bytes = 0;                ///< written
    std::array<std::uint64_t, 5> missing{}; ///< by FrameStatus

    std::uint64_t MissingFor(FrameStatus status) const {
        return missing[static_cast<std::size_t>(status)];
    }
    std::uint64_t Missing() const;
};

/// Compresses frames on several threads and writes them and their index in order, on one thread,
/// while the producer adds more. The producer is one thread, which also calls all that has no other
/// rule; several recorders know nothing of one another.
class Recorder {
public:
    /// Writes the description, which is that of a recording that did not end. The directory is
    /// there. Throws CommandFailure.
    Recorder(std::unique_ptr<FrameStore> frameStore, RecorderOptions recorderOptions,
             RecordingDescription recordingDescription);
    /// Gives up what waits, unless Close has been called.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// True if an image of this size fits into the queue, or nothing waits.
    bool HasRoom(std::uint64_t imageBytes) const;
    /// Waits for that, no longer than the time; returns whether it is so.
    bool WaitForRoom(std::uint64_t imageBytes, std::uint32_t timeoutMs);
    /// A buffer for the next image, to be filled by the caller.
    std::vector<std::uint8_t> TakeBuffer(std::size_t imageBytes);
    /// Takes back a buffer that was not used.
    void ReturnBuffer(std::vector<std::uint8_t> pixels);
    /// Adds the next frame.
    void AddFrame(const FrameStamp& stamp, const ImageLayout& layout,
                  std::vector<std::uint8_t> pixels);
    /// What the description says of the camera's clock. Empty: nothing.
    void DescribeClock(std::optional<ClockRelation> clock) { description.clock = std::move(clock); }
    /// Adds frames that were not recorded.
    void AddGap(const FrameGap& gap);

    /// What has failed to be written; empty if nothing has. From then on nothing is recorded. Any
    /// thread.
    std::string Failure() const;
    /// Any thread.
    RecorderCounts Counts() const;
    /// Waits until all that was added is written; false when the time is over.
    bool WaitUntilWritten(std::uint32_t timeoutMs);
    /// Gives up the frames that wait, which are lost; returns how many.
    std::uint64_t Abandon();
    /// Waits for what waits, ends the threads and completes store, index and description: that of a
    /// complete recording if `reason` is empty, which otherwise says why it is not. Returns what
    /// could not be written, also earlier; empty if all was. Nothing is added afterwards.
    std::string Close(const std::string& reason);

private:
    /// A frame, or frames that were not recorded. Once in the queue it belongs to the thread that
    /// compresses it, and when it is ready, to the writer.
    struct Item {
        FrameLine line;
        std::uint64_t count = 1; // of lines
        bool isFrame = false;
        std::vector<std::uint8_t> pixels;
        EncodedFrame encoded;
        std::string failure; // of the compression

        // Guarded by the recorder's mutex.
        std::uint64_t heldBytes = 0; // of bytesWaiting
        bool isReady = false;
    };

    void Start();
    void Stop();
    void CompressAll();
    Item* TakeToCompress(bool& isWanted);
    void Compress(Item& item) const;
    void NoteCompressed(Item& item);
    void WriteAll();
    std::unique_ptr<Item> TakeToWrite(bool& isWanted);
    void Write(Item& item, bool isWanted);
    void WriteLines(Item& item);
    void NoteWritten(std::unique_ptr<Item> item);
    void NoteFailure(const std::string& reason);
    bool Fits(std::uint64_t imageBytes) const REQUIRES(mutex);
    std::unique_ptr<Item> NewItem();
    void Push(std::unique_ptr<Item> item);

    const std::unique_ptr<FrameStore> store; // appended to by the writer
    const RecorderOptions options;
    RecordingDescription description; // the producer's
    IndexFile index;                  // the writer's while it runs
    std::uint64_t lastNumber = 0;     // the producer's
    std::string lines;                // the writer's
    bool isClosed = false;            // the producer's

    mutable platform::Mutex mutex; // held for moments only, never while compressing or writing
    platform::Condition compressible;
    platform::Condition writable;
    platform::Condition written;
    std::deque<std::unique_ptr<Item>> queue GUARDED_BY(mutex); // in order
    std::size_t nextToCompress GUARDED_BY(mutex) = 0;          // position in the queue
    std::uint64_t bytesWaiting GUARDED_BY(mutex) = 0;
    bool isWriting GUARDED_BY(mutex) = false;
    bool isAbandoned GUARDED_BY(mutex) = false;
    bool isEnding GUARDED_BY(mutex) = false;
    RecorderCounts counts GUARDED_BY(mutex);
    std::string failure GUARDED_BY(mutex);
    std::vector<std::unique_ptr<Item>> spareItems GUARDED_BY(mutex);
    std::vector<std::vector<std::uint8_t>> spareBuffers GUARDED_BY(mutex);

    // Last: they use all other members.
    std::vector<platform::Thread> compressors;
    platform::Thread writer;
};
