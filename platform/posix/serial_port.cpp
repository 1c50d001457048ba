// serial_port.cpp - serial ports on POSIX (termios)
#include "platform/serial_port.h"

#include "platform/clock.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>
#include <system_error>

namespace platform {

namespace {

constexpr std::uint64_t kWriteStallNs = 5'000'000'000;
constexpr int kRetryMs = 20;

struct Rate {
    std::uint32_t baud;
    speed_t speed;
};

constexpr Rate kRates[] = {
    {110, B110},       {300, B300},       {600, B600},       {1200, B1200},     {2400, B2400},
    {4800, B4800},     {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
    {115200, B115200}, {230400, B230400}, {460800, B460800}, {921600, B921600},
};

constexpr tcflag_t kByteSizes[] = {CS5, CS6, CS7, CS8};
constexpr unsigned kLeastByteSize = 5;

// Returns false with errno set when no port supports the settings.
bool BuildSettings(std::uint32_t baud, SerialParity parity, unsigned byteSize,
                   SerialStopBits stopBits, termios& settings) {
    errno = EINVAL;
    const Rate* rate = std::begin(kRates);
    while (rate != std::end(kRates) && rate->baud != baud) {
        ++rate;
    }
    if (rate == std::end(kRates) || byteSize < kLeastByteSize ||
        byteSize - kLeastByteSize >= std::size(kByteSizes) ||
        (stopBits == SerialStopBits::kOneAndHalf && byteSize != kLeastByteSize)) {
        return false;
    }
    cfmakeraw(&settings);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY | INPCK);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CSTOPB | CRTSCTS);
    settings.c_cflag |= CLOCAL | CREAD | kByteSizes[byteSize - kLeastByteSize];
    if (parity != SerialParity::kNone) {
        settings.c_cflag |= PARENB;
    }
    if (parity == SerialParity::kOdd) {
        settings.c_cflag |= PARODD;
    }
    // With five data bits the hardware shortens two stop bits to one and a half.
    if (stopBits != SerialStopBits::kOne) {
        settings.c_cflag |= CSTOPB;
    }
    // With O_NONBLOCK, VMIN 1 makes read fail with EAGAIN when no data has arrived and return 0
    // when the device is gone.
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return cfsetispeed(&settings, rate->speed) == 0 && cfsetospeed(&settings, rate->speed) == 0;
}

} // namespace

struct SerialPort::Impl {
    explicit Impl(int openDescriptor) : descriptor(openDescriptor) {}
    ~Impl() { close(descriptor); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    const int descriptor;
};

SerialPort::SerialPort() = default;
SerialPort::~SerialPort() = default;

bool SerialPort::Open(const std::string& name, std::uint32_t baud, SerialParity parity,
                      unsigned byteSize, SerialStopBits stopBits, std::string* error) {
    Close();
    const std::string path = name.find('/') == std::string::npos ? "/dev/" + name : name;
    const auto refuse = [error] {
        if (error) {
            *error = std::generic_category().message(errno);
        }
        return false;
    };
    // O_NONBLOCK: do not wait for the carrier here, nor for data in Read.
    const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return refuse();
    }
    auto opened = std::make_unique<Impl>(descriptor);
    termios settings{};
    if (tcgetattr(descriptor, &settings) != 0 ||
        !BuildSettings(baud, parity, byteSize, stopBits, settings) ||
        tcsetattr(descriptor, TCSANOW, &settings) != 0) {
        return refuse();
    }
    // tcsetattr reports success when it could apply any of the settings, so check the rate.
    termios taken{};
    if (tcgetattr(descriptor, &taken) != 0) {
        return refuse();
    }
    if (cfgetospeed(&taken) != cfgetospeed(&settings)) {
        errno = EINVAL;
        return refuse();
    }
    tcflush(descriptor, TCIOFLUSH);
    impl = std::move(opened);
    return true;
}

bool SerialPort::Read(void* buffer, std::size_t capacity, std::size_t& count) {
    count = 0;
    if (!impl || capacity == 0) {
        return impl != nullptr;
    }
    ssize_t taken = 0;
    do {
        taken = read(impl->descriptor, buffer, capacity);
    } while (taken < 0 && errno == EINTR);
    if (taken <= 0) {
        return taken < 0 && errno == EAGAIN;
    }
    count = static_cast<std::size_t>(taken);
    return true;
}

bool SerialPort::Write(const void* data, std::size_t size, std::size_t* written) {
    const auto* bytes = static_cast<const char*>(data);
    std::size_t done = 0;
    bool working = impl != nullptr;
    std::uint64_t lastProgress = MonotonicNanoseconds();
    while (working && done < size) {
        const ssize_t count = write(impl->descriptor, bytes + done, size - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
            lastProgress = MonotonicNanoseconds();
        } else if (count == 0 || errno == EAGAIN || errno == EINTR) {
            // poll reports a port writable only when its output buffer is nearly empty, which takes
            // minutes at the lowest rates. Retrying finds free space earlier.
            pollfd port{impl->descriptor, POLLOUT, 0};
            poll(&port, 1, kRetryMs);
            working = MonotonicNanoseconds() - lastProgress < kWriteStallNs;
        } else {
            working = false;
        }
    }
    if (written) {
        *written = done;
    }
    return working;
}

bool SerialPort::Purge(bool receive, bool transmit) {
    if (!impl) {
        return false;
    }
    const bool received = !receive || tcflush(impl->descriptor, TCIFLUSH) == 0;
    const bool transmitted = !transmit || tcflush(impl->descriptor, TCOFLUSH) == 0;
    return received && transmitted;
}

void SerialPort::Close() {
    impl.reset();
}

} // namespace platform
