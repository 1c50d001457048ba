// grabber_channels_test.cpp - list of command channels and the CMD operations
#include "tests/host/test_grabber.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using ChannelCalls = std::vector<std::string>;

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

TEST(ChannelList, AppendsChannelsAndActivatesTheLastOne) {
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

TEST(ChannelList, RefusesAChannelThatItContains) {
    TestGrabber grabber;
    FakeChannel* const channel = grabber.AddFakeChannel();
    EXPECT_EQ(grabber.AddCmdChannel(channel), MV_BAD_VALUE);
    EXPECT_EQ(grabber.AddCmdChannel(nullptr), MV_BAD_VALUE);
    EXPECT_EQ(grabber.GetNumCmdChannels(), 1u);
}

TEST(ChannelList, ClosesAndDeletesItsChannels) {
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

TEST(ChannelList, DeletesChannelsThatTheModuleHasNotDeleted) {
    int destroyed = 0;
    {
        TestGrabber grabber;
        grabber.leavesChannels = true;
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

TEST(CmdOperations, ReportThatThereIsNoChannel) {
    TestGrabber grabber;
    std::uint8_t byte = 'x';
    std::uint64_t count = 9;
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

TEST(CmdOperations, CallTheActiveChannelAndReturnItsResult) {
    TestGrabber grabber;
    FakeChannel* const channel = grabber.AddFakeChannel();
    std::uint8_t bytes[4] = {'a', 'b', 'c', 'd'};
    std::uint64_t count = 0;
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
    EXPECT_EQ(channel->calls, ChannelCalls({"Open", "WriteByte", "WriteBuffer", "WriteBuffer",
                                            "ReadByte", "ReadBuffer", "Purge 3", "Close"}));
    channel->result = MV_PURGE_FAILED;
    EXPECT_EQ(grabber.CMDPurge(1), MV_PURGE_FAILED);
}

TEST(SelectCmdDialog, SavesTheChannelWhenItsDialogEndsWithOk) {
    const support::TemporaryDirectory directory;
    TestGrabber grabber;
    ASSERT_EQ(grabber.SetGrabberIni(directory.PathOf("g.ini").c_str(), 2), MV_OK);
    FakeChannel* const channel = grabber.AddFakeChannel();
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    EXPECT_EQ(grabber.SelectCmdDialog(reinterpret_cast<MV_WINDOW>(std::uintptr_t{5}), &exit),
              MV_OK);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
    EXPECT_EQ(channel->calls, ChannelCalls({"ConfigDialog 5"}));
    EXPECT_EQ(grabber.GetIni()->GetNumSections(), 0u);
    channel->dialogExit = MV_DLG_OK;
    channel->setting = "chosen";
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, &exit), MV_OK);
    EXPECT_EQ(exit, MV_DLG_OK);
    EXPECT_EQ(directory.Read("g.ini"), "[Channel_2_0]\nTYPE=Fake\nSETTING=chosen\n");
    channel->result = MV_REFUSED;
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, nullptr), MV_REFUSED);
}

TEST(SelectCmdDialog, ReportsThatTheSettingsCannotBeSaved) {
    TestGrabber grabber;
    grabber.AddFakeChannel()->dialogExit = MV_DLG_OK;
    MV_DLG_EXITCODE exit = MV_DLG_CANCEL;
    EXPECT_EQ(grabber.SelectCmdDialog(nullptr, &exit), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(exit, MV_DLG_OK);
}

} // namespace
