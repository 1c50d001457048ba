// serial_port_test.cpp - ports that are closed or missing
#include "platform/serial_port.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(SerialPort, FailsEveryOperationWhileClosed) {
    SerialPort port;
    EXPECT_FALSE(port.IsOpen());
    char byte = 'x';
    std::size_t count = 1;
    EXPECT_FALSE(port.Read(&byte, 1, count));
    EXPECT_EQ(count, 0u);
    count = 1;
    EXPECT_FALSE(port.Write(&byte, 1, &count));
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(port.Write(&byte, 0));
    EXPECT_FALSE(port.Purge(true, true));
    port.Close();
    EXPECT_FALSE(port.IsOpen());
}

TEST(SerialPort, ReportsWhyAMissingPortCannotBeOpened) {
    SerialPort port;
    for (const char* name : {"COM250", "/dev/mivora-no-port", "mivora-no-port", ""}) {
        std::string error;
        EXPECT_FALSE(port.Open(name, 9600, SerialParity::kNone, 8, SerialStopBits::kOne, &error))
            << name;
        EXPECT_FALSE(error.empty()) << name;
        EXPECT_FALSE(port.IsOpen());
        EXPECT_FALSE(port.Open(name, 9600, SerialParity::kNone, 8, SerialStopBits::kOne));
    }
}

} // namespace
} // namespace platform
