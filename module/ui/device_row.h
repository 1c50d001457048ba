// device_row.h - what the device finder shows of a camera
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

#include <array>
#include <cstdint>
#include <string>

class CPyxenAPIAccess;

namespace pyxen {

/// Where a camera is attached; a text is empty when it cannot be read.
struct DeviceConnection {
    std::string interfaceId;
    std::string transportLayerName;
    std::string transportLayerVendor;
};

/// Asks the camera's interface and transport layer. Failures are logged.
DeviceConnection ReadDeviceConnection(CPyxenAPIAccess& api, const PxnCameraInfo& camera,
                                      Logger log);

inline constexpr std::size_t kDeviceColumnCount = 5;

/// A text of the SDK, which may be null.
inline const char* TextOrEmpty(const char* text) {
    return text ? text : "";
}

/// The texts of a camera's row.
std::array<std::string, kDeviceColumnCount> DeviceRowTexts(const PxnCameraInfo& camera,
                                                           const DeviceConnection& connection);

inline constexpr std::uint32_t kDeviceFree = 1;
inline constexpr std::uint32_t kDeviceInUse = 2;

/// The number of the image that tells whether a camera can be opened with full access.
std::uint32_t DeviceStateImage(std::uint32_t permittedAccess);

} // namespace pyxen
