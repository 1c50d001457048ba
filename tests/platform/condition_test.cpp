// condition_test.cpp - tests of waiting for what other threads change
#include "platform/condition.h"

#include <gtest/gtest.h>

#include <thread>

namespace platform {
namespace {

TEST(Condition, EndsAWaitWhenNotified) {
    Mutex mutex;
    Condition condition;
    int state = 0;
    std::thread other([&] {
        for (int round = 0; round < 100; ++round) {
            const MutexLock lock(mutex);
            while (state != 1) {
                condition.Wait(mutex);
            }
            state = 2;
            condition.NotifyAll();
        }
    });
    for (int round = 0; round < 100; ++round) {
        const MutexLock lock(mutex);
        state = 1;
        condition.NotifyAll();
        while (state != 2) {
            condition.Wait(mutex);
        }
    }
    other.join();
    EXPECT_EQ(state, 2);
}

TEST(Condition, EndsAWaitWhenTheTimeIsOver) {
    Mutex mutex;
    Condition condition;
    const MutexLock lock(mutex);
    condition.WaitFor(mutex, 1);
    condition.WaitFor(mutex, 0);
    EXPECT_TRUE(mutex.TryLock()) << "held again";
    mutex.Unlock();
}

} // namespace
} // namespace platform
