// frame_journal_test.cpp - tests of finding out what has become of each frame
#include "apps/common/frame_journal.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr auto kLost = FrameStatus::kLost;
constexpr auto kDropped = FrameStatus::kDropped;
constexpr auto kIncomplete = FrameStatus::kIncomplete;

/// A camera that fills buffers by turns, and the ring of a host.
class JournalTest : public testing::Test {
protected:
    void Begin(std::size_t buffers) {
        bufferCount = buffers;
        journal.Begin(buffers);
    }
    static MV_FRAME_INFO Info(std::uint64_t id, std::int32_t status) {
        MV_FRAME_INFO info{};
        info.size = sizeof info;
        info.valid = kMvFrameHasFrameId | kMvFrameHasTimestamp;
        info.frameId = id;
        info.timestamp = id * 1000;
        info.status = status;
        return info;
    }
    void Send(std::uint64_t id) {
        ++now;
        journal.Received(Info(id, MV_FRAME_COMPLETE), now);
        journal.HandedOver(Buffer(), now + 100);
    }
    void SendIncomplete(std::uint64_t id, std::int32_t status = MV_FRAME_INCOMPLETE) {
        journal.Received(Info(id, status), ++now);
        Buffer();
    }
    /// Takes a buffer and expects the frame of this number, and these gaps before it.
    void ExpectTaken(std::uint64_t buffer, std::uint64_t id, const std::vector<FrameGap>& gaps) {
        ASSERT_TRUE(journal.Take(buffer, taken));
        EXPECT_EQ(taken.stamp.frameId, id);
        ASSERT_EQ(taken.before.size(), gaps.size());
        for (std::size_t i = 0; i < gaps.size(); ++i) {
            EXPECT_EQ(taken.before[i].status, gaps[i].status) << i;
            EXPECT_EQ(taken.before[i].first.frameId, gaps[i].first.frameId) << i;
            EXPECT_EQ(taken.before[i].count, gaps[i].count) << i;
            EXPECT_EQ(taken.before[i].note != nullptr, gaps[i].note != nullptr) << i;
        }
    }
    static FrameGap Gap(FrameStatus status, std::optional<std::uint64_t> id,
                        std::uint64_t count = 1) {
        return {status, {id, {}, {}}, count, nullptr};
    }

    FrameJournal journal;
    TakenFrame taken;
    std::uint64_t now = 0;

private:
    std::uint64_t Buffer() { return filled++ % bufferCount; }

    std::size_t bufferCount = 0;
    std::uint64_t filled = 0;
};

TEST_F(JournalTest, TakesFramesInTheirOrder) {
    Begin(3);
    Send(7);
    Send(8);
    ExpectTaken(0, 7, {});
    EXPECT_EQ(taken.stamp, (FrameStamp{7, 7000, 1}));
    EXPECT_EQ(taken.handedOver, 101u);
    EXPECT_EQ(taken.number, 1u);
    EXPECT_FALSE(taken.isOverwritten);
    ExpectTaken(1, 8, {});
    Send(9);
    ExpectTaken(2, 9, {});
    Send(10);
    ExpectTaken(0, 10, {});
    EXPECT_FALSE(journal.Take(0, taken));
    EXPECT_FALSE(journal.Take(9, taken));
}

TEST_F(JournalTest, FindsGapsInTheCamerasNumbers) {
    Begin(4);
    Send(5);
    Send(8);
    Send(8); // sent twice
    Send(9);
    ExpectTaken(0, 5, {});
    ExpectTaken(1, 8, {Gap(kDropped, 6, 2)});
    ExpectTaken(2, 8, {});
    ExpectTaken(3, 9, {});
}

TEST_F(JournalTest, KnowsNumbersOfSixteenBits) {
    Begin(4);
    Send(65534);
    Send(65535);
    Send(1);
    ExpectTaken(0, 65534, {});
    ExpectTaken(1, 65535, {});
    ExpectTaken(2, 1, {});
    Send(2);
    ExpectTaken(3, 2, {});
}

TEST_F(JournalTest, FindsGapsAcrossTheEndOfSixteenBits) {
    Begin(4);
    Send(65533);
    Send(3);
    ExpectTaken(0, 65533, {});
    ExpectTaken(1, 3, {Gap(kDropped, {}, 4)});
    Begin(4);
    Send(65535);
    Send(0);
    Send(1);
    ExpectTaken(2, 65535, {});
    ExpectTaken(3, 0, {});
    ExpectTaken(0, 1, {});
}

TEST_F(JournalTest, DoesNotCountPartsOfAFrameTwice) {
    Begin(8);
    Send(5);
    SendIncomplete(6);
    Send(7);
    SendIncomplete(6); // what was left of it
    SendIncomplete(7);
    Send(8);
    ExpectTaken(0, 5, {});
    ExpectTaken(2, 7, {Gap(kIncomplete, 6)});
    ExpectTaken(5, 8, {});
    Begin(8);
    Send(65535);
    Send(2);
    SendIncomplete(65534);
    SendIncomplete(65535);
    Send(3);
    ExpectTaken(6, 65535, {});
    ExpectTaken(7, 2, {Gap(kDropped, {})});
    ExpectTaken(2, 3, {});
}

