// host_limits.cpp - what the system allows programs that receive images
#include "platform/host_limits.h"

#include "platform/file_system.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr const char* kReceiveBuffer = "/proc/sys/net/core/rmem_max";
constexpr const char* kUsbMemory = "/sys/module/usbcore/parameters/usbfs_memory_mb";
constexpr const char* kUsbDevices = "/sys/bus/usb/devices";

/// A file of one line; empty when it cannot be read.
std::string Line(const std::string& path) {
    std::string content;
    ReadWholeFile(path, content);
    return content.substr(0, content.find('\n'));
}

std::optional<std::uint64_t> NumberOf(const std::string& text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// An interface of a USB device that is the control interface of a USB3 Vision camera.
bool IsVisionInterface(const std::string& directory) {
    return Line(directory + "/bInterfaceClass") == "ef" &&
           Line(directory + "/bInterfaceSubClass") == "05" &&
           Line(directory + "/bInterfaceProtocol") == "00";
}

} // namespace

HostLimits::HostLimits(std::string rootDirectory) : root(std::move(rootDirectory)) {}

std::optional<std::uint64_t> HostLimits::ReadNumber(const std::string& path) const {
    return NumberOf(Line(root + path));
}

std::optional<std::uint64_t> HostLimits::ReceiveBuffer() const {
    return ReadNumber(kReceiveBuffer);
}

bool HostLimits::SetReceiveBuffer(std::uint64_t bytes, std::string* error) const {
    // Not by way of a temporary file: the name stands for a number in the kernel.
    const int file = open((root + kReceiveBuffer).c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC);
    int failure = file < 0 ? errno : 0;
    if (file >= 0) {
        const std::string text = std::to_string(bytes) + "\n";
        const bool isWritten =
            write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        failure = isWritten ? 0 : errno;
        close(file);
    }
    const bool isSet = failure == 0 && ReceiveBuffer() == bytes;
    if (!isSet && error) {
        *error = failure == 0 ? "the system keeps another value"
                              : std::system_category().message(failure);
    }
    return isSet;
}

std::optional<std::uint32_t> HostLimits::ReversePathFilter(const std::string& interfaceName) const {
    const std::string directory = "/proc/sys/net/ipv4/conf/";
    const auto one = ReadNumber(directory + interfaceName + "/rp_filter");
    const auto all = ReadNumber(directory + "all/rp_filter");
    if (!one && !all) {
        return std::nullopt;
    }
    // The kernel takes the greater of the two.
    return static_cast<std::uint32_t>(std::max(one.value_or(0), all.value_or(0)));
}

std::optional<std::uint32_t> HostLimits::UsbMegabytes() const {
    const auto number = ReadNumber(kUsbMemory);
    return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
}

std::vector<UsbCamera> HostLimits::ListUsbCameras() const {
    std::vector<UsbCamera> cameras;
    std::error_code error;
    std::filesystem::directory_iterator entry(root + kUsbDevices, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        // "2-1:1.0" is interface 0 of the device "2-1".
        const std::string name = entry->path().filename().string();
        const std::size_t colon = name.find(':');
        if (colon == std::string::npos || !IsVisionInterface(entry->path().string())) {
            continue;
        }
        const std::string device = root + kUsbDevices + "/" + name.substr(0, colon);
        const auto bus = NumberOf(Line(device + "/busnum"));
        const auto number = NumberOf(Line(device + "/devnum"));
        if (!bus || !number) {
            continue;
        }
        char node[64];
        std::snprintf(node, sizeof node, "/dev/bus/usb/%03u/%03u", static_cast<unsigned>(*bus),
                      static_cast<unsigned>(*number));
        cameras.push_back(
            {node, Line(device + "/product"), access((root + node).c_str(), R_OK | W_OK) == 0});
    }
    std::sort(cameras.begin(), cameras.end(),
              [](const auto& left, const auto& right) { return left.node < right.node; });
    return cameras;
}

} // namespace platform
