// packet_sender.cpp - sends stream packets in place of the camera
#include "tests/pxnc/genicam/packet_sender.h"

#include "tests/pxnc/genicam/sdk_library.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstddef>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace genicam_test {
namespace {

constexpr std::uint64_t kStreamPortRegister = 0x0D00;
constexpr unsigned char kLeader = 1;
constexpr unsigned char kTrailer = 2;
constexpr unsigned char kData = 3;
constexpr std::uint16_t kImage = 0x0001;
constexpr std::uint16_t kImageWithChunks = 0x4001;

void Append16(std::vector<unsigned char>& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<unsigned char>(value >> 8));
    bytes.push_back(static_cast<unsigned char>(value & 0xFF));
}

void Append32(std::vector<unsigned char>& bytes, std::uint32_t value) {
    Append16(bytes, static_cast<std::uint16_t>(value >> 16));
    Append16(bytes, static_cast<std::uint16_t>(value & 0xFFFF));
}

} // namespace

PacketSender::PacketSender(PxnHandle camera) {
    unsigned char bytes[4] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(SdkLibrary::Instance().MemoryRead(camera, kStreamPortRegister, 4,
                                                reinterpret_cast<char*>(bytes), &done),
              PxnErrSuccess);
    connection = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(bytes[2] << 8 | bytes[3]));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_NE(address.sin_port, 0);
    EXPECT_EQ(connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

PacketSender::~PacketSender() {
    close(connection);
}

void PacketSender::SendPacket(std::uint16_t frameId, unsigned char kind, std::uint32_t number,
                              const std::vector<unsigned char>& content) const {
    std::vector<unsigned char> packet;
    Append16(packet, 0); // status: good
    Append16(packet, frameId);
    Append32(packet, std::uint32_t{kind} << 24 | number);
    packet.insert(packet.end(), content.begin(), content.end());
    EXPECT_EQ(send(connection, packet.data(), packet.size(), 0),
              static_cast<ssize_t>(packet.size()));
}

void PacketSender::Send(const Frame& frame) const {
    const std::uint16_t type = frame.hasChunks ? kImageWithChunks : kImage;
    std::vector<unsigned char> leader;
    Append16(leader, 0);
    Append16(leader, type);
    Append32(leader, static_cast<std::uint32_t>(frame.timestamp >> 32));
    Append32(leader, static_cast<std::uint32_t>(frame.timestamp));
    for (const std::uint32_t value :
         {frame.pixelFormat, frame.width, frame.height, frame.offsetX, frame.offsetY, 0u}) {
        Append32(leader, value);
    }
    if (!frame.losesFirstPacket) {
        SendPacket(frame.id, kLeader, 0, leader);
    }
    std::uint32_t number = 0;
    for (std::size_t at = 0; at < frame.data.size(); at += kPacketPayload) {
        ++number;
        const auto first = frame.data.begin() + static_cast<std::ptrdiff_t>(at);
        const auto size = std::min<std::size_t>(kPacketPayload, frame.data.size() - at);
        if (frame.lostPackets.count(number) == 0) {
            SendPacket(frame.id, kData, number, {first, first + static_cast<std::ptrdiff_t>(size)});
        }
    }
    std::vector<unsigned char> trailer;
    Append16(trailer, 0);
    Append16(trailer, type);
    Append32(trailer, frame.height);
    SendPacket(frame.id, kTrailer, number + 1, trailer);
}

void AppendChunk(std::vector<unsigned char>& data, std::uint32_t id,
                 const std::vector<unsigned char>& chunk) {
    data.insert(data.end(), chunk.begin(), chunk.end());
    Append32(data, id);
    Append32(data, static_cast<std::uint32_t>(chunk.size()));
}

} // namespace genicam_test
