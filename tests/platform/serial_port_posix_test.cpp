// serial_port_posix_test.cpp - serial ports on a pseudo-terminal
#include "platform/serial_port.h"

#include "platform/clock.h"
#include "tests/support/posix/pseudo_terminal.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <thread>

namespace platform {
namespace {

class OpenSerialPort : public testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Open(115200, SerialParity::kNone, 8, SerialStopBits::kOne, &error)) << error;
    }

    bool Open(std::uint32_t baud, SerialParity parity, unsigned byteSize, SerialStopBits stopBits,
              std::string* error = nullptr) {
        return port.Open(terminal.PortName(), baud, parity, byteSize, stopBits, error);
    }

    // Reads until `size` bytes have arrived.
    std::string Receive(std::size_t size) {
        std::string received;
        support::WaitUntil([&] {
            char buffer[100];
            std::size_t count = 0;
            EXPECT_TRUE(port.Read(buffer, sizeof buffer, count));
            received.append(buffer, count);
            return received.size() >= size;
        });
        return received;
    }

    support::PseudoTerminal terminal;
    SerialPort port;
};

std::string EveryByte() {
    std::string bytes;
    for (int value = 0; value < 256; ++value) {
        bytes.push_back(static_cast<char>(value));
    }
    return bytes;
}

TEST_F(OpenSerialPort, ReadsNothingWithoutWaiting) {
    char buffer[4];
    std::size_t count = 99;
    EXPECT_TRUE(port.Read(buffer, sizeof buffer, count));
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(port.Read(buffer, 0, count));
    EXPECT_EQ(count, 0u);
}

TEST_F(OpenSerialPort, ReceivesEveryByteUnchanged) {
    ASSERT_TRUE(terminal.Write(EveryByte()));
    EXPECT_EQ(Receive(256), EveryByte());
}

TEST_F(OpenSerialPort, SendsEveryByteUnchanged) {
    const std::string bytes = EveryByte();
    std::size_t written = 0;
    ASSERT_TRUE(port.Write(bytes.data(), bytes.size(), &written));
    EXPECT_EQ(written, bytes.size());
    std::string sent;
    while (sent.size() < bytes.size()) {
        const std::string more = terminal.Read();
        ASSERT_FALSE(more.empty());
        sent += more;
    }
    EXPECT_EQ(sent, bytes);
}

TEST_F(OpenSerialPort, ReadsNoMoreThanThereIsRoomFor) {
    ASSERT_TRUE(terminal.Write("abcde"));
    std::string received;
    EXPECT_TRUE(support::WaitUntil([&] {
        char buffer[2];
        std::size_t count = 0;
        EXPECT_TRUE(port.Read(buffer, sizeof buffer, count));
        EXPECT_LE(count, sizeof buffer);
        received.append(buffer, count);
        return received == "abcde";
    }));
}

