// file_version_posix_test.cpp - version suffixes of file names
#include "platform/file_version.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <utility>

namespace platform {
namespace {

class FileVersionSuffix : public testing::Test {
protected:
    bool Read(const std::string& name) { return version.Read(directory.Write(name, "")); }
    std::array<int, 4> Parts() const {
        return {version.Part(0), version.Part(1), version.Part(2), version.Part(3)};
    }

    support::TemporaryDirectory directory;
    FileVersion version;
};

TEST_F(FileVersionSuffix, IsReadFromTheFileName) {
    EXPECT_TRUE(Read("libX.so.2.1.0.7"));
    EXPECT_TRUE(version.HasBlock());
    EXPECT_EQ(Parts(), (std::array<int, 4>{2, 1, 0, 7}));
    EXPECT_EQ(version.Part(4), 65535);
}

TEST_F(FileVersionSuffix, IsTakenFromTheTargetOfALink) {
    directory.Write("libX.so.2.1.0.7", "");
    std::filesystem::create_symlink("libX.so.2.1.0.7", directory.PathOf("libX.so.2"));
    std::filesystem::create_symlink("libX.so.2", directory.PathOf("libX.so"));
    EXPECT_TRUE(version.Read(directory.PathOf("libX.so")));
    EXPECT_EQ(Parts(), (std::array<int, 4>{2, 1, 0, 7}));
}

TEST_F(FileVersionSuffix, HasZeroForMissingParts) {
    EXPECT_TRUE(Read("libX.so.3"));
    EXPECT_EQ(Parts(), (std::array<int, 4>{3, 0, 0, 0}));
    EXPECT_TRUE(Read("libX.so.3.14"));
    EXPECT_EQ(Parts(), (std::array<int, 4>{3, 14, 0, 0}));
}

TEST_F(FileVersionSuffix, AcceptsTheLargestPart) {
    EXPECT_TRUE(Read("libX.so.65535.0.65535.00012"));
    EXPECT_EQ(Parts(), (std::array<int, 4>{65535, 0, 65535, 12}));
}

TEST_F(FileVersionSuffix, IsRefusedUnlessItHasOneToFourNumbers) {
    for (const char* name : {"libX.so", "libX.so.", "libX.so.a", "libX.so.1.", "libX.so.1..2",
                             "libX.so.1.2.3.4.5", "libX.so.1.2.3.65536", "libX.so.1-2",
                             "libX.so.1a", "libX.so.99999999999999999999", "X.1.2.3.4"}) {
        EXPECT_FALSE(Read(name)) << name;
        EXPECT_FALSE(version.HasBlock()) << name;
        EXPECT_EQ(Parts(), (std::array<int, 4>{65535, 65535, 65535, 65535})) << name;
    }
}

TEST_F(FileVersionSuffix, IsNotTakenFromADirectoryName) {
    EXPECT_FALSE(Read("libX.so.1.2.3.4/libX.so"));
    EXPECT_FALSE(version.HasBlock());
}

TEST_F(FileVersionSuffix, IsDroppedByClearAndByAFailedRead) {
    ASSERT_TRUE(Read("libX.so.1.2.3.4"));
    version.Clear();
    EXPECT_FALSE(version.HasBlock());
    ASSERT_TRUE(Read("libX.so.1.2.3.4"));
    EXPECT_FALSE(version.Read(directory.PathOf("missing")));
    EXPECT_FALSE(version.HasBlock());
}

TEST_F(FileVersionSuffix, MovesWithItsOwner) {
    ASSERT_TRUE(Read("libX.so.1.2.3.4"));
    FileVersion other = std::move(version);
    EXPECT_EQ(other.Part(3), 4);
    version = std::move(other);
    EXPECT_EQ(version.Part(3), 4);
    EXPECT_FALSE(other.HasBlock());
}

} // namespace
} // namespace platform
