// channel_config_test.cpp - a serial channel's settings in the ini file
#include "tests/module/serial/serial_fixture.h"

using namespace pyxen;

namespace {

class ChannelConfigTest : public SerialFixture {
protected:
    void SetUp() override {
        SerialFixture::SetUp();
        ASSERT_TRUE(ini.Open(directory.PathOf("channel.ini").c_str()));
    }
    std::string Value(const char* key) const {
        char text[64];
        ini.GetText("Channel", key, "(absent)", text, sizeof text);
        return text;
    }
    CIniFile ini;
};

TEST_F(ChannelConfigTest, SavesItsSettingsAsTexts) {
    SerialSettings settings = SettingsOf("PYXENSERIALPORT3");
    settings.baudIndex = 6;
    settings.parityIndex = 1;
    settings.byteSizeIndex = 2;
    settings.stopBitsIndex = 1;
    channel->SetSettings(settings);
    EXPECT_EQ(channel->SetConfig(&ini, "Channel"), MV_OK);
    EXPECT_EQ(Value("PORTNAME"), "PYXENSERIALPORT3");
    EXPECT_EQ(Value("BAUD"), "19200");
    EXPECT_EQ(Value("PARITY"), "Odd");
    EXPECT_EQ(Value("BYTESIZE"), "7");
    EXPECT_EQ(Value("STOPBITS"), "1.5");
}

TEST_F(ChannelConfigTest, ReadsBackWhatItSaved) {
    for (uint32_t baud = 0; baud < 11; ++baud) {
        SerialSettings settings = SettingsOf("PYXENSERIALPORT1");
        settings.baudIndex = baud;
        settings.parityIndex = baud % 3;
        settings.byteSizeIndex = baud % 4;
        settings.stopBitsIndex = baud % 3;
        channel->SetSettings(settings);
        ASSERT_EQ(channel->SetConfig(&ini, "Channel"), MV_OK);
        SerialSettings other;
        other.intercharacterDelay = 12;
        channel->SetSettings(other);
        ASSERT_EQ(channel->GetConfig(&ini, "Channel"), MV_OK);
        const SerialSettings read = channel->GetSettings();
        EXPECT_STREQ(read.portName, "PYXENSERIALPORT1");
        EXPECT_EQ(read.baudIndex, baud);
        EXPECT_EQ(read.parityIndex, baud % 3);
        EXPECT_EQ(read.byteSizeIndex, baud % 4);
        EXPECT_EQ(read.stopBitsIndex, baud % 3);
        EXPECT_EQ(read.intercharacterDelay, 12u); // it is not saved
    }
}

TEST_F(ChannelConfigTest, AbsentKeysKeepTheirValues) {
    SerialSettings settings = SettingsOf("PYXENSERIALPORT4");
    settings.baudIndex = 1;
    settings.parityIndex = 2;
    settings.byteSizeIndex = 0;
    settings.stopBitsIndex = 2;
    channel->SetSettings(settings);
    EXPECT_EQ(channel->GetConfig(&ini, "Channel"), MV_OK);
    const SerialSettings read = channel->GetSettings();
    EXPECT_STREQ(read.portName, "PYXENSERIALPORT4");
    EXPECT_EQ(read.baudIndex, 1u);
    EXPECT_EQ(read.parityIndex, 2u);
    EXPECT_EQ(read.byteSizeIndex, 0u);
    EXPECT_EQ(read.stopBitsIndex, 2u);
}

TEST_F(ChannelConfigTest, UnknownTextsHaveTheirDefaults) {
    directory.Write("channel.ini", "[Channel]\nPORTNAME=x\nBAUD=12345\nPARITY=Mark\nBYTESIZE=9\n"
                                   "STOPBITS=3\n");
    ASSERT_TRUE(ini.Open(directory.PathOf("channel.ini").c_str()));
    EXPECT_EQ(channel->GetConfig(&ini, "Channel"), MV_OK);
    const SerialSettings read = channel->GetSettings();
    EXPECT_STREQ(read.portName, "x");
    EXPECT_EQ(read.baudIndex, 0xFFFFFFFFu);
    EXPECT_STREQ(channel->GetConfigText(), "0 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
    // Saved and read again, the unknown rate stays unknown.
    EXPECT_EQ(channel->SetConfig(&ini, "Channel"), MV_OK);
    EXPECT_EQ(Value("BAUD"), "0");
    EXPECT_EQ(channel->GetConfig(&ini, "Channel"), MV_OK);
    EXPECT_EQ(channel->GetSettings().baudIndex, 0xFFFFFFFFu);
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
}

TEST_F(ChannelConfigTest, CutsAPortNameThatIsTooLong) {
    directory.Write("channel.ini", "[Channel]\nPORTNAME=" + std::string(5000, 'p') + "\n");
    ASSERT_TRUE(ini.Open(directory.PathOf("channel.ini").c_str()));
    EXPECT_EQ(channel->GetConfig(&ini, "Channel"), MV_OK);
    EXPECT_EQ(std::strlen(channel->GetSettings().portName), 1024u);
}

TEST_F(ChannelConfigTest, TellsThatNothingCouldBeSaved) {
    ASSERT_TRUE(ini.Open(directory.PathOf("absent/channel.ini").c_str()));
    EXPECT_EQ(channel->SetConfig(&ini, "Channel"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel->SetConfig(nullptr, "Channel"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(channel->GetConfig(nullptr, "Channel"), MV_CONFIG_NOT_LOADED);
}

TEST_F(ChannelConfigTest, TellsThatOneOfItsSettingsCouldNotBeSaved) {
    channel->SetSettings(SettingsOf("two\nlines"));
    EXPECT_EQ(channel->SetConfig(&ini, "Channel"), MV_CONFIG_NOT_SAVED);
    EXPECT_EQ(Value("TYPE"), "Pyxen Serial Port"); // what the host saves could be saved
    EXPECT_EQ(Value("PORTNAME"), "(absent)");
}

TEST_F(ChannelConfigTest, ComesBackWithTheGrabbersConfiguration) {
    CCmdChannel* made = Grabber().CreateCmdChannel(1);
    ASSERT_EQ(Grabber().AddCmdChannel(made), MV_OK);
    static_cast<CCmdKVNPyxen*>(made)->SetSettings(SettingsOf("PYXENSERIALPORT1"));
    ASSERT_EQ(Grabber().SaveGrabberConfig(), MV_OK);
    channel.reset();
    Destroy();
    ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
    ASSERT_EQ(Grabber().GetNumCmdChannels(), 1u);
    CCmdChannel* loaded = Grabber().GetFirstCmdChannel();
    ASSERT_EQ(loaded->GetChannelKind(), 0x80000000u);
    EXPECT_STREQ(static_cast<CCmdKVNPyxen*>(loaded)->GetSettings().portName, "PYXENSERIALPORT1");
}

} // namespace
