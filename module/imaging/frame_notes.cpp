// frame_notes.cpp - what is known of the frame received last into each buffer
#include "imaging/frame_notes.h"

#include <algorithm>

namespace pyxen {

// The flags of a frame are passed on as they are.
static_assert(kMvFrameHasDimension == PxnFrameFlagDimension &&
              kMvFrameHasOffset == PxnFrameFlagOffset &&
              kMvFrameHasFrameId == PxnFrameFlagFrameId &&
              kMvFrameHasTimestamp == PxnFrameFlagTimestamp &&
              kMvFrameHasImageSize == PxnFrameFlagImageData &&
              kMvFrameHasPayloadType == PxnFrameFlagPayloadType &&
              kMvFrameHasChunks == PxnFrameFlagChunkData);
static_assert(static_cast<int>(MV_FRAME_COMPLETE) == PxnFrameStatusComplete &&
              static_cast<int>(MV_FRAME_INCOMPLETE) == PxnFrameStatusIncomplete &&
              static_cast<int>(MV_FRAME_TOO_SMALL) == PxnFrameStatusTooSmall &&
              static_cast<int>(MV_FRAME_INVALID) == PxnFrameStatusInvalid);

namespace {

constexpr std::uint32_t kKnownFlags =
    kMvFrameHasDimension | kMvFrameHasOffset | kMvFrameHasFrameId | kMvFrameHasTimestamp |
    kMvFrameHasImageSize | kMvFrameHasPayloadType | kMvFrameHasChunks;

std::uint32_t ValidMembers(const PxnFrame& frame) {
    const std::uint32_t known = frame.receiveFlags & kKnownFlags;
    return frame.chunkDataPresent == 0 ? known & ~kMvFrameHasChunks : known;
}

std::uint64_t Pair(std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << 32 | low;
}

std::uint32_t High(std::uint64_t word) {
    return static_cast<std::uint32_t>(word >> 32);
}

std::uint32_t Low(std::uint64_t word) {
    return static_cast<std::uint32_t>(word);
}

} // namespace

MV_FRAME_INFO DescribeFrame(const PxnFrame& frame, std::uint64_t bufferIndex,
                            std::uint64_t received, bool current) {
    MV_FRAME_INFO info;
    info.size = sizeof info;
    info.valid = ValidMembers(frame);
    info.bufferIndex = bufferIndex;
    info.received = received;
    info.frameId = frame.frameId;
    info.timestamp = frame.timestamp;
    info.status = frame.receiveStatus;
    info.pixelFormat = frame.pixelFormat;
    info.width = frame.width;
    info.height = frame.height;
    info.offsetX = frame.offsetX;
    info.offsetY = frame.offsetY;
    info.payloadBytes = frame.imageSize;
    info.payloadType = frame.payloadType;
    info.picture = current ? MV_PICTURE_CURRENT : MV_PICTURE_GONE;
    info.reserved = 0;
    return info;
}

// Words are stored with release and loaded with acquire: a reader that has seen a word of what is
// being written also sees that the number has changed since.
void FrameNote::Store(const PxnFrame& frame, std::uint64_t received, bool current) {
    const std::uint64_t number = state.load(std::memory_order_relaxed) / kStep + 1;
    auto& place = places[number % 2];
    const auto store = [&](std::size_t index, std::uint64_t word) {
        place[index].store(word, std::memory_order_release);
    };
    store(0, received);
    store(1, frame.frameId);
    store(2, frame.timestamp);
    store(3, Pair(static_cast<std::uint32_t>(frame.receiveStatus), ValidMembers(frame)));
    store(4, Pair(frame.pixelFormat, frame.width));
    store(5, Pair(frame.height, frame.offsetX));
    store(6, Pair(frame.offsetY, frame.imageSize));
    store(7, frame.payloadType);
    state.store(number * kStep + (current ? MV_PICTURE_CURRENT : MV_PICTURE_GONE),
                std::memory_order_release);
}

void FrameNote::Clear() {
    const std::uint64_t number = state.load(std::memory_order_relaxed) / kStep + 1;
    state.store(number * kStep + MV_PICTURE_NONE, std::memory_order_release);
}

void FrameNote::BeginChange() {
    const std::uint64_t before = state.load(std::memory_order_relaxed);
    if (IsCurrent(before)) {
        // Not a store: the change of the picture that follows must not come before it.
        state.exchange(Gone(before));
    }
}

std::uint64_t FrameNote::Leave() {
    const std::uint64_t before = state.load(std::memory_order_relaxed);
    if (IsCurrent(before)) {
        state.store(Gone(before), std::memory_order_release);
    }
    return before;
}

void FrameNote::Restore(std::uint64_t before) {
    std::uint64_t left = Gone(before);
    if (IsCurrent(before)) {
        state.compare_exchange_strong(left, before);
    }
}

void FrameNote::Load(MV_FRAME_INFO& info) const {
    std::uint64_t words[kWords] = {};
    std::uint64_t after = state.load(std::memory_order_acquire);
    std::uint64_t before = 0;
    do {
        before = after;
        const auto& place = places[before / kStep % 2];
        for (std::size_t index = 0; index < kWords; ++index) {
            words[index] = place[index].load(std::memory_order_acquire);
        }
        after = state.load(std::memory_order_acquire);
    } while (before / kStep != after / kStep);
    info.picture = static_cast<std::uint32_t>(after & kPictureMask);
    if (info.picture == MV_PICTURE_NONE) {
        std::fill_n(words, kWords, std::uint64_t{0});
    }
    info.received = words[0];
    info.frameId = words[1];
    info.timestamp = words[2];
    info.status = static_cast<std::int32_t>(High(words[3]));
    info.valid = Low(words[3]);
    info.pixelFormat = High(words[4]);
    info.width = Low(words[4]);
    info.height = High(words[5]);
    info.offsetX = Low(words[5]);
    info.offsetY = High(words[6]);
    info.payloadBytes = Low(words[6]);
    info.payloadType = Low(words[7]);
    info.reserved = 0;
}

void FrameNotes::Prepare(std::size_t newCount) {
    for (FrameNote& note : notes) {
        note.Clear();
    }
    count = std::min(newCount, kMost);
}

bool FrameNotes::Load(std::uint64_t index, MV_FRAME_INFO& info) const {
    if (index >= count) {
        return false;
    }
    notes[index].Load(info);
    info.bufferIndex = index;
    return true;
}

} // namespace pyxen
