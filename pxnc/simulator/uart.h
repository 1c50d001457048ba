// uart.h - one of the camera's serial ports, as its registers show it
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/simulator/configuration.h"
#include "pxnc/simulator/serial_devices.h"
#include "pxnc/skeleton/condition.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

namespace pxsim {

/// Time is evaluated only at register accesses, so a port needs no thread: at an access, sent bytes
/// that are due reach the device, and its answers the receive buffer. Without pacing, all bytes are
/// due at once. Any thread.
class Uart {
public:
    /// Bytes of a port in the register space.
    static constexpr std::uint32_t kSpan = 0xC00;

    explicit Uart(const PortConfiguration& setup);

    /// `offset` is relative to the port's base, `size` at most what PartAt returns.
    PxnError Read(std::uint32_t offset, std::uint32_t size, std::uint8_t* out) EXCLUDES(mutex);
    PxnError Write(std::uint32_t offset, std::uint32_t size, const std::uint8_t* in)
        EXCLUDES(mutex);
    /// How many of `size` bytes from `offset` on one access can transfer: up to the end of a
    /// buffer, the four of a register, or 0 where there is nothing.
    static std::uint32_t PartAt(std::uint32_t offset, std::uint32_t size);

    enum class Fault { kNone, kStuck, kSlow };
    void SetFault(Fault newFault) EXCLUDES(mutex);
    /// Power-on state; bytes in transit are lost.
    void Reset() EXCLUDES(mutex);

private:
    struct Received {
        char byte;
        skeleton::Clock::time_point when;
    };

    PxnError WriteRegister(std::uint32_t offset, std::uint32_t value) REQUIRES(mutex);
    std::uint32_t ReadRegister(std::uint32_t offset) const REQUIRES(mutex);
    void Advance() REQUIRES(mutex);
    void Send(std::uint32_t length) REQUIRES(mutex);
    void Receive(const std::string& bytes, skeleton::Clock::time_point from) REQUIRES(mutex);
    bool IsModeSupported(std::uint32_t mode) const;
    skeleton::Clock::duration ByteTime() const REQUIRES(mutex);
    std::uint32_t WaitingBytes() const REQUIRES(mutex);

    const PortConfiguration setup;
    platform::Mutex mutex;
    const std::unique_ptr<SerialDevice> device PT_GUARDED_BY(mutex);
    std::uint8_t transmitBuffer[1024] GUARDED_BY(mutex) = {};
    std::deque<Received> received GUARDED_BY(mutex);
    std::string sending GUARDED_BY(mutex); // on the line until `sentAt`
    skeleton::Clock::time_point sentAt GUARDED_BY(mutex);
    std::uint32_t mode GUARDED_BY(mutex);
    std::uint32_t receiveStatus GUARDED_BY(mutex) = 0;
    bool transmitEnabled GUARDED_BY(mutex) = false;
    bool receiveEnabled GUARDED_BY(mutex) = false;
    Fault fault GUARDED_BY(mutex) = Fault::kNone;
};

} // namespace pxsim
