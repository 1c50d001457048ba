// frame_pace_test.cpp - tests of keeping a camera from being faster than the program
#include "apps/common/frame_pace.h"

#include "platform/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

/// Sends frames on a thread of its own, one after the other, and counts those that have returned.
class PacedFrames {
public:
    explicit PacedFrames(FramePace& framePace) : pace(framePace) {}
    ~PacedFrames() {
        pace.End();
        Join();
    }
    /// Of each character a frame: 'c' complete, 'i' incomplete.
    void Send(const std::string& statuses) {
        Join();
        isDone = false;
        thread = std::thread([this, statuses] {
            for (const char status : statuses) {
                pace.Await();
                if (status == 'c') {
                    pace.HandedOver();
                    ++complete;
                }
                ++sent;
                progress.Set();
            }
            isDone = true;
            progress.Set();
        });
    }
    void Join() {
        if (thread.joinable()) {
            thread.join();
        }
    }
    /// Releases as the frames come, until all are sent; returns how many there were.
    int TakeAll() {
        int taken = 0;
        while (!isDone || taken < complete) {
            progress.Reset();
            if (taken < complete) {
                ++taken;
                pace.Released();
            } else if (!isDone) {
                progress.Wait(1000);
            }
        }
        return taken;
    }

    FramePace& pace;
    platform::Event progress;
    std::atomic<int> sent{0};
    std::atomic<int> complete{0};
    std::atomic<bool> isDone{false};
    std::thread thread;
};

TEST(FramePace, LetsAsManyFramesComeAsThereAreBuffersForThem) {
    FramePace pace;
    pace.Begin(4);
    PacedFrames frames(pace);
    frames.Send("ccc"); // the fourth buffer is the one that is filled meanwhile
    frames.Join();
    EXPECT_EQ(frames.sent, 3);
    frames.Send("cccc");
    EXPECT_EQ(frames.TakeAll(), 7);
}

TEST(FramePace, HoldsAFrameUntilTheOldestIsReleased) {
    FramePace pace;
    pace.Begin(2);
    PacedFrames frames(pace);
    frames.Send("c");
    frames.Join();
    std::atomic<bool> isReleased{false};
    std::thread other([&] {
        pace.Await();
        EXPECT_TRUE(isReleased);
    });
    isReleased = true;
    pace.Released();
    other.join();
}

TEST(FramePace, CountsBuffersOfIncompleteFrames) {
    FramePace pace;
    pace.Begin(3);
    PacedFrames frames(pace);
    frames.Send("iiiiiiici"); // nobody takes incomplete ones
    frames.Join();
    EXPECT_EQ(frames.sent, 9);
    std::atomic<bool> isReleased{false};
    std::thread other([&] {
        pace.Await();
        EXPECT_TRUE(isReleased);
    });
    isReleased = true;
    pace.Released();
    other.join();
}

TEST(FramePace, HoldsNothingWithOneBufferOrAfterTheEnd) {
    FramePace pace;
    PacedFrames frames(pace);
    pace.Begin(1);
    frames.Send("cccc");
    frames.Join();
    pace.Begin(2);
    frames.Send("cccc");
    pace.End();
    frames.Join();
    EXPECT_EQ(frames.sent, 8);
    pace.Begin(2); // without those of the former acquisition
    frames.Send("c");
    frames.Join();
    EXPECT_EQ(frames.sent, 9);
}

} // namespace
