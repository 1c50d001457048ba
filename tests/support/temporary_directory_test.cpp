// temporary_directory_test.cpp - directories that are removed after a test
#include "tests/support/temporary_directory.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <string>

namespace support {
namespace {

TEST(TemporaryDirectory, ExistsForItsScopeOnly) {
    std::string path;
    {
        const TemporaryDirectory directory;
        path = directory.Path();
        const std::string name = platform::JoinPath("below", "file");
        const std::string content("one\r\n\0two", 9);
        EXPECT_EQ(directory.Write(name, content), directory.PathOf(name));
        EXPECT_EQ(directory.Read(name), content);
        EXPECT_TRUE(platform::IsRegularFile(directory.PathOf(name)));
    }
    EXPECT_FALSE(platform::PathExists(path));
}

} // namespace
} // namespace support
