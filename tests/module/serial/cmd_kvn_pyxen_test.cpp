// cmd_kvn_pyxen_test.cpp - a serial channel's operations and what they do to the registers
#include "platform/clock.h"
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

constexpr uint64_t kNanosecondsPerMillisecond = 1000000;

class CmdKVNPyxenTest : public SerialFixture {
protected:
    MV_ERRCODE ReadByte(uint8_t& byte, uint64_t& count) {
        count = 99;
        return channel->ReadByte(&byte, &count);
    }
    MV_ERRCODE ReadBuffer(std::string& bytes, uint64_t length) {
        bytes.assign(length, '?');
        uint64_t count = 99;
        const MV_ERRCODE result =
            channel->ReadBuffer(reinterpret_cast<uint8_t*>(bytes.data()), length, &count);
        EXPECT_LE(count, length);
        bytes.resize(std::min<uint64_t>(count, length));
        return result;
    }
    MV_ERRCODE WriteBuffer(const std::string& bytes, uint64_t& count) {
        count = 99;
        return channel->WriteBuffer(Bytes(bytes), bytes.size(), &count);
    }
    const Texts opening{Write(0x104, 0x0C09), Write(0x128, 3), Write(0x148, 3),
                        Write(0x144, 0xFFFFFFFF)};
    const Texts closing{Write(0x128, 1), Write(0x148, 1), Write(0x144, 0xFFFFFFFF)};
};

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

// ---- reading ----

TEST_F(CmdKVNPyxenTest, ReadsOneByte) {
    OpenChannel();
    QueueLengths({5});
    PutReceived("Q");
    uint8_t byte = 0;
    uint64_t count = 0;
    EXPECT_EQ(ReadByte(byte, count), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(byte, 'Q');
    EXPECT_EQ(Calls(), (Texts{Read(0x14C), Read(0x800, 1), Write(0x14C, 1)}));
}

TEST_F(CmdKVNPyxenTest, ReadByteFailsWhenNothingWaits) {
    OpenChannel();
    uint8_t byte = 0;
    uint64_t count = 0;
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Calls(), Texts{Read(0x14C)});
}

TEST_F(CmdKVNPyxenTest, ReadByteFailsWhenAnAccessFails) {
    OpenChannel();
    uint8_t byte = 0;
    uint64_t count = 0;
    for (unsigned nth = 1; nth <= 2; ++nth) {
        QueueLengths({1});
        sdk.Fail("PxnMemoryRead", PxnErrIO, nth);
        EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
        EXPECT_EQ(count, 0u);
        sdk.ClearFailures();
        Camera().readSequences.clear();
    }
    QueueLengths({1});
    sdk.Fail("PxnMemoryWrite", PxnErrIO);
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
}

TEST_F(CmdKVNPyxenTest, ReadByteFailsWhenTheCameraGivesNone) {
    OpenChannel();
    QueueLengths({1});
    int reads = 0;
    sdk.OnCall("PxnMemoryRead", [&] {
        if (++reads == 2) {
            sdk.Edit([](scripted::Model& model) { model.cameras[0].transferLimit = 0; });
        }
    });
    uint8_t byte = 0;
    uint64_t count = 0;
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(reads, 2);
}

TEST_F(CmdKVNPyxenTest, ReadsWhatWaitsUpToTheLength) {
    OpenChannel();
    PutReceived("HELLO");
    QueueLengths({5, 5});
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 100), MV_OK);
    EXPECT_EQ(bytes, "HELLO");
    EXPECT_EQ(Calls(), (Texts{Read(0x14C), Read(0x14C), Read(0x800, 5), Write(0x14C, 5)}));

    QueueLengths({5, 5});
    EXPECT_EQ(ReadBuffer(bytes, 3), MV_OK);
    EXPECT_EQ(bytes, "HEL");
    EXPECT_EQ(Calls(), (Texts{Read(0x14C), Read(0x14C), Read(0x800, 3), Write(0x14C, 3)}));
}

