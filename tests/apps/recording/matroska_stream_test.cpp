// matroska_stream_test.cpp - tests of pictures with their times in a Matroska file
#include "apps/recording/matroska_stream.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

struct MatroskaElement {
    std::uint64_t id = 0;
    std::string content; ///< all that follows where the size is not known
};

std::uint64_t NumberOfBytes(const std::string& bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes) {
        number = number << 8 | static_cast<std::uint8_t>(byte);
    }
    return number;
}

/// The length of a number that says so in its first bits.
std::size_t LengthOf(char first) {
    std::size_t length = 1;
    for (auto bits = static_cast<std::uint8_t>(first); bits != 0 && (bits & 0x80) == 0;
         bits = static_cast<std::uint8_t>(bits << 1)) {
        ++length;
    }
    return length;
}

std::vector<MatroskaElement> ParseElements(const std::string& text) {
    std::vector<MatroskaElement> elements;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t idLength = LengthOf(text[at]);
        const std::uint64_t id = NumberOfBytes(text.substr(at, idLength));
        at += idLength;
        const std::size_t sizeLength = LengthOf(text.at(at));
        std::uint64_t size = NumberOfBytes(text.substr(at, sizeLength));
        size &= (std::uint64_t{1} << (7 * sizeLength)) - 1;
        at += sizeLength;
        const bool isUnknown = size == (std::uint64_t{1} << (7 * sizeLength)) - 1;
        EXPECT_TRUE(isUnknown || size <= text.size() - at) << std::hex << id;
        elements.push_back({id, text.substr(at, isUnknown ? std::string::npos : size)});
        at = isUnknown ? text.size() : at + size;
    }
    return elements;
}

std::map<std::uint64_t, std::string> ById(const std::string& text) {
    std::map<std::uint64_t, std::string> contents;
    for (const MatroskaElement& element : ParseElements(text)) {
        contents[element.id] = element.content;
    }
    return contents;
}

TEST(MatroskaStream, SaysWhatThePicturesAre) {
    const MatroskaStream stream(640, 480, 40000000);
    const auto file = ById(stream.Head());
    ASSERT_EQ(file.size(), 2u);
    EXPECT_EQ(ById(file.at(0x1A45DFA3)).at(0x4282), "matroska");
    const auto segment = ById(file.at(0x18538067));
    EXPECT_EQ(NumberOfBytes(ById(segment.at(0x1549A966)).at(0x2AD7B1)), 1000u);
    const auto track = ById(ById(segment.at(0x1654AE6B)).at(0xAE));
    EXPECT_EQ(NumberOfBytes(track.at(0xD7)), 1u);
    EXPECT_EQ(track.at(0x86), "V_UNCOMPRESSED");
    EXPECT_EQ(NumberOfBytes(track.at(0x23E383)), 40000000u);
    const auto video = ById(track.at(0xE0));
    EXPECT_EQ(NumberOfBytes(video.at(0xB0)), 640u);
    EXPECT_EQ(NumberOfBytes(video.at(0xBA)), 480u);
    EXPECT_EQ(video.at(0x2EB524), "I420");
    const auto unknown = ById(MatroskaStream(2, 2, 0).Head());
    EXPECT_EQ(ById(ById(ById(unknown.at(0x18538067)).at(0x1654AE6B)).at(0xAE)).count(0x23E383), 0u);
}

TEST(MatroskaStream, GivesEachPictureItsTime) {
    const MatroskaStream stream(4, 2, 0);
    EXPECT_EQ(stream.PictureBytes(), 12u);
    const std::string picture(12, 'x');
    for (const std::uint64_t time : {std::uint64_t{0}, std::uint64_t{1234567890123}}) {
        const auto clusters = ParseElements(stream.BeforePicture(time) + picture);
        ASSERT_EQ(clusters.size(), 1u);
        EXPECT_EQ(clusters[0].id, 0x1F43B675u);
        const auto cluster = ById(clusters[0].content);
        EXPECT_EQ(NumberOfBytes(cluster.at(0xE7)), time / 1000);
        EXPECT_EQ(cluster.at(0xA3), std::string("\x81\x00\x00\x80", 4) + picture);
    }
}

} // namespace
