// conversion_helpers.h - threads that convert an image together with the one that asks for it
#pragma once

#include "imaging/pixel_format.h"
#include "platform/condition.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pyxen {

/// Converts images, large ones with the help of other threads.
///
/// Helpers sleep between images and run nothing but converters. Each takes some rows at a time, so
/// that only helpers that are at work are waited for: one that does not wake up in time has no
/// part in the image. Nothing is converted under a lock, and nothing is allocated.
class ConversionHelpers {
public:
    static constexpr std::uint32_t kMostThreads = 64;
    /// Host images of fewer bytes are converted by the calling thread alone.
    static constexpr std::uint64_t kLeastBytes = std::uint64_t{1} << 20;

    ConversionHelpers() = default;
    ~ConversionHelpers() { Keep(0); }
    ConversionHelpers(const ConversionHelpers&) = delete;
    ConversionHelpers& operator=(const ConversionHelpers&) = delete;

    /// Has that many helpers from here on, or fewer where the system gives no more threads. Waits
    /// for those that end. One thread at a time; images may be converted meanwhile.
    void Keep(std::size_t count);
    std::size_t Count() const { return threads.size(); }

    /// As the function of that name. Any thread; of several at once one is helped.
    void ConvertImage(const PixelFormat& format, const void* raw, void* host, std::uint32_t width,
                      std::uint32_t height);

private:
    struct Image {
        const PixelFormat* format;
        const void* raw;
        void* host;
        std::uint32_t width;
        std::uint32_t height;
        std::uint32_t rowsEach; // of a part
        std::uint32_t parts;
        Stores stores;
    };

    static std::uint32_t RowsEach(const PixelFormat& format, std::uint32_t width);
    static void Run(void* helpers);
    void SetEnding(bool value);
    void WakeUp();
    void Help();
    /// False when no part is left to be taken.
    bool ConvertPart();

    std::vector<platform::Thread> threads;
    std::atomic<bool> canHelp{false};

    // For waiting only, and never held while converting. The waits of std::atomic lose
    // notifications where the C library of Windows has no waits for addresses.
    platform::Mutex mutex;
    platform::Condition awake;
    platform::Condition finished;
    bool isEnding GUARDED_BY(mutex) = false;
    std::uint32_t wakeUps GUARDED_BY(mutex) = 0; // changes when there is something to look for

    std::atomic<bool> isTaken{false};        // a thread converts its image here
    Image image{};                           // stays as it is while a part is unfinished
    std::atomic<std::uint32_t> unclaimed{0}; // parts that nobody has begun
    std::atomic<std::uint32_t> unfinished{0};
};

} // namespace pyxen