TEST_F(JournalTest, FillsGapsWithFramesOfUnknownNumber) {
    Begin(8);
    SendIncomplete(0);
    Send(65403);
    SendIncomplete(0);
    Send(65405);
    SendIncomplete(0);
    Send(65409);
    ExpectTaken(1, 65403, {Gap(kIncomplete, {})});
    ExpectTaken(3, 65405, {Gap(kIncomplete, {})});
    ExpectTaken(5, 65409, {Gap(kIncomplete, {}), Gap(kDropped, 65406, 2)});
}

TEST_F(JournalTest, KeepsWholeFramesThatComeLate) {
    Begin(8);
    Send(5);
    Send(7);
    Send(6);
    Send(8);
    ExpectTaken(0, 5, {});
    ExpectTaken(1, 7, {Gap(kDropped, 6)});
    ExpectTaken(2, 6, {});
    ExpectTaken(3, 8, {});
}

TEST_F(JournalTest, MakesNoLossOfNumbersThatJump) {
    Begin(4);
    Send(1000000000);
    Send(5);
    Send(5000000000);
    ExpectTaken(0, 1000000000, {});
    FrameGap jump = Gap(kDropped, {});
    jump.note = "";
    ExpectTaken(1, 5, {jump});
    ExpectTaken(2, 5000000000, {jump});
}

TEST_F(JournalTest, PlacesIncompleteFrames) {
    Begin(8);
    SendIncomplete(1);
    Send(2);
    SendIncomplete(3, MV_FRAME_TOO_SMALL);
    SendIncomplete(5);
    Send(6);
    ExpectTaken(1, 2, {Gap(kIncomplete, 1)});
    ExpectTaken(4, 6, {Gap(kIncomplete, 3), Gap(kDropped, 4), Gap(kIncomplete, 5)});
    EXPECT_EQ(taken.before[0].first.timestampNs, 3000u);
    EXPECT_TRUE(taken.before[2].first.hostNs);
}

TEST_F(JournalTest, FindsFramesThatWereOverwrittenWhileTheyWaited) {
    Begin(3);
    for (std::uint64_t id = 1; id <= 5; ++id) {
        Send(id);
    }
    // The ring has 3 in buffer 2, 4 in buffer 0, 5 in buffer 1.
    ExpectTaken(2, 3, {Gap(kLost, 1), Gap(kLost, 2)});
    ExpectTaken(0, 4, {});
    ExpectTaken(1, 5, {});
}

TEST_F(JournalTest, KnowsWhenTheFrameTakenHasBeenOverwritten) {
    Begin(3);
    Send(1);
    Send(2);
    Send(3);
    // Buffer 0 has been given out, and is filled again before that is noted.
    Send(4);
    ExpectTaken(0, 1, {});
    EXPECT_TRUE(taken.isOverwritten);
    ExpectTaken(1, 2, {});
    EXPECT_FALSE(taken.isOverwritten);
    ExpectTaken(2, 3, {});
    Send(5);
    ExpectTaken(1, 5, {Gap(kLost, 4)});
}

TEST_F(JournalTest, GivesUpWhatWasNotTaken) {
    Begin(8);
    Send(1);
    Send(2);
    SendIncomplete(4);
    Send(5);
    ExpectTaken(0, 1, {});
    std::vector<FrameGap> gaps;
    journal.TakeRest(gaps);
    ASSERT_EQ(gaps.size(), 4u);
    EXPECT_EQ(gaps[0].status, kLost);
    EXPECT_EQ(gaps[1], Gap(kDropped, 3));
    EXPECT_EQ(gaps[2].status, kIncomplete);
    EXPECT_EQ(gaps[3].first.frameId, 5u);
    gaps.clear();
    journal.TakeRest(gaps);
    EXPECT_TRUE(gaps.empty());
}

TEST_F(JournalTest, CountsFramesOfAnyStatus) {
    Begin(4);
    Send(1);
    SendIncomplete(2);
    Send(3);
    ExpectTaken(0, 1, {});
    EXPECT_EQ(journal.CountAfter(taken.number), 2u);
    Begin(4);
    EXPECT_EQ(journal.CountAfter(0), 0u);
}

TEST_F(JournalTest, WorksWithoutServices) {
    Begin(4);
    journal.HandedOver(0, 10);
    journal.ReceivedInError(2, 20);
    journal.HandedOver(3, 21);
    ASSERT_TRUE(journal.Take(0, taken));
    EXPECT_EQ(taken.stamp, (FrameStamp{{}, {}, 10}));
    EXPECT_TRUE(taken.before.empty());
    ASSERT_TRUE(journal.Take(3, taken));
    ASSERT_EQ(taken.before.size(), 2u);
    EXPECT_EQ(taken.before[1], (FrameGap{kIncomplete, {{}, {}, 20}, 1, nullptr}));
    EXPECT_EQ(taken.number, 4u);
}

TEST_F(JournalTest, TakesFramesThroughManyRounds) {
    Begin(5);
    std::uint64_t id = 1;
    for (int round = 0; round < 2000; ++round) {
        Send(id++);
        Send(id++);
        ExpectTaken((id - 3) % 5, id - 2, {});
        ExpectTaken((id - 2) % 5, id - 1, {});
    }
}

} // namespace
