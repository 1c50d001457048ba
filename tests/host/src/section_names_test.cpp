// section_names_test.cpp - names of ini sections
#include "mivora/grabber.h"

#include <gtest/gtest.h>

namespace {

TEST(SectionNames, AreBuiltFromTheNumber) {
    char buffer[32];
    InitGrabberSectStr(buffer, sizeof buffer, 0);
    EXPECT_STREQ(buffer, "Grabber_0");
    InitGrabberSectStr(buffer, sizeof buffer, 12);
    EXPECT_STREQ(buffer, "Grabber_12");
    InitGrabberSectStr(buffer, 4, 1);
    EXPECT_STREQ(buffer, "Gra");
    InitGrabberSectStr(nullptr, 0, 1);
}

} // namespace
