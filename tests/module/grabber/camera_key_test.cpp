// camera_key_test.cpp - the host's 32-bit number for a camera
#include "grabber/camera_key.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace pyxen;

namespace {

// The remainder of the division of the message by the polynomial, bit by bit on paper: the message
// as it is fed, 32 zeros behind it.
std::uint32_t DivideByPolynomial(const std::string& text) {
    std::vector<bool> bits;
    for (const char character : text) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            bits.push_back((static_cast<unsigned char>(character) >> bit & 1) != 0);
        }
    }
    bits.resize(bits.size() + 32);
    constexpr std::uint64_t kPolynomial = 0x104C11DB7;
    for (std::size_t start = 0; start + 32 < bits.size(); ++start) {
        for (unsigned bit = 0; bits[start] && bit <= 32; ++bit) {
            // The leading bit is cleared last, since it decides.
            const unsigned position = 32 - bit;
            const bool term = (kPolynomial >> bit & 1) != 0;
            bits[start + position] = bits[start + position] != term;
        }
    }
    std::uint32_t remainder = 0;
    for (std::size_t index = bits.size() - 32; index < bits.size(); ++index) {
        remainder = remainder << 1 | (bits[index] ? 1u : 0u);
    }
    return remainder;
}

TEST(CameraKey, OfNothingIsZero) {
    EXPECT_EQ(CameraKey(nullptr), 0u);
    EXPECT_EQ(CameraKey(""), 0u);
}

TEST(CameraKey, IsTheRemainderOfItsBits) {
    for (const std::string& text :
         {std::string("a"), std::string("b"), std::string("ab"), std::string("ba"),
          std::string("cam-ext-1"), std::string("123456789"), std::string("\x80"),
          std::string("\xFF\xFE\x01"), std::string("K\xC3\xA4mera"), std::string(300, 'x')}) {
        EXPECT_EQ(CameraKey(text.c_str()), DivideByPolynomial(text)) << text;
    }
}

TEST(CameraKey, HasKnownValues) {
    EXPECT_EQ(CameraKey("a"), 0x738AAD5Cu);
    EXPECT_EQ(CameraKey("123456789"), 0x11B4BFB4u);
    EXPECT_EQ(CameraKey("\xFF"), 0xB1F740B4u);
}

TEST(CameraKey, IsTheSameForSomeDifferentTexts) {
    EXPECT_EQ(CameraKey("l5dmvs"), CameraKey("pz8lbs"));
}

} // namespace
