// frame_store_test.cpp - tests of keeping frames
#include "apps/recording/frame_store.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/tiff_pages.h"

#include <gtest/gtest.h>
#include <lodepng.h>

#include <filesystem>
#include <set>

namespace {

const ImageLayout kGreyFrame{2, 1, 1, 8, 8, MVCC_MONO, 0, 0};
const ImageLayout kColourFrame{1, 1, 3, 8, 8, MVCC_BGR, 0, 0};

class FrameStoreTest : public testing::Test {
protected:
    std::unique_ptr<FrameStore> Make(const char* format) const {
        FrameStoreOptions options;
        options.format = format;
        return MakeFrameStore(options, directory.PathOf("frames"));
    }
    static StoredFrame Put(FrameStore& store, std::uint64_t number, const ImageLayout& layout,
                           const std::vector<std::uint8_t>& image) {
        EncodedFrame frame;
        store.Encode(layout, image.data(), frame);
        return store.Append(number, layout, frame);
    }
    std::string Content(const std::string& name) const { return directory.Read("frames/" + name); }
    std::set<std::string> FileNames() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.PathOf("frames"))) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    support::TemporaryDirectory directory;
};

TEST_F(FrameStoreTest, NamesFilesByNumberFormatAndComponents) {
    const auto raw = Make("raw");
    const StoredFrame first = Put(*raw, 1, kGreyFrame, {7, 8});
    EXPECT_EQ(first.file, "frame-000001.raw");
    EXPECT_EQ(first.offset, 0u);
    EXPECT_EQ(first.bytes, 2u);
    EXPECT_EQ(Put(*raw, 1234567, kColourFrame, {1, 2, 3}).file, "frame-1234567.raw");
    raw->Finish();
    EXPECT_EQ(Content("frame-000001.raw"), "\7\10");
    EXPECT_EQ(Content("frame-1234567.raw"), "\1\2\3");

    const auto pnm = Make("pnm");
    EXPECT_EQ(Put(*pnm, 2, kGreyFrame, {7, 8}).file, "frame-000002.pgm");
    EXPECT_EQ(Put(*pnm, 3, kColourFrame, {1, 2, 3}).file, "frame-000003.ppm");
    pnm->Finish();
    EXPECT_EQ(Content("frame-000002.pgm"), "P5\n2 1\n255\n\7\10");
    EXPECT_EQ(Content("frame-000003.ppm"), "P6\n1 1\n255\n\3\2\1");
    EXPECT_EQ(FileNames(), (std::set<std::string>{"frame-000001.raw", "frame-000002.pgm",
                                                  "frame-000003.ppm", "frame-1234567.raw"}));
}

TEST_F(FrameStoreTest, KeepsPngFilesAtTheLevelWanted) {
    const std::vector<std::uint8_t> image(2 * 100, 9);
    const ImageLayout layout{20, 10, 1, 8, 8, MVCC_MONO, 0, 0};
    std::uint64_t bytes[2];
    for (const std::uint32_t level : {0u, 1u}) {
        FrameStoreOptions options;
        options.pngLevel = level;
        const auto store = MakeFrameStore(options, directory.PathOf("frames"));
        const StoredFrame stored = Put(*store, 5, layout, image);
        EXPECT_EQ(stored.file, "frame-000005.png");
        bytes[level] = stored.bytes;
        EXPECT_EQ(Content(stored.file).size(), stored.bytes);
    }
    EXPECT_LT(bytes[1], bytes[0]);
    std::vector<unsigned char> samples;
    unsigned width = 0;
    unsigned height = 0;
    ASSERT_EQ(lodepng::decode(samples, width, height, directory.PathOf("frames/frame-000005.png"),
                              LCT_GREY, 8),
              0u);
    EXPECT_EQ(samples, image);
}

TEST_F(FrameStoreTest, StacksFramesOneAfterAnother) {
    const auto store = Make("stack");
    EXPECT_EQ(FileNames().count("frames.stack"), 0u);
    const StoredFrame first = Put(*store, 1, kGreyFrame, {7, 8});
    const StoredFrame second = Put(*store, 4, kColourFrame, {1, 2, 3});
    EXPECT_EQ(first.file, "frames.stack");
    EXPECT_EQ(first.offset, 0u);
    EXPECT_EQ(second.file, "frames.stack");
    EXPECT_EQ(second.offset, 2u);
    EXPECT_EQ(second.bytes, 3u);
    EXPECT_EQ(FileNames().count("frames.stack"), 0u) << "not whole yet";
    store->Finish();
    EXPECT_EQ(Content("frames.stack"), "\7\10\1\2\3");
    EXPECT_EQ(FileNames(), std::set<std::string>{"frames.stack"});
}

