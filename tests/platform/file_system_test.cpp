// file_system_test.cpp - paths, directories and whole files
#include "platform/file_system.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr fs::perms kAllWrite =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

constexpr std::size_t kPathLimit = 4096;

// Replaces '/' by the platform's separator.
std::string Native(std::string path) {
    std::replace(path.begin(), path.end(), '/', kPathSeparator);
    return path;
}

class FileSystem : public testing::Test {
protected:
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(directory.Path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    support::TemporaryDirectory directory;
};

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
    EXPECT_EQ(FullPath("surely-not-there.txt", kPathLimit),
              JoinPath(current, "surely-not-there.txt"));
}

TEST(Path, FullPathKeepsAnAbsolutePath) {
    const support::TemporaryDirectory directory;
    EXPECT_EQ(FullPath(directory.Path(), kPathLimit), directory.Path());
}

TEST(Path, FullPathMustBeShorterThanTheLimit) {
    const std::string full = FullPath("x", kPathLimit);
    ASSERT_FALSE(full.empty());
    EXPECT_EQ(FullPath("x", full.size() + 1), full);
    EXPECT_EQ(FullPath("x", full.size()), "");
    EXPECT_EQ(FullPath("x", 1), "");
    EXPECT_EQ(FullPath("x", 0), "");
}

TEST(Path, FullPathOfNothingIsEmpty) {
    EXPECT_EQ(FullPath("", kPathLimit), "");
}

TEST(Path, TheExecutableIsAnAbsoluteFile) {
    const std::string path = ExecutablePath();
    EXPECT_TRUE(IsRegularFile(path)) << path;
    EXPECT_EQ(FullPath(path, kPathLimit), path);
    EXPECT_NE(path.find("platform_tests"), std::string::npos) << path;
}

TEST_F(FileSystem, DistinguishesFilesFromDirectories) {
    const std::string file = directory.Write("file", "content");
    EXPECT_TRUE(PathExists(file));
    EXPECT_TRUE(IsRegularFile(file));
    EXPECT_FALSE(IsDirectory(file));
    EXPECT_TRUE(PathExists(directory.Path()));
    EXPECT_FALSE(IsRegularFile(directory.Path()));
    EXPECT_TRUE(IsDirectory(directory.Path()));
}

TEST_F(FileSystem, RecognisesWhatDoesNotExist) {
    for (const std::string& path : {directory.PathOf("nothing"), std::string()}) {
        EXPECT_FALSE(PathExists(path)) << path;
        EXPECT_FALSE(IsRegularFile(path)) << path;
        EXPECT_FALSE(IsDirectory(path)) << path;
    }
}

TEST_F(FileSystem, CreatesMissingParents) {
    const std::string deep = JoinPath(JoinPath(directory.PathOf("a"), "b"), "c");
    EXPECT_TRUE(CreateDirectories(deep));
    EXPECT_TRUE(IsDirectory(deep));
    EXPECT_TRUE(CreateDirectories(deep));
}

TEST_F(FileSystem, CreatesNoDirectoryWhereAFileIs) {
    const std::string file = directory.Write("file", "content");
    EXPECT_FALSE(CreateDirectories(file));
    EXPECT_FALSE(CreateDirectories(JoinPath(file, "below")));
    EXPECT_FALSE(CreateDirectories(""));
    EXPECT_EQ(directory.Read("file"), "content");
}

TEST_F(FileSystem, TemporaryDirectoriesAreFreshAndEmpty) {
    const std::string first = CreateTemporaryDirectory("platform-");
    const std::string second = CreateTemporaryDirectory("platform-");
    EXPECT_NE(first, second);
    for (const std::string& path : {first, second}) {
        ASSERT_TRUE(IsDirectory(path)) << path;
        EXPECT_TRUE(fs::is_empty(path));
        EXPECT_EQ(path.substr(DirectoryOf(path).size() + 1).rfind("platform-", 0), 0u) << path;
        EXPECT_TRUE(RemoveDirectoryTree(path));
    }
}

