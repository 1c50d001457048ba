// transport.h - what cameras are connected to
#pragma once

#include "pxnc.h"

#include <cstdint>
#include <vector>

class CPyxenAPIAccess;

namespace pyxen {

/// The interfaces that the SDK lists at present; none when it fails. Throws std::bad_alloc.
std::vector<PxnInterfaceInfo> ListInterfaces(const CPyxenAPIAccess& api);
/// Null for null and for a handle that is not there.
const PxnInterfaceInfo* FindInterface(const std::vector<PxnInterfaceInfo>& interfaces,
                                      PxnHandle handle);
/// "GEV", "U3V" and so on; empty for an unknown type.
const char* TransportLayerName(std::uint32_t type);

} // namespace pyxen
