// cmd_channel_test.cpp - configuration and writing of command channels
#include "mivora/cmd_channel.h"

#include "platform/clock.h"
#include "tests/host/test_grabber.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(CmdChannel, KnowsWhetherItIsOpen) {
    FakeChannel channel;
    EXPECT_FALSE(channel.IsOpen());
    channel.SetOpen(true);
    EXPECT_TRUE(channel.IsOpen());
    channel.SetOpen(false);
    EXPECT_FALSE(channel.IsOpen());
}

TEST(CmdChannel, KeepsItsConfigurationInASection) {
    const support::TemporaryDirectory directory;
    CIniFile ini;
    ASSERT_TRUE(ini.Open(directory.PathOf("c.ini").c_str()));
    FakeChannel channel;
    channel.setting = "kept";
    EXPECT_EQ(channel.SetConfig(&ini, "Channel_0_0"), MV_OK);
    FakeChannel other;
    EXPECT_EQ(other.GetConfig(&ini, "Channel_0_0"), MV_OK);
    EXPECT_EQ(other.setting, "kept");
    EXPECT_EQ(channel.SetConfig(nullptr, "s"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel.SetConfig(&ini, nullptr), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel.SetConfig(&ini, "bad]section"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel.GetConfig(nullptr, "s"), MV_CONFIG_NOT_LOADED);
    EXPECT_EQ(channel.GetConfig(&ini, nullptr), MV_CONFIG_NOT_LOADED);
}

TEST(CmdChannel, WritesATextWithoutItsTerminator) {
    FakeChannel channel;
    std::uint64_t count = 9;
    EXPECT_EQ(channel.WriteCString("abc", &count), MV_OK);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(channel.WriteCString("", &count), MV_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel.WriteCString("d", nullptr), MV_OK);
    EXPECT_EQ(channel.written, "abcd");
    count = 9;
    EXPECT_EQ(channel.WriteCString(nullptr, &count), MV_BAD_VALUE);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel.WriteCString(nullptr, nullptr), MV_BAD_VALUE);
}

constexpr std::uint32_t kOneHourMs = 3600000;
const std::uint8_t kThreeBytes[3] = {'x', 'y', 'z'};

TEST(DelayedWrite, PausesBetweenTwoBytes) {
    FakeChannel channel;
    std::uint64_t count = 0;
    const std::uint64_t start = platform::MonotonicNanoseconds();
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, &count, 20), MV_OK);
    EXPECT_GE(platform::MonotonicNanoseconds() - start, 2u * 20000000u);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(channel.written, "xyz");
}

TEST(DelayedWrite, DoesNotPauseWithoutADelayOrForOneByte) {
    FakeChannel channel;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, nullptr, 0), MV_OK);
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 1, nullptr, kOneHourMs), MV_OK);
    std::uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 0, &count, kOneHourMs), MV_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel.written, "xyzx");
}

TEST(DelayedWrite, StopsAtTheFirstByteThatFails) {
    FakeChannel channel;
    channel.result = MV_WRITE_FAILED;
    channel.failFrom = 2;
    std::uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, &count, 1), MV_WRITE_FAILED);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(channel.written, "xy");
}

TEST(DelayedWrite, RefusesANullBuffer) {
    FakeChannel channel;
    std::uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(nullptr, 3, &count, 25), MV_BAD_VALUE);
    EXPECT_EQ(count, 0u);
}

} // namespace
