#include "platform/clock.h"
#include "tests/host/test_grabber.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

TEST(ChannelList, IsEmptyAtFirst) {
    TestGrabber grabber;
    EXPECT_EQ(grabber.GetNumCmdChannels(), 0u);
    EXPECT_EQ(grabber.GetActCmdChannelIndex(), -1);
    EXPECT_EQ(grabber.GetFirstCmdChannel(), nullptr);
    EXPECT_EQ(grabber.GetActCmdChannel(), nullptr);
    EXPECT_EQ(grabber.GetCmdChannel(0), nullptr);
    EXPECT_EQ(grabber.SetActCmdChannelIndex(0), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.SetActCmdChannelIndex(-1), MV_OK);
}

TEST(ChannelList, TakesChannelsAndMakesTheLastOneActive) {
    TestGrabber grabber;
    FakeChannel* const first = grabber.AddFakeChannel();
    FakeChannel* const second = grabber.AddFakeChannel();
    EXPECT_EQ(grabber.GetNumCmdChannels(), 2u);
    EXPECT_EQ(grabber.GetFirstCmdChannel(), first);
    EXPECT_EQ(grabber.GetCmdChannel(1), second);
    EXPECT_EQ(grabber.GetCmdChannel(2), nullptr);
    EXPECT_EQ(grabber.GetCmdChannel(-1), nullptr);
    EXPECT_EQ(grabber.GetActCmdChannelIndex(), 1);
    EXPECT_EQ(grabber.GetActCmdChannel(), second);
    EXPECT_EQ(grabber.SetActCmdChannelIndex(0), MV_OK);
    EXPECT_EQ(grabber.GetActCmdChannel(), first);
    EXPECT_EQ(grabber.SetActCmdChannelIndex(2), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.SetActCmdChannelIndex(-2), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.GetActCmdChannelIndex(), 0);
}

TEST(ChannelList, TakesNoChannelTwice) {
    TestGrabber grabber;
    FakeChannel* const channel = grabber.AddFakeChannel();
    EXPECT_EQ(grabber.AddCmdChannel(channel), MV_BAD_VALUE);
    EXPECT_EQ(grabber.AddCmdChannel(nullptr), MV_BAD_VALUE);
    EXPECT_EQ(grabber.GetNumCmdChannels(), 1u);
}

TEST(ChannelList, ClosesAndDeletesWhatItHolds) {
    TestGrabber grabber;
    grabber.AddFakeChannel();
    grabber.AddFakeChannel();
    grabber.AddCmdChannel(grabber.CreateCmdChannel(0));
    grabber.DeleteCmdChannelList();
    EXPECT_EQ(grabber.destroyedChannels, 2);
    EXPECT_EQ(grabber.GetNumCmdChannels(), 0u);
    EXPECT_EQ(grabber.GetActCmdChannelIndex(), -1);
    grabber.DeleteCmdChannelList();
}

TEST(ChannelList, LosesNoChannelThatTheModuleForgot) {
    int destroyed = 0;
    {
        TestGrabber grabber;
        grabber.forgetsChannels = true;
        grabber.AddFakeChannel()->destroyed = &destroyed;
        grabber.AddCmdChannel(grabber.CreateCmdChannel(0));
        grabber.AddFakeChannel()->destroyed = &destroyed;
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(ChannelList, NamesTheSectionOfAChannel) {
    TestGrabber grabber;
    char section[64];
    grabber.GetCmdChannelSection(3, section, sizeof section);
    EXPECT_STREQ(section, "Channel_0_3");
    grabber.GetCmdChannelSection(3, section, 5);
    EXPECT_STREQ(section, "Chan");
}

TEST(CmdOperations, AnswerThatThereIsNoChannel) {
    TestGrabber grabber;
    uint8_t byte = 'x';
    uint64_t count = 9;
    EXPECT_EQ(grabber.CMDOpen(), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.CMDReadByte(&byte, &count), MV_NO_CHANNEL);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(grabber.CMDWriteByte(&byte, &count), MV_NO_CHANNEL);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(grabber.CMDReadBuffer(&byte, 1, &count), MV_NO_CHANNEL);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(grabber.CMDWriteBuffer(&byte, 1, &count), MV_NO_CHANNEL);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(grabber.CMDWriteCString("x", &count), MV_NO_CHANNEL);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(grabber.CMDWriteCString("x", nullptr), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.CMDPurge(3), MV_NO_CHANNEL);
    EXPECT_EQ(grabber.CMDClose(), MV_NO_CHANNEL);
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, &exit), MV_NO_CHANNEL);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
}

