// udp_socket_test.cpp - tests of datagrams, on the loopback interface
#include "platform/udp_socket.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::uint32_t kThisMachine = 0x7F000001;
constexpr std::uint32_t kLongMs = 60000;

TEST(UdpSocket, SendsAndReceives) {
    UdpSocket left;
    UdpSocket right;
    ASSERT_TRUE(left.Open(kThisMachine, 0));
    ASSERT_TRUE(right.Open(kThisMachine, 0));
    EXPECT_NE(left.Port(), 0);
    EXPECT_TRUE(left.Send(kThisMachine, right.Port(), {1, 2, 3}));
    const auto received = right.Receive(kLongMs);
    ASSERT_TRUE(received);
    EXPECT_EQ(received->address, kThisMachine);
    EXPECT_EQ(received->port, left.Port());
    EXPECT_EQ(received->data, (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(UdpSocket, SharesItsPortWithOneThatListensToAllAddresses) {
    UdpSocket one;
    UdpSocket all;
    UdpSocket sender;
    ASSERT_TRUE(one.Open(kThisMachine, 0));
    ASSERT_TRUE(all.Open(0, one.Port()));
    ASSERT_TRUE(sender.Open(kThisMachine, 0));
    EXPECT_TRUE(sender.Send(kThisMachine, one.Port(), {7}));
    EXPECT_TRUE(one.Receive(kLongMs)) << "the one that names the address has it";
}

TEST(UdpSocket, ReceivesNothingWhereNothingIsSent) {
    UdpSocket socket;
    ASSERT_TRUE(socket.Open(kThisMachine, 0));
    EXPECT_FALSE(socket.Receive(0));
}

TEST(UdpSocket, ThatIsNotOpenDoesNothing) {
    UdpSocket socket;
    EXPECT_EQ(socket.Port(), 0);
    EXPECT_FALSE(socket.Send(kThisMachine, 9, {1}));
    EXPECT_FALSE(socket.Receive(0));
}

} // namespace
} // namespace platform
