// file_system_windows_test.cpp - devices, full paths and files in use
#include "platform/file_system.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <iterator>

namespace platform {
namespace {

TEST(WindowsFileSystem, AFailedReplaceLeavesTheOldFileAndNothingElse) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.Write("file", "old");
    const HANDLE holder = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    std::string error;
    EXPECT_FALSE(ReplaceWholeFile(path, "new", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(error.find_first_of("\r\n"), std::string::npos) << error;
    CloseHandle(holder);
    EXPECT_EQ(directory.Read("file"), "old");
    using std::filesystem::directory_iterator;
    EXPECT_EQ(std::distance(directory_iterator(directory.Path()), directory_iterator()), 1);
    EXPECT_TRUE(ReplaceWholeFile(path, "new"));
}

TEST(WindowsFileSystem, ADeviceIsNotARegularFile) {
    EXPECT_FALSE(IsDirectory("NUL"));
    EXPECT_FALSE(IsRegularFile("\\\\.\\NUL"));
}

TEST(WindowsFileSystem, FullPathResolvesDotsAndSlashes) {
    EXPECT_EQ(FullPath("C:/a/./b/../c.dll", 260), "C:\\a\\c.dll");
    EXPECT_EQ(FullPath("C:\\a\\b\\", 260), "C:\\a\\b\\");
}

} // namespace
} // namespace platform