TEST_F(OpenSerialPort, SendsMoreThanTheOutputBufferHolds) {
    const std::string bytes(300'000, 'x');
    std::size_t received = 0;
    std::thread reader([&] {
        while (received < bytes.size()) {
            const std::string more = terminal.Read();
            if (more.empty()) {
                break;
            }
            received += more.size();
        }
    });
    std::size_t written = 0;
    EXPECT_TRUE(port.Write(bytes.data(), bytes.size(), &written));
    EXPECT_EQ(written, bytes.size());
    reader.join();
    EXPECT_EQ(received, bytes.size());
}

TEST_F(OpenSerialPort, TimesOutWhenNothingIsAccepted) {
    const std::string bytes(300'000, 'x');
    std::size_t written = 0;
    const std::uint64_t start = MonotonicNanoseconds();
    EXPECT_FALSE(port.Write(bytes.data(), bytes.size(), &written));
    EXPECT_GE(MonotonicNanoseconds() - start, 5'000'000'000u);
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, bytes.size());
}

TEST_F(OpenSerialPort, WritingNothingSucceeds) {
    std::size_t written = 99;
    EXPECT_TRUE(port.Write("", 0, &written));
    EXPECT_EQ(written, 0u);
}

TEST_F(OpenSerialPort, PurgingDiscardsReceivedData) {
    ASSERT_TRUE(terminal.Write("stale"));
    std::size_t count = 0;
    char first = 0;
    // The other bytes arrive together with the first one.
    ASSERT_TRUE(support::WaitUntil([&] { return port.Read(&first, 1, count) && count == 1; }));
    EXPECT_TRUE(port.Purge(false, true));
    EXPECT_TRUE(port.Purge(false, false));
    ASSERT_TRUE(port.Read(&first, 1, count));
    EXPECT_EQ(count, 1u);
    EXPECT_TRUE(port.Purge(true, false));
    ASSERT_TRUE(terminal.Write("fresh"));
    EXPECT_EQ(Receive(5), "fresh");
}

TEST_F(OpenSerialPort, OpeningDiscardsReceivedData) {
    ASSERT_TRUE(terminal.Write("stale"));
    ASSERT_TRUE(Open(9600, SerialParity::kNone, 8, SerialStopBits::kOne));
    ASSERT_TRUE(terminal.Write("fresh"));
    EXPECT_EQ(Receive(5), "fresh");
}

TEST_F(OpenSerialPort, SetsTheRateAndIgnoresTheModemLines) {
    ASSERT_TRUE(Open(230400, SerialParity::kNone, 8, SerialStopBits::kOne));
    const termios settings = terminal.Settings();
    EXPECT_EQ(cfgetospeed(&settings), static_cast<speed_t>(B230400));
    EXPECT_EQ(settings.c_cflag & (CLOCAL | CREAD), static_cast<tcflag_t>(CLOCAL | CREAD));
    EXPECT_EQ(settings.c_cflag & (CRTSCTS | CSTOPB), 0u);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(settings.c_oflag & OPOST, 0u);
}

TEST_F(OpenSerialPort, SetsTwoStopBits) {
    ASSERT_TRUE(Open(300, SerialParity::kEven, 7, SerialStopBits::kTwo));
    EXPECT_NE(terminal.Settings().c_cflag & CSTOPB, 0u);
    // A pseudo-terminal ignores parity; setting it must not fail.
    ASSERT_TRUE(Open(300, SerialParity::kOdd, 5, SerialStopBits::kOneAndHalf));
    EXPECT_NE(terminal.Settings().c_cflag & CSTOPB, 0u);
    ASSERT_TRUE(Open(300, SerialParity::kOdd, 6, SerialStopBits::kOne));
    EXPECT_EQ(terminal.Settings().c_cflag & CSTOPB, 0u);
}

TEST_F(OpenSerialPort, OpensAtEveryCommonRate) {
    constexpr std::uint32_t kRates[] = {300,   600,   1200,  2400,   4800,  9600,
                                        19200, 38400, 57600, 115200, 230400};
    for (const std::uint32_t baud : kRates) {
        EXPECT_TRUE(Open(baud, SerialParity::kNone, 8, SerialStopBits::kOne)) << baud;
    }
}

TEST_F(OpenSerialPort, RefusesUnsupportedSettings) {
    std::string error;
    EXPECT_FALSE(Open(12345, SerialParity::kNone, 8, SerialStopBits::kOne, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(port.IsOpen());
    EXPECT_FALSE(Open(9600, SerialParity::kNone, 4, SerialStopBits::kOne));
    EXPECT_FALSE(Open(9600, SerialParity::kNone, 9, SerialStopBits::kOne));
    EXPECT_FALSE(Open(9600, SerialParity::kNone, 8, SerialStopBits::kOneAndHalf));
}

TEST_F(OpenSerialPort, RefusesADeviceThatIsNotAPort) {
    std::string error;
    EXPECT_FALSE(
        port.Open("/dev/null", 9600, SerialParity::kNone, 8, SerialStopBits::kOne, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(port.IsOpen());
}

TEST_F(OpenSerialPort, CanBeOpenedAgainAfterClosing) {
    port.Close();
    EXPECT_FALSE(port.IsOpen());
    ASSERT_TRUE(Open(9600, SerialParity::kNone, 8, SerialStopBits::kOne));
    ASSERT_TRUE(terminal.Write("again"));
    EXPECT_EQ(Receive(5), "again");
}

TEST_F(OpenSerialPort, FailsAfterAHangUp) {
    terminal.HangUp();
    char byte = 'x';
    std::size_t count = 0;
    EXPECT_FALSE(port.Write(&byte, 1));
    EXPECT_TRUE(support::WaitUntil([&] { return !port.Read(&byte, 1, count); }));
    EXPECT_EQ(count, 0u);
}

} // namespace
} // namespace platform
