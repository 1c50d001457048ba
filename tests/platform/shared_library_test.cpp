// shared_library_test.cpp - loading libraries
#include "platform/shared_library.h"

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <utility>

namespace platform {
namespace {

// The scripted SDK, which is built next to the test programs.
std::string KnownLibrary() {
    const std::string home = JoinPath(DirectoryOf(ExecutablePath()), "scripted");
    return JoinPath(JoinPath(home, "Bin"), LibraryFileName("PxnC"));
}

constexpr const char* kKnownSymbol = "PxnVersionQuery";

TEST(SharedLibrary, IsEmptyByDefault) {
    SharedLibrary library;
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.Handle(), nullptr);
    EXPECT_EQ(library.FindSymbol(kKnownSymbol), nullptr);
    library.Unload();
    EXPECT_FALSE(library.IsLoaded());
}

TEST(SharedLibrary, LoadsByAbsolutePath) {
    SharedLibrary library;
    std::string error = "unchanged";
    ASSERT_TRUE(library.Load(KnownLibrary(), true, &error)) << error;
    EXPECT_EQ(error, "unchanged");
    EXPECT_TRUE(library.IsLoaded());
    EXPECT_NE(library.Handle(), nullptr);
    EXPECT_NE(library.FindSymbol(kKnownSymbol), nullptr);
    EXPECT_EQ(library.FindSymbol("NoLibraryHasThis"), nullptr);
}

TEST(SharedLibrary, LoadsWithTheStandardSearchOrder) {
    SharedLibrary library;
    std::string error;
    ASSERT_TRUE(library.Load(KnownLibrary(), false, &error)) << error;
    EXPECT_NE(library.FindSymbol(kKnownSymbol), nullptr);
}

TEST(SharedLibrary, IsEmptyAfterUnloading) {
    SharedLibrary library;
    ASSERT_TRUE(library.Load(KnownLibrary(), true));
    library.Unload();
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.Handle(), nullptr);
    EXPECT_EQ(library.FindSymbol(kKnownSymbol), nullptr);
}

TEST(SharedLibrary, ReportsWhyAMissingFileCannotBeLoaded) {
    const support::TemporaryDirectory directory;
    for (const bool absolute : {true, false}) {
        SharedLibrary library;
        std::string error;
        EXPECT_FALSE(library.Load(directory.PathOf(LibraryFileName("Nowhere")), absolute, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(error.find_first_of("\r\n"), std::string::npos) << error;
        EXPECT_FALSE(library.IsLoaded());
    }
}

TEST(SharedLibrary, ReportsWhyAnInvalidFileCannotBeLoaded) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.Write(LibraryFileName("Text"), "not a library");
    SharedLibrary library;
    std::string error;
    EXPECT_FALSE(library.Load(path, true, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(library.Load(path, true));
}

TEST(SharedLibrary, RefusesAnEmptyName) {
    SharedLibrary library;
    std::string error;
    EXPECT_FALSE(library.Load("", false, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(library.IsLoaded());
}

TEST(SharedLibrary, AFailedLoadUnloadsTheFormerLibrary) {
    SharedLibrary library;
    ASSERT_TRUE(library.Load(KnownLibrary(), true));
    EXPECT_FALSE(library.Load("", true));
    EXPECT_FALSE(library.IsLoaded());
}

TEST(SharedLibrary, MovingTransfersTheLibrary) {
    SharedLibrary first;
    ASSERT_TRUE(first.Load(KnownLibrary(), true));
    void* const handle = first.Handle();
    SharedLibrary second = std::move(first);
    EXPECT_FALSE(first.IsLoaded());
    EXPECT_EQ(second.Handle(), handle);
    SharedLibrary third;
    third = std::move(second);
    EXPECT_FALSE(second.IsLoaded());
    EXPECT_NE(third.FindSymbol(kKnownSymbol), nullptr);
    SharedLibrary& same = third;
    third = std::move(same);
    EXPECT_NE(third.FindSymbol(kKnownSymbol), nullptr);
}

} // namespace
} // namespace platform
