// pseudo_terminal.h - a serial port and its remote end
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace support {

/// A pseudo-terminal: what is written here is received by the port PortName(), and vice versa.
class PseudoTerminal {
public:
    PseudoTerminal() : descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        char buffer[128];
        if (descriptor < 0 || grantpt(descriptor) != 0 || unlockpt(descriptor) != 0 ||
            ptsname_r(descriptor, buffer, sizeof buffer) != 0) {
            throw std::runtime_error("no pseudo-terminal");
        }
        portName = buffer;
    }
    ~PseudoTerminal() { HangUp(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Path of the device file.
    const std::string& PortName() const { return portName; }
    bool Write(const std::string& bytes) const {
        return write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }
    /// Reads what the port has sent, waiting for at least one byte; empty when the port is closed.
    std::string Read() const {
        char buffer[4096];
        const ssize_t count = read(descriptor, buffer, sizeof buffer);
        return std::string(buffer, static_cast<std::size_t>(count > 0 ? count : 0));
    }
    /// The current settings of the port.
    termios Settings() const {
        termios settings{};
        tcgetattr(descriptor, &settings);
        return settings;
    }
    /// Closes this end, as if the device were unplugged.
    void HangUp() {
        if (descriptor >= 0) {
            close(std::exchange(descriptor, -1));
        }
    }

private:
    int descriptor;
    std::string portName;
};

} // namespace support
