// frame_notes_test.cpp - what is known of the frame received last into each buffer
#include "imaging/frame_notes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace pyxen;

namespace {

PxnFrame MakeNotedFrame(std::uint64_t number) {
    const auto low = static_cast<std::uint32_t>(number);
    PxnFrame frame{};
    frame.receiveStatus = PxnFrameStatusIncomplete;
    frame.receiveFlags = 0x7F;
    frame.frameId = number;
    frame.timestamp = number << 20;
    frame.pixelFormat = low + 1;
    frame.width = low + 2;
    frame.height = low + 3;
    frame.offsetX = low + 4;
    frame.offsetY = low + 5;
    frame.imageSize = low + 6;
    frame.payloadType = low + 7;
    frame.chunkDataPresent = 1;
    return frame;
}

class FrameNotesTest : public testing::Test {
protected:
    MV_FRAME_INFO Load(std::uint64_t index = 0) {
        MV_FRAME_INFO info;
        EXPECT_TRUE(notes.Load(index, info));
        return info;
    }
    void Store(std::uint64_t number, bool current = true) {
        notes.Find(0)->Store(MakeNotedFrame(number), number, current);
    }

    FrameNotes notes;
};

TEST_F(FrameNotesTest, KeepEveryMemberOfTheFrameReceivedLast) {
    notes.Prepare(2);
    const PxnFrame frame = MakeNotedFrame(0xFEDCBA9876543210);
    notes.Find(1)->Store(MakeNotedFrame(1), 1, true);
    notes.Find(1)->Store(frame, 2, true);
    const MV_FRAME_INFO info = Load(1);
    EXPECT_EQ(info.valid, 0x7Fu);
    EXPECT_EQ(info.bufferIndex, 1u);
    EXPECT_EQ(info.received, 2u);
    EXPECT_EQ(info.frameId, frame.frameId);
    EXPECT_EQ(info.timestamp, frame.timestamp);
    EXPECT_EQ(info.status, MV_FRAME_INCOMPLETE);
    EXPECT_EQ(info.pixelFormat, frame.pixelFormat);
    EXPECT_EQ(info.width, frame.width);
    EXPECT_EQ(info.height, frame.height);
    EXPECT_EQ(info.offsetX, frame.offsetX);
    EXPECT_EQ(info.offsetY, frame.offsetY);
    EXPECT_EQ(info.payloadBytes, frame.imageSize);
    EXPECT_EQ(info.payloadType, frame.payloadType);
    EXPECT_EQ(info.picture, MV_PICTURE_CURRENT);
    EXPECT_EQ(info.reserved, 0u);
    EXPECT_EQ(Load(0).picture, MV_PICTURE_NONE);
}

TEST_F(FrameNotesTest, NameOnlyChunksThatAreThereAndNoFlagsOfTheSdksOwn) {
    PxnFrame frame = MakeNotedFrame(1);
    frame.receiveFlags = 0xFFFFFFFF;
    EXPECT_EQ(DescribeFrame(frame, 0, 1, true).valid, 0x7Fu);
    frame.chunkDataPresent = 0;
    EXPECT_EQ(DescribeFrame(frame, 0, 1, true).valid, 0x7Fu & ~kMvFrameHasChunks);
    EXPECT_EQ(DescribeFrame(frame, 0, 1, true).size, sizeof(MV_FRAME_INFO));
}

TEST_F(FrameNotesTest, AreNoneBeyondTheBuffers) {
    MV_FRAME_INFO info;
    EXPECT_FALSE(notes.Load(0, info));
    EXPECT_EQ(notes.Find(0), nullptr);
    notes.Prepare(FrameNotes::kMost + 1);
    EXPECT_TRUE(notes.Load(FrameNotes::kMost - 1, info));
    EXPECT_FALSE(notes.Load(FrameNotes::kMost, info));
    EXPECT_FALSE(notes.Load(~std::uint64_t{0}, info));
}

TEST_F(FrameNotesTest, ForgetWhenBuffersArePreparedAnew) {
    notes.Prepare(1);
    Store(7);
    Store(8);
    notes.Prepare(1);
    const MV_FRAME_INFO info = Load();
    EXPECT_EQ(info.picture, MV_PICTURE_NONE);
    EXPECT_EQ(info.received, 0u);
    EXPECT_EQ(info.frameId, 0u);
    EXPECT_EQ(info.valid, 0u);
    Store(9);
    EXPECT_EQ(Load().frameId, 9u);
}

TEST_F(FrameNotesTest, MarkThePictureAsGoneAndKeepTheRest) {
    notes.Prepare(1);
    notes.Find(0)->BeginChange();
    EXPECT_EQ(Load().picture, MV_PICTURE_NONE);
    Store(5);
    notes.Find(0)->BeginChange();
    EXPECT_EQ(Load().picture, MV_PICTURE_GONE);
    EXPECT_EQ(Load().frameId, 5u);
    Store(6, false);
    EXPECT_EQ(Load().picture, MV_PICTURE_GONE);
    EXPECT_EQ(Load().frameId, 6u);
}

TEST_F(FrameNotesTest, TakeALeaveBackUnlessAnotherFrameHasCome) {
    notes.Prepare(1);
    Store(5);
    const std::uint64_t before = notes.Find(0)->Leave();
    EXPECT_EQ(Load().picture, MV_PICTURE_GONE);
    notes.Find(0)->Restore(before);
    EXPECT_EQ(Load().picture, MV_PICTURE_CURRENT);
    notes.Find(0)->Leave();
    Store(6, false);
    notes.Find(0)->Restore(before);
    EXPECT_EQ(Load().picture, MV_PICTURE_GONE);
    // A picture that was gone before stays gone.
    notes.Find(0)->Restore(notes.Find(0)->Leave());
    EXPECT_EQ(Load().picture, MV_PICTURE_GONE);
}

// A reader gets one frame's members, whatever the writer does meanwhile.
TEST_F(FrameNotesTest, AreConsistentForReadersOfOtherThreads) {
    notes.Prepare(1);
    Store(1);
    std::atomic<bool> ended{false};
    std::thread writer([&] {
        for (std::uint64_t number = 2; number < 200000; ++number) {
            notes.Find(0)->Leave();
            Store(number);
        }
        ended = true;
    });
    std::uint64_t mixed = 0;
    std::uint64_t backwards = 0;
    std::uint64_t last = 0;
    while (!ended) {
        const MV_FRAME_INFO info = Load();
        const auto low = static_cast<std::uint32_t>(info.received);
        mixed += info.frameId != info.received || info.timestamp != info.received << 20 ||
                 info.width != low + 2 || info.offsetY != low + 5 || info.payloadType != low + 7;
        backwards += info.received < last;
        last = info.received;
    }
    writer.join();
    EXPECT_EQ(mixed, 0u);
    EXPECT_EQ(backwards, 0u);
    EXPECT_EQ(Load().received, 199999u);
}

} // namespace
