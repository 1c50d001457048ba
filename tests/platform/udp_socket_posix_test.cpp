// udp_socket_posix_test.cpp - what Linux refuses a socket for datagrams; Wine takes any address
#include "platform/udp_socket.h"

#include <gtest/gtest.h>

#include <string>

namespace platform {
namespace {

TEST(UdpSocket, IsRefusedAnAddressOfAnotherMachine) {
    UdpSocket socket;
    std::string error;
    EXPECT_FALSE(socket.Open(0x01020304, 0, &error));
    EXPECT_NE(error, "");
}

} // namespace
} // namespace platform
