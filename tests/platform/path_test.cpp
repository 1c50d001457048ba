#include "platform/file_system.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace platform {
namespace {

constexpr std::size_t kPlenty = 4096;

// Spells a path that is written with '/' the platform's way.
std::string Native(std::string path) {
    std::replace(path.begin(), path.end(), '/', kPathSeparator);
    return path;
}

TEST(Path, LibraryFileNamesFollowThePlatform) {
    const bool isWindows = kPathSeparator == '\\';
    EXPECT_EQ(LibraryFileName("PxnC"), isWindows ? "PxnC.dll" : "libPxnC.so");
}

TEST(Path, DirectoryOfDropsNameAndSeparator) {
    EXPECT_EQ(DirectoryOf(Native("a/b/c.txt")), Native("a/b"));
    EXPECT_EQ(DirectoryOf(Native("a/b")), "a");
    EXPECT_EQ(DirectoryOf(Native("a//b")), "a");
    EXPECT_EQ(DirectoryOf(Native("/a/b")), Native("/a"));
}

TEST(Path, DirectoryOfANameAloneIsEmpty) {
    EXPECT_EQ(DirectoryOf("name"), "");
    EXPECT_EQ(DirectoryOf(""), "");
}

TEST(Path, DirectoryOfADirectoryWithItsSeparatorIsTheDirectory) {
    EXPECT_EQ(DirectoryOf(Native("a/b/")), Native("a/b"));
    EXPECT_EQ(DirectoryOf(Native("a//")), "a");
}

TEST(Path, TheRootKeepsItsSeparator) {
    EXPECT_EQ(DirectoryOf(Native("/a")), Native("/"));
    EXPECT_EQ(DirectoryOf(Native("/")), Native("/"));
    EXPECT_EQ(DirectoryOf(Native("//a")), Native("/"));
}

TEST(Path, TheOtherPlatformsSeparatorCountsOnWindowsOnly) {
    const bool isWindows = kPathSeparator == '\\';
    EXPECT_EQ(DirectoryOf("a/b\\c"), isWindows ? "a/b" : "a");
    EXPECT_EQ(DirectoryOf("a\\b"), isWindows ? "a" : "");
    EXPECT_EQ(DirectoryOf("C:\\a"), isWindows ? "C:\\" : "");
    EXPECT_EQ(DirectoryOf("C:/a/b"), "C:/a");
    EXPECT_EQ(DirectoryOf("C:a"), isWindows ? "C:" : "");
    EXPECT_EQ(JoinPath("C:", "a"), isWindows ? "C:a" : "C:/a");
}

TEST(Path, JoinPutsOneSeparatorBetween) {
    EXPECT_EQ(JoinPath("a", "b"), Native("a/b"));
    EXPECT_EQ(JoinPath(Native("a/"), "b"), Native("a/b"));
    EXPECT_EQ(JoinPath(Native("/"), "b"), Native("/b"));
    EXPECT_EQ(JoinPath(Native("a/b"), Native("c/d")), Native("a/b/c/d"));
}

TEST(Path, JoinWithoutADirectoryIsTheName) {
    EXPECT_EQ(JoinPath("", "b"), "b");
    EXPECT_EQ(JoinPath("", ""), "");
}

TEST(Path, JoinUndoesDirectoryOf) {
    for (const char* path : {"a/b", "/a", "/a/b/c", "name"}) {
        const std::string native = Native(path);
        const std::string directory = DirectoryOf(native);
        const std::size_t nameAt = native.find_last_of(kPathSeparator) + 1;
        EXPECT_EQ(JoinPath(directory, native.substr(nameAt)), native);
    }
}

TEST(Path, FullPathStartsFromTheCurrentDirectory) {
    const std::string current = std::filesystem::current_path().string();
    EXPECT_EQ(FullPath("surely-not-there.txt", kPlenty), JoinPath(current, "surely-not-there.txt"));
}

TEST(Path, FullPathKeepsAnAbsolutePath) {
    const support::TemporaryDirectory directory;
    EXPECT_EQ(FullPath(directory.Path(), kPlenty), directory.Path());
}

TEST(Path, FullPathMustBeShorterThanTheLimit) {
    const std::string full = FullPath("x", kPlenty);
    ASSERT_FALSE(full.empty());
    EXPECT_EQ(FullPath("x", full.size() + 1), full);
    EXPECT_EQ(FullPath("x", full.size()), "");
    EXPECT_EQ(FullPath("x", 1), "");
    EXPECT_EQ(FullPath("x", 0), "");
}

TEST(Path, FullPathOfNothingIsEmpty) {
    EXPECT_EQ(FullPath("", kPlenty), "");
}

TEST(Path, TheExecutableIsAnAbsoluteFile) {
    const std::string path = ExecutablePath();
    EXPECT_TRUE(IsRegularFile(path)) << path;
    EXPECT_EQ(FullPath(path, kPlenty), path);
    EXPECT_NE(path.find("platform_tests"), std::string::npos) << path;
}

} // namespace
} // namespace platform
