// network_interfaces_posix_test.cpp - packet sizes of network interfaces, which Linux always tells
#include "platform/network_interfaces.h"

#include "platform/file_system.h"
#include "tests/support/posix/failing_calls.h"

#include <gtest/gtest.h>

#include <cerrno>

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

TEST(NetworkInterfacesPosix, AreNoneWhenTheSystemListsNone) {
    const support::FailingCalls failing("getifaddrs", ENOMEM);
    EXPECT_TRUE(ListNetworkInterfaces().empty());
    EXPECT_EQ(failing.Failed(), 1);
}

TEST(NetworkInterfacesPosix, HaveNoPacketSizeWithoutASocketToAskWith) {
    const support::FailingCalls failing("socket", EMFILE);
    const std::vector<NetworkInterface> interfaces = ListNetworkInterfaces();
    EXPECT_EQ(failing.Failed(), 1);
    ASSERT_FALSE(interfaces.empty());
    for (const NetworkInterface& one : interfaces) {
        EXPECT_EQ(one.mtu, 0u) << one.name;
    }
}

} // namespace
} // namespace platform
