// file_lock_test.cpp - locks of files between threads and processes
#include "platform/file_lock.h"

#include "platform/file_system.h"
#include "platform/sleep.h"
#include "tests/support/manual_clock.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace platform {
namespace {

constexpr std::uint32_t kLockLimitMs = 60000;

class FileLockTest : public testing::Test {
protected:
    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file.ini");
    const std::string lockPath = path + ".lock";
};

TEST_F(FileLockTest, ExcludesOthersUntilItIsReleased) {
    FileLock first;
    FileLock second;
    std::string error;
    ASSERT_TRUE(first.Acquire(path, 0, &error)) << error;
    EXPECT_FALSE(second.Acquire(path, 0, &error));
    EXPECT_EQ(error, "\"" + lockPath + "\" has been held by another writer for 0 ms");
    EXPECT_TRUE(second.Acquire(directory.PathOf("other.ini"), 0, &error)) << error;
    first.Release();
    EXPECT_TRUE(second.Acquire(path, 0, &error)) << error;
    EXPECT_FALSE(first.Acquire(path, 0));
}

TEST_F(FileLockTest, LeavesNoLockFile) {
    {
        FileLock lock;
        ASSERT_TRUE(lock.Acquire(path, 0));
        EXPECT_TRUE(PathExists(lockPath));
        EXPECT_FALSE(PathExists(path));
        lock.Release();
        EXPECT_FALSE(PathExists(lockPath));
        lock.Release();
        ASSERT_TRUE(lock.Acquire(path, 0));
    }
    EXPECT_FALSE(PathExists(lockPath));
}

TEST_F(FileLockTest, TakesOverALockFileThatNobodyHolds) {
    directory.Write("file.ini.lock", "");
    FileLock lock;
    std::string error;
    EXPECT_TRUE(lock.Acquire(path, 0, &error)) << error;
    lock.Release();
    EXPECT_FALSE(PathExists(lockPath));
}

TEST_F(FileLockTest, AcquiringAgainReleasesTheFormerLock) {
    FileLock lock;
    FileLock other;
    ASSERT_TRUE(lock.Acquire(path, 0));
    EXPECT_TRUE(lock.Acquire(path, 0));
    EXPECT_TRUE(lock.Acquire(directory.PathOf("other.ini"), 0));
    EXPECT_TRUE(other.Acquire(path, 0));
}

TEST_F(FileLockTest, WaitsForTheHolder) {
    FileLock held;
    ASSERT_TRUE(held.Acquire(path, 0));
    std::atomic<bool> isAcquired{false};
    std::thread waiter([&] {
        FileLock lock;
        std::string error;
        EXPECT_TRUE(lock.Acquire(path, kLockLimitMs, &error)) << error;
        isAcquired = true;
    });
    SleepMs(20);
    EXPECT_FALSE(isAcquired);
    held.Release();
    waiter.join();
    EXPECT_TRUE(isAcquired);
}

TEST_F(FileLockTest, GivesUpAtTheTimeLimit) {
    FileLock held;
    ASSERT_TRUE(held.Acquire(path, 0));
    support::ManualClock clock;
    std::atomic<bool> hasEnded{false};
    std::string error;
    std::thread waiter([&] {
        FileLock lock;
        EXPECT_FALSE(lock.Acquire(path, 5000, &error));
        hasEnded = true;
    });
    while (clock.Readings() < 3) {
        std::this_thread::yield();
    }
    clock.Advance(4999);
    const std::uint64_t before = clock.Readings();
    while (clock.Readings() < before + 3) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(hasEnded);
    clock.Advance(1);
    waiter.join();
    EXPECT_NE(error.find("for 5000 ms"), std::string::npos) << error;
}

TEST_F(FileLockTest, ReportsALockFileThatCannotBeOpened) {
    FileLock lock;
    std::string error;
    EXPECT_FALSE(lock.Acquire(directory.PathOf("missing/file.ini"), kLockLimitMs, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(lock.Acquire(directory.PathOf("missing/file.ini"), kLockLimitMs));
    ASSERT_TRUE(CreateDirectories(lockPath));
    error.clear();
    EXPECT_FALSE(lock.Acquire(path, kLockLimitMs, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_TRUE(IsDirectory(lockPath));
}

TEST_F(FileLockTest, IsHeldByOneThreadAtATime) {
    std::atomic<int> holders{0};
    std::atomic<int> most{0};
    std::atomic<int> acquired{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                FileLock lock;
                std::string error;
                EXPECT_TRUE(lock.Acquire(path, kLockLimitMs, &error)) << error;
                most = std::max(most.load(), ++holders);
                ++acquired;
                --holders;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(acquired, 200);
    EXPECT_FALSE(PathExists(lockPath));
}

} // namespace
} // namespace platform
