// gvcp.cpp - messages of GigE Vision's control protocol that work without opening a camera
#include "apps/doctor/gvcp.h"

#include <algorithm>
#include <string>

namespace gvcp {

namespace {

constexpr std::uint8_t kKey = 0x42;
constexpr std::uint8_t kWantsReply = 0x01;
constexpr std::uint8_t kMayBroadcast = 0x10;
constexpr std::uint16_t kDiscovery = 0x0002;
constexpr std::uint16_t kForceIp = 0x0004;
constexpr std::uint16_t kReadRegister = 0x0080;
constexpr std::uint16_t kWriteRegister = 0x0082;
constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kDiscoverySize = 248;
constexpr std::size_t kForceIpSize = 56;

void Put(Message& message, std::size_t at, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        message[at + i] = static_cast<std::uint8_t>(value >> (8 * (bytes - 1 - i)));
    }
}

std::uint64_t Take(const Message& message, std::size_t at, std::size_t bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        value = value << 8 | message[at + i];
    }
    return value;
}

std::uint32_t Take32(const Message& message, std::size_t at) {
    return static_cast<std::uint32_t>(Take(message, at, 4));
}

std::string TakeText(const Message& message, std::size_t at, std::size_t bytes) {
    const auto begin = message.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = begin + static_cast<std::ptrdiff_t>(bytes);
    return {begin, std::find(begin, end, std::uint8_t{0})};
}

Message Command(std::uint8_t flags, std::uint16_t command, std::uint16_t id, std::size_t size) {
    Message message(kHeaderSize + size, 0);
    message[0] = kKey;
    message[1] = flags;
    Put(message, 2, command, 2);
    Put(message, 4, size, 2);
    Put(message, 6, id, 2);
    return message;
}

/// A reply without error to that command, with at least so many bytes behind its header.
bool IsReply(const Message& reply, std::uint16_t command, std::uint16_t id, std::size_t size) {
    return reply.size() >= kHeaderSize + size && Take(reply, 0, 2) == 0 &&
           Take(reply, 2, 2) == command + 1u && Take(reply, 6, 2) == id;
}

} // namespace

Message Discover(std::uint16_t id) {
    return Command(kWantsReply | kMayBroadcast, kDiscovery, id, 0);
}

Message ReadRegister(std::uint16_t id, std::uint32_t address) {
    Message message = Command(kWantsReply, kReadRegister, id, 4);
    Put(message, kHeaderSize, address, 4);
    return message;
}

Message WriteRegister(std::uint16_t id, std::uint32_t address, std::uint32_t value) {
    Message message = Command(kWantsReply, kWriteRegister, id, 8);
    Put(message, kHeaderSize, address, 4);
    Put(message, kHeaderSize + 4, value, 4);
    return message;
}

Message ForceAddress(std::uint16_t id, std::uint64_t mac, std::uint32_t address,
                     std::uint32_t netmask) {
    Message message = Command(kWantsReply | kMayBroadcast, kForceIp, id, kForceIpSize);
    Put(message, kHeaderSize + 2, mac, 6);
    Put(message, kHeaderSize + 20, address, 4);
    Put(message, kHeaderSize + 36, netmask, 4);
    return message;
}

std::optional<GigeCamera> ParseDiscovery(const Message& reply, std::uint16_t id) {
    if (!IsReply(reply, kDiscovery, id, kDiscoverySize)) {
        return std::nullopt;
    }
    GigeCamera camera;
    camera.mac = Take(reply, kHeaderSize + 10, 6);
    camera.address = Take32(reply, kHeaderSize + 36);
    camera.netmask = Take32(reply, kHeaderSize + 52);
    camera.gateway = Take32(reply, kHeaderSize + 68);
    camera.vendor = TakeText(reply, kHeaderSize + 72, 32);
    camera.model = TakeText(reply, kHeaderSize + 104, 32);
    camera.serial = TakeText(reply, kHeaderSize + 216, 16);
    camera.userName = TakeText(reply, kHeaderSize + 232, 16);
    return camera;
}

std::optional<std::uint32_t> ParseRegister(const Message& reply, std::uint16_t id) {
    return IsReply(reply, kReadRegister, id, 4) ? std::optional(Take32(reply, kHeaderSize))
                                                : std::nullopt;
}

bool IsWritten(const Message& reply, std::uint16_t id) {
    return IsReply(reply, kWriteRegister, id, 0);
}

} // namespace gvcp
