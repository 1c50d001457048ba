// serial_transfer_test.cpp - what reading and writing of a serial channel do to the registers
#include "platform/clock.h"
#include "tests/module/serial/serial_fixture.h"

#include <cstddef>
#include <cstring>
#include <utility>

using namespace pyxen;

namespace {

using CmdKVNPyxenTest = SerialFixture;

/// Closes a channel whenever it is asked for its camera.
class ClosingGrabber final : public ISerialGrabber {
public:
    explicit ClosingGrabber(CMivoraKVNPyxenClass& grabberBehind) : grabber(grabberBehind) {}
    PxnHandle CameraHandle() const override {
        if (CCmdKVNPyxen* const open = std::exchange(channel, nullptr)) {
            open->Close();
            channel = open;
            ++closings;
        }
        return grabber.CameraHandle();
    }
    CPyxenAPIAccess& Api() override { return grabber.Api(); }
    void Close(CCmdKVNPyxen& toClose) { channel = &toClose; }
    unsigned Closings() const { return closings; }

private:
    CMivoraKVNPyxenClass& grabber;
    mutable CCmdKVNPyxen* channel = nullptr;
    mutable unsigned closings = 0;
};

constexpr uint64_t kNanosecondsPerMillisecond = 1000000;

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

TEST_F(CmdKVNPyxenTest, ReadsAllThatWaitsBeyondTheSizeOfAPiece) {
    OpenChannel();
    std::string content;
    for (int index = 0; index < 1500; ++index) {
        content += static_cast<char>(index);
    }
    PutReceived(content);
    QueueLengths({1500, 1500});
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 2000), MV_OK);
    EXPECT_EQ(bytes, content);
    EXPECT_EQ(Calls(), (Texts{Read(0x14C), Read(0x14C), Read(0x800, 1500), Write(0x14C, 1500)}));
}

TEST_F(CmdKVNPyxenTest, AcknowledgesNothingWhereNothingWasRead) {
    OpenChannel();
    Grabber().Api().PxnMemoryRead = [](PxnHandle, uint64_t address, uint32_t size, char* bytes,
                                       uint32_t* done) -> PxnError {
        const bool isLength = address == kBase + 0x14C;
        std::memset(bytes, 0, size);
        bytes[size - 1] = 2;
        *done = isLength ? size : 0;
        return PxnErrSuccess;
    };
    uint8_t byte = 0;
    uint64_t count = 0;
    EXPECT_EQ(ReadByte(byte, count), MV_READ_FAILED);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(Calls(), Texts{Write(0x14C, 0)});
    std::string bytes;
    EXPECT_EQ(ReadBuffer(bytes, 5), MV_OK);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(Calls(), Texts{Write(0x14C, 0)});
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

TEST_F(CmdKVNPyxenTest, PollsThousandsOfTimes) {
    constexpr std::size_t kPolls = 20000;
    OpenChannel();
    SetTransmitReady();
    for (std::size_t poll = 0; poll < kPolls; ++poll) {
        Camera().QueueRegister32(kBase + 0x124, 0);
    }
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("A", count), MV_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(Calls(), Texts(kPolls, Read(0x124)) + Piece("A"));
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

TEST_F(CmdKVNPyxenTest, ADelayedWriteToAClosedChannelSucceedsThoughItIsClosedAgain) {
    ClosingGrabber closer(Grabber());
    channel = std::make_unique<CCmdKVNPyxen>(&closer, Grabber().SerialMutex());
    closer.Close(*channel);
    SerialSettings settings;
    settings.intercharacterDelay = 1;
    channel->SetSettings(settings);
    uint64_t count = 0;
    EXPECT_EQ(WriteBuffer("abc", count), MV_OK);
    EXPECT_EQ(count, 3u);
    EXPECT_GE(closer.Closings(), 3u);
    EXPECT_EQ(Calls(), Texts{});
    channel.reset();
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

} // namespace
