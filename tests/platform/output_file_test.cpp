// output_file_test.cpp - files that get their name when they are whole
#include "platform/output_file.h"

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace platform {
namespace {

class OutputFileTest : public testing::Test {
protected:
    std::set<std::string> FileNames() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file");
};

TEST_F(OutputFileTest, GetsItsNameWhenItIsWhole) {
    OutputFile file;
    EXPECT_FALSE(file.IsOpen());
    std::string error;
    ASSERT_TRUE(file.Create(path, &error)) << error;
    EXPECT_TRUE(file.IsOpen());
    EXPECT_TRUE(file.Append({{"head", 4}, {"", 0}, {"tail", 4}}, &error)) << error;
    EXPECT_TRUE(file.Append({{"more", 4}}, &error)) << error;
    EXPECT_EQ(file.Size(), 12u);
    EXPECT_TRUE(file.Overwrite(2, {"AL", 2}, &error)) << error;
    EXPECT_FALSE(PathExists(path));
    EXPECT_EQ(FileNames().size(), 1u);
    EXPECT_TRUE(file.Finish(false, &error)) << error;
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(directory.Read("file"), "heALtailmore");
    EXPECT_EQ(FileNames(), std::set<std::string>{"file"});
}

TEST_F(OutputFileTest, ReplacesWhatWasThereInTheEnd) {
    directory.Write("file", "old, and longer than the new one");
    OutputFile file;
    ASSERT_TRUE(file.Create(path));
    EXPECT_TRUE(file.Append({{"new", 3}}));
    EXPECT_EQ(directory.Read("file"), "old, and longer than the new one");
    EXPECT_TRUE(file.Finish(false));
    EXPECT_EQ(directory.Read("file"), "new");
}

TEST_F(OutputFileTest, IsWrittenAnewAfterItWasFinished) {
    OutputFile file;
    for (const char* const content : {"first", "second"}) {
        ASSERT_TRUE(file.Create(path));
        EXPECT_EQ(file.Size(), 0u);
        EXPECT_TRUE(file.Append({{content, 5}}));
        EXPECT_TRUE(file.Finish(false));
    }
    EXPECT_EQ(directory.Read("file"), "secon");
}

TEST_F(OutputFileTest, LeavesNothingWhenItIsGivenUp) {
    directory.Write("file", "old");
    {
        OutputFile file;
        ASSERT_TRUE(file.Create(path));
        EXPECT_TRUE(file.Append({{"new", 3}}));
    }
    OutputFile file;
    ASSERT_TRUE(file.Create(path));
    file.Discard();
    EXPECT_FALSE(file.IsOpen());
    file.Discard();
    EXPECT_EQ(directory.Read("file"), "old");
    EXPECT_EQ(FileNames(), std::set<std::string>{"file"});
}

TEST_F(OutputFileTest, IsNotCreatedByAPartOfItsName) {
    directory.Write("file", "other");
    OutputFile file;
    std::string error;
    EXPECT_FALSE(file.Create(path + std::string(1, '\0') + "name", &error));
    EXPECT_NE(error, "");
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(FileNames(), std::set<std::string>{"file"});
}

TEST_F(OutputFileTest, IsNotCreatedWhereItCannotBe) {
    ASSERT_TRUE(CreateDirectories(directory.PathOf("directory")));
    for (const std::string& place :
         {directory.PathOf(JoinPath("missing", "file")), directory.PathOf("directory")}) {
        OutputFile file;
        std::string error;
        EXPECT_FALSE(file.Create(place, &error)) << place;
        EXPECT_FALSE(error.empty()) << place;
        EXPECT_FALSE(file.IsOpen()) << place;
    }
    EXPECT_EQ(FileNames(), std::set<std::string>{"directory"});
}

TEST_F(OutputFileTest, ThatCannotGetItsNameIsRemoved) {
    OutputFile file;
    ASSERT_TRUE(file.Create(path));
    ASSERT_TRUE(file.Append({{"new", 3}}));
    ASSERT_TRUE(CreateDirectories(path)); // takes the name in the meantime
    std::string error;
    EXPECT_FALSE(file.Finish(false, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(FileNames(), std::set<std::string>{"file"});
    EXPECT_TRUE(IsDirectory(path));
}

} // namespace
} // namespace platform
