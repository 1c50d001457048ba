// conversion_bench.cpp - the converters compared with memcpy, the plain loops and other libraries
#include "bench/peers.h"
#include "bench/support/baseline.h"
#include "bench/support/median_times.h"
#include "bench/support/vector_copy.h"
#include "imaging/conversion/converter_set.h"
#include "platform/processor.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

using namespace pyxen;

namespace {

struct Conversion {
    const char* name;
    ConvertFunction ConverterSet::*converter;
    unsigned sourceBits; // per pixel
    unsigned hostBytes;  // per pixel
};

constexpr Conversion kConversions[] = {
    {"Unpack10p", &ConverterSet::unpack10p, 10, 2},
    {"Unpack12p", &ConverterSet::unpack12p, 12, 2},
    {"Unpack10Packed", &ConverterSet::unpack10Packed, 12, 2},
    {"Unpack12Packed", &ConverterSet::unpack12Packed, 12, 2},
    {"ConvertYUV422", &ConverterSet::convertYUV422, 16, 3},
    {"ConvertYUV444", &ConverterSet::convertYUV444, 24, 3},
    {"ConvertYUV411", &ConverterSet::convertYUV411, 12, 3},
};

struct Size {
    int width;
    int height;
    std::size_t pairs;     // of buffers
    std::size_t turnsEach; // consecutive runs with one pair
    std::size_t Pixels() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

// Small images stay in the cache during their consecutive runs. How well they fit depends on their
// physical pages, so enough pairs are measured to even that out.
constexpr Size kSizes[] = {{640, 480, 12, 64}, {4096, 3000, 4, 1}};

enum class Content { kRandom, kSmooth };

// Source and destination, allocated as in the module. Copying `copied` bytes from one to the other
// moves as much memory as the conversion; both buffers are large enough for that.
class BufferPair {
public:
    BufferPair(std::size_t source, std::size_t destination, Content content)
        : copied((source + destination) / 2),
          from(static_cast<std::uint8_t*>(std::malloc(std::max(source, copied)))),
          to(static_cast<std::uint8_t*>(std::malloc(std::max(destination, copied)))) {
        std::mt19937 generator(1);
        for (std::size_t at = 0; at < std::max(source, copied); ++at) {
            from[at] = static_cast<std::uint8_t>(
                content == Content::kRandom ? generator() >> 24 : 112 + at / 4096 % 32);
        }
        std::memset(to, 0, std::max(destination, copied));
    }
    ~BufferPair() {
        std::free(from);
        std::free(to);
    }
    BufferPair(const BufferPair&) = delete;
    BufferPair& operator=(const BufferPair&) = delete;

