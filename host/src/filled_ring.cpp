// filled_ring.cpp - queue of filled frame buffers between camera and host
#include "filled_ring.h"

#include "guarded.h"

namespace {

// Far more than any module supports; an absurd count must not exhaust the memory.
constexpr std::uint64_t kMaxBuffers = 65536;

} // namespace

bool FilledRing::Reset(std::uint64_t count) {
    std::vector<Slot> fresh;
    const bool made = count <= kMaxBuffers && Guarded(false, [&] {
                          fresh.resize(static_cast<std::size_t>(count));
                          return true;
                      });
    const platform::MutexLock lock(mutex);
    slots.swap(fresh);
    oldest = kNone;
    newest = kNone;
    lost = 0;
    return made;
}

void FilledRing::AppendNewest(std::uint32_t index) {
    slots[index] = {State::kWaiting, newest, kNone};
    (newest == kNone ? oldest : slots[newest].newer) = index;
    newest = index;
}

void FilledRing::Unlink(std::uint32_t index) {
    const Slot slot = slots[index];
    (slot.older == kNone ? oldest : slots[slot.older].newer) = slot.newer;
    (slot.newer == kNone ? newest : slots[slot.newer].older) = slot.older;
    slots[index] = Slot{};
}

Arrival FilledRing::Add(std::uint64_t index) {
    const platform::MutexLock lock(mutex);
    if (index >= slots.size()) {
        return Arrival::kUnknownBuffer;
    }
    const std::uint32_t buffer = static_cast<std::uint32_t>(index);
    switch (slots[buffer].state) {
    case State::kHeld:
        ++lost;
        return Arrival::kHeldByHost;
    case State::kWaiting:
        ++lost;
        Unlink(buffer);
        AppendNewest(buffer);
        return Arrival::kOverwritten;
    case State::kIdle:
        break;
    }
    AppendNewest(buffer);
    return Arrival::kQueued;
}

bool FilledRing::TakeNewest(std::uint64_t& index) {
    const platform::MutexLock lock(mutex);
    if (newest == kNone) {
        return false;
    }
    const std::uint32_t taken = newest;
    while (oldest != taken) {
        Unlink(oldest);
        ++lost;
    }
    Unlink(taken);
    slots[taken].state = State::kHeld;
    index = taken;
    return true;
}

bool FilledRing::TakeOldest(std::uint64_t& index) {
    const platform::MutexLock lock(mutex);
    if (oldest == kNone) {
        return false;
    }
    const std::uint32_t taken = oldest;
    Unlink(taken);
    slots[taken].state = State::kHeld;
    index = taken;
    return true;
}

bool FilledRing::Release(std::uint64_t index) {
    const platform::MutexLock lock(mutex);
    if (index >= slots.size()) {
        return false;
    }
    const std::uint32_t buffer = static_cast<std::uint32_t>(index);
    switch (slots[buffer].state) {
    case State::kHeld:
        slots[buffer].state = State::kIdle;
        return true;
    case State::kWaiting:
        Unlink(buffer);
        return true;
    case State::kIdle:
        break;
    }
    return false;
}

std::uint64_t FilledRing::LostCount() {
    const platform::MutexLock lock(mutex);
    return lost;
}
