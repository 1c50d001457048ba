// frame_holder.cpp - the newest frame, for all who look at it
#include "apps/serve/frame_holder.h"

#include "platform/clock.h"

#include <utility>

namespace {

constexpr std::uint64_t kNsPerMillisecond = 1000000;
/// For so long after somebody has looked every frame is kept.
constexpr std::uint64_t kInterestNs = 1000 * kNsPerMillisecond;
/// How old the frame may be that the next one who looks finds.
constexpr std::uint64_t kMostAgeNs = 250 * kNsPerMillisecond;
constexpr std::size_t kMostSpareBuffers = 3;

} // namespace

struct FrameHolder::Pool {
    platform::Mutex mutex;
    std::vector<std::vector<std::uint8_t>> spare GUARDED_BY(mutex);
};

std::shared_ptr<FrameHolder::Pool> FrameHolder::MakePool() {
    return std::make_shared<Pool>();
}

void FrameHolder::Recycle(const std::weak_ptr<Pool>& pool, ServedFrame* frame) {
    const std::unique_ptr<ServedFrame> owned(frame);
    if (const auto there = pool.lock()) {
        const platform::MutexLock lock(there->mutex);
        if (there->spare.size() < kMostSpareBuffers) {
            there->spare.push_back(std::move(frame->bytes));
        }
    }
}

bool FrameHolder::IsWanted(std::uint64_t now) const {
    const platform::MutexLock lock(mutex);
    return waiters > 0 || !newest || now - lastAsked < kInterestNs ||
           now - lastPublished >= kMostAgeNs;
}

std::vector<std::uint8_t> FrameHolder::TakeBuffer() {
    const platform::MutexLock lock(pool->mutex);
    if (pool->spare.empty()) {
        return {};
    }
    std::vector<std::uint8_t> buffer = std::move(pool->spare.back());
    pool->spare.pop_back();
    return buffer;
}

void FrameHolder::Publish(const ImageLayout& layout, std::vector<std::uint8_t> bytes,
                          std::uint64_t now) {
    auto owned = std::make_unique<ServedFrame>();
    owned->layout = layout;
    owned->bytes = std::move(bytes);
    const auto recycle = [weak = std::weak_ptr(pool)](ServedFrame* frame) {
        Recycle(weak, frame);
    };
    const std::shared_ptr<ServedFrame> frame(owned.release(), recycle);
    FramePointer replaced = frame; // freed after the lock
    {
        const platform::MutexLock lock(mutex);
        frame->number = ++count;
        lastPublished = now;
        newest.swap(replaced);
    }
    changed.NotifyAll();
}

void FrameHolder::Clear() {
    FramePointer replaced;
    const platform::MutexLock lock(mutex);
    newest.swap(replaced);
}

FramePointer FrameHolder::Newest() {
    const platform::MutexLock lock(mutex);
    lastAsked = platform::MonotonicNanoseconds();
    return newest;
}

FramePointer FrameHolder::WaitNewer(std::uint64_t number, std::uint32_t timeoutMs) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    const platform::MutexLock lock(mutex);
    ++waiters;
    for (;;) {
        const std::uint64_t now = platform::MonotonicNanoseconds();
        lastAsked = now;
        const std::uint64_t waitedMs = (now - begin) / kNsPerMillisecond;
        if ((newest && newest->number > number) || waitedMs >= timeoutMs) {
            --waiters;
            return newest && newest->number > number ? newest : nullptr;
        }
        changed.WaitFor(mutex, timeoutMs - static_cast<std::uint32_t>(waitedMs));
    }
}
