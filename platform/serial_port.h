// serial_port.h - serial ports of the computer
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace platform {

enum class SerialParity : std::uint8_t { kNone, kOdd, kEven };
enum class SerialStopBits : std::uint8_t { kOne, kOneAndHalf, kTwo };

/// A serial port for raw bytes, without flow control. One thread at a time.
class SerialPort {
public:
    SerialPort();
    ~SerialPort();
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    /// Opens a port, closing the current one first, and discards what it has received before.
    ///
    /// `name` is "COM1" or "COM10" on Windows, "ttyS0" or "/dev/ttyUSB0" elsewhere. `baud` is in
    /// bits per second, `byteSize` is 5 to 8 bits; kOneAndHalf stop bits require 5 bits. When the
    /// port cannot be opened or does not support the settings, returns false, stores the system's
    /// message in `error` (unless null) and stays closed.
    bool Open(const std::string& name, std::uint32_t baud, SerialParity parity, unsigned byteSize,
              SerialStopBits stopBits, std::string* error = nullptr);
    bool IsOpen() const { return impl != nullptr; }

    /// Reads up to `capacity` bytes that have already arrived, without waiting; `count` receives
    /// their number, possibly 0. False when the port is closed or has failed.
    bool Read(void* buffer, std::size_t capacity, std::size_t& count);
    /// Writes all bytes to the system's output buffer, waiting as long as there is progress. False
    /// when the port is closed, has failed, or has not accepted any byte for five seconds.
    /// `written` (unless null) receives the number of bytes accepted.
    bool Write(const void* data, std::size_t size, std::size_t* written = nullptr);
    /// Discards received bytes that have not been read (`receive`) and written bytes that have not
    /// been sent (`transmit`). False when the port is closed or has failed.
    bool Purge(bool receive, bool transmit);
    /// Closes the port; does nothing when it is closed already.
    void Close();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
