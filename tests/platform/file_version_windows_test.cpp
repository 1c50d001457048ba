// file_version_windows_test.cpp - version resources
#include "platform/file_version.h"

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <string>
#include <utility>

namespace platform {
namespace {

std::string SystemLibrary(const char* name) {
    char directory[MAX_PATH];
    const UINT length = GetSystemDirectoryA(directory, sizeof directory);
    return JoinPath(std::string(directory, length), name);
}

TEST(FileVersionResource, IsReadFromASystemLibrary) {
    FileVersion version;
    ASSERT_TRUE(version.Read(SystemLibrary("kernel32.dll")));
    EXPECT_TRUE(version.HasBlock());
    // The version of the library is that of Windows.
    EXPECT_GE(version.Part(0), 6);
    EXPECT_LE(version.Part(0), 99);
    EXPECT_NE(version.Part(2), 65535);
    EXPECT_NE(version.Part(3), 65535);
    EXPECT_EQ(version.Part(4), 65535);
}

TEST(FileVersionResource, HasTheFourPartsInOrder) {
    const std::string path = SystemLibrary("kernel32.dll");
    DWORD ignored = 0;
    std::string block(GetFileVersionInfoSizeA(path.c_str(), &ignored), '\0');
    ASSERT_TRUE(
        GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* root = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\", &root, &size));
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(root);
    FileVersion version;
    ASSERT_TRUE(version.Read(path));
    EXPECT_EQ(version.Part(0), info->dwFileVersionMS >> 16);
    EXPECT_EQ(version.Part(1), info->dwFileVersionMS & 0xFFFF);
    EXPECT_EQ(version.Part(2), info->dwFileVersionLS >> 16);
    EXPECT_EQ(version.Part(3), info->dwFileVersionLS & 0xFFFF);
}

TEST(FileVersionResource, IsMissingInAProgramWithoutResources) {
    FileVersion version;
    EXPECT_FALSE(version.Read(ExecutablePath()));
    EXPECT_FALSE(version.HasBlock());
    EXPECT_EQ(version.Part(0), 65535);
}

TEST(FileVersionResource, HasNoPartsWithoutItsFixedInformation) {
    const support::TemporaryDirectory directory;
    const std::string library = directory.PathOf("Empty.dll");
    const std::string home = JoinPath(DirectoryOf(ExecutablePath()), "scripted");
    ASSERT_TRUE(
        CopyFileA(JoinPath(JoinPath(home, "Bin"), "PxnC.dll").c_str(), library.c_str(), TRUE));
    // Its length in bytes, no fixed information, its key.
    std::array<WORD, 20> block{sizeof block, 0, 0};
    for (std::size_t index = 0; index < sizeof "VS_VERSION_INFO"; ++index) {
        block[3 + index] = static_cast<WORD>("VS_VERSION_INFO"[index]);
    }
    const HANDLE update = BeginUpdateResourceA(library.c_str(), TRUE);
    ASSERT_NE(update, nullptr);
    ASSERT_TRUE(UpdateResourceA(update, MAKEINTRESOURCEA(16), MAKEINTRESOURCEA(1), 0, block.data(),
                                sizeof block));
    ASSERT_TRUE(EndUpdateResourceA(update, FALSE));
    FileVersion version;
    ASSERT_TRUE(version.Read(library));
    for (unsigned part = 0; part < 5; ++part) {
        EXPECT_EQ(version.Part(part), 65535) << part;
    }
}

TEST(FileVersionResource, IsDroppedByClearAndByAFailedRead) {
    FileVersion version;
    ASSERT_TRUE(version.Read(SystemLibrary("kernel32.dll")));
    version.Clear();
    EXPECT_FALSE(version.HasBlock());
    ASSERT_TRUE(version.Read(SystemLibrary("kernel32.dll")));
    EXPECT_FALSE(version.Read(SystemLibrary("no-such-library.dll")));
    EXPECT_FALSE(version.HasBlock());
}

TEST(FileVersionResource, MovesWithItsOwner) {
    FileVersion version;
    ASSERT_TRUE(version.Read(SystemLibrary("kernel32.dll")));
    const std::uint16_t part = version.Part(0);
    FileVersion other = std::move(version);
    EXPECT_FALSE(version.HasBlock());
    EXPECT_EQ(other.Part(0), part);
}

} // namespace
} // namespace platform
