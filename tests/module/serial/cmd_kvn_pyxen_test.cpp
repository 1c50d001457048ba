// cmd_kvn_pyxen_test.cpp - a serial channel's operations and what they do to the registers
#include "tests/module/serial/serial_fixture.h"
#include "tests/support/virtual_table.h"

using namespace pyxen;

namespace {

/// Its camera goes after the handle was asked for so many times.
class VanishingGrabber final : public ISerialGrabber {
public:
    explicit VanishingGrabber(CMivoraKVNPyxenClass& grabberBehind) : grabber(grabberBehind) {}
    PxnHandle CameraHandle() const override {
        return asked++ < askedBeforeItGoes ? grabber.CameraHandle() : nullptr;
    }
    CPyxenAPIAccess& Api() override { return grabber.Api(); }
    void GoAfter(unsigned count) {
        asked = 0;
        askedBeforeItGoes = count;
    }

private:
    CMivoraKVNPyxenClass& grabber;
    mutable unsigned asked = 0;
    unsigned askedBeforeItGoes = 1;
};

using CmdKVNPyxenTest = SerialFixture;

TEST_F(CmdKVNPyxenTest, DescribesItself) {
    EXPECT_STREQ(channel->GetChannelTypeName(), "Pyxen Serial Port");
    EXPECT_EQ(channel->GetChannelKind(), 0x80000000u);
    EXPECT_STREQ(channel->GetConfigText(), "115200 Baud, Parity = No, Bytesize = 8, Stopbits = 1");
    SerialSettings settings;
    settings.baudIndex = 10;
    settings.parityIndex = 2;
    settings.byteSizeIndex = 0;
    settings.stopBitsIndex = 1;
    channel->SetSettings(settings);
    EXPECT_STREQ(channel->GetConfigText(),
                 "230400 Baud, Parity = Even, Bytesize = 5, Stopbits = 1.5");
    settings.baudIndex = kUnknownBaud;
    channel->SetSettings(settings);
    EXPECT_STREQ(channel->GetConfigText(), "0 Baud, Parity = Even, Bytesize = 5, Stopbits = 1.5");
}

TEST_F(CmdKVNPyxenTest, IsMadeAndDestroyedByTheGrabber) {
    CCmdChannel* made = Grabber().CreateCmdChannel(1);
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->GetChannelTypeName(), "Pyxen Serial Port");
    EXPECT_FALSE(made->IsOpen());
    EXPECT_EQ(made->Open(), MV_CHANNEL_OPEN_FAILED); // no port is chosen at first
    Grabber().DeleteCmdChannel(made);
}

TEST(CmdKVNPyxenSlots, FollowTheHostsInTheirOrder) {
    int entry = 16; // the destructor takes two
    EXPECT_EQ(support::EntryOf(&CCmdKVNPyxen::GetChannelKind), entry++);
    EXPECT_EQ(support::EntryOf(&CCmdKVNPyxen::EnumeratePorts), entry++);
    EXPECT_EQ(support::EntryOf(&CCmdKVNPyxen::GetPortIdByName), entry++);
    EXPECT_EQ(support::EntryOf(&CCmdKVNPyxen::GetPortNameById), entry++);
    EXPECT_EQ(support::EntryOf(&CCmdKVNPyxen::FindPortIndex), entry++);
}

// ---- opening and closing ----

TEST_F(CmdKVNPyxenTest, OpensItsPort) {
    EXPECT_EQ(channel->Open(), MV_OK);
    EXPECT_EQ(Calls(), opening);
    EXPECT_TRUE(channel->IsOpen());
    EXPECT_EQ(channel->Open(), MV_CHANNEL_ALREADY_OPEN);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_TRUE(channel->IsOpen());
}

