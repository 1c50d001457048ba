// matroska_stream.cpp - pictures with their times as a Matroska file that can be read from a pipe
#include "apps/recording/matroska_stream.h"

#include <string_view>

namespace {

// Times are in microseconds, and each picture is a cluster of its own, as times within a cluster
// have 16 bits.
constexpr std::uint64_t kNanosecondsPerTick = 1000;
constexpr std::string_view kUnknownSize = "\x01\xFF\xFF\xFF\xFF\xFF\xFF\xFF";

std::string BigEndian(std::uint64_t value, unsigned bytes) {
    std::string text;
    while (bytes-- > 0) {
        text += static_cast<char>(value >> (8 * bytes));
    }
    return text;
}

/// An identifier, whose first bits say how long it is.
std::string Id(std::uint32_t id) {
    return BigEndian(id, id > 0xFFFFFF ? 4 : id > 0xFFFF ? 3 : id > 0xFF ? 2 : 1);
}

std::string Size(std::uint64_t bytes) {
    constexpr std::uint64_t kEightBytes = std::uint64_t{1} << 56;
    return BigEndian(bytes | kEightBytes, 8);
}

std::string Element(std::uint32_t id, const std::string& content) {
    return Id(id) + Size(content.size()) + content;
}

std::string Number(std::uint32_t id, std::uint64_t value) {
    return Element(id, BigEndian(value, 8));
}

std::string EbmlHead() {
    return Element(0x1A45DFA3, Number(0x4286, 1) +               // version of EBML
                                   Number(0x42F7, 1) +           // wanted to read it
                                   Number(0x42F2, 4) +           // longest identifier
                                   Number(0x42F3, 8) +           // longest size
                                   Element(0x4282, "matroska") + // kind of document
                                   Number(0x4287, 4) +           // its version
                                   Number(0x4285, 2));           // wanted to read it
}

} // namespace

MatroskaStream::MatroskaStream(std::uint32_t pictureWidth, std::uint32_t pictureHeight,
                               std::uint64_t intervalNs)
    : width(pictureWidth), height(pictureHeight), interval(intervalNs) {}

std::string MatroskaStream::Head() const {
    const std::string info = Element(0x1549A966, Number(0x2AD7B1, kNanosecondsPerTick) +
                                                     Element(0x4D80, "mivora") + // muxer
                                                     Element(0x5741, "mivora")); // program
    const std::string video = Element(0xE0, Number(0xB0, width) + Number(0xBA, height) +
                                                Element(0x2EB524, "I420")); // order of the bytes
    const std::string track = Element(0xAE, Number(0xD7, 1) +               // its number in blocks
                                                Number(0x73C5, 1) +         // its unique number
                                                Number(0x83, 1) +           // a video
                                                (interval != 0 ? Number(0x23E383, interval) : "") +
                                                Element(0x86, "V_UNCOMPRESSED") + video);
    const std::string segment = Id(0x18538067) + std::string(kUnknownSize);
    return EbmlHead() + segment + info + Element(0x1654AE6B, track);
}

std::string MatroskaStream::BeforePicture(std::uint64_t timeNs) const {
    const std::string time = Number(0xE7, timeNs / kNanosecondsPerTick);
    // Of the first track, at the time of the cluster, a key frame.
    const std::string blockHead("\x81\x00\x00\x80", 4);
    const std::string block = Id(0xA3) + Size(blockHead.size() + PictureBytes()) + blockHead;
    return Id(0x1F43B675) + Size(time.size() + block.size() + PictureBytes()) + time + block;
}
