// frame_book_test.cpp - the announced frames of a stream and what has become of them
#include "pxnc/skeleton/frame_book.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace skeleton_tests {
namespace {

using skeleton::CallbackTurns;
using skeleton::FrameBook;

const PxnHandle kAnyCamera = reinterpret_cast<PxnHandle>(0x10);
const PxnHandle kAnyStream = reinterpret_cast<PxnHandle>(0x20);

/// Frames that the test fills by hand.
class TestFrames : public FrameBook {
public:
    using FrameBook::FrameBook;
    ~TestFrames() override { Close(); }

    PxnError StartCapture() override {
        platform::MutexLock lock(mutex);
        SetCapturing(true);
        return PxnErrSuccess;
    }
    PxnError EndCapture() override {
        platform::MutexLock lock(mutex);
        SetCapturing(false);
        WaitForRunningFrames();
        return PxnErrSuccess;
    }
    /// Fills the oldest queued frame; false when none is queued.
    bool Deliver(PxnError result = PxnErrSuccess) {
        platform::MutexLock lock(mutex);
        if (queue.empty()) {
            return false;
        }
        const RunningFrame running(*this);
        HandBack(TakeQueued(), result);
        return true;
    }
    Rules CurrentRules() const override { return rules; }

    Rules rules;
};

/// What a callback finds in context word 0 of its frame.
struct Observer {
    static void Call(PxnHandle, PxnHandle, PxnFrame* frame) {
        auto& self = *static_cast<Observer*>(frame->context[0]);
        const int now = ++self.running;
        int most = self.most;
        while (now > most && !self.most.compare_exchange_weak(most, now)) {
        }
        ++self.calls;
        support::WaitUntil([&] { return self.mayReturn.load(); });
        --self.running;
        ++self.returns;
    }

    std::atomic<int> running{0};
    std::atomic<int> most{0};
    std::atomic<int> calls{0};
    std::atomic<int> returns{0};
    std::atomic<bool> mayReturn{true};
};

class FrameBookTest : public testing::Test {
protected:
    void SetUp() override {
        frames.Open(kAnyCamera, kAnyStream);
        for (PxnFrame& frame : records) {
            frame.buffer = memory;
            frame.bufferSize = sizeof memory;
            frame.context[0] = &observer;
        }
    }