TEST_F(CmdKVNPyxenTest, NothingWaitingIsAnEmptySuccess) {
    OpenChannel();
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 100), MV_OK);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(Calls(), Texts{Read(0x14C)});
    QueueLengths({5});
    EXPECT_EQ(ReadBuffer(bytes, 0), MV_OK);
    EXPECT_EQ(Calls(), Texts{Read(0x14C)});
}

TEST_F(CmdKVNPyxenTest, ReadsLessWhenTheCameraGivesLess) {
    OpenChannel();
    PutReceived("HELLO");
    QueueLengths({5, 5});
    Camera().transferLimit = 4;
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_OK);
    EXPECT_EQ(bytes, "HELL");
    EXPECT_EQ(Calls().back(), Write(0x14C, 4));
}

TEST_F(CmdKVNPyxenTest, ReadBufferFailsWhenTheBytesHaveGoneInBetween) {
    OpenChannel();
    QueueLengths({5, 0});
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
    EXPECT_EQ(bytes, "");
}

TEST_F(CmdKVNPyxenTest, ReadBufferFailsWhenAnAccessFails) {
    OpenChannel();
    std::string bytes;
    for (unsigned nth = 1; nth <= 3; ++nth) {
        QueueLengths({2, 2});
        sdk.Fail("PxnMemoryRead", PxnErrIO, nth);
        EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
        EXPECT_EQ(bytes, "");
        sdk.ClearFailures();
        Camera().readSequences.clear();
    }
    QueueLengths({2, 2});
    sdk.Fail("PxnMemoryWrite", PxnErrIO);
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_READ_FAILED);
    EXPECT_EQ(bytes, "");
}

TEST_F(CmdKVNPyxenTest, ReadsNothingWhenTheCameraReportsMoreThanWasAsked) {
    OpenChannel();
    Grabber().Api().PxnMemoryRead = [](PxnHandle, uint64_t address, uint32_t size, char* bytes,
                                       uint32_t* done) -> PxnError {
        const bool isLength = address == kBase + 0x14C;
        std::memset(bytes, 0, size);
        bytes[size - 1] = 2;
        *done = isLength ? size : size + 1;
        return PxnErrSuccess;
    };
    uint8_t bytes[2] = {};
    uint64_t count = 99;
    EXPECT_EQ(channel->ReadBuffer(bytes, sizeof bytes, &count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Calls(), Texts{}); // nothing is acknowledged
}

TEST_F(CmdKVNPyxenTest, TakesALengthBeyond32Bits) {
    OpenChannel();
    PutReceived("AB");
    QueueLengths({2, 2});
    uint8_t buffer[2] = {};
    uint64_t count = 0;
    EXPECT_EQ(channel->ReadBuffer(buffer, 0x100000000, &count), MV_OK);
    EXPECT_EQ(count, 2u);
}

// ---- writing ----

TEST_F(CmdKVNPyxenTest, WritesOneByte) {
    OpenChannel();
    SetTransmitReady();
    const uint8_t byte = 0x41;
    uint64_t count = 0;
    EXPECT_EQ(channel->WriteByte(&byte, &count), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(Calls(), Piece("A"));
}

TEST_F(CmdKVNPyxenTest, WritesInPiecesEachAfterTheBufferIsReady) {
    OpenChannel();
    SetTransmitReady();
    std::string content;
    for (int index = 0; index < 2500; ++index) {
        content += static_cast<char>(index);
    }
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer(content, count), MV_OK);
    EXPECT_EQ(count, 2500u);
    EXPECT_EQ(Calls(), Piece(content.substr(0, 1024)) + Piece(content.substr(1024, 1024)) +
                           Piece(content.substr(2048)));
    EXPECT_EQ(WriteBuffer(content.substr(0, 1024), count), MV_OK);
    EXPECT_EQ(Calls(), Piece(content.substr(0, 1024)));
    EXPECT_EQ(WriteBuffer(content.substr(0, 1025), count), MV_OK);
    EXPECT_EQ(Calls(), Piece(content.substr(0, 1024)) + Piece(content.substr(1024, 1)));
}

TEST_F(CmdKVNPyxenTest, PollsUntilTheBufferIsReady) {
    OpenChannel();
    SetTransmitReady();
    for (const uint32_t status : {0u, 0xFFFFFFFEu, 0u, 0u}) {
        Camera().QueueRegister32(kBase + 0x124, status);
    }
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("A", count), MV_OK);
    EXPECT_EQ(Calls(), Texts(4, Read(0x124)) + Piece("A"));
}

