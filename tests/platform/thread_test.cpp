// thread_test.cpp - threads and their stacks
#include "platform/thread.h"

#include "platform/event.h"
#include "platform/sleep.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

namespace platform {
namespace {

constexpr std::size_t kMegabyte = 1024 * 1024;

// Runs for a little longer after it has been released, and sets a flag before it ends.
struct Straggler {
    Event release;
    std::atomic<bool> ended{false};

    static void Run(void* self) {
        auto* straggler = static_cast<Straggler*>(self);
        straggler->release.Wait(kInfinite);
        SleepMs(20);
        straggler->ended = true;
    }
};

// Lets a thread access its own Thread object once that has been assigned.
struct SelfAware {
    Thread thread;
    Event inPlace;
    Event done;
    bool isCurrent = false;
};

TEST(Thread, IsNotJoinableByDefault) {
    Thread thread;
    EXPECT_FALSE(thread.IsJoinable());
    EXPECT_FALSE(thread.IsCurrent());
    thread.Join();
    EXPECT_FALSE(thread.IsJoinable());
}

TEST(Thread, RunsTheProcedureWithItsArgument) {
    int value = 20;
    Thread thread =
        Thread::Start([](void* argument) { *static_cast<int*>(argument) += 22; }, &value, 0);
    EXPECT_TRUE(thread.IsJoinable());
    thread.Join();
    EXPECT_EQ(value, 42);
    EXPECT_FALSE(thread.IsJoinable());
    thread.Join();
}

TEST(Thread, JoinWaitsForTheEnd) {
    Straggler straggler;
    Thread thread = Thread::Start(&Straggler::Run, &straggler, 0);
    ASSERT_TRUE(thread.IsJoinable());
    straggler.release.Set();
    thread.Join();
    EXPECT_TRUE(straggler.ended);
}

TEST(Thread, DestructionJoins) {
    Straggler straggler;
    {
        const Thread thread = Thread::Start(&Straggler::Run, &straggler, 0);
        ASSERT_TRUE(thread.IsJoinable());
        straggler.release.Set();
    }
    EXPECT_TRUE(straggler.ended);
}

TEST(Thread, AssignmentJoinsTheFormerThread) {
    Straggler straggler;
    Thread thread = Thread::Start(&Straggler::Run, &straggler, 0);
    ASSERT_TRUE(thread.IsJoinable());
    straggler.release.Set();
    thread = Thread();
    EXPECT_TRUE(straggler.ended);
    EXPECT_FALSE(thread.IsJoinable());
}

TEST(Thread, MovingTransfersTheThread) {
    Straggler straggler;
    Thread first = Thread::Start(&Straggler::Run, &straggler, 0);
    Thread second = std::move(first);
    EXPECT_FALSE(first.IsJoinable());
    EXPECT_TRUE(second.IsJoinable());
    Thread third;
    third = std::move(second);
    EXPECT_FALSE(second.IsJoinable());
    EXPECT_TRUE(third.IsJoinable());
    straggler.release.Set();
    third.Join();
    EXPECT_TRUE(straggler.ended);
}

TEST(Thread, AssignedToItselfStaysJoinable) {
    Thread thread = Thread::Start([](void*) {}, nullptr, 0);
    Thread& same = thread;
    thread = std::move(same);
    EXPECT_TRUE(thread.IsJoinable());
}

TEST(Thread, RecognisesTheCallingThread) {
    SelfAware self;
    self.thread = Thread::Start(
        [](void* argument) {
            auto* me = static_cast<SelfAware*>(argument);
            me->inPlace.Wait(kInfinite);
            me->isCurrent = me->thread.IsCurrent();
        },
        &self, 0);
    EXPECT_FALSE(self.thread.IsCurrent());
    self.inPlace.Set();
    self.thread.Join();
    EXPECT_TRUE(self.isCurrent);
    EXPECT_FALSE(self.thread.IsCurrent());
}

TEST(Thread, JoiningItselfDetachesTheThread) {
    SelfAware self;
    self.thread = Thread::Start(
        [](void* argument) {
            auto* me = static_cast<SelfAware*>(argument);
            me->inPlace.Wait(kInfinite);
            me->thread.Join();
            me->done.Set();
        },
        &self, 0);
    ASSERT_TRUE(self.thread.IsJoinable());
    self.inPlace.Set();
    ASSERT_TRUE(self.done.Wait(60000));
    EXPECT_FALSE(self.thread.IsJoinable());
}

TEST(Thread, RunsOnASmallStack) {
    char text[64] = "";
    Thread thread = Thread::Start(
        [](void* argument) {
            std::snprintf(static_cast<char*>(argument), 64, "%s %.3f", "formatted", 2.5);
        },
        text, 16384);
    ASSERT_TRUE(thread.IsJoinable());
    thread.Join();
    EXPECT_STREQ(text, "formatted 2.500");
}

TEST(Thread, HasTheRequestedStackSize) {
    // Larger than the default stack of any supported system.
    constexpr std::size_t kStack = 48 * kMegabyte;
    constexpr int kDepth = 40;
    struct Recursion {
        // Touches one megabyte per level.
        static std::size_t Descend(int depth) {
            volatile char block[kMegabyte];
            for (std::size_t i = 0; i < sizeof block; i += 1024) {
                block[i] = 1;
            }
            return depth == 0 ? 0 : Descend(depth - 1) + static_cast<std::size_t>(block[0]);
        }
    };
    std::size_t reached = 0;
    Thread thread = Thread::Start(
        [](void* argument) { *static_cast<std::size_t*>(argument) = Recursion::Descend(kDepth); },
        &reached, kStack);
    ASSERT_TRUE(thread.IsJoinable());
    thread.Join();
    EXPECT_EQ(reached, static_cast<std::size_t>(kDepth));
}

TEST(Thread, IsNotJoinableWhenItCannotBeStarted) {
    std::atomic<bool> ran{false};
    Thread thread =
        Thread::Start([](void* argument) { *static_cast<std::atomic<bool>*>(argument) = true; },
                      &ran, std::numeric_limits<std::size_t>::max() / 4);
    EXPECT_FALSE(thread.IsJoinable());
    thread.Join();
    EXPECT_FALSE(ran);
}

} // namespace
} // namespace platform