TEST_F(CmdKVNPyxenTest, OpensEachPortAtItsBaseWithItsSettings) {
    for (const SerialPortRow& row : SerialPortTable()) {
        SerialSettings settings = SettingsOf(row.iniName);
        settings.baudIndex = 5;
        settings.parityIndex = 1;
        settings.byteSizeIndex = 2;
        settings.stopBitsIndex = 2;
        channel->SetSettings(settings);
        EXPECT_EQ(channel->Open(), MV_OK);
        EXPECT_EQ(
            Calls(),
            (Texts{Write(0x104, 0x2905, row.registerBase), Write(0x128, 3, row.registerBase),
                   Write(0x148, 3, row.registerBase), Write(0x144, 0xFFFFFFFF, row.registerBase)}));
        EXPECT_EQ(channel->Close(), MV_OK);
        EXPECT_EQ(Calls(),
                  (Texts{Write(0x128, 1, row.registerBase), Write(0x148, 1, row.registerBase),
                         Write(0x144, 0xFFFFFFFF, row.registerBase)}));
    }
}

TEST_F(CmdKVNPyxenTest, FindsItsPortIgnoringCase) {
    channel->SetSettings(SettingsOf("pyxenSerialPort2"));
    EXPECT_EQ(channel->Open(), MV_OK);
    EXPECT_EQ(Calls(), opening);
}

TEST_F(CmdKVNPyxenTest, AnUnknownPortIsNotRecorded) {
    channel->SetSettings(SettingsOf("PYXENSERIALPORT7"));
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_EQ(Calls(), Texts{});
    channel->SetSettings(SettingsOf("PYXENSERIALPORT2"));
    EXPECT_EQ(channel->Open(), MV_OK);
}

TEST_F(CmdKVNPyxenTest, AFailedOpenKeepsThePortUntilClose) {
    for (unsigned nth = 1; nth <= 4; ++nth) {
        sdk.Fail("PxnMemoryWrite", PxnErrIO, nth);
        EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED) << nth;
        EXPECT_EQ(Calls(), opening) << nth; // all four are written all the same
        EXPECT_FALSE(channel->IsOpen());
        EXPECT_EQ(channel->Open(), MV_CHANNEL_ALREADY_OPEN);
        EXPECT_EQ(Calls(), Texts{});
        EXPECT_EQ(channel->Close(), MV_OK);
        EXPECT_EQ(Calls(), closing);
        sdk.ClearFailures();
        EXPECT_EQ(channel->Open(), MV_OK);
        EXPECT_EQ(channel->Close(), MV_OK);
        Forget();
    }
}

TEST_F(CmdKVNPyxenTest, ARegisterThatTakesTooFewBytesFailsTheOpen) {
    Camera().transferLimit = 3;
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_FALSE(channel->IsOpen());
}

TEST_F(CmdKVNPyxenTest, CloseSucceedsInEveryState) {
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
    OpenChannel();
    sdk.FailAlways("PxnMemoryWrite", PxnErrIO);
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(Calls(), closing);
    EXPECT_FALSE(channel->IsOpen());
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CmdKVNPyxenTest, ChangedSettingsCountAtTheNextOpen) {
    OpenChannel();
    channel->SetSettings(SettingsOf("PYXENSERIALPORT0"));
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_EQ(Calls(), closing);
    EXPECT_EQ(channel->Open(), MV_OK);
    EXPECT_EQ(Calls().front(), Write(0x104, 0x0C09, 0x16000));
}

// ---- without a camera, without a grabber ----

