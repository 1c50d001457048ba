// socket_buffer.h - receive buffers of stream sockets
#pragma once

#include <cstdint>

namespace genicam {

/// Bytes to ask for so that several frames of `payloadSize` fit, no more than the kernel allows
/// (net.core.rmem_max).
std::uint32_t ChooseSocketBufferSize(std::uint32_t payloadSize);

/// Sets the receive buffer of this process's UDP sockets on `port` (one for each address, if there
/// are several) to `bytes`; false when there is none or the system refused.
bool SetSocketBuffer(std::uint16_t port, std::uint32_t bytes);

} // namespace genicam
