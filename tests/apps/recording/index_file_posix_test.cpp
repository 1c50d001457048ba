// index_file_posix_test.cpp - tests of writing an index on a full disk
#include "apps/recording/index_file.h"

#include "apps/common/command_failure.h"
#include "tests/support/posix/file_size_limit.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

TEST(IndexFileOnAFullDisk, IsCutBackToItsLastWholeLine) {
    const support::TemporaryDirectory directory;
    IndexFile index;
    index.Create(directory.PathOf("index"));
    index.Append("first\n");
    {
        const support::FileSizeLimit limit(10);
        try {
            index.Append("the second\n");
            ADD_FAILURE();
        } catch (const CommandFailure& failure) {
            EXPECT_EQ(failure.what(),
                      "cannot write " + directory.PathOf("index") + ": File too large");
        }
    }
    EXPECT_EQ(directory.Read("index"), "first\n");
    index.Append("third\n");
    index.Close();
    EXPECT_EQ(directory.Read("index"), "first\nthird\n");
}

} // namespace
