// plain_packed_test.cpp - 10 and 12 bits per pixel without gaps
#include "imaging/pixel_format.h"
#include "tests/module/imaging/guarded_bytes.h"

#include <random>

using namespace pyxen;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<std::uint16_t>;

Bytes RandomBytes(std::size_t count) {
    std::mt19937 generator(static_cast<unsigned>(count) + 1);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(generator());
    }
    return bytes;
}

// Pixels of a p format: one stream of bits, the lowest first.
Pixels ReadBitStream(const Bytes& bytes, std::size_t count, unsigned bits) {
    Pixels pixels(count);
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        for (unsigned bit = 0; bit < bits; ++bit) {
            const std::size_t position = pixel * bits + bit;
            const unsigned value = bytes[position / 8] >> position % 8 & 1u;
            pixels[pixel] = static_cast<std::uint16_t>(pixels[pixel] | value << bit);
        }
    }
    return pixels;
}

// Pixels of a Packed format: high bits, low bits of both, high bits.
Pixels ReadPacked(const Bytes& bytes, std::size_t count, unsigned bits) {
    Pixels pixels(count);
    const unsigned lowBits = bits - 8;
    const unsigned lowMask = (1u << lowBits) - 1;
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        const bool second = pixel % 2 != 0;
        const std::size_t group = pixel / 2 * 3;
        const unsigned high = bytes[group + (second ? 2 : 0)];
        const unsigned low = bytes[group + 1] >> (second ? 4 : 0) & lowMask;
        pixels[pixel] = static_cast<std::uint16_t>(high << lowBits | low);
    }
    return pixels;
}

struct Unpacker {
    const char* name;
    ConvertFunction convert;
    Pixels (*expected)(const Bytes&, std::size_t, unsigned);
    unsigned bits;
    bool packed;

    // The bytes that hold `count` pixels.
    std::size_t BytesFor(std::size_t count) const {
        return packed ? count / 2 * 3 + (count % 2) * 2 : (count * bits + 7) / 8;
    }
};

constexpr Unpacker kUnpackers[] = {
    {"Unpack10p", Unpack10p, ReadBitStream, 10, false},
    {"Unpack12p", Unpack12p, ReadBitStream, 12, false},
    {"Unpack10Packed", Unpack10Packed, ReadPacked, 10, true},
    {"Unpack12Packed", Unpack12Packed, ReadPacked, 12, true},
};

Pixels ToPixels(const Bytes& bytes) {
    Pixels pixels(bytes.size() / 2);
    for (std::size_t index = 0; index < pixels.size(); ++index) {
        std::memcpy(&pixels[index], &bytes[index * 2], 2);
    }
    return pixels;
}

TEST(UnpackedPixels, AreRightForEveryLengthAndNothingElseIsTouched) {
    for (const Unpacker& unpacker : kUnpackers) {
        for (std::size_t count = 0; count <= 70; ++count) {
            const Bytes source = RandomBytes(unpacker.BytesFor(count));
            const ExactCopy input(source);
            GuardedBytes output(count * 2);
            unpacker.convert(input.Data(), output.Data(), count);
            EXPECT_EQ(ToPixels(output.Content()), unpacker.expected(source, count, unpacker.bits))
                << unpacker.name << " " << count;
            EXPECT_TRUE(output.IsIntact()) << unpacker.name << " " << count;
        }
    }
}

TEST(UnpackedPixels, MayLieAtAnyAddress) {
    constexpr std::size_t kCount = 37;
    for (const Unpacker& unpacker : kUnpackers) {
        const Bytes source = RandomBytes(unpacker.BytesFor(kCount));
        for (std::size_t from = 0; from < 8; ++from) {
            for (std::size_t to = 0; to < 8; ++to) {
                GuardedBytes input(source.size(), from);
                std::memcpy(input.Data(), source.data(), source.size());
                GuardedBytes output(kCount * 2, to);
                unpacker.convert(input.Data(), output.Data(), kCount);
                EXPECT_EQ(ToPixels(output.Content()),
                          unpacker.expected(source, kCount, unpacker.bits))
                    << unpacker.name << " " << from << " " << to;
                EXPECT_TRUE(output.IsIntact());
            }
        }
    }
}

