// avx2_set.cpp - converters for processors with AVX2
#include "imaging/conversion/lane_packed.h"
#include "imaging/conversion/lane_yuv.h"
#include "imaging/conversion/plain_converters.h"

#include <immintrin.h>

namespace pyxen {

namespace {

/// One that streams writes whole vectors past the cache, to aligned addresses.
template <bool kIsStreaming>
struct Avx2Set {
    using Vector = __m256i;
    static constexpr int kLanes = 2;
    static constexpr int kAlignment = 32;

    /// The second lane begins `kStride` bytes after the first.
    template <int kStride>
    static Vector Load(const std::uint8_t* source) {
        return JoinLanes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(source)),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + kStride)));
    }
    static Vector Load(const std::uint8_t* source) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
    }
    static Vector JoinLanes(__m128i first, __m128i second) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
    }
    static void Store(std::uint8_t* destination, Vector value) {
        auto* const place = reinterpret_cast<__m256i*>(destination);
        if constexpr (kIsStreaming) {
            _mm256_stream_si256(place, value);
        } else {
            _mm256_storeu_si256(place, value);
        }
    }
    /// All 48 bytes of the first lane precede those of the second.
    static void StoreLanes(std::uint8_t* destination, Vector a, Vector b, Vector c) {
        Store(destination, _mm256_permute2x128_si256(a, b, 0x20));
        Store(destination + 32, _mm256_blend_epi32(c, a, 0xF0));
        Store(destination + 64, _mm256_permute2x128_si256(b, c, 0x31));
    }
    static Vector Lanes(const std::uint8_t (&bytes)[16]) {
        return _mm256_broadcastsi128_si256(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
    }
    template <typename... Bytes>
    static Vector Lanes(Bytes... bytes) {
        return _mm256_broadcastsi128_si256(Lane(bytes...));
    }
    template <typename... Bytes>
    static __m128i Lane(Bytes... bytes) {
        return _mm_setr_epi8(static_cast<char>(bytes)...);
    }
    static Vector Fill(int pair) { return _mm256_set1_epi32(pair); }
    static Vector FillQuads(long long quad) { return _mm256_set1_epi64x(quad); }
    static Vector Shuffle(Vector value, Vector places) {
        return _mm256_shuffle_epi8(value, places);
    }
    static Vector And(Vector a, Vector b) { return _mm256_and_si256(a, b); }
    static Vector Or(Vector a, Vector b) { return _mm256_or_si256(a, b); }
    static Vector Select(Vector mask, Vector a, Vector b) {
        return _mm256_or_si256(_mm256_and_si256(mask, a), _mm256_andnot_si256(mask, b));
    }
    /// In both lanes, numbers of four bytes: of `b` where kOfB has a bit.
    template <unsigned kOfB>
    static Vector ChooseNumbers(Vector a, Vector b) {
        return _mm256_blend_epi32(a, b, kOfB * 0x11);
    }
    static Vector AddWords(Vector a, Vector b) { return _mm256_add_epi16(a, b); }
    static Vector SubtractWords(Vector a, Vector b) { return _mm256_sub_epi16(a, b); }
    static Vector AddNumbers(Vector a, Vector b) { return _mm256_add_epi32(a, b); }
    static Vector MultiplyHigh(Vector a, Vector b) { return _mm256_mulhi_epu16(a, b); }
    static Vector MultiplyLow(Vector a, Vector b) { return _mm256_mullo_epi16(a, b); }
    static Vector MultiplyAddBytes(Vector a, Vector b) { return _mm256_maddubs_epi16(a, b); }
    static Vector MultiplyAdd(Vector a, Vector b) { return _mm256_madd_epi16(a, b); }
    static Vector PackWords(Vector a, Vector b) { return _mm256_packus_epi16(a, b); }
    static Vector PackNumbers(Vector a, Vector b) { return _mm256_packs_epi32(a, b); }
    template <int kBits>
    static Vector ShiftWordsRight(Vector value) {
        return _mm256_srai_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftWordsRightUnsigned(Vector value) {
        return _mm256_srli_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRight(Vector value) {
        return _mm256_srai_epi32(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRightUnsigned(Vector value) {
        return _mm256_srli_epi32(value, kBits);
    }
};

using Avx2 = Avx2Set<false>;

template <typename Layout, bool kIsStreaming, ConvertFunction kPlain>
void Unpack(const void* source, void* destination, std::uint64_t pixelCount) {
    using Step = WideLanePackedStep<Avx2Set<kIsStreaming>, Layout>;
    ConvertBlocks<FourSteps<LanePackedStep<Avx2, Layout>>,
                  Inside<FourSteps<Step>, Step::kAround, kIsStreaming>>(source, destination,
                                                                        pixelCount, kPlain);
}

template <typename Block, ConvertFunction kPlain>
void Run(const void* source, void* destination, std::uint64_t pixelCount) {
    ConvertBlocks<Block>(source, destination, pixelCount, kPlain);
}

// YUV is slower past the cache: its stores wait for computation in the middle of cache lines.
constexpr ConverterSet kStreaming = {
    "AVX2, streaming",
    Unpack<Layout10p, true, PlainUnpack10p>,
    Unpack<Layout12p, true, PlainUnpack12p>,
    Unpack<Layout10Packed, true, PlainUnpack10Packed>,
    Unpack<Layout12Packed, true, PlainUnpack12Packed>,
    Run<Yuv422Block<Avx2>, PlainConvertYUV422>,
    Run<Yuv444Block<Avx2>, PlainConvertYUV444>,
    Run<Yuv411Block<Avx2>, PlainConvertYUV411>,
};

} // namespace

const ConverterSet kAvx2Converters = {
    "AVX2",
    Unpack<Layout10p, false, PlainUnpack10p>,
    Unpack<Layout12p, false, PlainUnpack12p>,
    Unpack<Layout10Packed, false, PlainUnpack10Packed>,
    Unpack<Layout12Packed, false, PlainUnpack12Packed>,
    Run<Yuv422Block<Avx2>, PlainConvertYUV422>,
    Run<Yuv444Block<Avx2>, PlainConvertYUV444>,
    Run<Yuv411Block<Avx2>, PlainConvertYUV411>,
    &kStreaming,
};

} // namespace pyxen
