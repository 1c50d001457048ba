// host_limits.h - what the system allows programs that receive images
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// A USB3 Vision camera as the system sees it, whether or not this process may use it.
struct UsbCamera {
    std::string node; ///< file that stands for the device, "/dev/bus/usb/002/005"
    std::string product;
    bool isAccessible = false; ///< this process may read and write it
};

/// Reads and changes limits of the system. Windows has none of them: there everything is unknown
/// and nothing can be changed. Any thread.
class HostLimits {
public:
    /// `rootDirectory` stands before the system's paths, for tests.
    explicit HostLimits(std::string rootDirectory = {});

    /// The largest receive buffer in bytes that a socket can ask for.
    std::optional<std::uint64_t> ReceiveBuffer() const;
    /// Sets it until the system starts again, and reads it back. False when it did not become so;
    /// `error` (unless null) then has the system's message.
    bool SetReceiveBuffer(std::uint64_t bytes, std::string* error = nullptr) const;
    /// Whether the interface drops packets whose senders are reached another way: 0 no, 1 strictly,
    /// 2 only those of senders that are not reached at all.
    std::optional<std::uint32_t> ReversePathFilter(const std::string& interfaceName) const;
    /// The memory in MiB that all USB transfers of all programs have; 0 is without limit.
    std::optional<std::uint32_t> UsbMegabytes() const;
    /// The USB3 Vision cameras that are plugged in.
    std::vector<UsbCamera> ListUsbCameras() const;

private:
    std::optional<std::uint64_t> ReadNumber(const std::string& path) const;

    std::string root;
};

} // namespace platform
