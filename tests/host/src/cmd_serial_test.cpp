// cmd_serial_test.cpp - the serial channel without an open port
#include "mivora/cmd_channel.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

class SerialChannel : public testing::Test {
protected:
    SerialChannel() {
        EXPECT_NE(channel, nullptr);
        EXPECT_TRUE(ini.Open(directory.PathOf("s.ini").c_str()));
    }
    ~SerialChannel() override { DeleteCmdSerialInstance(channel); }

    void Configure(const char* key, const char* value) {
        ASSERT_TRUE(ini.WriteText("s", key, value));
        ASSERT_EQ(channel->GetConfig(&ini, "s"), MV_OK);
    }

    support::TemporaryDirectory directory;
    CIniFile ini;
    CCmdChannel* const channel = CreateCmdSerialInstance();
};

TEST_F(SerialChannel, ReportsItsTypeAndDefaults) {
    EXPECT_STREQ(channel->GetChannelTypeName(), "Serial Port");
    EXPECT_EQ(channel->GetChannelKind(), static_cast<std::uint32_t>(MVCMD_SERIAL));
    EXPECT_FALSE(channel->IsOpen());
    EXPECT_STREQ(channel->GetConfigText(), "9600 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
    DeleteCmdSerialInstance(nullptr);
}

TEST_F(SerialChannel, SavesAndLoadsItsConfiguration) {
    EXPECT_EQ(channel->GetConfig(&ini, "s"), MV_OK);
    EXPECT_STREQ(channel->GetConfigText(), "9600 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
    Configure("PORTNAME", "COM3");
    Configure("BAUD", "115200");
    Configure("PARITY", "even");
    Configure("BYTESIZE", "5");
    Configure("STOPBITS", "1.5");
    EXPECT_STREQ(channel->GetConfigText(),
                 "115200 Baud, Parity = Even, Bytesize = 5, Stopbits = 1.5");
    EXPECT_EQ(channel->SetConfig(&ini, "t"), MV_OK);
    EXPECT_EQ(directory.Read("s.ini"),
              "[s]\nPORTNAME=COM3\nBAUD=115200\nPARITY=even\nBYTESIZE=5\nSTOPBITS=1.5\n\n"
              "[t]\nTYPE=Serial Port\nPORTNAME=COM3\nBAUD=115200\nPARITY=Even\nBYTESIZE=5\n"
              "STOPBITS=1.5\n");
}

TEST_F(SerialChannel, ReadsEverySetting) {
    for (const char* const parity : {"No", "Odd", "Even"}) {
        Configure("PARITY", parity);
        EXPECT_NE(std::string(channel->GetConfigText()).find(std::string("Parity = ") + parity),
                  std::string::npos);
    }
    for (const char* const byteSize : {"5", "6", "7", "8"}) {
        Configure("BYTESIZE", byteSize);
        EXPECT_NE(std::string(channel->GetConfigText()).find(std::string("Bytesize = ") + byteSize),
                  std::string::npos);
    }
    for (const char* const stopBits : {"1", "1.5", "2"}) {
        Configure("STOPBITS", stopBits);
        const std::string text = channel->GetConfigText();
        EXPECT_EQ(text.substr(text.rfind(' ') + 1), stopBits);
    }
}

TEST_F(SerialChannel, ReadsUnknownSettingsAsTheirDefaults) {
    Configure("BAUD", "57600");
    Configure("BAUD", "fast");
    Configure("PARITY", "Mark");
    Configure("BYTESIZE", "9");
    Configure("STOPBITS", "3");
    EXPECT_STREQ(channel->GetConfigText(), "57600 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
}

TEST_F(SerialChannel, NeedsASectionForItsConfiguration) {
    EXPECT_EQ(channel->SetConfig(nullptr, "s"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel->GetConfig(&ini, nullptr), MV_CONFIG_NOT_LOADED);
}

TEST_F(SerialChannel, FailsWhileItIsClosed) {
    std::uint8_t byte = 'x';
    std::uint64_t count = 9;
    EXPECT_EQ(channel->ReadByte(&byte, &count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(channel->ReadBuffer(&byte, 1, &count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    count = 9;
    EXPECT_EQ(channel->WriteBuffer(&byte, 1, &count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel->WriteCString("x", nullptr), MV_WRITE_FAILED);
    EXPECT_EQ(channel->ReadBuffer(nullptr, 1, nullptr), MV_READ_FAILED);
    EXPECT_EQ(channel->WriteBuffer(nullptr, 1, nullptr), MV_WRITE_FAILED);
    EXPECT_EQ(channel->Purge(kMvPurgeReceive | kMvPurgeTransmit), MV_PURGE_FAILED);
    EXPECT_EQ(channel->Close(), MV_OK);
}

TEST_F(SerialChannel, DoesNotOpenWithoutAPort) {
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    Configure("PORTNAME", "no-such-port");
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_FALSE(channel->IsOpen());
}

} // namespace
