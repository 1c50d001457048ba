// serial_devices.h - devices at the other end of the camera's serial ports
#pragma once

#include <memory>
#include <string>

namespace pxsim {

/// The device at the other end of a serial line. Used by one thread at a time.
class SerialDevice {
public:
    virtual ~SerialDevice() = default;
    /// Receives bytes as they arrive, in pieces of any size; returns what the device sends.
    virtual std::string Receive(const std::string& bytes) = 0;
};

/// "loopback" returns every byte, "lens" is a lens controller, "none" is silent. Null for any
/// other name.
std::unique_ptr<SerialDevice> MakeSerialDevice(const std::string& name);

} // namespace pxsim
