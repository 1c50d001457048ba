// version_test.cpp - tests of the version of the host library
#include "mivora/version.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

TEST(HostVersion, HasThreeNumbers) {
    unsigned major = 0;
    unsigned minor = 0;
    unsigned patch = 0;
    char more = 0;
    EXPECT_EQ(std::sscanf(MivoraHostVersion(), "%u.%u.%u%c", &major, &minor, &patch, &more), 3)
        << MivoraHostVersion();
    EXPECT_GE(major, 1u);
}

} // namespace
