// uart.cpp - one of the camera's serial ports, as its registers show it
#include "pxnc/simulator/uart.h"

#include "pxnc/simulator/big_endian.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace pxsim {
namespace {

enum Register : std::uint32_t {
    kInquiry = 0x000,
    kCapability = 0x100,
    kMode = 0x104,
    kTransmitStatus = 0x124,
    kTransmitControl = 0x128,
    kTransmitLength = 0x12C,
    kReceiveStatus = 0x144,
    kReceiveControl = 0x148,
    kReceiveLength = 0x14C,
};

constexpr std::uint32_t kRegisters[] = {kInquiry,        kCapability,      kMode,
                                        kTransmitStatus, kTransmitControl, kTransmitLength,
                                        kReceiveStatus,  kReceiveControl,  kReceiveLength};
constexpr std::uint32_t kTransmitBuffer = 0x400;
constexpr std::uint32_t kReceiveBuffer = 0x800;
constexpr std::uint32_t kBufferSize = 1024;

constexpr std::uint32_t kPresent = 3;     // inquiry
constexpr std::uint32_t kReady = 1;       // transmit status
constexpr std::uint32_t kClear = 1;       // both controls
constexpr std::uint32_t kEnable = 2;      // both controls
constexpr std::uint32_t kDataWaiting = 1; // receive status
constexpr std::uint32_t kOverrun = 2;     // receive status
constexpr std::size_t kReceiveCapacity = 4096;
constexpr std::uint32_t kModeAtPowerOn = 0x0C09; // 115200 baud, no parity, 8 bits, 1 stop bit
constexpr std::uint32_t kSlowBaud = 300;

constexpr std::uint32_t kBaudRates[] = {300,   600,   1200,  2400,   4800,  9600,
                                        19200, 38400, 57600, 115200, 230400};

} // namespace

Uart::Uart(const PortConfiguration& newSetup)
    : setup(newSetup), device(MakeSerialDevice(setup.device)), mode(kModeAtPowerOn) {}

std::uint32_t Uart::PartAt(std::uint32_t offset, std::uint32_t size) {
    if (offset >= kTransmitBuffer) {
        return std::min(size, kBufferSize - offset % kBufferSize);
    }
    const bool known =
        std::find(std::begin(kRegisters), std::end(kRegisters), offset) != std::end(kRegisters);
    return known && size >= 4 ? 4 : 0;
}

PxnError Uart::Read(std::uint32_t offset, std::uint32_t size, std::uint8_t* out) {
    platform::MutexLock lock(mutex);
    Advance();
    if (offset >= kReceiveBuffer) {
        // Beyond the received bytes the buffer reads as 0.
        std::memset(out, 0, size);
        const std::uint32_t first = offset - kReceiveBuffer;
        const std::uint32_t waiting = WaitingBytes();
        for (std::uint32_t i = 0; i < size && first + i < waiting; ++i) {
            out[i] = static_cast<std::uint8_t>(received[first + i].byte);
        }
    } else if (offset >= kTransmitBuffer) {
        std::memcpy(out, transmitBuffer + (offset - kTransmitBuffer), size);
    } else {
        StoreBigEndian(ReadRegister(offset), out);
    }
    return PxnErrSuccess;
}

PxnError Uart::Write(std::uint32_t offset, std::uint32_t size, const std::uint8_t* in) {
    platform::MutexLock lock(mutex);
    Advance();
    if (offset >= kReceiveBuffer) {
        return PxnErrInvalidAccess;
    }
    if (offset >= kTransmitBuffer) {
        std::memcpy(transmitBuffer + (offset - kTransmitBuffer), in, size);
        return PxnErrSuccess;
    }
    return WriteRegister(offset, LoadBigEndian(in));
}

std::uint32_t Uart::ReadRegister(std::uint32_t offset) const {
    switch (offset) {
    case kInquiry:
        return setup.present ? kPresent : 0;
    case kCapability:
        return setup.capability;
    case kMode:
        return mode;
    case kTransmitStatus:
        return sending.empty() && fault != Fault::kStuck ? kReady : 0;
    case kTransmitControl:
        return transmitEnabled ? kEnable : 0;
    case kTransmitLength:
        return static_cast<std::uint32_t>(sending.size());
    case kReceiveStatus:
        return receiveStatus | (WaitingBytes() > 0 ? kDataWaiting : 0);
    case kReceiveControl:
        return receiveEnabled ? kEnable : 0;
    case kReceiveLength:
        return WaitingBytes();
    default:
        return 0;
    }
}