TEST_F(CmdKVNPyxenTest, AFailedStatusEndsThePoll) {
    OpenChannel();
    sdk.Fail("PxnMemoryRead", PxnErrIO, 50);
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("A", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Calls(), Texts(50, Read(0x124)));
}

TEST_F(CmdKVNPyxenTest, AFailureInALaterPieceCountsThoseBefore) {
    OpenChannel();
    SetTransmitReady();
    uint64_t count = 0;
    for (unsigned nth = 3; nth <= 4; ++nth) { // the second piece's bytes, then its length
        sdk.Fail("PxnMemoryWrite", PxnErrIO, nth);
        EXPECT_EQ(WriteBuffer(std::string(1500, 'x'), count), MV_WRITE_FAILED);
        EXPECT_EQ(count, 1024u);
        sdk.ClearFailures();
    }
    sdk.Fail("PxnMemoryRead", PxnErrIO, 2);
    EXPECT_EQ(WriteBuffer(std::string(1500, 'x'), count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 1024u);
}

TEST_F(CmdKVNPyxenTest, WriteByteFailsWhenAnAccessFails) {
    OpenChannel();
    SetTransmitReady();
    const uint8_t byte = 0;
    uint64_t count = 99;
    for (unsigned nth = 1; nth <= 2; ++nth) {
        sdk.Fail("PxnMemoryWrite", PxnErrIO, nth);
        EXPECT_EQ(channel->WriteByte(&byte, &count), MV_WRITE_FAILED);
        EXPECT_EQ(count, 0u);
        sdk.ClearFailures();
    }
}

TEST_F(CmdKVNPyxenTest, ATransmitBufferThatTakesTooFewBytesFailsTheWrite) {
    OpenChannel();
    SetTransmitReady();
    Camera().transferLimit = 4;
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("12345", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Calls(), (Texts{Read(0x124), WriteBytes(0x400, "12345")}));
}

TEST_F(CmdKVNPyxenTest, WritingNothingTouchesNothing) {
    OpenChannel();
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("", count), MV_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(channel->WriteBuffer(nullptr, 0, &count), MV_OK);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(CmdKVNPyxenTest, WritesATextWithoutItsEnd) {
    OpenChannel();
    SetTransmitReady();
    uint64_t count = 0;
    EXPECT_EQ(channel->WriteCString("OK\r", &count), MV_OK);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(Calls(), Piece("OK\r"));
}

TEST_F(CmdKVNPyxenTest, RestsBetweenBytesWhenADelayIsSet) {
    OpenChannel();
    SetTransmitReady();
    SerialSettings settings = channel->GetSettings();
    settings.intercharacterDelay = 25;
    channel->SetSettings(settings);
    uint64_t count = 0;
    const uint64_t begin = platform::MonotonicNanoseconds();
    EXPECT_EQ(WriteBuffer("abc", count), MV_OK);
    EXPECT_GE(platform::MonotonicNanoseconds() - begin, 2 * 25 * kNanosecondsPerMillisecond);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(Calls(), Piece("a") + Piece("b") + Piece("c"));

    sdk.Fail("PxnMemoryRead", PxnErrIO, 2);
    EXPECT_EQ(WriteBuffer("abc", count), MV_WRITE_FAILED);
    EXPECT_EQ(count, 1u);
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
