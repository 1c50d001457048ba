#include "pxnc/genicam/socket_buffer.h"

#include "platform/file_system.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>

namespace genicam {

namespace {

constexpr uint64_t kFramesThatFit = 8;
constexpr uint64_t kLeastSize = 2u << 20;
constexpr uint64_t kGreatestSize = 256u << 20;
// Debian's default, for a system that does not tell.
constexpr uint64_t kUsualLimit = 212'992;

uint64_t KernelLimit() {
    std::string text;
    if (!platform::ReadWholeFile("/proc/sys/net/core/rmem_max", text)) {
        return kUsualLimit;
    }
    const uint64_t limit = std::strtoull(text.c_str(), nullptr, 10);
    return limit != 0 ? limit : kUsualLimit;
}

bool IsUdpSocketOn(int descriptor, uint16_t port) {
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

uint32_t ChooseSocketBufferSize(uint32_t payloadSize) {
    const uint64_t wanted =
        std::clamp(uint64_t{payloadSize} * kFramesThatFit, kLeastSize, kGreatestSize);
    return static_cast<uint32_t>(std::min(wanted, KernelLimit()));
}

bool SetSocketBuffer(uint16_t port, uint32_t bytes) {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir("/proc/self/fd"), closedir);
    if (directory == nullptr) {
        return false;
    }
    bool isSet = false;
    while (const dirent* entry = readdir(directory.get())) {
        const int descriptor = std::atoi(entry->d_name);
        if (IsUdpSocketOn(descriptor, port)) {
            const int size = static_cast<int>(bytes);
            isSet |= setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &size, sizeof size) == 0;
        }
    }
    return isSet;
}

} // namespace genicam
