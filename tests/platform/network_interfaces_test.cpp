// network_interfaces_test.cpp - tests of the list of network interfaces
#include "platform/network_interfaces.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace platform {
namespace {

TEST(NetworkInterfaces, HaveTheLoopbackInterface) {
    const std::vector<NetworkInterface> interfaces = ListNetworkInterfaces();
    const auto loopback =
        std::find_if(interfaces.begin(), interfaces.end(),
                     [](const NetworkInterface& one) { return one.address == 0x7F000001; });
    ASSERT_NE(loopback, interfaces.end());
    EXPECT_TRUE(loopback->isLoopback);
    EXPECT_TRUE(loopback->isUp);
    EXPECT_EQ(loopback->netmask, 0xFF000000);
    EXPECT_NE(loopback->name, "");
}

TEST(NetworkInterfaces, HaveAMaskWhereTheyHaveAnAddress) {
    for (const NetworkInterface& one : ListNetworkInterfaces()) {
        EXPECT_NE(one.name, "");
        EXPECT_EQ(one.address == 0, one.netmask == 0) << one.name;
    }
}

} // namespace
} // namespace platform
