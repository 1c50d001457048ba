// static_mutex_test.cpp - a mutex for static storage
#include "platform/static_mutex.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <vector>

namespace {

constinit platform::StaticMutex sharedMutex;
unsigned sharedCount GUARDED_BY(sharedMutex) = 0;

TEST(StaticMutexTest, LetsOneThreadInAtATime) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([] {
            for (int round = 0; round < 5000; ++round) {
                const platform::StaticMutexLock lock(sharedMutex);
                ++sharedCount;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const platform::StaticMutexLock lock(sharedMutex);
    EXPECT_EQ(sharedCount, 20000u);
}

TEST(StaticMutexTest, NeedsNoDestruction) {
    EXPECT_TRUE(std::is_trivially_destructible_v<platform::StaticMutex>);
}

} // namespace
