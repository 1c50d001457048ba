// frame_journal.cpp - the frames of an acquisition in the order of their arrival
#include "apps/common/frame_journal.h"

#include <algorithm>
#include <utility>

namespace {

// A jump of the camera's numbers by more than that is no loss of frames.
constexpr std::uint64_t kMostDropped = 1000000;
// Numbers of GigE Vision cameras may have 16 bits; after the last one comes 1, or 0.
constexpr std::uint64_t kLastShortId = 0xFFFF;
constexpr std::uint64_t kLargestShortGap = 4096;
// What was lost of a frame may come behind that many others.
constexpr std::uint64_t kMostLate = 16;

constexpr const char* kNumbersJumped = "the camera's frame numbers jumped";

/// How far `id` is behind `last`, also across the end of short numbers; 0 if it is not.
std::uint64_t BehindBy(std::uint64_t last, std::uint64_t id) {
    if (id < last) {
        return last - id;
    }
    const bool isAcrossTheEnd = id <= kLastShortId && id - last > kLastShortId - kLargestShortGap;
    return isAcrossTheEnd ? kLastShortId - id + last : 0;
}

} // namespace

void FrameJournal::Begin(std::size_t buffers) {
    const platform::MutexLock lock(mutex);
    entries.clear();
    first = 0;
    newest.assign(buffers, 0);
    count = 0;
    lastId.reset();
    unnumbered = 0;
}

void FrameJournal::Received(const MV_FRAME_INFO& frame, std::uint64_t now) {
    Entry entry;
    entry.isComplete = frame.status == MV_FRAME_COMPLETE;
    // Of a frame that lacks its first packet the number may be 0.
    if ((frame.valid & kMvFrameHasFrameId) && (entry.isComplete || frame.frameId != 0)) {
        entry.stamp.frameId = frame.frameId;
    }
    if (frame.valid & kMvFrameHasTimestamp) {
        entry.stamp.timestampNs = frame.timestamp;
    }
    entry.stamp.hostNs = now;
    const platform::MutexLock lock(mutex);
    entry.number = ++count;
    entries.push_back(entry);
}

void FrameJournal::ReceivedInError(std::uint64_t frames, std::uint64_t now) {
    const platform::MutexLock lock(mutex);
    for (std::uint64_t i = 0; i < frames; ++i) {
        Entry entry;
        entry.stamp.hostNs = now;
        entry.number = ++count;
        entries.push_back(entry);
    }
}

void FrameJournal::HandedOver(std::uint64_t bufferIndex, std::uint64_t now) {
    const platform::MutexLock lock(mutex);
    if (bufferIndex >= newest.size()) {
        return;
    }
    const bool isReported =
        entries.size() > first && entries.back().isComplete && entries.back().buffer == kNoBuffer;
    if (!isReported) {
        Entry entry;
        entry.stamp.hostNs = now;
        entry.isComplete = true;
        entry.number = ++count;
        entries.push_back(entry);
    }
    Entry& entry = entries.back();
    entry.buffer = bufferIndex;
    entry.handedOver = now;
    newest[static_cast<std::size_t>(bufferIndex)] = entry.number;
}

bool FrameJournal::IsWaiting(const Entry& entry) const {
    return entry.buffer != kNoBuffer && !entry.isLost &&
           newest[static_cast<std::size_t>(entry.buffer)] == entry.number;
}

// The ring gives out frames in order. Of several frames in the buffer that it has given out, the
// newest is the taken one, unless older frames still wait in other buffers: then the camera has
// filled the buffer again since it was given out.
std::size_t FrameJournal::FindTaken(std::uint64_t bufferIndex, bool& isOverwritten) {
    std::size_t latest = entries.size();
    std::size_t former = entries.size();
    bool isFirst = true;
    for (std::size_t i = first; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (entry.buffer == bufferIndex && !entry.isLost) {
            former = latest;
            latest = i;
            if (IsWaiting(entry)) {
                break;
            }
        } else if (IsWaiting(entry)) {
            isFirst = false;
        }
    }
    isOverwritten = !isFirst && former != entries.size();
    if (isOverwritten) {
        entries[latest].isLost = true;
        return former;
    }
    return latest;
}

bool FrameJournal::Take(std::uint64_t bufferIndex, TakenFrame& taken) {
    taken.before.clear();
    const platform::MutexLock lock(mutex);
    const std::size_t at = FindTaken(bufferIndex, taken.isOverwritten);
    if (at == entries.size()) {
        return false;
    }
    for (std::size_t i = first; i < at; ++i) {
        GiveUp(entries[i], taken.before);
    }
    const Entry& entry = entries[at];
    FindGap(entry.stamp, taken.before);
    taken.stamp = entry.stamp;
    taken.number = entry.number;
    taken.handedOver = entry.handedOver;
    RemoveFirst(at + 1 - first);
    return true;
}

void FrameJournal::TakeRest(std::vector<FrameGap>& gaps) {
    const platform::MutexLock lock(mutex);
    for (std::size_t i = first; i < entries.size(); ++i) {
        GiveUp(entries[i], gaps);
    }
    RemoveFirst(entries.size() - first);
}

void FrameJournal::GiveUp(const Entry& entry, std::vector<FrameGap>& gaps) {
    const bool isNew = FindGap(entry.stamp, gaps);
    if (!isNew && !entry.isComplete) {
        return; // a part of a frame that has been accounted for
    }
    gaps.push_back({entry.isComplete ? FrameStatus::kLost : FrameStatus::kIncomplete, entry.stamp});
}

/// Adds what is missing between the frame and the one before. False if the frame comes late: one
/// with a higher number has come before it.
bool FrameJournal::FindGap(const FrameStamp& stamp, std::vector<FrameGap>& gaps) {
    if (!stamp.frameId) {
        ++unnumbered;
        return true;
    }
    const std::uint64_t accounted = std::exchange(unnumbered, 0);
    if (!lastId) {
        lastId = stamp.frameId;
        return true;
    }
    const std::uint64_t id = *stamp.frameId;
    const std::uint64_t last = *lastId;
    if (id == last || (BehindBy(last, id) != 0 && BehindBy(last, id) <= kMostLate)) {
        return false;
    }
    FrameGap gap;
    if (id > last && id - last <= kMostDropped) {
        gap.first.frameId = last + 1;
        gap.count = id - last - 1;
    } else if (id < kLargestShortGap && last <= kLastShortId &&
               last > kLastShortId - kLargestShortGap) {
        gap.count = kLastShortId - last + (id == 0 ? 0 : id - 1);
    } else {
        gap.note = kNumbersJumped;
    }
    gap.count -= gap.note ? 0 : std::min(gap.count, accounted);
    if (gap.count != 0) {
        gaps.push_back(gap);
    }
    lastId = id;
    return true;
}

void FrameJournal::RemoveFirst(std::size_t removed) {
    first += removed;
    if (first == entries.size()) {
        entries.clear();
        first = 0;
    } else if (first > entries.size() - first) {
        entries.erase(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(first));
        first = 0;
    }
}

std::uint64_t FrameJournal::CountAfter(std::uint64_t number) const {
    const platform::MutexLock lock(mutex);
    return count - std::min(count, number);
}
