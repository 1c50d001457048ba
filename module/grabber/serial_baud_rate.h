// serial_baud_rate.h - choosing the serial link's speed
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

#include <cstdint>
#include <vector>

class CPyxenAPIAccess;

namespace pyxen {

/// The number that the decimal digits at the end of an entry's name make: 9600 for "Baud9600", 0
/// without such digits. What 64 bits cannot hold is their largest number.
std::uint64_t TrailingNumber(const char* name);

/// The entry of `grabber` with the highest number that also occurs in `camera`; null when there is
/// none.
const char* FindOptimumBaudRate(std::vector<const char*> grabber,
                                const std::vector<const char*>& camera);

/// Switches the local device, the grabber's side of the serial link, to the highest baud rate that
/// it has in common with the camera. Does nothing without one; the camera is left as it is.
void SetOptimumSerialPortBaudRate(const CPyxenAPIAccess& api, PxnHandle localDevice,
                                  PxnHandle camera, Logger log);

} // namespace pyxen
