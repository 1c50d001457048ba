// sse41_set.cpp - converters for processors with SSSE3 and SSE4.1
#include "imaging/conversion/lane_packed.h"
#include "imaging/conversion/lane_yuv.h"
#include "imaging/conversion/plain_converters.h"

#include <smmintrin.h>

namespace pyxen {

namespace {

struct Sse41 {
    using Vector = __m128i;
    static constexpr int kLanes = 1;
    static constexpr int kAlignment = 16;

    template <int kStride> // unused: there is one lane only
    static Vector Load(const std::uint8_t* source) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
    }
    static void Store(std::uint8_t* destination, Vector value) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination), value);
    }
    static void StoreLanes(std::uint8_t* destination, Vector a, Vector b, Vector c) {
        Store(destination, a);
        Store(destination + 16, b);
        Store(destination + 32, c);
    }
    static Vector Lanes(const std::uint8_t (&bytes)[16]) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    }
    template <typename... Bytes>
    static Vector Lanes(Bytes... bytes) {
        return _mm_setr_epi8(static_cast<char>(bytes)...);
    }
    template <typename... Bytes>
    static Vector Lane(Bytes... bytes) {
        return Lanes(bytes...);
    }
    static Vector Fill(int pair) { return _mm_set1_epi32(pair); }
    static Vector FillQuads(long long quad) { return _mm_set1_epi64x(quad); }
    static Vector Shuffle(Vector value, Vector places) { return _mm_shuffle_epi8(value, places); }
    static Vector And(Vector a, Vector b) { return _mm_and_si128(a, b); }
    static Vector Or(Vector a, Vector b) { return _mm_or_si128(a, b); }
    static Vector Select(Vector mask, Vector a, Vector b) {
        return _mm_xor_si128(b, _mm_and_si128(mask, _mm_xor_si128(a, b)));
    }
    /// Numbers of four bytes: of `b` where kOfB has a bit.
    template <unsigned kOfB>
    static Vector ChooseNumbers(Vector a, Vector b) {
        constexpr unsigned kWords =
            (kOfB & 1) * 3 + (kOfB >> 1 & 1) * 12 + (kOfB >> 2 & 1) * 48 + (kOfB >> 3 & 1) * 192;
        return _mm_blend_epi16(a, b, kWords);
    }
    static Vector AddWords(Vector a, Vector b) { return _mm_add_epi16(a, b); }
    static Vector SubtractWords(Vector a, Vector b) { return _mm_sub_epi16(a, b); }
    static Vector AddNumbers(Vector a, Vector b) { return _mm_add_epi32(a, b); }
    static Vector MultiplyHigh(Vector a, Vector b) { return _mm_mulhi_epu16(a, b); }
    static Vector MultiplyLow(Vector a, Vector b) { return _mm_mullo_epi16(a, b); }
    static Vector MultiplyAddBytes(Vector a, Vector b) { return _mm_maddubs_epi16(a, b); }
    static Vector MultiplyAdd(Vector a, Vector b) { return _mm_madd_epi16(a, b); }
    static Vector PackWords(Vector a, Vector b) { return _mm_packus_epi16(a, b); }
    static Vector PackNumbers(Vector a, Vector b) { return _mm_packs_epi32(a, b); }
    template <int kBits>
    static Vector ShiftWordsRight(Vector value) {
        return _mm_srai_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftWordsRightUnsigned(Vector value) {
        return _mm_srli_epi16(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRight(Vector value) {
        return _mm_srai_epi32(value, kBits);
    }
    template <int kBits>
    static Vector ShiftNumbersRightUnsigned(Vector value) {
        return _mm_srli_epi32(value, kBits);
    }
};

template <typename Block, ConvertFunction kPlain>
void Run(const void* source, void* destination, std::uint64_t pixelCount) {
    ConvertBlocks<Block>(source, destination, pixelCount, kPlain);
}

} // namespace

const ConverterSet kSse41Converters = {
    "SSE4.1",
    Run<FourSteps<LanePackedStep<Sse41, Layout10p>>, PlainUnpack10p>,
    Run<FourSteps<LanePackedStep<Sse41, Layout12p>>, PlainUnpack12p>,
    Run<FourSteps<LanePackedStep<Sse41, Layout10Packed>>, PlainUnpack10Packed>,
    Run<FourSteps<LanePackedStep<Sse41, Layout12Packed>>, PlainUnpack12Packed>,
    Run<Yuv422Block<Sse41>, PlainConvertYUV422>,
    Run<Yuv444Block<Sse41>, PlainConvertYUV444>,
    Run<Yuv411Block<Sse41>, PlainConvertYUV411>,
};

} // namespace pyxen
