#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {
namespace {

constexpr const char* kName = "MIVORA_PLATFORM_TEST";

class Environment : public testing::Test {
protected:
    ~Environment() override { UnsetEnvironment(kName); }
};

TEST_F(Environment, AnUnsetVariableIsEmpty) {
    EXPECT_EQ(GetEnvironment(kName), "");
}

TEST_F(Environment, GivesWhatWasSet) {
    EXPECT_TRUE(SetEnvironment(kName, "one two"));
    EXPECT_EQ(GetEnvironment(kName), "one two");
    EXPECT_TRUE(SetEnvironment(kName, "three=4"));
    EXPECT_EQ(GetEnvironment(kName), "three=4");
}

TEST_F(Environment, TheCLibrarySeesWhatWasSet) {
    EXPECT_TRUE(SetEnvironment(kName, "value"));
    EXPECT_STREQ(std::getenv(kName), "value");
    UnsetEnvironment(kName);
    EXPECT_EQ(std::getenv(kName), nullptr);
}

TEST_F(Environment, MayBeEmpty) {
    EXPECT_TRUE(SetEnvironment(kName, "value"));
    EXPECT_TRUE(SetEnvironment(kName, ""));
    EXPECT_EQ(GetEnvironment(kName), "");
}

TEST_F(Environment, UnsettingRemovesTheVariable) {
    EXPECT_TRUE(SetEnvironment(kName, "value"));
    UnsetEnvironment(kName);
    EXPECT_EQ(GetEnvironment(kName), "");
    UnsetEnvironment(kName);
    EXPECT_EQ(GetEnvironment(kName), "");
}

TEST_F(Environment, KeepsLongValues) {
    for (const std::size_t length : {127u, 128u, 129u, 5000u}) {
        const std::string value(length, 'x');
        EXPECT_TRUE(SetEnvironment(kName, value));
        EXPECT_EQ(GetEnvironment(kName), value);
    }
}

TEST_F(Environment, RefusesNamesThatAreNone) {
    EXPECT_FALSE(SetEnvironment("", "value"));
    EXPECT_FALSE(SetEnvironment("MIVORA_PLATFORM_TEST=x", "value"));
    EXPECT_EQ(GetEnvironment(kName), "");
}

} // namespace
} // namespace platform
