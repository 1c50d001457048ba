// avx512_set.cpp - converters for processors with AVX-512 that shuffle bytes across a whole vector
#include "imaging/conversion/packed_pixels.h"
#include "imaging/conversion/plain_converters.h"
#include "imaging/conversion/yuv_pixels.h"

#include <immintrin.h>

namespace pyxen {

namespace {

/// One that streams writes past the cache, to aligned addresses.
template <bool kIsStreaming>
struct Avx512Set {
    using Vector = __m512i;

    static Vector Load(const std::uint8_t* source) { return _mm512_loadu_si512(source); }
    static void Store(std::uint8_t* destination, Vector value) {
        if constexpr (kIsStreaming) {
            _mm512_stream_si512(reinterpret_cast<__m512i*>(destination), value);
        } else {
            _mm512_storeu_si512(destination, value);
        }
    }
    template <typename... Bytes>
    static Vector Lanes(Bytes... bytes) {
        return _mm512_broadcast_i32x4(_mm_setr_epi8(static_cast<char>(bytes)...));
    }
    static Vector Fill(int pair) { return _mm512_set1_epi32(pair); }
    static Vector FillQuads(long long quad) { return _mm512_set1_epi64(quad); }
    static Vector Select(Vector mask, Vector a, Vector b) {
        return _mm512_ternarylogic_epi32(mask, a, b, 0xCA);
    }
    static Vector And(Vector a, Vector b) { return _mm512_and_si512(a, b); }
    static Vector Shuffle(Vector value, Vector places) {
        return _mm512_shuffle_epi8(value, places);
    }
    static Vector PackWords(Vector a, Vector b) { return _mm512_packus_epi16(a, b); }
    static Vector PackNumbers(Vector a, Vector b) { return _mm512_packs_epi32(a, b); }
    static Vector AddWords(Vector a, Vector b) { return _mm512_add_epi16(a, b); }
    static Vector SubtractWords(Vector a, Vector b) { return _mm512_sub_epi16(a, b); }
    static Vector AddNumbers(Vector a, Vector b) { return _mm512_add_epi32(a, b); }
    static Vector MultiplyHigh(Vector a, Vector b) { return _mm512_mulhi_epu16(a, b); }
    static Vector MultiplyLow(Vector a, Vector b) { return _mm512_mullo_epi16(a, b); }
    static Vector MultiplyAddBytes(Vector a, Vector b) { return _mm512_maddubs_epi16(a, b); }
    static Vector MultiplyAdd(Vector a, Vector b) { return _mm512_madd_epi16(a, b); }
    template <int kBits>
    static Vector ShiftWordsRight(Vector value) {
        return _mm512_srai_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftWordsRightUnsigned(Vector value) {
        return _mm512_srli_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRightUnsigned(Vector value) {
        return _mm512_srli_epi32(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRight(Vector value) {
        return _mm512_srai_epi32(value, kBits);
    }
};

/// The source byte of each byte of a vector; with two sources the second's bytes count from 64.
struct alignas(64) Places {
    std::uint8_t bytes[64];
    __m512i Get() const { return _mm512_load_si512(bytes); }
};

template <typename PlaceOf>
constexpr Places MakePlaces(PlaceOf placeOf) {
    Places places{};
    for (int index = 0; index < 64; ++index) {
        places.bytes[index] = static_cast<std::uint8_t>(placeOf(index));
    }
    return places;
}

template <typename Set, typename Layout>
struct PackedStep : Layout {
    static constexpr int kStepPixels = 64;
    static constexpr int kStepBytes = kStepPixels * Layout::kPixelBits / 8;
    static constexpr int kAlignment = 64;
    // The second load ends with the step's last byte.
    static constexpr int kSecond = kStepBytes - 64;

    template <int kFirst, int kStart>
    static constexpr Places kPlaces = MakePlaces([](int index) {
        const int pixel = kFirst + index / 2;
        return (index % 2 == 0 ? Layout::LowByte(pixel) : Layout::HighByte(pixel)) - kStart;
    });

    static void ConvertStep(const std::uint8_t* source, std::uint8_t* destination) {
        const __m512i first = _mm512_permutexvar_epi8(kPlaces<0, 0>.Get(), Set::Load(source));
        const __m512i second =
            _mm512_permutexvar_epi8(kPlaces<32, kSecond>.Get(), Set::Load(source + kSecond));
        Set::Store(destination, Layout::template Pixels<Set>(first));
        Set::Store(destination + 64, Layout::template Pixels<Set>(second));
    }
};

// Where the bytes of 64 packed pixels go. Packing works within lanes: each lane holds pixels of
// every vector that was packed, `kRun` of each.
struct RgbPlaces {
    Places first;        // bytes 0 to 63 of the result, from the first half and green
    Places second;       // bytes 64 to 127, from both halves
    __mmask64 green = 0; // which of them are green and come from there
    Places secondGreen;
    Places third; // bytes 128 to 191, from the second half and green
};

template <int kRun>
constexpr RgbPlaces MakeRgbPlaces(int (*blueOf)(int pixelOfEight)) {
    RgbPlaces places{};
    for (int index = 0; index < 192; ++index) {
        const int pixel = index / 3;
        const bool isGreen = index % 3 == 1;
        const int lane = pixel % (kRun * 4) / kRun;
        const int inLane = pixel / (kRun * 4) * kRun + pixel % kRun;
        const int red = index % 3 == 0 ? 1 : 0;
        const int place = lane * 16 + (isGreen ? inLane : blueOf(inLane % 8) + red);
        const auto at = static_cast<unsigned>(index % 64);
        if (index / 64 != 1) {
            Places& outer = index < 64 ? places.first : places.third;
            outer.bytes[at] = static_cast<std::uint8_t>(isGreen ? 64 + place : place);
        } else if (isGreen) {
            places.green |= __mmask64{1} << at;
            places.secondGreen.bytes[at] = static_cast<std::uint8_t>(place);
        } else {
            places.second.bytes[at] = static_cast<std::uint8_t>(inLane / 8 * 64 + place);
        }
    }
    return places;
}

constexpr RgbPlaces kPairPlaces = MakeRgbPlaces<8>(PairBlue);
constexpr RgbPlaces kQuadPlaces = MakeRgbPlaces<4>(QuadBlue);

template <typename Set>
void StoreRgb(std::uint8_t* destination, const RgbPlaces& places, const PackedPixels<Set>& pixels) {
    const __m512i outer =
        _mm512_permutex2var_epi8(pixels.firstBlueRed, places.first.Get(), pixels.green);
    const __m512i blueRed =
        _mm512_permutex2var_epi8(pixels.firstBlueRed, places.second.Get(), pixels.secondBlueRed);
    const __m512i middle =
        _mm512_mask_permutexvar_epi8(blueRed, places.green, places.secondGreen.Get(), pixels.green);
    Set::Store(destination, outer);
    Set::Store(destination + 64, middle);
    Set::Store(destination + 128,
               _mm512_permutex2var_epi8(pixels.secondBlueRed, places.third.Get(), pixels.green));
}

struct YuvBlock {
    static constexpr int kPixels = 64;
    static constexpr int kPixelBytes = 3;
    static constexpr int kAlignment = 64;
};

template <typename Set>
struct Yuv422Block : YuvBlock {
    // Four steps at a time: loops that advance by at most two cache lines were measured to wait
    // longer for main memory.
    static constexpr int kPixels = 256;
    static constexpr int kGroupPixels = 2;
    static constexpr int kGroupBytes = 4;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        for (int step = 0; step < 4; ++step) {
            ConvertStep(source + 128 * step, destination + 192 * step);
        }
    }

private:
    static void ConvertStep(const std::uint8_t* source, std::uint8_t* destination) {
        StoreRgb<Set>(destination, kPairPlaces,
                      PackPairs<Set>(Set::Load(source), Set::Load(source + 64)));
    }
};

// Groups U, Y0, Y1, V, Y2, Y3 become two groups U, Y0, V, Y1 each.
constexpr int PairByte(int index) {
    constexpr int kGroup[8] = {0, 1, 3, 2, 0, 4, 3, 5};
    return index / 8 * 6 + kGroup[index % 8];
}
constexpr Places kPairs = MakePlaces([](int index) { return PairByte(index); });
constexpr Places kLastPairs = MakePlaces([](int index) { return 16 + PairByte(index); });

template <typename Set>
struct Yuv411Block : YuvBlock {
    static constexpr int kGroupPixels = 4;
    static constexpr int kGroupBytes = 6;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        // The second load ends with the block's last byte, so it begins 16 bytes early.
        StoreRgb<Set>(
            destination, kPairPlaces,
            PackPairs<Set>(_mm512_permutexvar_epi8(kPairs.Get(), Set::Load(source)),
                           _mm512_permutexvar_epi8(kLastPairs.Get(), Set::Load(source + 32))));
    }
};

// Pixels U, Y, V become groups U, Y, V, Y.
constexpr int QuadByte(int index) {
    return index / 4 * 3 + (index % 4 == 3 ? 1 : index % 4);
}
constexpr Places kQuads = MakePlaces([](int index) { return QuadByte(index); });
constexpr Places kLastQuads = MakePlaces([](int index) { return 16 + QuadByte(index); });

template <typename Set>
struct Yuv444Block : YuvBlock {
    static constexpr int kGroupPixels = 1;
    static constexpr int kGroupBytes = 3;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        const auto spread = [source](const Places& places, int from) {
            return _mm512_permutexvar_epi8(places.Get(), Set::Load(source + from));
        };
        // The last load ends with the block's last byte, so it begins 16 bytes early.
        StoreRgb<Set>(destination, kQuadPlaces,
                      PackQuads<Set>(spread(kQuads, 0), spread(kQuads, 48), spread(kQuads, 96),
                                     spread(kLastQuads, 128)));
    }
};

using Avx512 = Avx512Set<false>;

template <template <typename Set> typename Block, ConvertFunction kPlain>
void Run(const void* source, void* destination, std::uint64_t pixelCount) {
    ConvertBlocks<Block<Avx512>>(source, destination, pixelCount, kPlain);
}

template <template <typename Set> typename Block, ConvertFunction kPlain>
void Stream(const void* source, void* destination, std::uint64_t pixelCount) {
    ConvertBlocks<Block<Avx512>, Inside<Block<Avx512Set<true>>, 0, true>>(source, destination,
                                                                          pixelCount, kPlain);
}

template <typename Set>
using Block10p = FourSteps<PackedStep<Set, Layout10p>>;
template <typename Set>
using Block12p = FourSteps<PackedStep<Set, Layout12p>>;
template <typename Set>
using Block10Packed = FourSteps<PackedStep<Set, Layout10Packed>>;
template <typename Set>
using Block12Packed = FourSteps<PackedStep<Set, Layout12Packed>>;

constexpr ConverterSet kStreaming = {
    "AVX-512, streaming",
    Stream<Block10p, PlainUnpack10p>,
    Stream<Block12p, PlainUnpack12p>,
    Stream<Block10Packed, PlainUnpack10Packed>,
    Stream<Block12Packed, PlainUnpack12Packed>,
    Stream<Yuv422Block, PlainConvertYUV422>,
    Stream<Yuv444Block, PlainConvertYUV444>,
    Stream<Yuv411Block, PlainConvertYUV411>,
};

} // namespace

const ConverterSet kAvx512Converters = {
    "AVX-512",
    Run<Block10p, PlainUnpack10p>,
    Run<Block12p, PlainUnpack12p>,
    Run<Block10Packed, PlainUnpack10Packed>,
    Run<Block12Packed, PlainUnpack12Packed>,
    Run<Yuv422Block, PlainConvertYUV422>,
    Run<Yuv444Block, PlainConvertYUV444>,
    Run<Yuv411Block, PlainConvertYUV411>,
    &kStreaming,
};

} // namespace pyxen
