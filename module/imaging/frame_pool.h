// frame_pool.h - the frames of a grabber, and who may write to them
#pragma once

#include "imaging/frame_record.h"
#include "platform/static_mutex.h"
#include "sdk/sdk_library.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace pyxen {

/// Receives the frames of a pool, on SDK threads.
class IFrameReceiver {
public:
    virtual void OnFrame(PxnFrame* frame) = 0;

protected:
    ~IFrameReceiver() = default;
};

/// The frame records of one camera.
///
/// Shared by the pool and by whoever remembers a camera that the SDK refused to close: the memory
/// stays as long as one of them has it. The set of all live FrameSets is what a frame from the SDK
/// is checked against.
class FrameSet final : public SdkMemory {
public:
    /// `frameOwner` is context word 0 of the frames. Throws std::bad_alloc when there are kMostSets
    /// already.
    explicit FrameSet(void* frameOwner);
    ~FrameSet() override;

    static constexpr std::size_t kMostSets = 256;

    void ComeBack() override;
    bool IsHome() const;
    bool IsWithSdk() const;
    /// No frame reaches the receiver until Resume. Waits for a running callback; not to be called
    /// from inside one. One thread at a time pauses, resumes and changes.
    void Pause();
    void Resume(IFrameReceiver& frameReceiver);

    using Records = std::vector<std::unique_ptr<FrameRecord>>;
    const Records& All() const { return records; }
    /// Runs `change` on the records, which must not throw. No callback is inside meanwhile.
    template <typename Function>
    void Change(Function change) {
        place->set = nullptr;
        place->WaitUntilEmpty();
        change(records);
        place->set = this;
    }

private:
    friend class FrameVisit;

    // A place for a live set. A callback that enters the place while the set is there keeps the set
    // and its records alive until it leaves: whoever changes them takes the set out first and waits
    // until nobody is inside. Places are never destroyed: the SDK's threads may come before the
    // begin of main and outlive its end.
    struct alignas(64) Place {
        std::atomic<const void*> owner{nullptr}; // null: nobody's place
        std::atomic<FrameSet*> set{nullptr};     // null while its records change
        std::atomic<unsigned> visitors{0};
        std::atomic<std::size_t> expected{0}; // where the next frame is looked for first

        void WaitUntilEmpty() const;
    };

    static constexpr std::size_t kNoRecord = static_cast<std::size_t>(-1);
    /// The position of the record whose frame that is. Nothing is read through `frame`.
    std::size_t IndexOfRecord(const PxnFrame* frame) const;

    static Place* TakePlace(const void* owner);

    static platform::StaticMutex placesMutex; // to take and to give back a place
    static Place places[kMostSets];
    static std::atomic<std::size_t> usedPlaces; // all behind were never taken

    Place* const place;
    std::atomic<IFrameReceiver*> receiver{nullptr}; // null while paused
    Records records;
};

/// The time that a callback of the SDK spends with a frame.
///
/// The frame must be that of a record in a live set, found by its address, and its context words
/// those that the record was given; nothing is read of the frame or through them before. Takes no
/// lock, neither waits nor allocates.
class FrameVisit {
public:
    explicit FrameVisit(PxnFrame* frame);
    ~FrameVisit();
    FrameVisit(const FrameVisit&) = delete;
    FrameVisit& operator=(const FrameVisit&) = delete;

    /// Null when the frame is none of ours or its grabber has gone.
    IFrameReceiver* Receiver() const { return receiver; }

private:
    bool Enter(FrameSet::Place& candidate, PxnFrame* frame);

    FrameSet::Place* place = nullptr;
    FrameRecord* record = nullptr;
    FrameHold::Moment before = 0;
    IFrameReceiver* receiver = nullptr;
};

/// The frames that a grabber announces and queues.
///
/// One host thread at a time resizes, detaches and takes back; queueing and callbacks may come from
/// the SDK's threads meanwhile.
class FramePool {
public:
    static constexpr std::size_t kMostFrames = 100;

    FramePool(void* frameOwner, IFrameReceiver& frameReceiver)
        : owner(frameOwner), receiver(frameReceiver) {}
    /// The SDK may go on writing to what it has. Not inside a callback.
    ~FramePool();
    FramePool(const FramePool&) = delete;
    FramePool& operator=(const FramePool&) = delete;

    std::size_t Size() const { return set ? set->All().size() : 0; }
    FrameRecord& operator[](std::size_t index) { return *set->All()[index]; }
    /// The record that a frame names as its own, or null.
    FrameRecord* FindRecord(const PxnFrame& frame) {
        const std::uint64_t index = IndexOf(frame);
        return index < Size() && frame.context[1] == &(*this)[index] ? &(*this)[index] : nullptr;
    }

    /// While one lives, records may be added, removed and given memory. It waits for a running
    /// callback; no frame reaches the receiver meanwhile. Frames of a camera that has gone are left
    /// to whoever remembers it.
    class Reshaping {
    public:
        explicit Reshaping(FramePool& framePool);
        ~Reshaping();
        Reshaping(const Reshaping&) = delete;
        Reshaping& operator=(const Reshaping&) = delete;

        /// Destroys the last records or adds new ones, at most kMostFrames. All frames are home.
        /// False when out of memory; the records that there is memory for are there.
        bool Resize(std::size_t count);

    private:
        FramePool& pool;
    };

    bool IsHome() const { return !set || set->IsHome(); }
    bool IsWithSdk() const { return set && set->IsWithSdk(); }
    /// The camera has gone. Returns the memory if it has not given all of it back, else null; no
    /// frame reaches the receiver then.
    std::shared_ptr<SdkMemory> Abandon();

    /// Queues a record's frame by `call`, which returns the SDK's result.
    template <typename Call>
    static PxnError Queue(FrameRecord& record, Call call) {
        const FrameHold::Moment before = record.Hold().BeginQueue();
        const PxnError result = call();
        if (result != PxnErrSuccess) {
            record.Hold().QueueRefused(before, result);
        }
        return result;
    }

    /// Runs `call`, after whose success the SDK has none of the frames that it has now: a flush, a
    /// revocation, closing the camera. Frames that are queued anew meanwhile stay the SDK's.
    template <typename Call>
    PxnError TakeBack(Call call) {
        std::array<FrameHold::Moment, kMostFrames> seen{};
        const std::size_t count = Size();
        for (std::size_t index = 0; index < count; ++index) {
            seen[index] = (*this)[index].Hold().Now();
        }
        const PxnError result = call();
        for (std::size_t index = 0; result == PxnErrSuccess && index < count; ++index) {
            (*this)[index].Hold().ReturnIfUnchanged(seen[index]);
        }
        return result;
    }

private:
    void* const owner;
    IFrameReceiver& receiver;
    std::shared_ptr<FrameSet> set; // null before the first Reshaping that adds records
    bool isAbandoned = false;      // the set's camera has gone with some of its frames
};

} // namespace pyxen
