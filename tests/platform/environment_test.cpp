// environment_test.cpp - environment variables
#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {
namespace {

constexpr const char* kVariable = "MIVORA_PLATFORM_TEST";

class Environment : public testing::Test {
protected:
    ~Environment() override { UnsetEnvironment(kVariable); }
};

TEST_F(Environment, AnUnsetVariableIsEmpty) {
    EXPECT_EQ(GetEnvironment(kVariable), "");
}

TEST_F(Environment, ReturnsTheValueThatWasSet) {
    EXPECT_TRUE(SetEnvironment(kVariable, "one two"));
    EXPECT_EQ(GetEnvironment(kVariable), "one two");
    EXPECT_TRUE(SetEnvironment(kVariable, "three=4"));
    EXPECT_EQ(GetEnvironment(kVariable), "three=4");
}

TEST_F(Environment, IsVisibleToTheCLibrary) {
    EXPECT_TRUE(SetEnvironment(kVariable, "value"));
    EXPECT_STREQ(std::getenv(kVariable), "value");
    UnsetEnvironment(kVariable);
    EXPECT_EQ(std::getenv(kVariable), nullptr);
}

TEST_F(Environment, AcceptsAnEmptyValue) {
    EXPECT_TRUE(SetEnvironment(kVariable, "value"));
    EXPECT_TRUE(SetEnvironment(kVariable, ""));
    EXPECT_EQ(GetEnvironment(kVariable), "");
}

TEST_F(Environment, UnsettingRemovesTheVariable) {
    EXPECT_TRUE(SetEnvironment(kVariable, "value"));
    UnsetEnvironment(kVariable);
    EXPECT_EQ(GetEnvironment(kVariable), "");
    UnsetEnvironment(kVariable);
    EXPECT_EQ(GetEnvironment(kVariable), "");
}

TEST_F(Environment, KeepsLongValues) {
    for (const std::size_t length : {127u, 128u, 129u, 5000u}) {
        const std::string value(length, 'x');
        EXPECT_TRUE(SetEnvironment(kVariable, value));
        EXPECT_EQ(GetEnvironment(kVariable), value);
    }
}

TEST_F(Environment, RefusesInvalidNames) {
    EXPECT_FALSE(SetEnvironment("", "value"));
    EXPECT_FALSE(SetEnvironment("MIVORA_PLATFORM_TEST=x", "value"));
    EXPECT_EQ(GetEnvironment(kVariable), "");
}

} // namespace
} // namespace platform
