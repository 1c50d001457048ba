// ip_text_test.cpp - tests of IPv4 addresses as text
#include "apps/doctor/ip_text.h"

#include <gtest/gtest.h>

namespace {

TEST(IpText, HasFourNumbers) {
    EXPECT_EQ(IpText(0xC0000201), "192.0.2.1");
    EXPECT_EQ(SubnetText(0xC0000201, 0xFFFFFF00), "192.0.2.1/24");
}

TEST(IpText, IsRead) {
    EXPECT_EQ(ParseIp("192.0.2.1"), 0xC0000201);
    EXPECT_EQ(ParseIp("255.255.255.255"), 0xFFFFFFFF);
    for (const char* text : {"", "1.2.3", "1.2.3.4.", "1.2.3.4.5", "1.2.3.256", "1..3.4",
                             " 1.2.3.4", "1.2.3.4 ", "a.2.3.4", "-1.2.3.4"}) {
        EXPECT_EQ(ParseIp(text), std::nullopt) << text;
    }
}

} // namespace
