// serial_port.h - the computer's own serial ports
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace platform {

enum class SerialParity : std::uint8_t { kNone, kOdd, kEven };
enum class SerialStopBits : std::uint8_t { kOne, kOneAndHalf, kTwo };

/// One serial port, opened for raw bytes without flow control. One thread at a time.
class SerialPort {
public:
    SerialPort();
    ~SerialPort();
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    /// Opens a port, closing the one that was open before.
    ///
    /// `name` is the system's: "COM1" or "COM10" on Windows, "ttyS0" or "/dev/ttyUSB0" elsewhere.
    /// `baud` is in bits per second, `byteSize` 5 to 8 bits; one and a half stop bits go with 5
    /// bits only. False when the system refused or a setting cannot be had; `error`, when given,
    /// then says why.
    bool Open(const std::string& name, std::uint32_t baud, SerialParity parity, unsigned byteSize,
              SerialStopBits stopBits, std::string* error = nullptr);
    bool IsOpen() const { return impl != nullptr; }

    /// Takes at most `capacity` of the bytes that have arrived, without waiting for more; `count`
    /// receives how many, and may be 0. False when the port is closed or has failed.
    bool Read(void* buffer, std::size_t capacity, std::size_t& count);
    /// Hands all bytes to the system, waiting as long as the port goes on taking some. False when
    /// the port is closed, has failed, or has taken nothing for five seconds; `written`, when
    /// given, receives how many bytes went out.
    bool Write(const void* data, std::size_t size, std::size_t* written = nullptr);
    /// Throws away what has arrived but was not read, and what was written but not sent.
    bool Purge(bool receive, bool transmit);
    /// Does nothing when the port is closed.
    void Close();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
