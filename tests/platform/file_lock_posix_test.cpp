// file_lock_posix_test.cpp - lock files, links, permissions and child processes
#include "platform/file_lock.h"

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace platform {
namespace {

class PosixFileLock : public testing::Test {
protected:
    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file.ini");
    const std::string lockPath = path + ".lock";
};

TEST_F(PosixFileLock, OfALinkIsThatOfItsTarget) {
    const std::string real = directory.Write("below/real.ini", "");
    std::filesystem::create_symlink("below/real.ini", path);
    FileLock lock;
    FileLock other;
    ASSERT_TRUE(lock.Acquire(path, 0));
    EXPECT_TRUE(PathExists(real + ".lock"));
    EXPECT_FALSE(PathExists(lockPath));
    EXPECT_FALSE(other.Acquire(real, 0));
}

TEST_F(PosixFileLock, RefusesCircularLinks) {
    std::filesystem::create_symlink("other", path);
    std::filesystem::create_symlink("file.ini", directory.PathOf("other"));
    FileLock lock;
    std::string error;
    EXPECT_FALSE(lock.Acquire(path, 60000, &error));
    EXPECT_FALSE(error.empty());
}

TEST_F(PosixFileLock, DoesNotFollowALockFileThatIsALink) {
    const std::string victim = directory.Write("victim", "content");
    std::filesystem::create_symlink("victim", lockPath);
    FileLock lock;
    std::string error;
    EXPECT_FALSE(lock.Acquire(path, 60000, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(directory.Read("victim"), "content");
}

TEST_F(PosixFileLock, IsReleasedThoughAChildProcessHasACopy) {
    FileLock lock;
    ASSERT_TRUE(lock.Acquire(path, 0));
    int toChild[2];
    ASSERT_EQ(pipe(toChild), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(toChild[1]);
        char byte = 0;
        _exit(read(toChild[0], &byte, 1) == 0 ? 0 : 1);
    }
    close(toChild[0]);
    lock.Release();
    FileLock other;
    std::string error;
    EXPECT_TRUE(other.Acquire(path, 0, &error)) << error;
    close(toChild[1]);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(PosixFileLock, KeepsAForeignFileThatHasTakenItsName) {
    FileLock lock;
    ASSERT_TRUE(lock.Acquire(path, 0));
    ASSERT_EQ(unlink(lockPath.c_str()), 0);
    directory.Write("file.ini.lock", "another one");
    lock.Release();
    EXPECT_EQ(directory.Read("file.ini.lock"), "another one");
}

} // namespace
} // namespace platform
