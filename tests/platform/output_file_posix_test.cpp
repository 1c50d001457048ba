// output_file_posix_test.cpp - files for which there is no space
#include "platform/output_file.h"

#include "tests/support/posix/failing_calls.h"
#include "tests/support/posix/file_size_limit.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>

namespace platform {
namespace {

namespace fs = std::filesystem;
using support::FailingCalls;

class PosixOutputFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(file.Create(path)); }
    std::ptrdiff_t CountFiles() const {
        return std::distance(fs::directory_iterator(directory.Path()), fs::directory_iterator());
    }
    std::uintmax_t BytesOnDisk() const {
        return fs::file_size(fs::directory_iterator(directory.Path())->path());
    }

    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file");
    OutputFile file;
};

TEST_F(PosixOutputFile, IsCutBackToWhatWasWhole) {
    ASSERT_TRUE(file.Append({{"whole", 5}}));
    const std::string large(5000, 'x');
    std::string error;
    {
        const support::FileSizeLimit limit(1000);
        EXPECT_FALSE(file.Append({{"head", 4}, {large.data(), large.size()}}, &error));
    }
    EXPECT_EQ(error, std::strerror(EFBIG));
    EXPECT_EQ(file.Size(), 5u);
    EXPECT_EQ(BytesOnDisk(), 5u);
    EXPECT_TRUE(file.Append({{" again", 6}}));
    EXPECT_TRUE(file.Finish(false));
    EXPECT_EQ(directory.Read("file"), "whole again");
}

TEST_F(PosixOutputFile, IsCutBackLaterWhenThatFails) {
    ASSERT_TRUE(file.Append({{"whole", 5}}));
    const std::string large(5000, 'x');
    {
        const support::FileSizeLimit limit(1000);
        const FailingCalls failing("ftruncate", EIO);
        EXPECT_FALSE(file.Append({{large.data(), large.size()}}));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_EQ(BytesOnDisk(), 1000u);
    EXPECT_TRUE(file.Finish(false));
    EXPECT_EQ(directory.Read("file"), "whole");
}

TEST_F(PosixOutputFile, GetsNoNameWhenItCannotBeCutBack) {
    const std::string large(5000, 'x');
    std::string error;
    {
        const support::FileSizeLimit limit(1000);
        const FailingCalls failing("ftruncate", EIO, 2);
        EXPECT_FALSE(file.Append({{large.data(), large.size()}}));
        EXPECT_FALSE(file.Finish(false, &error));
        EXPECT_EQ(failing.Failed(), 2);
    }
    EXPECT_EQ(error, std::strerror(EIO));
    EXPECT_EQ(CountFiles(), 0);
}

TEST_F(PosixOutputFile, ReportsThatItCannotBeOverwritten) {
    ASSERT_TRUE(file.Append({{"whole", 5}}));
    std::string error;
    {
        const FailingCalls failing("pwrite", ENOSPC);
        EXPECT_FALSE(file.Overwrite(0, {"W", 1}, &error));
    }
    EXPECT_EQ(error, std::strerror(ENOSPC));
    EXPECT_TRUE(file.Overwrite(0, {"W", 1}));
    EXPECT_TRUE(file.Finish(true));
    EXPECT_EQ(directory.Read("file"), "Whole");
}

TEST_F(PosixOutputFile, ThatCannotBeClosedIsRemoved) {
    std::string error;
    {
        const FailingCalls failing("close", EIO);
        EXPECT_FALSE(file.Finish(false, &error));
    }
    EXPECT_EQ(error, std::strerror(EIO));
    EXPECT_EQ(CountFiles(), 0);
}

} // namespace
} // namespace platform