TEST(UnpackedPixels, HoldEveryValueAtEveryPlace) {
    for (const Unpacker& unpacker : kUnpackers) {
        for (std::size_t place = 0; place < 4; ++place) {
            for (unsigned value = 0; value < 1u << unpacker.bits; ++value) {
                Bytes source(unpacker.BytesFor(4));
                if (unpacker.packed) {
                    const unsigned lowBits = unpacker.bits - 8;
                    const std::size_t group = place / 2 * 3;
                    source[group + (place % 2 != 0 ? 2 : 0)] =
                        static_cast<std::uint8_t>(value >> lowBits);
                    source[group + 1] = static_cast<std::uint8_t>((value & ((1u << lowBits) - 1))
                                                                  << (place % 2 != 0 ? 4 : 0));
                } else {
                    for (unsigned bit = 0; bit < unpacker.bits; ++bit) {
                        const std::size_t position = place * unpacker.bits + bit;
                        source[position / 8] = static_cast<std::uint8_t>(
                            source[position / 8] | (value >> bit & 1u) << position % 8);
                    }
                }
                Pixels expected(4);
                expected[place] = static_cast<std::uint16_t>(value);
                Pixels pixels(4, 0xFFFF);
                unpacker.convert(source.data(), pixels.data(), 4);
                ASSERT_EQ(pixels, expected) << unpacker.name << " " << place << " " << value;
            }
        }
    }
}

TEST(UnpackedPixels, FollowTheStatedBytes) {
    Pixels pixels(4);
    const Bytes ten = {0x01, 0x02, 0x03, 0x04, 0x05};
    Unpack10p(ten.data(), pixels.data(), 4);
    EXPECT_EQ(pixels, (Pixels{0x201, 0x0C0, 0x040, 0x014}));
    const Bytes twelve = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC};
    Unpack12p(twelve.data(), pixels.data(), 4);
    EXPECT_EQ(pixels, (Pixels{0x412, 0x563, 0xA78, 0xBC9}));
    Unpack12Packed(twelve.data(), pixels.data(), 4);
    EXPECT_EQ(pixels, (Pixels{0x124, 0x563, 0x78A, 0xBC9}));
    const Bytes tenPacked = {0xFF, 0x23, 0x80, 0x00, 0xCC, 0x01};
    Unpack10Packed(tenPacked.data(), pixels.data(), 4);
    EXPECT_EQ(pixels, (Pixels{0x3FF, 0x202, 0x000, 0x004}));
}

TEST(RowAddress, PadsEveryLineToWholeBytes) {
    const std::uint8_t base[1] = {};
    const auto offset = [&](RowAddressFunction function, std::uint32_t width, std::uint32_t row) {
        return reinterpret_cast<std::uintptr_t>(function(base, width, row)) -
               reinterpret_cast<std::uintptr_t>(base);
    };
    EXPECT_EQ(offset(RowAddress10p, 7, 0), 0u);
    EXPECT_EQ(offset(RowAddress10p, 4, 3), 15u);
    EXPECT_EQ(offset(RowAddress10p, 5, 3), 21u);
    EXPECT_EQ(offset(RowAddress10p, 6, 1), 8u);
    EXPECT_EQ(offset(RowAddress10p, 7, 1), 9u);
    EXPECT_EQ(offset(RowAddress12p, 2, 5), 15u);
    EXPECT_EQ(offset(RowAddress12p, 3, 5), 25u);
    EXPECT_EQ(offset(RowAddress12p, 0, 5), 0u);
    EXPECT_EQ(offset(RowAddress12p, 100000, 100000), 15000000000u);
}

} // namespace
