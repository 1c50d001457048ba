// usb_checks_test.cpp - tests of what is found about USB
#include "apps/doctor/checks.h"
#include "tests/apps/doctor/findings.h"

#include <gtest/gtest.h>

namespace {

TEST(UsbChecks, ACameraThatMayNotBeUsedIsAProblemWithTheRule) {
    UsbFacts usb;
    usb.cameras = {{"/dev/bus/usb/002/005", "U-510c", true}};
    EXPECT_EQ(FindingsOf(CheckUsb(usb), "usb-access"),
              "ok: /dev/bus/usb/002/005 can be read and written\n");
    usb.cameras[0].isAccessible = false;
    EXPECT_EQ(WorstOf(CheckUsb(usb), "usb-access"), "problem");
    EXPECT_NE(FindingsOf(CheckUsb(usb), "usb-access").find("/etc/udev/rules.d/70-u3v.rules"),
              std::string::npos);
}

TEST(UsbChecks, LittleMemoryIsAWarningWhenThereIsACamera) {
    UsbFacts usb;
    EXPECT_TRUE(CheckUsb(usb).empty());
    usb.megabytes = 16;
    EXPECT_EQ(WorstOf(CheckUsb(usb), "usb-memory"), "ok");
    usb.cameras = {{"/dev/bus/usb/002/005", "", true}};
    EXPECT_NE(
        FindingsOf(CheckUsb(usb), "usb-memory")
            .find("warning: 16 MiB for all USB transfers together -> echo 1000 > /sys/module"),
        std::string::npos);
    usb.megabytes = 0;
    EXPECT_EQ(FindingsOf(CheckUsb(usb), "usb-memory"),
              "ok: no limit for all USB transfers together\n");
}

} // namespace
