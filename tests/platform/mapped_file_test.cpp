// mapped_file_test.cpp - files that are written through memory
#include "platform/mapped_file.h"

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace platform {
namespace {

constexpr std::size_t kMappedBytes = 100000;

class MappedFileTest : public testing::Test {
protected:
    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file");
};

TEST_F(MappedFileTest, HoldsWhatWasWrittenAndIsShortened) {
    MappedFile file;
    std::string error;
    ASSERT_TRUE(file.Create(path, kMappedBytes, &error)) << error;
    ASSERT_EQ(file.Size(), kMappedBytes);
    EXPECT_EQ(file.Data()[0], std::byte{0});
    EXPECT_EQ(file.Data()[kMappedBytes - 1], std::byte{0});
    std::memcpy(file.Data(), "written", 7);
    EXPECT_EQ(directory.Read("file").size(), kMappedBytes);
    EXPECT_EQ(directory.Read("file").substr(0, 7), "written");
    file.Close(5);
    EXPECT_EQ(file.Data(), nullptr);
    EXPECT_EQ(directory.Read("file"), "writt");
    file.Close(0);
    EXPECT_EQ(directory.Read("file"), "writt");
}

TEST_F(MappedFileTest, KeepsItsSizeWhenItIsDestroyed) {
    {
        MappedFile file;
        ASSERT_TRUE(file.Create(path, kMappedBytes));
    }
    EXPECT_EQ(directory.Read("file"), std::string(kMappedBytes, '\0'));
}

TEST_F(MappedFileTest, ReplacesAFile) {
    directory.Write("file", std::string(2 * kMappedBytes, 'x'));
    MappedFile file;
    ASSERT_TRUE(file.Create(path, kMappedBytes));
    EXPECT_EQ(directory.Read("file"), std::string(kMappedBytes, '\0'));
}

TEST_F(MappedFileTest, ReportsWhyAFileCannotBeCreated) {
    MappedFile file;
    std::string error;
    EXPECT_FALSE(file.Create(directory.PathOf("none/file"), kMappedBytes, &error));
    EXPECT_NE(error, "");
    EXPECT_FALSE(file.Create(directory.Path(), kMappedBytes));
    error.clear();
    EXPECT_FALSE(file.Create(path, std::size_t{1} << 60, &error)); // more than any disk has
    EXPECT_NE(error, "");
    EXPECT_FALSE(PathExists(path));
    EXPECT_EQ(file.Data(), nullptr);
    EXPECT_TRUE(IsDirectory(directory.Path()));
}

} // namespace
} // namespace platform
