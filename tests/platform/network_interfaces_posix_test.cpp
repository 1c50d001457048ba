// network_interfaces_posix_test.cpp - packet sizes of network interfaces, which Linux always tells
#include "platform/network_interfaces.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(NetworkInterfacesPosix, HaveThePacketSizeThatTheKernelShows) {
    const std::vector<NetworkInterface> interfaces = ListNetworkInterfaces();
    ASSERT_FALSE(interfaces.empty());
    for (const NetworkInterface& one : interfaces) {
        std::string shown;
        ASSERT_TRUE(ReadWholeFile("/sys/class/net/" + one.name + "/mtu", shown)) << one.name;
        EXPECT_EQ(std::to_string(one.mtu) + "\n", shown) << one.name;
    }
}

} // namespace
} // namespace platform
