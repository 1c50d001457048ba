// frame_store_posix_test.cpp - tests of keeping frames on a full disk
#include "apps/recording/frame_store.h"

#include "apps/common/command_failure.h"
#include "tests/support/posix/file_size_limit.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/tiff_pages.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

constexpr std::uint64_t kFullAfter = 12500;

/// Puts frames of growing size until one no longer fits; the number of those that did.
std::uint64_t FramesUntilFull(FrameStore& store) {
    const support::FileSizeLimit limit(kFullAfter);
    EncodedFrame frame;
    for (std::uint64_t number = 1;; ++number) {
        const ImageLayout layout{
            static_cast<std::uint32_t>(number * 1000), 1, 1, 8, 8, MVCC_MONO, 0, 0};
        const std::vector<std::uint8_t> image(static_cast<std::size_t>(layout.Size()),
                                              static_cast<std::uint8_t>(number));
        store.Encode(layout, image.data(), frame);
        try {
            store.Append(number, layout, frame);
        } catch (const CommandFailure& failure) {
            EXPECT_NE(std::string(failure.what()).find("File too large"), std::string::npos)
                << failure.what();
            return number - 1;
        }
    }
}

TEST(FullDisk, LeavesTheFilesThatAreWhole) {
    for (const char* const format : {"raw", "pnm", "png", "tiff"}) {
        const support::TemporaryDirectory directory;
        FrameStoreOptions options;
        options.format = format;
        options.pngLevel = 0;
        const auto store = MakeFrameStore(options, directory.Path());
        const std::uint64_t whole = FramesUntilFull(*store);
        store->Finish();
        EXPECT_GE(whole, 9u) << format;
        std::uint64_t found = 0;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
            EXPECT_GE(entry.file_size(), 1000u);
            EXPECT_LE(entry.file_size(), kFullAfter);
            EXPECT_EQ(entry.path().filename().string().find("tmp"), std::string::npos);
            ++found;
        }
        EXPECT_EQ(found, whole) << format;
    }
}

TEST(FullDisk, LeavesAStackOfTheFramesThatAreWhole) {
    const support::TemporaryDirectory directory;
    FrameStoreOptions options;
    options.format = "stack";
    const auto store = MakeFrameStore(options, directory.Path());
    EXPECT_EQ(FramesUntilFull(*store), 4u); // of 1000, 2000, 3000 and 4000 bytes
    store->Finish();
    const std::string content = directory.Read("frames.stack");
    ASSERT_EQ(content.size(), 10000u);
    EXPECT_EQ(content.front(), '\1');
    EXPECT_EQ(content.back(), '\4');
}

TEST(FullDisk, LeavesTheTiffPagesThatAreWhole) {
    const support::TemporaryDirectory directory;
    FrameStoreOptions options;
    options.format = "multi-tiff";
    const auto store = MakeFrameStore(options, directory.Path());
    EXPECT_EQ(FramesUntilFull(*store), 4u); // of 1000, 2000, 3000 and 4000 pixels
    // There may be space again for a smaller one.
    EncodedFrame frame;
    const ImageLayout layout{2, 1, 1, 8, 8, MVCC_MONO, 0, 0};
    store->Encode(layout, "ab", frame);
    store->Append(9, layout, frame);
    store->Finish();
    const auto pages = support::ReadTiffPages(directory.PathOf("frames.tiff"));
    ASSERT_EQ(pages.size(), 5u);
    for (std::uint16_t at = 0; at < 4; ++at) {
        const auto number = static_cast<std::uint16_t>(at + 1);
        EXPECT_EQ(pages[at].samples, std::vector<std::uint16_t>(number * 1000u, number));
    }
    EXPECT_EQ(pages[4].samples, (std::vector<std::uint16_t>{'a', 'b'}));
}

} // namespace