PxnError Uart::WriteRegister(std::uint32_t offset, std::uint32_t value) {
    switch (offset) {
    case kMode:
        if (!IsModeSupported(value)) {
            return PxnErrInvalidValue;
        }
        mode = value;
        return PxnErrSuccess;
    case kTransmitControl:
        transmitEnabled = (value & kEnable) != 0;
        if ((value & kClear) != 0) {
            sending.clear();
        }
        return PxnErrSuccess;
    case kTransmitLength:
        if (value > kBufferSize) {
            return PxnErrInvalidValue;
        }
        if (!sending.empty() || fault == Fault::kStuck) {
            return PxnErrBusy;
        }
        Send(value);
        return PxnErrSuccess;
    case kReceiveStatus:
        receiveStatus &= ~value; // writing ones clears them
        return PxnErrSuccess;
    case kReceiveControl:
        receiveEnabled = (value & kEnable) != 0;
        if ((value & kClear) != 0) {
            received.clear();
        }
        return PxnErrSuccess;
    case kReceiveLength: {
        const std::uint32_t taken = std::min(value, WaitingBytes());
        received.erase(received.begin(), received.begin() + taken);
        return PxnErrSuccess;
    }
    default:
        return PxnErrInvalidAccess;
    }
}

void Uart::Send(std::uint32_t length) {
    if (!transmitEnabled) {
        return; // the line is not driven
    }
    sending.assign(reinterpret_cast<const char*>(transmitBuffer), length);
    sentAt = skeleton::Clock::now() + ByteTime() * length;
    Advance();
}

void Uart::Advance() {
    if (sending.empty() || fault == Fault::kStuck || skeleton::Clock::now() < sentAt) {
        return;
    }
    const std::string arrived = std::move(sending);
    sending.clear();
    Receive(device->Receive(arrived), sentAt);
}

void Uart::Receive(const std::string& bytes, skeleton::Clock::time_point from) {
    if (!receiveEnabled) {
        return;
    }
    for (const char byte : bytes) {
        from += ByteTime();
        if (received.size() >= kReceiveCapacity) {
            receiveStatus |= kOverrun;
            return;
        }
        received.push_back({byte, from});
    }
}

bool Uart::IsModeSupported(std::uint32_t newMode) const {
    const auto offers = [this](std::uint32_t firstBit, std::uint32_t bits, std::uint32_t index) {
        return index < bits && ((setup.capability >> (firstBit + index)) & 1) != 0;
    };
    return offers(0, 16, newMode & 0xFF) && offers(16, 4, (newMode >> 8) & 3) &&
           offers(20, 4, (newMode >> 10) & 3) && offers(24, 8, (newMode >> 12) & 3);
}

skeleton::Clock::duration Uart::ByteTime() const {
    if (fault != Fault::kSlow && !setup.baudPaced) {
        return skeleton::Clock::duration::zero();
    }
    const std::uint32_t index = mode & 0xFF;
    std::uint32_t baud = index < std::size(kBaudRates) ? kBaudRates[index] : kSlowBaud;
    if (fault == Fault::kSlow) {
        baud = std::min(baud, kSlowBaud);
    }
    constexpr unsigned kBitsPerByte = 10; // with start and stop
    return std::chrono::duration_cast<skeleton::Clock::duration>(
        std::chrono::nanoseconds(1000000000ULL * kBitsPerByte / baud));
}

std::uint32_t Uart::WaitingBytes() const {
    const skeleton::Clock::time_point now = skeleton::Clock::now();
    const auto end = std::find_if(received.begin(), received.end(),
                                  [now](const Received& one) { return one.when > now; });
    return std::min(static_cast<std::uint32_t>(end - received.begin()), kBufferSize);
}

void Uart::SetFault(Fault newFault) {
    platform::MutexLock lock(mutex);
    fault = newFault;
    Advance();
}

void Uart::Reset() {
    platform::MutexLock lock(mutex);
    received.clear();
    sending.clear();
    receiveStatus = 0;
    transmitEnabled = false;
    receiveEnabled = false;
    mode = kModeAtPowerOn;
}

} // namespace pxsim