    char memory[16] = {};
    Observer observer;
    PxnFrame records[3] = {};
    const std::shared_ptr<CallbackTurns> turns = std::make_shared<CallbackTurns>();
    TestFrames frames{turns};
};

TEST_F(FrameBookTest, OnlyAnnouncedFramesAreQueuedAndOnce) {
    EXPECT_EQ(frames.Queue(&records[0], nullptr), PxnErrNotFound);
    EXPECT_EQ(frames.Announce(&records[0]), 0);
    EXPECT_EQ(frames.Announce(&records[0]), 0) << "announced again, it is updated";
    EXPECT_EQ(frames.AnnouncedFrames(), 1u);
    EXPECT_EQ(frames.Queue(&records[0], nullptr), 0);
    EXPECT_EQ(frames.Queue(&records[0], nullptr), PxnErrAlready);
    EXPECT_EQ(frames.Revoke(&records[0]), PxnErrInUse);
    EXPECT_EQ(frames.Revoke(&records[1]), PxnErrNotFound);
    EXPECT_EQ(frames.Flush(), 0);
    EXPECT_EQ(frames.Revoke(&records[0]), 0);
    EXPECT_EQ(frames.Revoke(&records[0]), PxnErrNotFound);
}

TEST_F(FrameBookTest, MemoryIsNeededForAFrameThatHasASize) {
    records[0].buffer = nullptr;
    EXPECT_EQ(frames.Announce(&records[0]), PxnErrBadParameter);
}

TEST_F(FrameBookTest, AWaitEndsWithItsFrame) {
    ASSERT_EQ(frames.Announce(&records[0]), 0);
    EXPECT_EQ(frames.Wait(&records[0], 0), PxnErrNotAvailable) << "not queued";
    ASSERT_EQ(frames.Queue(&records[0], nullptr), 0);
    EXPECT_EQ(frames.Wait(&records[0], 0), PxnErrNotAvailable) << "no capture";
    ASSERT_EQ(frames.StartCapture(), 0);
    EXPECT_EQ(frames.Wait(&records[0], 0), PxnErrTimeout);
    std::thread waiter([&] { EXPECT_EQ(frames.Wait(&records[0], 0xFFFFFFFF), PxnErrIO); });
    EXPECT_TRUE(frames.Deliver(PxnErrIO));
    waiter.join();
    EXPECT_EQ(frames.Wait(&records[0], 0), PxnErrIO) << "it stays done";
    EXPECT_EQ(frames.Wait(&records[1], 0), PxnErrNotFound);
}

TEST_F(FrameBookTest, AWaitEndsWhenTheFramesAreFlushed) {
    ASSERT_EQ(frames.Announce(&records[0]), 0);
    ASSERT_EQ(frames.Queue(&records[0], nullptr), 0);
    ASSERT_EQ(frames.StartCapture(), 0);
    std::thread waiter(
        [&] { EXPECT_EQ(frames.Wait(&records[0], 0xFFFFFFFF), PxnErrNotAvailable); });
    EXPECT_EQ(frames.Flush(), 0);
    waiter.join();
    EXPECT_FALSE(frames.Deliver());
}

TEST_F(FrameBookTest, WhatGivesFramesBackWaitsForTheCallback) {
    for (PxnError (FrameBook::*giveBack)() :
         {&FrameBook::Flush, &FrameBook::RevokeAll, &FrameBook::EndCapture}) {
        observer.mayReturn = false;
        ASSERT_EQ(frames.Announce(&records[0]), 0);
        ASSERT_EQ(frames.Queue(&records[0], &Observer::Call), 0);
        const int before = observer.returns;
        std::thread delivery([&] { frames.Deliver(); });
        ASSERT_TRUE(support::WaitUntil([&] { return observer.running == 1; }));
        std::thread host([&] {
            EXPECT_EQ((frames.*giveBack)(), 0);
            EXPECT_EQ(observer.returns, before + 1);
        });
        std::this_thread::yield();
        EXPECT_EQ(observer.returns, before);
        observer.mayReturn = true;
        host.join();
        delivery.join();
    }
}

TEST_F(FrameBookTest, ClosingRevokesWhatIsLeft) {
    ASSERT_EQ(frames.Announce(&records[0]), 0);
    ASSERT_EQ(frames.Announce(&records[1]), 0);
    ASSERT_EQ(frames.Queue(&records[0], &Observer::Call), 0);
    frames.Close();
    EXPECT_FALSE(frames.Deliver());
    EXPECT_EQ(frames.AnnouncedFrames(), 0u);
    EXPECT_EQ(frames.Counts().flushed, 1u);
    EXPECT_EQ(frames.Counts().revokedByClose, 2u);
    EXPECT_EQ(frames.Announce(&records[0]), PxnErrNotAvailable);
    EXPECT_EQ(observer.calls, 0);
}

TEST_F(FrameBookTest, CallbacksOfACameraTakeTurnsOverItsStreams) {
    TestFrames second(turns);
    second.Open(kAnyCamera, kAnyStream);
    observer.mayReturn = false;
    ASSERT_EQ(frames.Announce(&records[0]), 0);
    ASSERT_EQ(second.Announce(&records[1]), 0);
    ASSERT_EQ(frames.Queue(&records[0], &Observer::Call), 0);
    ASSERT_EQ(second.Queue(&records[1], &Observer::Call), 0);
    std::thread one([&] { frames.Deliver(); });
    std::thread other([&] { second.Deliver(); });
    ASSERT_TRUE(support::WaitUntil([&] { return observer.running == 1; }));
    // Both are on their way: the second one's frame is no longer queued.
    ASSERT_TRUE(support::WaitUntil(
        [&] { return frames.QueuedFrames() == 0 && second.QueuedFrames() == 0; }));
    observer.mayReturn = true;
    one.join();
    other.join();
    EXPECT_EQ(observer.returns, 2);
    EXPECT_EQ(observer.most, 1);
}

TEST_F(FrameBookTest, RulesCanBeSwitchedOff) {
    frames.rules.onlyAnnouncedFramesAreQueued = false;
    frames.rules.callbacksTakeTurns = false;
    observer.mayReturn = false;
    ASSERT_EQ(frames.Queue(&records[0], &Observer::Call), 0);
    ASSERT_EQ(frames.Queue(&records[1], &Observer::Call), 0);
    std::thread one([&] { frames.Deliver(); });
    std::thread other([&] { frames.Deliver(); });
    EXPECT_TRUE(support::WaitUntil([&] { return observer.running == 2; }));
    observer.mayReturn = true;
    one.join();
    other.join();
}

} // namespace
} // namespace skeleton_tests
