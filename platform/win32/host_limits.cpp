// host_limits.cpp - what the system allows programs that receive images
#include "platform/host_limits.h"

#include <utility>

namespace platform {

HostLimits::HostLimits(std::string rootDirectory) : root(std::move(rootDirectory)) {}

std::optional<std::uint64_t> HostLimits::ReadNumber(const std::string&) const {
    return std::nullopt;
}

std::optional<std::uint64_t> HostLimits::ReceiveBuffer() const {
    return std::nullopt;
}

bool HostLimits::SetReceiveBuffer(std::uint64_t, std::string* error) const {
    if (error) {
        *error = "this system has no such limit";
    }
    return false;
}

std::optional<std::uint32_t> HostLimits::ReversePathFilter(const std::string&) const {
    return std::nullopt;
}

std::optional<std::uint32_t> HostLimits::UsbMegabytes() const {
    return std::nullopt;
}

std::vector<UsbCamera> HostLimits::ListUsbCameras() const {
    return {};
}

} // namespace platform
