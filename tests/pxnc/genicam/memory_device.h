// memory_device.h - a camera for Aravis whose registers are memory of this process
#pragma once

#include "pxnc/genicam/glib_owner.h"

#include <arv.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace genicam_test {

/// Size of the register space in bytes; beyond it every access is an invalid address.
inline constexpr std::size_t kMemoryDeviceSize = 0x4000;

/// Makes a device with that GenICam description. Its registers, which begin with address 0, contain
/// `content` again and again, or zeros without it. arv_device_get_genicam returns null when the
/// description is not well formed.
genicam::ObjectOwner<ArvDevice> MakeMemoryDevice(std::string_view description,
                                                 std::string_view content = {});

} // namespace genicam_test
