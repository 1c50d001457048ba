// frame_pool.cpp - the frames of a grabber, and who may write to them
#include "imaging/frame_pool.h"

#include "platform/static_mutex.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <new>
#include <thread>

namespace pyxen {

constinit platform::StaticMutex FrameSet::placesMutex;
constinit FrameSet::Place FrameSet::places[kMostSets];
constinit std::atomic<std::size_t> FrameSet::usedPlaces{0};

// Only whoever reshapes or destroys waits, and only while a callback runs.
void FrameSet::Place::WaitUntilEmpty() const {
    while (visitors != 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

FrameSet::Place* FrameSet::TakePlace(const void* owner) {
    const platform::StaticMutexLock lock(placesMutex);
    for (std::size_t index = 0; index < kMostSets; ++index) {
        if (!places[index].owner) {
            places[index].owner = owner;
            usedPlaces = std::max<std::size_t>(usedPlaces, index + 1);
            return &places[index];
        }
    }
    throw std::bad_alloc();
}

FrameSet::FrameSet(void* frameOwner) : place(TakePlace(frameOwner)) {
    place->set = this;
}

FrameSet::~FrameSet() {
    place->set = nullptr;
    place->WaitUntilEmpty();
    const platform::StaticMutexLock lock(placesMutex);
    place->owner = nullptr;
}

void FrameSet::ComeBack() {
    for (const auto& record : records) {
        record->Hold().Return();
    }
}

bool FrameSet::IsHome() const {
    return !IsWithSdk();
}

bool FrameSet::IsWithSdk() const {
    return std::any_of(records.begin(), records.end(),
                       [](const auto& record) { return record->Hold().IsWithSdk(); });
}

void FrameSet::Pause() {
    receiver = nullptr;
    place->WaitUntilEmpty();
}

void FrameSet::Resume(IFrameReceiver& frameReceiver) {
    receiver = &frameReceiver;
}

// Frames come back in the order in which they were queued: the search begins behind the last one.
std::size_t FrameSet::IndexOfRecord(const PxnFrame* frame) const {
    const std::size_t count = records.size();
    std::size_t index = place->expected.load(std::memory_order_relaxed);
    for (std::size_t tried = 0; tried < count; ++tried, ++index) {
        if (index >= count) {
            index = 0;
        }
        if (records[index]->Frame() == frame) {
            place->expected.store(index + 1, std::memory_order_relaxed);
            return index;
        }
    }
    return kNoRecord;
}

FrameVisit::FrameVisit(PxnFrame* frame) {
    const std::size_t used = FrameSet::usedPlaces;
    for (std::size_t index = 0; index < used; ++index) {
        if (FrameSet::places[index].set && Enter(FrameSet::places[index], frame)) {
            return;
        }
    }
}

bool FrameVisit::Enter(FrameSet::Place& candidate, PxnFrame* frame) {
    ++candidate.visitors;
    const FrameSet* const set = candidate.set;
    const std::size_t index = set ? set->IndexOfRecord(frame) : FrameSet::kNoRecord;
    if (index == FrameSet::kNoRecord || frame->context[0] != candidate.owner ||
        IndexOf(*frame) != index) {
        --candidate.visitors;
        return false;
    }
    place = &candidate;
    record = set->records[index].get();
    before = record->Hold().Now();
    if (frame->context[1] == record) {
        receiver = set->receiver;
    }
    return true;
}

FrameVisit::~FrameVisit() {
    if (place) {
        record->Hold().ReturnIfUnchanged(before);
        --place->visitors;
    }
}

FramePool::~FramePool() {
    if (set) {
        set->Pause();
    }
}

std::shared_ptr<SdkMemory> FramePool::Abandon() {
    if (IsHome()) {
        return nullptr;
    }
    set->Pause();
    isAbandoned = true;
    return set;
}

FramePool::Reshaping::Reshaping(FramePool& framePool) : pool(framePool) {
    if (pool.isAbandoned) {
        pool.set.reset();
        pool.isAbandoned = false;
    }
    if (pool.set) {
        pool.set->Pause();
    }
}

FramePool::Reshaping::~Reshaping() {
    if (pool.set) {
        pool.set->Resume(pool.receiver);
    }
}

bool FramePool::Reshaping::Resize(std::size_t count) {
    return NoThrow(false, [&] {
        if (pool.Size() == count) {
            return true;
        }
        if (!pool.set) {
            pool.set = std::make_shared<FrameSet>(pool.owner);
        }
        const std::size_t kept = std::min(count, pool.Size());
        FrameSet::Records changed;
        changed.reserve(count);
        FrameSet::Records added;
        added.reserve(count - kept);
        // Out of memory, the records up to there are kept.
        const bool isComplete = NoThrow(false, [&] {
            for (std::size_t index = kept; index < count; ++index) {
                added.push_back(std::make_unique<FrameRecord>(pool.owner, index));
            }
            return true;
        });
        pool.set->Change([&](FrameSet::Records& records) {
            std::move(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(kept),
                      std::back_inserter(changed));
            std::move(added.begin(), added.end(), std::back_inserter(changed));
            records.swap(changed);
        });
        return isComplete;
    });
}

} // namespace pyxen
