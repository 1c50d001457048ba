// file_system_posix_test.cpp - permissions, symbolic links and atomic replacement
#include "platform/file_system.h"

#include "tests/support/posix/file_size_limit.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <thread>

namespace platform {
namespace {

namespace fs = std::filesystem;

class PosixFileSystem : public testing::Test {
protected:
    std::ptrdiff_t CountEntries() const {
        return std::distance(fs::directory_iterator(directory.Path()), fs::directory_iterator());
    }
    static mode_t ModeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777;
    }

    support::TemporaryDirectory directory;
};

TEST_F(PosixFileSystem, ReplaceKeepsThePermissionBits) {
    const std::string path = directory.Write("file", "old");
    for (const mode_t mode : {mode_t{0600}, mode_t{0664}, mode_t{0755}, mode_t{0200}}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_TRUE(ReplaceWholeFile(path, "new"));
        EXPECT_EQ(ModeOf(path), mode);
    }
}

TEST_F(PosixFileSystem, ANewFileGetsTheUsualPermissionBits) {
    const std::string path = directory.PathOf("file");
    const mode_t mask = umask(027);
    EXPECT_TRUE(ReplaceWholeFile(path, "new"));
    umask(mask);
    EXPECT_EQ(ModeOf(path), mode_t{0640});
}

TEST_F(PosixFileSystem, ReplaceKeepsALinkAndReplacesItsTarget) {
    const std::string real = directory.Write("below/real.ini", "old");
    const std::string link = directory.PathOf("link.ini");
    const std::string linkToLink = directory.PathOf("second.ini");
    fs::create_symlink("below/real.ini", link);
    fs::create_symlink(link, linkToLink);
    EXPECT_TRUE(ReplaceWholeFile(linkToLink, "new"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(fs::is_symlink(linkToLink));
    EXPECT_FALSE(fs::is_symlink(real));
    EXPECT_EQ(directory.Read("below/real.ini"), "new");
}

TEST_F(PosixFileSystem, ReplaceCreatesTheTargetOfALink) {
    const std::string link = directory.PathOf("link");
    fs::create_symlink("real", link);
    EXPECT_TRUE(ReplaceWholeFile(link, "new"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(directory.Read("real"), "new");
}

TEST_F(PosixFileSystem, ReplaceRefusesCircularLinks) {
    const std::string link = directory.PathOf("link");
    fs::create_symlink("other", link);
    fs::create_symlink("link", directory.PathOf("other"));
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(link, "new", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(CountEntries(), 2);
}

TEST_F(PosixFileSystem, ReplaceRefusesAReadOnlyFileBehindALink) {
    const std::string real = directory.Write("real", "old");
    ASSERT_EQ(chmod(real.c_str(), 0444), 0);
    const std::string link = directory.PathOf("link");
    fs::create_symlink("real", link);
    EXPECT_FALSE(ReplaceWholeFile(link, "new"));
    EXPECT_EQ(directory.Read("real"), "old");
    EXPECT_EQ(CountEntries(), 2);
}

TEST_F(PosixFileSystem, ReplaceRefusesWhatIsNotAFile) {
    const std::string path = directory.PathOf("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(path, "new", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(PosixFileSystem, AFailedWriteLeavesTheOldFileAndNothingElse) {
    const std::string path = directory.Write("file", "old");
    std::string error;
    {
        const support::FileSizeLimit limit(1000);
        EXPECT_FALSE(ReplaceWholeFile(path, std::string(5000, 'x'), &error));
    }
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(directory.Read("file"), "old");
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(PosixFileSystem, AReaderSeesTheCompleteOldOrNewFile) {
    const std::string path = directory.PathOf("file");
    const std::string contents[] = {std::string(70'000, 'a'), std::string(30'000, 'b')};
    ASSERT_TRUE(ReplaceWholeFile(path, contents[0]));
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        for (int i = 1; !stop; ++i) {
            EXPECT_TRUE(ReplaceWholeFile(path, contents[i % 2]));
        }
    });
    for (int i = 0; i < 300; ++i) {
        std::string read;
        EXPECT_TRUE(ReadWholeFile(path, read));
        EXPECT_TRUE(read == contents[0] || read == contents[1]) << read.size();
    }
    stop = true;
    writer.join();
}

TEST_F(PosixFileSystem, SeveralThreadsMayReplaceOneFile) {
    const std::string path = directory.PathOf("file");
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([&path, i] {
            for (int round = 0; round < 20; ++round) {
                EXPECT_TRUE(ReplaceWholeFile(path, std::string(1000, static_cast<char>('a' + i))));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const std::string content = directory.Read("file");
    EXPECT_EQ(content, std::string(1000, content[0]));
    EXPECT_EQ(CountEntries(), 1);
}

TEST_F(PosixFileSystem, RemovingATreeKeepsTheTargetsOfLinks) {
    directory.Write("kept/file", "content");
    ASSERT_TRUE(CreateDirectories(directory.PathOf("tree")));
    fs::create_symlink(directory.PathOf("kept"), directory.PathOf("tree/link"));
    EXPECT_TRUE(RemoveDirectoryTree(directory.PathOf("tree")));
    EXPECT_EQ(directory.Read("kept/file"), "content");
}

TEST_F(PosixFileSystem, FullPathIsEmptyWithoutACurrentDirectory) {
    const fs::path before = fs::current_path();
    const std::string gone = directory.PathOf("gone");
    ASSERT_TRUE(CreateDirectories(gone));
    fs::current_path(gone);
    ASSERT_TRUE(RemoveDirectoryTree(gone));
    EXPECT_EQ(FullPath("file", 4096), "");
    EXPECT_EQ(FullPath("/file", 4096), "/file");
    fs::current_path(before);
}

TEST_F(PosixFileSystem, MakesNoTemporaryDirectoryWhereItCannot) {
    EXPECT_EQ(CreateTemporaryDirectory("no-such-directory/name-"), "");
    const char* const before = std::getenv("TMPDIR");
    const std::string kept = before ? before : "";
    ASSERT_EQ(setenv("TMPDIR", directory.PathOf("missing").c_str(), 1), 0);
    EXPECT_EQ(CreateTemporaryDirectory("name-"), "");
    ASSERT_EQ(before ? setenv("TMPDIR", kept.c_str(), 1) : unsetenv("TMPDIR"), 0);
}

} // namespace
} // namespace platform
