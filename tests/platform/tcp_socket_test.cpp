// tcp_socket_test.cpp - tests of connections, on the loopback interface
#include "platform/tcp_socket.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace platform {
namespace {

constexpr std::uint32_t kTcpHost = 0x7F000001;
constexpr std::uint32_t kTcpLongMs = 60000;

/// Listens for as long as it lives: a connection closes any socket.
class Listening {
public:
    Listening() : handle(ListenTcp(kTcpHost, 0, error)), socket(handle) {}
    std::uint16_t Port() const { return TcpPort(handle); }
    std::string error;

private:
    const TcpHandle handle;
    const TcpConnection socket;
};

TEST(TcpSocket, ConnectsToWhereSomebodyListens) {
    std::uint16_t port = 0;
    {
        const Listening listening;
        ASSERT_EQ(listening.error, "");
        port = listening.Port();
        EXPECT_NE(port, 0);
        EXPECT_TRUE(TcpConnection(kTcpHost, port).IsOpen());
    }
    EXPECT_FALSE(TcpConnection(kTcpHost, port).IsOpen());
}

TEST(TcpSocket, SharesNoPort) {
    const Listening listening;
    std::string error;
    EXPECT_EQ(ListenTcp(kTcpHost, listening.Port(), error), kNoTcpHandle);
    EXPECT_NE(error, "");
}

TEST(TcpSocket, ReceivesNothingWhereNothingIsSent) {
    const Listening listening;
    TcpConnection connection(kTcpHost, listening.Port());
    std::array<char, 16> data;
    EXPECT_FALSE(connection.Receive(data.data(), data.size(), 0));
    EXPECT_FALSE(connection.HasEnded());
    EXPECT_EQ(connection.Send("abc", 3, kTcpLongMs), 3u);
}

TEST(TcpSocket, StopsSendingToWhoDoesNotRead) {
    const Listening listening;
    TcpConnection connection(kTcpHost, listening.Port());
    connection.LimitSendBuffer(4096);
    const std::string data(1 << 20, 'x');
    std::size_t sent = 0;
    while (const auto count = connection.Send(data.data(), data.size(), 0)) {
        sent += *count;
        ASSERT_LT(sent, std::size_t{1} << 30) << "nobody reads that";
    }
    EXPECT_GT(sent, 0u);
}

TEST(TcpSocket, ThatIsShutDownReadsTheEnd) {
    const Listening listening;
    TcpConnection connection(kTcpHost, listening.Port());
    connection.Shutdown();
    std::array<char, 16> data;
    EXPECT_EQ(connection.Receive(data.data(), data.size(), kTcpLongMs).value_or(0), 0u);
    EXPECT_TRUE(connection.HasEnded());
}

} // namespace
} // namespace platform
