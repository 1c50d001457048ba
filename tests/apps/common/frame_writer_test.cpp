// frame_writer_test.cpp - tests of writing images on a background thread
#include "apps/common/frame_writer.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace {

const ImageLayout kGrey{2, 1, 1, 8, 8, MVCC_MONO, 0, 0};
const ImageLayout kColour{1, 1, 3, 8, 8, MVCC_RGB, 0, 0};

TEST(FrameWriter, NumbersTheFilesAndWritesThemAll) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("made/below");
    FrameWriter writer(path, "raw");
    for (std::uint8_t i = 1; i <= 100; ++i) {
        std::vector<std::uint8_t> pixels = writer.TakeBuffer(2);
        ASSERT_EQ(pixels.size(), 2u);
        pixels = {i, static_cast<std::uint8_t>(i + 1)};
        writer.Push(kGrey, std::move(pixels));
    }
    writer.Finish();
    EXPECT_EQ(writer.Written(), 100u);
    EXPECT_EQ(directory.Read("made/below/frame-000001.raw"), "\1\2");
    EXPECT_EQ(directory.Read("made/below/frame-000100.raw"), "de");
    EXPECT_FALSE(platform::PathExists(platform::JoinPath(path, "frame-000101.raw")));
}

TEST(FrameWriter, NamesFilesByFormatAndComponents) {
    EXPECT_EQ(FrameWriter::FileName(1, "png", kGrey), "frame-000001.png");
    EXPECT_EQ(FrameWriter::FileName(12, "pnm", kGrey), "frame-000012.pgm");
    EXPECT_EQ(FrameWriter::FileName(1234567, "pnm", kColour), "frame-1234567.ppm");
    EXPECT_EQ(FrameWriter::FileName(3, "raw", kColour), "frame-000003.raw");
}

TEST(FrameWriter, ReportsAnImageThatCouldNotBeWritten) {
    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("images");
    FrameWriter writer(path, "raw");
    // A directory occupies the file's name.
    ASSERT_TRUE(platform::CreateDirectories(platform::JoinPath(path, "frame-000001.raw")));
    writer.Push(kGrey, {1, 2});
    EXPECT_THROW(writer.Finish(), CommandFailure);
    EXPECT_THROW(writer.Push(kGrey, {1, 2}), CommandFailure);
    EXPECT_EQ(writer.Written(), 0u);
}

TEST(FrameWriter, RefusesADirectoryThatCannotBeMade) {
    const support::TemporaryDirectory directory;
    const std::string file = directory.Write("file", "");
    EXPECT_THROW(FrameWriter(platform::JoinPath(file, "below"), "png"), CommandFailure);
}

TEST(FrameWriter, WritesWhatIsLeftWhenItGoes) {
    const support::TemporaryDirectory directory;
    {
        FrameWriter writer(directory.Path(), "pnm");
        writer.Push(kGrey, {1, 2});
        writer.Push(kColour, {1, 2, 3});
    }
    EXPECT_EQ(directory.Read("frame-000001.pgm"), "P5\n2 1\n255\n\1\2");
    EXPECT_EQ(directory.Read("frame-000002.ppm"), "P6\n1 1\n255\n\1\2\3");
}

} // namespace