TEST_F(FrameStoreTest, KeepsTiffFiles) {
    const auto store = Make("tiff");
    const StoredFrame stored = Put(*store, 2, kColourFrame, {1, 2, 3});
    EXPECT_EQ(stored.file, "frame-000002.tiff");
    EXPECT_EQ(stored.offset, 0u);
    EXPECT_EQ(Content(stored.file).size(), stored.bytes);
    const auto pages = support::ReadTiffPages(directory.PathOf("frames/frame-000002.tiff"));
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_EQ(pages[0].samples, (std::vector<std::uint16_t>{3, 2, 1}));
}

TEST_F(FrameStoreTest, LinksPagesOfOneTiffFile) {
    for (const bool deflate : {false, true}) {
        for (const std::uint64_t expected : {0u, 3u}) {
            FrameStoreOptions options;
            options.format = "multi-tiff";
            options.deflate = deflate;
            options.expectedFrames = expected;
            const auto store = MakeFrameStore(options, directory.PathOf("frames"));
            std::vector<StoredFrame> stored;
            stored.push_back(Put(*store, 1, kGreyFrame, {7, 8}));
            stored.push_back(Put(*store, 2, kColourFrame, {1, 2, 3}));
            stored.push_back(Put(*store, 5, {1, 1, 1, 16, 12, MVCC_RAW_CFA, 1, 0}, {0x34, 0x02}));
            store->Finish();
            bool isBig = false;
            const auto pages =
                support::ReadTiffPages(directory.PathOf("frames/frames.tiff"), &isBig);
            EXPECT_EQ(isBig, expected == 0) << "as long as nobody knows";
            ASSERT_EQ(pages.size(), 3u);
            EXPECT_EQ(pages[0].samples, (std::vector<std::uint16_t>{7, 8}));
            EXPECT_EQ(pages[1].samples, (std::vector<std::uint16_t>{3, 2, 1}));
            EXPECT_EQ(pages[2].samples, (std::vector<std::uint16_t>{0x234}));
            EXPECT_EQ(pages[2].description, "{\"significantBits\":12,\"colorFilter\":\"RGGB\"}");
            std::uint64_t bytes = isBig ? 16 : 8;
            for (std::size_t at = 0; at < pages.size(); ++at) {
                EXPECT_EQ(stored[at].file, "frames.tiff");
                EXPECT_EQ(stored[at].offset, pages[at].directory);
                bytes += stored[at].bytes;
            }
            EXPECT_EQ(Content("frames.tiff").size(), bytes);
        }
    }
}

TEST_F(FrameStoreTest, TakesLongOffsetsForManyExpectedFrames) {
    for (const std::uint64_t expected : {100u, 5000000u}) {
        FrameStoreOptions options;
        options.format = "multi-tiff";
        options.expectedFrames = expected;
        const auto store = MakeFrameStore(options, directory.PathOf("frames"));
        Put(*store, 1, kGreyFrame, {7, 8});
        store->Finish();
        bool isBig = false;
        support::ReadTiffPages(directory.PathOf("frames/frames.tiff"), &isBig);
        EXPECT_EQ(isBig, expected > 100u);
    }
}

TEST_F(FrameStoreTest, LeavesNoStackWithoutFramesOrWithoutAnEnd) {
    Make("stack")->Finish();
    EXPECT_TRUE(FileNames().empty());
    {
        const auto store = Make("stack");
        Put(*store, 1, kGreyFrame, {7, 8});
    }
    EXPECT_TRUE(FileNames().empty());
}

TEST_F(FrameStoreTest, RefusesWhatItCannotKeep) {
    EXPECT_THROW(Make("gif"), CommandFailure);
    const std::string file = directory.Write("file", "");
    FrameStoreOptions options;
    EXPECT_THROW(MakeFrameStore(options, platform::JoinPath(file, "below")), CommandFailure);
    const std::vector<std::uint8_t> image(8);
    EncodedFrame frame;
    EXPECT_THROW(Make("png")->Encode({1, 1, 2, 8, 8, MVCC_MONO, 0, 0}, image.data(), frame),
                 CommandFailure);
}

TEST_F(FrameStoreTest, NamesTheFileThatCannotBeWritten) {
    // Directories have taken the names.
    for (const char* const name : {"frame-000001.raw", "frames.stack"}) {
        ASSERT_TRUE(platform::CreateDirectories(directory.PathOf(std::string("frames/") + name)));
    }
    const auto reasonOf = [](auto&& call) -> std::string {
        try {
            call();
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
        return "";
    };
    const auto raw = Make("raw");
    EXPECT_NE(reasonOf([&] {
                  Put(*raw, 1, kGreyFrame, {1, 2});
              }).find("frame-000001.raw: "),
              std::string::npos);
    EXPECT_EQ(Put(*raw, 2, kGreyFrame, {1, 2}).file, "frame-000002.raw");
    EXPECT_NE(reasonOf([&] { Make("stack"); }).find("frames.stack: "), std::string::npos);
    EXPECT_EQ(FileNames(),
              (std::set<std::string>{"frame-000001.raw", "frame-000002.raw", "frames.stack"}));
}

} // namespace
