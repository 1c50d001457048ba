// whole_file_test.cpp - reading and writing files in one piece
#include "apps/common/whole_file.h"

#include "apps/common/command_failure.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

TEST(WholeFile, IsReadAsItWasWritten) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("file");
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{3}, std::size_t{65536}, std::size_t{200001}}) {
        std::string content(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            content[i] = static_cast<char>(i * 7);
        }
        WriteWholeFile(path, content);
        EXPECT_EQ(ReadWholeFile(path), content) << size;
    }
}

TEST(WholeFile, IsNamedWithTheReasonWhenItCannotBeUsed) {
    const support::TemporaryDirectory directory;
    const std::string none = directory.PathOf("none/file");
    const auto reasonOf = [](auto&& call) -> std::string {
        try {
            call();
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
        return "";
    };
    EXPECT_TRUE(reasonOf([&] { ReadWholeFile(none); }).starts_with("cannot read " + none + ": "));
    EXPECT_TRUE(
        reasonOf([&] { WriteWholeFile(none, "x"); }).starts_with("cannot write " + none + ": "));
}

} // namespace
