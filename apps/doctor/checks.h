// checks.h - judges what is known about this machine, its camera SDK and its cameras
#pragma once

#include "apps/doctor/facts.h"
#include "apps/doctor/finding.h"

#include <cstdint>
#include <vector>

/// A receive buffer that has room for some frames at once.
inline constexpr std::uint64_t kGoodReceiveBuffer = 64ull << 20;

/// The library of the camera SDK, its entries and its start-up.
std::vector<Finding> CheckSdk(const SdkFacts& sdk);
/// Interfaces, receive buffer, reverse path filter, and the cameras that reply on the network.
std::vector<Finding> CheckNetwork(const NetworkFacts& network);
/// Access to USB cameras, and the memory for their transfers.
std::vector<Finding> CheckUsb(const UsbFacts& usb);
/// The cameras that the SDK lists: busy, packet size and delay, heartbeat, whole frames.
std::vector<Finding> CheckCameras(const std::vector<CameraFacts>& cameras,
                                  const NetworkFacts& network);

/// The largest packet that the interface of a camera takes; 0 when that is not known.
std::uint32_t MtuFor(const CameraFacts& camera, const NetworkFacts& network);
