// acquisition_mode.h - the values of the acquisition state
#pragma once

#include <cstdint>

inline constexpr std::uint32_t kIdle = 0;
inline constexpr std::uint32_t kContinuous = 1;
inline constexpr std::uint32_t kAsynchronousSingle = 2;
inline constexpr std::uint32_t kFirstSynchronousSingle = 3;
inline constexpr std::uint32_t kLastSynchronousSingle = 5;

/// How long the camera is left alone after a stop, in milliseconds.
inline constexpr std::uint32_t kSettlingPauseMs = 1000;
