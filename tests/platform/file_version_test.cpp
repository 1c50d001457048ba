// file_version_test.cpp - files without a version block
#include "platform/file_version.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::uint16_t kNoPart = 65535;

void ExpectNoBlock(const FileVersion& version) {
    EXPECT_FALSE(version.HasBlock());
    for (unsigned part = 0; part < 6; ++part) {
        EXPECT_EQ(version.Part(part), kNoPart) << part;
    }
}

TEST(FileVersion, HasNoBlockByDefault) {
    ExpectNoBlock(FileVersion());
}

TEST(FileVersion, AMissingFileHasNoBlock) {
    const support::TemporaryDirectory directory;
    FileVersion version;
    EXPECT_FALSE(version.Read(directory.PathOf("libNowhere.so.1.2.3.4")));
    ExpectNoBlock(version);
}

TEST(FileVersion, AnEmptyNameHasNoBlock) {
    FileVersion version;
    EXPECT_FALSE(version.Read(""));
    ExpectNoBlock(version);
}

TEST(FileVersion, AFileThatIsNotALibraryHasNoBlock) {
    const support::TemporaryDirectory directory;
    FileVersion version;
    EXPECT_FALSE(version.Read(directory.Write("notes.txt", "not a library")));
    ExpectNoBlock(version);
}

} // namespace
} // namespace platform
