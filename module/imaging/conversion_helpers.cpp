// conversion_helpers.cpp - threads that convert an image together with the one that asks for it
#include "imaging/conversion_helpers.h"

#include "sdk/no_throw.h"

#include <algorithm>
#include <utility>

namespace pyxen {

namespace {

constexpr std::size_t kStackSize = 65536;
// Of a host image. Large enough for the processor to fetch ahead, and converted in so little time
// that whoever has finished does not wait long for the others.
constexpr std::uint64_t kPartBytes = 128 * 1024;

} // namespace

void ConversionHelpers::Keep(std::size_t count) {
    if (count == threads.size()) {
        return;
    }
    canHelp = false;
    SetEnding(true);
    awake.NotifyAll();
    threads.clear();
    SetEnding(false);
    NoThrow(false, [&] {
        threads.reserve(count);
        while (threads.size() < count) {
            platform::Thread helper = platform::Thread::Start(&Run, this, kStackSize);
            if (!helper.IsJoinable()) {
                break;
            }
            threads.push_back(std::move(helper));
        }
        return true;
    });
    canHelp = !threads.empty();
}

void ConversionHelpers::ConvertImage(const PixelFormat& format, const void* raw, void* host,
                                     std::uint32_t width, std::uint32_t height) {
    const std::uint32_t rowsEach = canHelp ? RowsEach(format, width) : height;
    if (height <= rowsEach || HostRowBytes(format, width) * height < kLeastBytes ||
        isTaken.exchange(true, std::memory_order_acquire)) {
        pyxen::ConvertImage(format, raw, host, width, height);
        return;
    }
    const std::uint32_t parts = height / rowsEach + (height % rowsEach != 0 ? 1 : 0);
    image = {&format, raw, host, width, height, rowsEach, parts, StoresFor(format, width, height)};
    unfinished.store(parts, std::memory_order_relaxed);
    unclaimed.store(parts, std::memory_order_release);
    WakeUp();
    while (ConvertPart()) {
    }
    {
        const platform::MutexLock lock(mutex);
        while (unfinished.load(std::memory_order_acquire) != 0) {
            finished.Wait(mutex);
        }
    }
    isTaken.store(false, std::memory_order_release);
}

std::uint32_t ConversionHelpers::RowsEach(const PixelFormat& format, std::uint32_t width) {
    const std::uint64_t rows =
        kPartBytes / std::max<std::uint64_t>(HostRowBytes(format, width), 1) / kRowsOfWholeGroups;
    return static_cast<std::uint32_t>(std::max<std::uint64_t>(rows, 1) * kRowsOfWholeGroups);
}

void ConversionHelpers::Run(void* helpers) {
    static_cast<ConversionHelpers*>(helpers)->Help();
}

void ConversionHelpers::SetEnding(bool value) {
    const platform::MutexLock lock(mutex);
    isEnding = value;
}

void ConversionHelpers::WakeUp() {
    {
        const platform::MutexLock lock(mutex);
        ++wakeUps;
    }
    awake.NotifyAll();
}

void ConversionHelpers::Help() {
    for (std::uint32_t seen = 0;;) {
        {
            const platform::MutexLock lock(mutex);
            while (wakeUps == seen && !isEnding) {
                awake.Wait(mutex);
            }
            if (isEnding) {
                return;
            }
            seen = wakeUps;
        }
        while (ConvertPart()) {
        }
    }
}

bool ConversionHelpers::ConvertPart() {
    std::uint32_t left = unclaimed.load(std::memory_order_relaxed);
    do {
        if (left == 0) {
            return false;
        }
    } while (!unclaimed.compare_exchange_weak(left, left - 1, std::memory_order_acquire,
                                              std::memory_order_relaxed));
    // From here on `image` stays, whether or not it is the one that this thread was woken for.
    const std::uint32_t first = (image.parts - left) * image.rowsEach;
    ConvertRows(*image.format, image.raw, image.host, image.width, first,
                std::min(image.rowsEach, image.height - first), image.stores);
    if (unfinished.fetch_sub(1, std::memory_order_release) == 1) {
        {
            const platform::MutexLock lock(mutex); // whoever waits has seen it, or waits by now
        }
        finished.NotifyAll();
    }
    return true;
}

} // namespace pyxen
