// register_access.cpp - 32-bit device registers
#include "sdk/pyxen_api_access.h"

#include <cstring>

using namespace pyxen;

namespace {

// Converts a register's value between the camera and the host, in either direction.
// Compatibility: without the swap byte 0 fills the top byte, too, and byte 3 is lost; hosts that
// access registers without the swap get and send this pattern.
std::uint32_t Rearrange(std::uint32_t value, bool swap) {
    const std::uint32_t byte0 = value & 0xFFu;
    const std::uint32_t byte1 = (value >> 8) & 0xFFu;
    const std::uint32_t byte2 = (value >> 16) & 0xFFu;
    const std::uint32_t byte3 = value >> 24;
    if (swap) {
        return byte0 << 24 | byte1 << 16 | byte2 << 8 | byte3;
    }
    return byte0 << 24 | byte2 << 16 | byte1 << 8 | byte0;
}

} // namespace

bool CPyxenAPIAccess::ReadRegister32(PxnHandle handle, std::uint64_t address, std::uint32_t* value,
                                     bool swap) {
    char bytes[sizeof *value] = {};
    std::uint32_t done = 0;
    if (PxnMemoryRead(handle, address, sizeof bytes, bytes, &done) != PxnErrSuccess ||
        done != sizeof bytes) {
        return false;
    }
    std::uint32_t raw = 0;
    std::memcpy(&raw, bytes, sizeof raw);
    *value = Rearrange(raw, swap);
    return true;
}

bool CPyxenAPIAccess::WriteRegister32(PxnHandle handle, std::uint64_t address, std::uint32_t value,
                                      bool swap) {
    const std::uint32_t raw = Rearrange(value, swap);
    char bytes[sizeof raw];
    std::memcpy(bytes, &raw, sizeof raw);
    std::uint32_t done = 0;
    return PxnMemoryWrite(handle, address, sizeof bytes, bytes, &done) == PxnErrSuccess &&
           done == sizeof bytes;
}
