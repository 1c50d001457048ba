// mutex_test.cpp - recursive mutex and scoped lock
#include "platform/mutex.h"

#include "platform/event.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace platform {
namespace {

bool OtherThreadGets(Mutex& mutex) {
    bool taken = false;
    std::thread other([&] {
        if (mutex.TryLock()) {
            taken = true;
            mutex.Unlock();
        }
    });
    other.join();
    return taken;
}

// The thread-safety analysis would reject what this test is about: locking twice.
void LockTwiceAndCheck(Mutex& mutex) NO_THREAD_SAFETY_ANALYSIS {
    mutex.Lock();
    mutex.Lock();
    EXPECT_TRUE(mutex.TryLock());
    EXPECT_FALSE(OtherThreadGets(mutex));
    mutex.Unlock();
    mutex.Unlock();
    EXPECT_FALSE(OtherThreadGets(mutex));
    mutex.Unlock();
    EXPECT_TRUE(OtherThreadGets(mutex));
}

TEST(Mutex, IsHeldUntilUnlockedAsManyTimesAsLocked) {
    Mutex mutex;
    LockTwiceAndCheck(mutex);
}

TEST(Mutex, IsInitiallyFree) {
    Mutex mutex;
    EXPECT_TRUE(OtherThreadGets(mutex));
}

TEST(Mutex, TryLockHoldsTheMutexWhenItSucceeds) {
    Mutex mutex;
    bool taken = false;
    if (mutex.TryLock()) {
        taken = true;
        EXPECT_FALSE(OtherThreadGets(mutex));
        mutex.Unlock();
    }
    EXPECT_TRUE(taken);
    EXPECT_TRUE(OtherThreadGets(mutex));
}

TEST(MutexLock, HoldsTheMutexForItsScope) {
    Mutex mutex;
    {
        const MutexLock lock(mutex);
        EXPECT_FALSE(OtherThreadGets(mutex));
    }
    EXPECT_TRUE(OtherThreadGets(mutex));
}

TEST(Mutex, AdmitsOneThreadAtATime) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    Mutex mutex;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const MutexLock lock(mutex);
                ++counter;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counter, kThreads * kRounds);
}

TEST(Mutex, LockWaitsForTheHolder) {
    Mutex mutex;
    Event locked;
    Event release;
    bool released = false;
    std::thread holder([&] {
        const MutexLock lock(mutex);
        locked.Set();
        release.Wait(kInfinite);
        released = true;
    });
    ASSERT_TRUE(locked.Wait(60000));
    release.Set();
    {
        const MutexLock lock(mutex);
        EXPECT_TRUE(released);
    }
    holder.join();
}

} // namespace
} // namespace platform
