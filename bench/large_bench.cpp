// large_bench.cpp - images that are larger than the cache: how they are written, and by how many
//
// What counts is the time until the host has read the image: converting it past the cache may be
// faster and reading it from memory slower. The host may read where the frame is handed over, on
// the thread that has converted it, or on a thread of its own. Elapsed times, since two threads are
// at work; medians of repetitions in random order, with the lowest and the highest in brackets.
#include "bench/support/baseline.h"
#include "bench/support/upper_halves.h"
#include "imaging/conversion/converter_set.h"
#include "imaging/conversion_helpers.h"
#include "imaging/image_memory.h"
#include "platform/processor.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

constexpr std::uint32_t kWidth = 4096;
constexpr std::uint32_t kHeight = 3000;
constexpr std::size_t kPairs = 6; // of a raw and a host image, used by turns
constexpr int kRepetitions = 15;

// Where compilers cannot leave the reading out.
volatile std::uint64_t readSum = 0;

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

std::uint64_t SumOf(const ImageMemory& image) {
    std::uint64_t sum = 0;
    for (std::uint64_t at = 0; at + 8 <= image.Size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, image.Get() + at, 8);
        sum += word;
    }
    return sum;
}

/// A thread of the host's: reads whole images.
class Reader {
public:
    ~Reader() {
        image = nullptr;
        Wake();
        thread.join();
    }
    /// Returns when the image has been read.
    void Read(const ImageMemory& memory) {
        image = &memory;
        Wake();
        while (done.load() != asked.load()) {
        }
    }

private:
    void Wake() {
        ++asked;
        asked.notify_all();
    }
    void Run() {
        for (unsigned seen = 0;;) {
            asked.wait(seen);
            seen = asked;
            if (!image) {
                return;
            }
            total = SumOf(*image);
            done = seen;
        }
    }

    const ImageMemory* image = nullptr;
    std::atomic<unsigned> asked{0};
    std::atomic<unsigned> done{0};
    std::atomic<std::uint64_t> total{0};
    std::thread thread{[this] {
        Run();
    }};
};

/// One way to convert an image.
struct Way {
    std::string name;
    std::function<void(const void* raw, void* host)> convert;
    std::vector<double> converting{}; ///< milliseconds, one of each repetition
    std::vector<double> readHere{};   ///< and until the same thread has read it
    std::vector<double> readThere{};  ///< or until another has
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::string Range(const std::vector<double>& values) {
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    char text[64];
    std::snprintf(text, sizeof text, "%.2f [%.2f %.2f]", Median(values), *lowest, *highest);
    return text;
}

std::vector<Way> WaysOf(const PixelFormat& format, ConversionHelpers& helpers, std::size_t copied) {
    std::vector<Way> ways;
    ways.push_back({"memcpy", [copied](const void* raw, void* host) {
                        std::memcpy(host, raw, copied);
                    }});
    for (const ConverterSet* set : UsableConverterSets()) {
        if (!set->streaming) {
            continue;
        }
        const auto add = [&](const char* how, std::uint32_t streamed) {
            ways.push_back({std::string(set->name) + ", " + how,
                            [&format, set, streamed](const void* raw, void* host) {
                                ForceConverterSet(set);
                                ConvertRows(format, raw, host, kWidth, 0, streamed,
                                            Stores::kStreaming);
                                ConvertRows(format, raw, host, kWidth, streamed, kHeight - streamed,
                                            Stores::kOrdinary);
                            }});
        };
        constexpr std::uint32_t kLastBytes = 4 << 20;
        const auto last = static_cast<std::uint32_t>(kLastBytes / HostRowBytes(format, kWidth));
        add("ordinary stores", 0);
        add("streaming stores", kHeight);
        add("streaming, the last 4 MiB ordinary",
            (kHeight - last) / kRowsOfWholeGroups * kRowsOfWholeGroups);
    }
    ways.push_back({"as the module does, one thread", [&format](const void* raw, void* host) {
                        ForceConverterSet(nullptr);
                        ConvertImage(format, raw, host, kWidth, kHeight);
                    }});
    ways.push_back({"as the module does, two threads", [&](const void* raw, void* host) {
                        ForceConverterSet(nullptr);
                        helpers.ConvertImage(format, raw, host, kWidth, kHeight);
                    }});
    return ways;
}

void Measure(const char* name, ConversionHelpers& helpers, Reader& reader) {
    const PixelFormat& format = *FindPixelFormatByName(name);
    const std::size_t rawBytes = std::size_t{kWidth} * kHeight * (format.code >> 16 & 0xFF) / 8;
    const std::size_t hostBytes = HostRowBytes(format, kWidth) * kHeight;
    const std::size_t copied = (rawBytes + hostBytes) / 2;
    std::vector<ImageMemory> raw(kPairs);
    std::vector<ImageMemory> host(kPairs);
    std::mt19937 generator(1);
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
        if (!raw[pair].Resize(std::max(rawBytes, copied)) ||
            !host[pair].Resize(std::max(hostBytes, copied))) {
            std::fprintf(stderr, "out of memory\n");
            return;
        }
        for (std::size_t at = 0; at < raw[pair].Size(); ++at) {
            raw[pair].Get()[at] = static_cast<std::uint8_t>(generator() >> 24);
        }
    }
    std::vector<Way> ways = WaysOf(format, helpers, copied);
    std::vector<std::size_t> order(ways.size());
    for (std::size_t index = 0; index < order.size(); ++index) {
        order[index] = index;
    }
    std::size_t turn = 0;
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {
        std::shuffle(order.begin(), order.end(), generator);
        for (const std::size_t index : order) {
            Way& way = ways[index];
            for (const bool isReadHere : {true, false}) {
                const std::size_t pair = turn++ % kPairs;
                ClearUpperHalves();
                const auto begin = Clock::now();
                way.convert(raw[pair].Get(), host[pair].Get());
                const auto converted = Clock::now();
                if (isReadHere) {
                    readSum = SumOf(host[pair]);
                } else {
                    reader.Read(host[pair]);
                }
                const double whole = Milliseconds(Clock::now() - begin);
                way.converting.push_back(Milliseconds(converted - begin));
                (isReadHere ? way.readHere : way.readThere).push_back(whole);
            }
        }
    }
    const double copy = Median(ways[0].converting);
    for (const Way& way : ways) {
        std::printf("| %s | %s | %s | %.2f | %s | %s |\n", name, way.name.c_str(),
                    Range(way.converting).c_str(), copy / Median(way.converting),
                    Range(way.readHere).c_str(), Range(way.readThere).c_str());
    }
    std::fflush(stdout);
}

} // namespace

int main() {
    std::printf("%s, largest cache %.0f MiB\n\n", ProcessorName().c_str(),
                static_cast<double>(platform::LargestCacheBytes()) / (1 << 20));
    std::printf("| 4096x3000 | | ms | of memcpy's speed | and read by the same thread | by another "
                "thread |\n|---|---|---|---|---|---|\n");
    ConversionHelpers helpers;
    helpers.Keep(1);
    Reader reader;
    for (const char* name : {"Mono10p", "Mono12p", "Mono10Packed", "Mono12Packed", "YUV422_8",
                             "YUV444_8", "YUV411_8"}) {
        Measure(name, helpers, reader);
    }
    return 0;
}
