// index_file_test.cpp - tests of writing an index
#include "apps/recording/index_file.h"

#include "apps/common/command_failure.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

TEST(IndexFile, HasEachLineAtOnce) {
    const support::TemporaryDirectory directory;
    directory.Write("index", "former\n");
    IndexFile index;
    index.Create(directory.PathOf("index"));
    EXPECT_EQ(directory.Read("index"), "");
    index.Append("first\n");
    EXPECT_EQ(directory.Read("index"), "first\n");
    index.Append("second\nthird\n");
    EXPECT_EQ(directory.Read("index"), "first\nsecond\nthird\n");
    index.Close();
    index.Close();
}

TEST(IndexFile, ThatCannotBeMadeIsNamed) {
    const support::TemporaryDirectory directory;
    IndexFile index;
    try {
        index.Create(directory.PathOf("none/index"));
        ADD_FAILURE();
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(
            std::string(failure.what()).find("cannot write " + directory.PathOf("none/index")), 0u)
            << failure.what();
    }
}

} // namespace