TEST_F(CmdKVNPyxenTest, NothingGoesWithoutAnOpenCamera) {
    OpenChannel();
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.ClearCalls();
    uint8_t byte = 0;
    uint64_t count = 99;
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(WriteBuffer("abc", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(WriteBuffer("", count), MV_WRITE_FAILED);
    EXPECT_EQ(channel->WriteCString("abc", &count), MV_WRITE_FAILED);
    EXPECT_EQ(channel->Purge(3), MV_WRITE_FAILED);
    channel->EnumeratePorts();
    EXPECT_TRUE(channel->GetPorts().empty());
    EXPECT_EQ(channel->Close(), MV_OK);
    EXPECT_FALSE(channel->IsOpen());
    EXPECT_EQ(Calls(), Texts{});

    // The closed port was forgotten: it can be opened once there is a camera again.
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(channel->Open(), MV_OK);
}

TEST_F(CmdKVNPyxenTest, ACameraThatGoesDuringAnOperationIsNotReadAnyMore) {
    // Ends the operation that goes on reading.
    unsigned reads = 0;
    sdk.OnCall("PxnMemoryRead", [&] {
        if (++reads == 100) {
            sdk.FailAlways("PxnMemoryRead", PxnErrIO);
        }
    });
    VanishingGrabber vanishing(Grabber());
    channel = std::make_unique<CCmdKVNPyxen>(&vanishing, Grabber().SerialMutex());
    channel->SetSettings(SettingsOf("PYXENSERIALPORT2"));
    OpenChannel();
    vanishing.GoAfter(1);
    uint8_t byte = 0;
    uint64_t count = 99;
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_WRITE_FAILED);
    vanishing.GoAfter(1);
    EXPECT_EQ(WriteBuffer("abc", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    vanishing.GoAfter(1);
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    vanishing.GoAfter(1);
    channel->EnumeratePorts();
    EXPECT_TRUE(channel->GetPorts().empty());
    EXPECT_EQ(Calls(), Texts{});

    vanishing.GoAfter(4); // once to begin, then once for each look at the port
    EXPECT_EQ(WriteBuffer("abc", count), MV_WRITE_FAILED);
    EXPECT_EQ(Calls(), Texts(3, Read(0x124)));
}

TEST_F(CmdKVNPyxenTest, NothingGoesWithoutAGrabber) {
    channel = std::make_unique<CCmdKVNPyxen>(nullptr, Grabber().SerialMutex());
    channel->SetSettings(SettingsOf("PYXENSERIALPORT2"));
    uint8_t byte = 0;
    uint64_t count = 99;
    EXPECT_EQ(channel->Open(), MV_CHANNEL_OPEN_FAILED);
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_WRITE_FAILED);
    EXPECT_EQ(WriteBuffer("abc", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel->Purge(3), MV_WRITE_FAILED);
    EXPECT_EQ(channel->Close(), MV_OK);
    channel->EnumeratePorts();
    EXPECT_TRUE(channel->GetPorts().empty());
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CmdKVNPyxenTest, AClosedChannelReadsNothingAndSwallowsWhatIsWritten) {
    uint8_t byte = 0;
    uint64_t count = 0;
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(WriteBuffer(std::string(2500, 'x'), count), MV_OK);
    EXPECT_EQ(count, 2500u);
    EXPECT_EQ(channel->Purge(0), MV_PURGE_FAILED);
    EXPECT_EQ(channel->Purge(3), MV_PURGE_FAILED);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CmdKVNPyxenTest, TheCountMayBeAbsent) {
    OpenChannel();
    SetTransmitReady();
    QueueLengths({1, 1, 1});
    uint8_t byte = 0;
    EXPECT_EQ(channel->ReadByte(&byte, nullptr), MV_OK);
    EXPECT_EQ(channel->ReadBuffer(&byte, 1, nullptr), MV_OK);
    EXPECT_EQ(channel->WriteByte(&byte, nullptr), MV_OK);
    EXPECT_EQ(channel->WriteBuffer(&byte, 1, nullptr), MV_OK);
    channel->Close();
    EXPECT_EQ(channel->WriteBuffer(&byte, 1, nullptr), MV_OK);
}

// ---- purging ----

TEST_F(CmdKVNPyxenTest, PurgesWhatTheFlagsSay) {
    OpenChannel();
    EXPECT_EQ(channel->Purge(1), MV_OK);
    EXPECT_EQ(Calls(), Texts{Write(0x148, 3)});
    EXPECT_EQ(channel->Purge(2), MV_OK);
    EXPECT_EQ(Calls(), Texts{Write(0x128, 3)});
    EXPECT_EQ(channel->Purge(3), MV_OK);
    EXPECT_EQ(Calls(), (Texts{Write(0x148, 3), Write(0x128, 3)}));
    EXPECT_EQ(channel->Purge(0), MV_OK);
    EXPECT_EQ(channel->Purge(0xFFFFFFFC), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CmdKVNPyxenTest, PurgeFailsWhenAWriteFails) {
    OpenChannel();
    for (unsigned nth = 1; nth <= 2; ++nth) {
        sdk.Fail("PxnMemoryWrite", PxnErrIO, nth);
        EXPECT_EQ(channel->Purge(3), MV_PURGE_FAILED);
        EXPECT_EQ(Calls(), (Texts{Write(0x148, 3), Write(0x128, 3)}));
        sdk.ClearFailures();
    }
}

} // namespace
