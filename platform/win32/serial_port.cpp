// serial_port.cpp - serial ports on Windows (COM ports)
#include "platform/serial_port.h"

#include "platform/win32/last_error.h"

#include <windows.h>

#include <algorithm>
#include <limits>

namespace platform {

namespace {

constexpr DWORD kWriteStallMs = 5000;
// Small enough to be sent within kWriteStallMs at the lowest rate.
constexpr std::size_t kWritePiece = 32;

BYTE ParityOf(SerialParity parity) {
    switch (parity) {
    case SerialParity::kOdd:
        return ODDPARITY;
    case SerialParity::kEven:
        return EVENPARITY;
    default:
        return NOPARITY;
    }
}

BYTE StopBitsOf(SerialStopBits stopBits) {
    switch (stopBits) {
    case SerialStopBits::kOneAndHalf:
        return ONE5STOPBITS;
    case SerialStopBits::kTwo:
        return TWOSTOPBITS;
    default:
        return ONESTOPBIT;
    }
}

bool Configure(HANDLE port, std::uint32_t baud, SerialParity parity, unsigned byteSize,
               SerialStopBits stopBits) {
    DCB settings{};
    settings.DCBlength = sizeof settings;
    if (!GetCommState(port, &settings)) {
        return false;
    }
    settings.BaudRate = baud;
    settings.ByteSize = static_cast<BYTE>(byteSize);
    settings.Parity = ParityOf(parity);
    settings.StopBits = StopBitsOf(stopBits);
    settings.fBinary = TRUE;
    settings.fParity = parity != SerialParity::kNone;
    settings.fOutxCtsFlow = FALSE;
    settings.fOutxDsrFlow = FALSE;
    settings.fDsrSensitivity = FALSE;
    settings.fOutX = FALSE;
    settings.fInX = FALSE;
    settings.fErrorChar = FALSE;
    settings.fNull = FALSE;
    settings.fAbortOnError = FALSE;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    settings.fRtsControl = RTS_CONTROL_ENABLE;
    // MAXDWORD with the other read timeouts 0: ReadFile returns at once with what has arrived.
    COMMTIMEOUTS limits{};
    limits.ReadIntervalTimeout = MAXDWORD;
    limits.WriteTotalTimeoutConstant = kWriteStallMs;
    return SetCommState(port, &settings) && SetCommTimeouts(port, &limits);
}

} // namespace

struct SerialPort::Impl {
    explicit Impl(HANDLE openHandle) : handle(openHandle) {}
    ~Impl() { CloseHandle(handle); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    const HANDLE handle;
};

SerialPort::SerialPort() = default;
SerialPort::~SerialPort() = default;

bool SerialPort::Open(const std::string& name, std::uint32_t baud, SerialParity parity,
                      unsigned byteSize, SerialStopBits stopBits, std::string* error) {
    Close();
    const auto refuse = [error](DWORD code) {
        if (error) {
            *error = SystemErrorText(code);
        }
        return false;
    };
    // Not all drivers reject these settings.
    if (byteSize < 5 || byteSize > 8 ||
        (stopBits == SerialStopBits::kOneAndHalf && byteSize != 5)) {
        return refuse(ERROR_INVALID_PARAMETER);
    }
    // Without this prefix, COM10 and above would be taken for file names.
    const std::string path = name.rfind("\\\\", 0) == 0 ? name : "\\\\.\\" + name;
    const HANDLE handle = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return refuse(GetLastError());
    }
    auto opened = std::make_unique<Impl>(handle);
    if (!Configure(handle, baud, parity, byteSize, stopBits)) {
        return refuse(GetLastError());
    }
    PurgeComm(handle, PURGE_RXCLEAR | PURGE_TXCLEAR);
    impl = std::move(opened);
    return true;
}

bool SerialPort::Read(void* buffer, std::size_t capacity, std::size_t& count) {
    count = 0;
    constexpr std::size_t kMost = std::numeric_limits<DWORD>::max();
    const auto size = static_cast<DWORD>(std::min(capacity, kMost));
    DWORD taken = 0;
    if (!impl || !ReadFile(impl->handle, buffer, size, &taken, nullptr)) {
        return false;
    }
    count = taken;
    return true;
}

bool SerialPort::Write(const void* data, std::size_t size, std::size_t* written) {
    const auto* bytes = static_cast<const char*>(data);
    std::size_t done = 0;
    bool working = impl != nullptr;
    while (working && done < size) {
        const auto piece = static_cast<DWORD>(std::min(size - done, kWritePiece));
        DWORD count = 0;
        // A write that times out succeeds with fewer bytes.
        working = WriteFile(impl->handle, bytes + done, piece, &count, nullptr) && count > 0;
        done += count;
    }
    if (written) {
        *written = done;
    }
    return working;
}

bool SerialPort::Purge(bool receive, bool transmit) {
    const DWORD what = (receive ? PURGE_RXABORT | PURGE_RXCLEAR : 0u) |
                       (transmit ? PURGE_TXABORT | PURGE_TXCLEAR : 0u);
    return impl && PurgeComm(impl->handle, what);
}

void SerialPort::Close() {
    impl.reset();
}

} // namespace platform
