// packet_size.h - fitting a network camera's packets to the network
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

class CPyxenAPIAccess;

namespace pyxen {

/// Lets the stream module choose its packet size and waits for the end, without limit. Failures are
/// logged.
void AdjustPacketSize(const CPyxenAPIAccess& api, PxnHandle stream, Logger log);

} // namespace pyxen