    const std::size_t copied;
    std::uint8_t* const from;
    std::uint8_t* const to;
};

// Streaming stores are for images that do not fit the cache.
std::vector<const ConverterSet*> SetsFor(const Size& size) {
    std::vector<const ConverterSet*> sets;
    for (const ConverterSet* set : UsableConverterSets()) {
        sets.push_back(set);
        if (set->streaming && size.turnsEach == 1) {
            sets.push_back(set->streaming);
        }
    }
    return sets;
}

void Measure(const Conversion& conversion, const Size& size, Content content, Ratios& ratios) {
    const std::size_t pixels = size.Pixels();
    std::vector<std::unique_ptr<BufferPair>> pairs;
    for (std::size_t pair = 0; pair < size.pairs; ++pair) {
        pairs.push_back(std::make_unique<BufferPair>(pixels * conversion.sourceBits / 8,
                                                     pixels * conversion.hostBytes, content));
    }
    const auto inTurn = [&](std::size_t turn) -> BufferPair& {
        return *pairs[turn / size.turnsEach % pairs.size()];
    };
    std::vector<Contestant> contestants;
    contestants.push_back({"memcpy", [&](std::size_t turn) {
                               const BufferPair& pair = inTurn(turn);
                               std::memcpy(pair.to, pair.from, pair.copied);
                           }});
    if (platform::HasAvx2()) {
        contestants.push_back({"copy by vectors", [&](std::size_t turn) {
                                   const BufferPair& pair = inTurn(turn);
                                   CopyByVectors(pair.to, pair.from, pair.copied);
                               }});
    }
    for (const ConverterSet* set : SetsFor(size)) {
        contestants.push_back({set->name, [&, set](std::size_t turn) {
                                   const BufferPair& pair = inTurn(turn);
                                   (set->*conversion.converter)(pair.from, pair.to, pixels);
                               }});
    }
    std::vector<std::unique_ptr<Peer>> peers;
    if (conversion.converter == &ConverterSet::convertYUV422) {
        peers = MakePeers(size.width, size.height);
    }
    for (const auto& peer : peers) {
        contestants.push_back({peer->Name(), [&](std::size_t turn) {
                                   const BufferPair& pair = inTurn(turn);
                                   peer->Convert(pair.from, pair.to);
                               }});
    }
    const std::string where = std::to_string(size.width) + "x" + std::to_string(size.height) +
                              (content == Content::kRandom ? ", random" : ", smooth");
    const auto times = MedianTimes(conversion.name + where, contestants);
    const double copy = times.at("memcpy");
    const double plain = times.at(kPlainConverters.name);
    for (const Contestant& contestant : contestants) {
        const double time = times.at(contestant.name);
        std::printf("| %s | %s | %s | %.2f | %.1f | %.3f | %.1f |\n", conversion.name,
                    where.c_str(), contestant.name.c_str(), time / 1e6,
                    2.0 * static_cast<double>(pairs[0]->copied) / time, copy / time, plain / time);
        std::fflush(stdout);
    }
    for (const ConverterSet* set : SetsFor(size)) {
        if (set != &kPlainConverters) {
            const double time = times.at(set->name);
            ratios[conversion.name + (" " + where) + ", " + set->name] = {copy / time,
                                                                          plain / time};
        }
    }
}

// Largest difference of any component from the exact value, for all inputs in both pixels of a
// pair.
int LargestError(Peer& peer, const std::vector<std::uint8_t>& source,
                 const std::vector<std::uint8_t>& exact) {
    std::vector<std::uint8_t> pixels(exact.size());
    peer.Convert(source.data(), pixels.data());
    int largest = 0;
    for (std::size_t at = 0; at < exact.size(); ++at) {
        largest = std::max(largest, std::abs(int{pixels[at]} - int{exact[at]}));
    }
    return largest;
}

void PrintErrors() {
    constexpr int kWidth = 8192;
    constexpr int kHeight = 4096;
    std::vector<std::uint8_t> source(std::size_t{kWidth} * kHeight * 2);
    for (std::size_t group = 0; group < source.size() / 4; ++group) {
        source[group * 4] = static_cast<std::uint8_t>(group >> 16);
        source[group * 4 + 1] = static_cast<std::uint8_t>(group);
        source[group * 4 + 2] = static_cast<std::uint8_t>(group >> 8);
        source[group * 4 + 3] = static_cast<std::uint8_t>(group);
    }
    std::vector<std::uint8_t> exact(std::size_t{kWidth} * kHeight * 3);
    kPlainConverters.convertYUV422(source.data(), exact.data(), std::size_t{kWidth} * kHeight);
    std::printf("\n| ConvertYUV422 by | largest error over all inputs |\n|---|---|\n");
    for (const ConverterSet* set : UsableConverterSets()) {
        std::vector<std::uint8_t> pixels(exact.size());
        set->convertYUV422(source.data(), pixels.data(), std::size_t{kWidth} * kHeight);
        std::printf("| %s | %s |\n", set->name, pixels == exact ? "0" : "WRONG");
    }
    for (const auto& peer : MakePeers(kWidth, kHeight)) {
        std::printf("| %s | %d |\n", peer->Name(), LargestError(*peer, source, exact));
    }
}

} // namespace

int main(int argc, char** argv) {
    StartMeasuring(argc, argv);
    std::printf("%s\n\n", ProcessorName().c_str());
    std::printf(
        "| conversion | image | by | ms | GB/s read and written | of memcpy's speed | times "
        "the plain loop |\n|---|---|---|---|---|---|---|\n");
    Ratios ratios;
    for (const Conversion& conversion : kConversions) {
        for (const Size& size : kSizes) {
            for (const Content content : {Content::kRandom, Content::kSmooth}) {
                Measure(conversion, size, content, ratios);
            }
        }
    }
    PrintErrors();
    return FinishRatios(argc, argv, ratios);
}
