// serial_baud_rate.h - choosing the serial link's speed
#pragma once

#include <cstdint>
#include <vector>

/// The number that the decimal digits at the end of an entry's name make: 9600 for "Baud9600", 0
/// without such digits. What 64 bits cannot hold is their largest number.
std::uint64_t TrailingNumber(const char* name);

/// The entry of `grabber` with the highest number that also occurs in `camera`; null when there is
/// none.
const char* FindOptimumBaudRate(std::vector<const char*> grabber,
                                const std::vector<const char*>& camera);
