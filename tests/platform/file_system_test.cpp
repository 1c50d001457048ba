#include "platform/file_system.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr fs::perms kAllWrite =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

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

TEST_F(FileSystem, TellsFilesFromDirectories) {
    const std::string file = directory.Write("file", "content");
    EXPECT_TRUE(PathExists(file));
    EXPECT_TRUE(IsRegularFile(file));
    EXPECT_FALSE(IsDirectory(file));
    EXPECT_TRUE(PathExists(directory.Path()));
    EXPECT_FALSE(IsRegularFile(directory.Path()));
    EXPECT_TRUE(IsDirectory(directory.Path()));
}

TEST_F(FileSystem, KnowsWhatIsNotThere) {
    for (const std::string& path : {directory.PathOf("nothing"), std::string()}) {
        EXPECT_FALSE(PathExists(path)) << path;
        EXPECT_FALSE(IsRegularFile(path)) << path;
        EXPECT_FALSE(IsDirectory(path)) << path;
    }
}

TEST_F(FileSystem, CreatesTheDirectoriesAbove) {
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

TEST_F(FileSystem, RemovesADirectoryWithAllThatIsInIt) {
    directory.Write(JoinPath("tree", JoinPath("deep", "file")), "content");
    const std::string locked = directory.Write(JoinPath("tree", "read-only"), "content");
    fs::permissions(locked, kAllWrite, fs::perm_options::remove);
    EXPECT_TRUE(RemoveDirectoryTree(directory.PathOf("tree")));
    EXPECT_FALSE(PathExists(directory.PathOf("tree")));
    EXPECT_TRUE(RemoveDirectoryTree(directory.PathOf("tree")));
}

TEST_F(FileSystem, RemovingATreeSparesAFileOfThatName) {
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

TEST_F(FileSystem, SaysWhyAFileCannotBeRead) {
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

TEST_F(FileSystem, ReplacePutsTheNewContentInPlaceOfTheOld) {
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
