// packet_sender.h - sends stream packets in place of the camera
#pragma once

#include "pxnc/include/pxnc.h"

#include <cstdint>
#include <set>
#include <vector>

namespace genicam_test {

/// Sends frames by the GigE Vision stream protocol to a capture that runs, as a camera with gaps in
/// its stream or with chunks would, of which the fake camera is neither.
class PacketSender {
public:
    /// Bytes of a frame in one packet: small, so that a small frame has several.
    static constexpr std::uint32_t kPacketPayload = 64;

    struct Frame {
        std::uint16_t id = 1;
        std::uint64_t timestamp = 0; // ticks of a gigahertz
        std::uint32_t pixelFormat = 0x01080001;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::uint32_t offsetX = 0;
        std::uint32_t offsetY = 0;
        /// Everything between the first and the last packet, chunks included.
        std::vector<unsigned char> data;
        bool hasChunks = false;
        /// Numbers of packets that get lost; data packets count from 1.
        std::set<std::uint32_t> lostPackets;
        bool losesFirstPacket = false;
    };

    /// Asks the camera where its stream goes to.
    explicit PacketSender(PxnHandle camera);
    ~PacketSender();
    PacketSender(const PacketSender&) = delete;
    PacketSender& operator=(const PacketSender&) = delete;

    void Send(const Frame& frame) const;

private:
    void SendPacket(std::uint16_t frameId, unsigned char kind, std::uint32_t number,
                    const std::vector<unsigned char>& content) const;

    int connection = -1;
};

/// Appends a chunk, as it stands behind the picture: its data, its identifier, its length.
void AppendChunk(std::vector<unsigned char>& data, std::uint32_t id,
                 const std::vector<unsigned char>& chunk);

} // namespace genicam_test