TEST(CmdOperations, GoToTheActiveChannelWithItsAnswer) {
    TestGrabber grabber;
    FakeChannel* const channel = grabber.AddFakeChannel();
    uint8_t bytes[4] = {'a', 'b', 'c', 'd'};
    uint64_t count = 0;
    EXPECT_EQ(grabber.CMDOpen(), MV_OK);
    EXPECT_EQ(grabber.CMDWriteByte(bytes, &count), MV_OK);
    EXPECT_EQ(grabber.CMDWriteBuffer(bytes + 1, 2, &count), MV_OK);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(grabber.CMDWriteCString("text", &count), MV_OK);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(channel->written, "abctext");
    EXPECT_EQ(grabber.CMDReadByte(bytes, &count), MV_OK);
    EXPECT_EQ(bytes[0], 'r');
    EXPECT_EQ(grabber.CMDReadBuffer(bytes, 3, &count), MV_OK);
    EXPECT_EQ(bytes[0], 'R');
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(grabber.CMDPurge(3), MV_OK);
    EXPECT_EQ(grabber.CMDClose(), MV_OK);
    EXPECT_EQ(channel->calls, Calls({"Open", "WriteByte", "WriteBuffer", "WriteBuffer", "ReadByte",
                                     "ReadBuffer", "Purge 3", "Close"}));
    channel->result = MV_PURGE_FAILED;
    EXPECT_EQ(grabber.CMDPurge(1), MV_PURGE_FAILED);
}

TEST(SelectCmdDialog, SavesTheChannelWhenItsDialogEndsWithOk) {
    const support::TemporaryDirectory directory;
    TestGrabber grabber;
    ASSERT_EQ(grabber.SetGrabberIni(directory.PathOf("g.ini").c_str(), 2), MV_OK);
    FakeChannel* const channel = grabber.AddFakeChannel();
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    EXPECT_EQ(grabber.SelectCmdDialog(reinterpret_cast<MV_WINDOW>(uintptr_t{5}), &exit), MV_OK);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
    EXPECT_EQ(channel->calls, Calls({"ConfigDialog 5"}));
    EXPECT_EQ(grabber.GetIni()->GetNumSections(), 0u);
    channel->dialogExit = MV_DLG_OK;
    channel->setting = "chosen";
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, &exit), MV_OK);
    EXPECT_EQ(exit, MV_DLG_OK);
    EXPECT_EQ(directory.Read("g.ini"), "[Channel_2_0]\nTYPE=Fake\nSETTING=chosen\n");
    channel->result = MV_REFUSED;
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, nullptr), MV_REFUSED);
}

TEST(SelectCmdDialog, TellsWhenTheChoiceCannotBeSaved) {
    TestGrabber grabber;
    grabber.AddFakeChannel()->dialogExit = MV_DLG_OK;
    MV_DLG_EXITCODE exit = MV_DLG_CANCEL;
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, &exit), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(exit, MV_DLG_OK);
}

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
    uint64_t count = 9;
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

constexpr uint32_t kForEver = 3600000;
const uint8_t kThreeBytes[3] = {'x', 'y', 'z'};

TEST(DelayedWrite, RestsBetweenTwoBytes) {
    FakeChannel channel;
    uint64_t count = 0;
    const uint64_t start = platform::MonotonicNanoseconds();
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, &count, 20), MV_OK);
    EXPECT_GE(platform::MonotonicNanoseconds() - start, 2u * 20000000u);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(channel.written, "xyz");
}

TEST(DelayedWrite, DoesNotRestWithoutADelayOrForOneByte) {
    FakeChannel channel;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, nullptr, 0), MV_OK);
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 1, nullptr, kForEver), MV_OK);
    uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 0, &count, kForEver), MV_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel.written, "xyzx");
}

TEST(DelayedWrite, StopsAtTheFirstByteThatFails) {
    FakeChannel channel;
    channel.result = MV_WRITE_FAILED;
    channel.failFrom = 2;
    uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(kThreeBytes, 3, &count, 1), MV_WRITE_FAILED);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(channel.written, "xy");
}

TEST(DelayedWrite, RefusesAMissingBuffer) {
    FakeChannel channel;
    uint64_t count = 9;
    EXPECT_EQ(channel.WriteBufferWithDelay(nullptr, 3, &count, 25), MV_BAD_VALUE);
    EXPECT_EQ(count, 0u);
}

} // namespace
