// socket_buffer.h - room for what arrives while the stream thread is elsewhere
#pragma once

#include <cstdint>

namespace genicam {

/// Bytes to ask for so that several frames of `payloadSize` fit, no more than the kernel allows
/// (net.core.rmem_max).
uint32_t ChooseSocketBufferSize(uint32_t payloadSize);

/// Sets the receive buffer of this process's UDP sockets on `port` (one for each address, if there
/// are several) to `bytes`; false when there is none or the system refused.
bool SetSocketBuffer(uint16_t port, uint32_t bytes);

} // namespace genicam
