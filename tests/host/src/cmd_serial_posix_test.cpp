// cmd_serial_posix_test.cpp - the serial channel on a pseudo terminal
#include "mivora/cmd_channel.h"
#include "tests/support/posix/pseudo_terminal.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

class OpenSerialChannel : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(ini.Open(directory.PathOf("s.ini").c_str()));
        ASSERT_TRUE(ini.WriteText("s", "PORTNAME", terminal.PortName().c_str()));
        ASSERT_TRUE(ini.WriteText("s", "BAUD", "115200"));
        ASSERT_EQ(channel->GetConfig(&ini, "s"), MV_OK);
        ASSERT_EQ(channel->Open(), MV_OK);
    }
    void TearDown() override { DeleteCmdSerialInstance(channel); }

    /// Waits until the channel has written `size` bytes and returns them.
    std::string Sent(std::size_t size) const {
        std::string bytes;
        while (bytes.size() < size) {
            bytes += terminal.Read();
        }
        return bytes;
    }

    support::PseudoTerminal terminal;
    support::TemporaryDirectory directory;
    CIniFile ini;
    CCmdChannel* const channel = CreateCmdSerialInstance();
};

TEST_F(OpenSerialChannel, OpensOnceAndAgainAfterClose) {
    EXPECT_TRUE(channel->IsOpen());
    EXPECT_EQ(channel->Open(), MV_CHANNEL_ALREADY_OPEN);
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_FALSE(channel->IsOpen());
    EXPECT_EQ(channel->Open(), MV_OK);
}

TEST_F(OpenSerialChannel, DistinguishesNoDataFromFailure) {
    std::uint8_t byte = 0;
    std::uint64_t count = 9;
    EXPECT_EQ(channel->ReadBuffer(&byte, 1, &count), MV_OK);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(channel->ReadByte(&byte, &count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
}

TEST_F(OpenSerialChannel, WritesAndReadsBytes) {
    std::uint64_t count = 0;
    EXPECT_EQ(channel->WriteCString("hello", &count), MV_OK);
    EXPECT_EQ(count, 5u);
    const std::uint8_t mark = '!';
    EXPECT_EQ(channel->WriteByte(&mark, &count), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(Sent(6), "hello!");

    ASSERT_TRUE(terminal.Write("ok"));
    std::uint8_t first = 0;
    EXPECT_TRUE(support::WaitUntil([&] { return channel->ReadByte(&first, &count) == MV_OK; }));
    EXPECT_EQ(first, 'o');
    std::uint8_t rest[8];
    EXPECT_TRUE(support::WaitUntil(
        [&] { return channel->ReadBuffer(rest, sizeof rest, &count) == MV_OK && count > 0; }));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(rest[0], 'k');
    EXPECT_EQ(channel->Purge(kMvPurgeReceive | kMvPurgeTransmit), MV_OK);
}

TEST_F(OpenSerialChannel, HasNoDialog) {
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    EXPECT_EQ(channel->ConfigDialog(nullptr, &exit), MV_OK);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
    EXPECT_EQ(channel->ConfigDialog(nullptr, nullptr), MV_OK);
}

TEST_F(OpenSerialChannel, KeepsItsLineUntilTheNextOpen) {
    ASSERT_TRUE(ini.WriteText("s", "PORTNAME", "elsewhere"));
    EXPECT_EQ(channel->GetConfig(&ini, "s"), MV_OK);
    std::uint64_t count = 0;
    EXPECT_EQ(channel->WriteCString("still", &count), MV_OK);
    EXPECT_EQ(Sent(5), "still");
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
}

} // namespace
