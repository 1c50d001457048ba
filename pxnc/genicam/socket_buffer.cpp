// socket_buffer.cpp - receive buffers of stream sockets
#include "pxnc/genicam/socket_buffer.h"

#include "platform/file_system.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <system_error>

namespace genicam {
namespace {

constexpr std::uint64_t kFramesThatFit = 8;
constexpr std::uint64_t kLeastSize = 2u << 20;
constexpr std::uint64_t kGreatestSize = 256u << 20;
// Debian's default, for a system that reports no limit.
constexpr std::uint64_t kUsualLimit = 212'992;

std::uint64_t KernelLimit() {
    std::string text;
    if (!platform::ReadWholeFile("/proc/sys/net/core/rmem_max", text)) {
        return kUsualLimit;
    }
    const std::uint64_t limit = std::strtoull(text.c_str(), nullptr, 10);
    return limit != 0 ? limit : kUsualLimit;
}

bool IsUdpSocketOn(int descriptor, std::uint16_t port) {
    int type = 0;
    socklen_t typeSize = sizeof type;
    sockaddr_in address = {};
    socklen_t addressSize = sizeof address;
    return getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &typeSize) == 0 &&
           type == SOCK_DGRAM &&
           getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &addressSize) == 0 &&
           address.sin_family == AF_INET && ntohs(address.sin_port) == port;
}

} // namespace

std::uint32_t ChooseSocketBufferSize(std::uint32_t payloadSize) {
    const std::uint64_t wanted =
        std::clamp(std::uint64_t{payloadSize} * kFramesThatFit, kLeastSize, kGreatestSize);
    return static_cast<std::uint32_t>(std::min(wanted, KernelLimit()));
}

bool SetSocketBuffer(std::uint16_t port, std::uint32_t bytes) {
    bool isSet = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const int descriptor = std::stoi(entry.path().filename().string());
        if (IsUdpSocketOn(descriptor, port)) {
            const int size = static_cast<int>(bytes);
            isSet |= setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &size, sizeof size) == 0;
        }
    }
    return isSet;
}

} // namespace genicam