TEST_F(FileSystem, RemovesADirectoryAndItsContents) {
    directory.Write(JoinPath("tree", JoinPath("deep", "file")), "content");
    const std::string locked = directory.Write(JoinPath("tree", "read-only"), "content");
    fs::permissions(locked, kAllWrite, fs::perm_options::remove);
    EXPECT_TRUE(RemoveDirectoryTree(directory.PathOf("tree")));
    EXPECT_FALSE(PathExists(directory.PathOf("tree")));
    EXPECT_TRUE(RemoveDirectoryTree(directory.PathOf("tree")));
}

TEST_F(FileSystem, RemovingATreeKeepsAFileOfThatName) {
    const std::string file = directory.Write("file", "content");
    EXPECT_FALSE(RemoveDirectoryTree(file));
    EXPECT_EQ(directory.Read("file"), "content");
}

TEST_F(FileSystem, ReadsEveryByte) {
    std::string bytes;
    for (int i = 0; i < 100'000; ++i) {
        bytes.push_back(static_cast<char>(i % 256));
    }
    std::string content;
    EXPECT_TRUE(ReadWholeFile(directory.Write("bytes", bytes), content));
    EXPECT_EQ(content, bytes);
    EXPECT_TRUE(ReadWholeFile(directory.Write("empty", ""), content));
    EXPECT_EQ(content, "");
}

TEST_F(FileSystem, ReportsWhyAFileCannotBeRead) {
    for (const std::string& path : {directory.PathOf("nothing"), directory.Path()}) {
        std::string content = "unchanged";
        std::string error;
        EXPECT_FALSE(ReadWholeFile(path, content, &error)) << path;
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(content, "unchanged");
        EXPECT_FALSE(ReadWholeFile(path, content));
    }
}

TEST_F(FileSystem, ReplaceWritesANewFile) {
    const std::string content("line\r\n\0\x1a\xff end", 13);
    std::string error = "unchanged";
    EXPECT_TRUE(ReplaceWholeFile(directory.PathOf("file"), content, &error)) << error;
    EXPECT_EQ(error, "unchanged");
    EXPECT_EQ(directory.Read("file"), content);
    EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileSystem, ReplaceOverwritesTheOldContent) {
    directory.Write("file", "a much longer content than the new one");
    EXPECT_TRUE(ReplaceWholeFile(directory.PathOf("file"), "new"));
    EXPECT_EQ(directory.Read("file"), "new");
    EXPECT_TRUE(ReplaceWholeFile(directory.PathOf("file"), ""));
    EXPECT_EQ(directory.Read("file"), "");
    EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileSystem, ReplaceWorksInTheCurrentDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(directory.Path());
    EXPECT_TRUE(ReplaceWholeFile("file", "content"));
    fs::current_path(before);
    EXPECT_EQ(directory.Read("file"), "content");
}

TEST_F(FileSystem, ReplaceNeedsTheDirectory) {
    const std::string path = directory.PathOf(JoinPath("missing", "file"));
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(path, "content", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(PathExists(path));
    EXPECT_TRUE(Names().empty());
}

TEST_F(FileSystem, ReplaceRefusesAReadOnlyFile) {
    const std::string path = directory.Write("file", "old");
    fs::permissions(path, kAllWrite, fs::perm_options::remove);
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(path, "new", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(directory.Read("file"), "old");
    EXPECT_EQ(Names(), std::set<std::string>{"file"});
    EXPECT_FALSE(ReplaceWholeFile(path, "new"));
}

TEST_F(FileSystem, ReplaceRefusesADirectory) {
    const std::string path = directory.PathOf("directory");
    ASSERT_TRUE(CreateDirectories(path));
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(path, "content", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_TRUE(IsDirectory(path));
    EXPECT_EQ(Names(), std::set<std::string>{"directory"});
}

TEST_F(FileSystem, ReplaceRefusesAnEmptyName) {
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile("", "content", &error));
    EXPECT_FALSE(error.empty());
}

} // namespace
} // namespace platform
