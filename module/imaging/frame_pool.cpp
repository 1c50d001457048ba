// frame_pool.cpp - the frames of a grabber, and who may write to them
#include "imaging/frame_pool.h"

#include "platform/static_mutex.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <iterator>
#include <utility>

// Without destructors: the SDK's threads may still run while the process ends.
constinit platform::StaticMutex FrameSet::registryMutex;
constinit FrameSet* FrameSet::liveSets = nullptr;

FrameSet::FrameSet(void* frameOwner) : owner(frameOwner) {
    const platform::StaticMutexLock lock(registryMutex);
    next = std::exchange(liveSets, this);
}

FrameSet::~FrameSet() {
    Pause();
    const platform::StaticMutexLock lock(registryMutex);
    FrameSet** place = &liveSets;
    while (*place != this) {
        place = &(*place)->next;
    }
    *place = next;
}

void FrameSet::ComeBack() {
    for (const auto& record : records) {
        record->Hold().Return();
    }
}

bool FrameSet::IsHome() const {
    return std::all_of(records.begin(), records.end(),
                       [](const auto& record) { return record->Hold().IsHome(); });
}

bool FrameSet::IsWithSdk() const {
    return std::any_of(records.begin(), records.end(),
                       [](const auto& record) { return record->Hold().IsWithSdk(); });
}

void FrameSet::Pause() {
    {
        const platform::StaticMutexLock lock(registryMutex);
        receiver = nullptr;
        if (callbacks == 0) {
            return;
        }
        isAwaited = true;
        quiet.Reset();
    }
    quiet.Wait(platform::kInfinite);
}

void FrameSet::Resume(IFrameReceiver& frameReceiver) {
    const platform::StaticMutexLock lock(registryMutex);
    receiver = &frameReceiver;
}

FrameVisit::FrameVisit(PxnFrame* frame) {
    const std::uint64_t index = IndexOf(*frame);
    const platform::StaticMutexLock lock(FrameSet::registryMutex);
    for (FrameSet* candidate = FrameSet::liveSets; candidate; candidate = candidate->next) {
        if (index >= candidate->records.size() || candidate->records[index]->Frame() != frame) {
            continue;
        }
        set = candidate;
        record = set->records[index].get();
        ++set->callbacks;
        during = record->Hold().BeginCallback();
        if (frame->context[0] == set->owner && frame->context[1] == record) {
            receiver = set->receiver;
        }
        return;
    }
}

FrameVisit::~FrameVisit() {
    if (!set) {
        return;
    }
    record->Hold().EndCallback(during);
    const platform::StaticMutexLock lock(FrameSet::registryMutex);
    if (--set->callbacks == 0 && set->isAwaited) {
        set->quiet.Set();
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
        std::vector<std::unique_ptr<FrameRecord>>& records = pool.set->records;
        std::vector<std::unique_ptr<FrameRecord>> changed;
        changed.reserve(count);
        std::vector<std::unique_ptr<FrameRecord>> added;
        added.reserve(count);
        // Out of memory, the records up to there are kept.
        const bool isComplete = NoThrow(false, [&] {
            for (std::size_t index = records.size(); index < count; ++index) {
                added.push_back(std::make_unique<FrameRecord>(pool.owner, index));
            }
            return true;
        });
        const platform::StaticMutexLock lock(FrameSet::registryMutex);
        const auto kept =
            records.begin() + static_cast<std::ptrdiff_t>(std::min(count, records.size()));
        std::move(records.begin(), kept, std::back_inserter(changed));
        std::move(added.begin(), added.end(), std::back_inserter(changed));
        records.swap(changed);
        return isComplete;
    });
}
