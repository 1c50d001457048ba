// udp_socket_posix_test.cpp - what Linux refuses a socket for datagrams; Wine takes any address
#include "platform/udp_socket.h"

#include "tests/support/posix/failing_calls.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace platform {
namespace {

TEST(UdpSocket, IsRefusedAnAddressOfAnotherMachine) {
    UdpSocket socket;
    std::string error;
    EXPECT_FALSE(socket.Open(0x01020304, 0, &error));
    EXPECT_NE(error, "");
}

TEST(UdpSocket, IsNotOpenWhenTheSystemRefusesIt) {
    struct Refusal {
        const char* function;
        int spared;
        std::uint16_t port;
    };
    UdpSocket other;
    ASSERT_TRUE(other.Open(0x7F000001, 0));
    // The second option is that of sharing: of a known port before, of a free one after binding it.
    for (const Refusal& refusal :
         {Refusal{"socket", 0, 0}, Refusal{"setsockopt", 0, 0}, Refusal{"bind", 0, 0},
          Refusal{"setsockopt", 1, 0}, Refusal{"setsockopt", 1, other.Port()}}) {
        UdpSocket socket;
        std::string error;
        {
            const support::FailingCalls failing(refusal.function, ENOBUFS, 1, refusal.spared);
            EXPECT_FALSE(socket.Open(0x7F000001, refusal.port, &error)) << refusal.function;
            EXPECT_EQ(failing.Failed(), 1) << refusal.function;
        }
        EXPECT_EQ(error, std::strerror(ENOBUFS)) << refusal.function;
    }
    const support::FailingCalls failing("bind", EACCES);
    EXPECT_FALSE(UdpSocket().Open(0x7F000001, 0)) << "nobody wants the reason";
}

TEST(UdpSocket, ReceivesNothingThatCannotBeRead) {
    UdpSocket socket;
    ASSERT_TRUE(socket.Open(0x7F000001, 0));
    ASSERT_TRUE(socket.Send(0x7F000001, socket.Port(), {1}));
    {
        const support::FailingCalls failing("recvfrom", ENOMEM);
        EXPECT_FALSE(socket.Receive(60000));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_TRUE(socket.Receive(60000)) << "it is still there";
}

} // namespace
} // namespace platform
