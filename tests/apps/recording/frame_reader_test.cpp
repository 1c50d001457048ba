// frame_reader_test.cpp - tests of reading the frames of a recording back
#include "apps/recording/frame_reader.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <lodepng.h>

namespace {

using FrameBytes = std::vector<std::uint8_t>;

/// An image whose samples are all different, as far as their bits allow it.
FrameBytes CountingImage(const ImageLayout& layout, std::uint32_t first) {
    FrameBytes image;
    const std::uint32_t samples = layout.width * layout.height * layout.components;
    for (std::uint32_t at = 0; at < samples; ++at) {
        const std::uint32_t value = (first + at * 37) & ((1u << layout.bits) - 1);
        image.push_back(static_cast<std::uint8_t>(value));
        if (layout.allocatedBits == 16) {
            image.push_back(static_cast<std::uint8_t>(value >> 8));
        }
    }
    return image;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

class FrameReaderTest : public testing::Test {
protected:
    /// Stores images and reads them back, the last one first.
    void ExpectSame(const std::string& format, const ImageLayout& layout, bool deflate = false) {
        SCOPED_TRACE(format + ", " + ColorCodingName(layout.colorCoding) + ", " +
                     std::to_string(layout.bits));
        FrameStoreOptions options;
        options.format = format;
        options.deflate = deflate;
        const auto store = MakeFrameStore(options, directory.PathOf(format));
        std::vector<FrameBytes> images;
        std::vector<StoredFrame> frames;
        for (std::uint32_t n = 1; n <= 2; ++n) {
            images.push_back(CountingImage(layout, n * 1000));
            EncodedFrame encoded;
            store->Encode(layout, images.back().data(), encoded);
            frames.push_back(store->Append(n, layout, encoded));
        }
        store->Finish();
        FrameReader reader(directory.PathOf(format), format);
        FrameBytes image{1, 2, 3};
        for (std::size_t n = 2; n-- > 0;) {
            reader.Read(frames[n], layout, image);
            EXPECT_EQ(image, images[n]);
        }
    }
    /// What reading a file of this content fails with.
    std::string Failure(const std::string& format, const std::string& content,
                        const ImageLayout& layout, std::uint64_t offset = 0) {
        directory.Write("frame", content);
        FrameReader reader(directory.PathOf("."), format);
        FrameBytes image;
        try {
            reader.Read({"frame", offset, content.size()}, layout, image);
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
        return "";
    }
    std::string PngContent(const ImageLayout& layout) {
        const auto store = MakeFrameStore({}, directory.PathOf("png"));
        EncodedFrame encoded;
        const FrameBytes image = CountingImage(layout, 0);
        store->Encode(layout, image.data(), encoded);
        return {encoded.pixels, encoded.pixels + encoded.pixelBytes};
    }

    support::TemporaryDirectory directory;
    const ImageLayout grey{5, 3, 1, 8, 8, MVCC_MONO, 0, 0};
};

TEST_F(FrameReaderTest, GivesImagesBackAsTheyWere) {
    for (const char* const format : {"tiff", "multi-tiff", "png", "pnm", "raw", "stack"}) {
        for (const std::uint32_t bits : {8u, 10u, 12u, 14u, 16u}) {
            const std::uint32_t allocated = bits > 8 ? 16 : 8;
            ExpectSame(format, {5, 3, 1, allocated, bits, MVCC_MONO, 0, 0});
            for (const std::uint32_t offsets : {0u, 1u, 2u, 3u}) {
                ExpectSame(format,
                           {5, 3, 1, allocated, bits, MVCC_RAW_CFA, offsets & 1, offsets >> 1});
            }
            ExpectSame(format, {5, 3, 3, allocated, bits, MVCC_RGB, 0, 0});
            ExpectSame(format, {5, 3, 3, allocated, bits, MVCC_BGR, 0, 0});
        }
    }
    for (const char* const format : {"tiff", "multi-tiff", "png", "raw", "stack"}) {
        ExpectSame(format, {5, 3, 4, 8, 8, MVCC_ARGB, 0, 0});
        ExpectSame(format, {5, 3, 4, 16, 12, MVCC_RGBA, 0, 0});
        ExpectSame(format, {5, 3, 4, 16, 10, MVCC_BGRA, 0, 0});
    }
}

TEST_F(FrameReaderTest, ReadsCompressedTiffFiles) {
    for (const char* const format : {"tiff", "multi-tiff"}) {
        ExpectSame(format, {200, 900, 3, 8, 8, MVCC_BGR, 0, 0}, true); // several strips
        ExpectSame(format, {200, 900, 1, 16, 12, MVCC_MONO, 0, 0}, true);
        ExpectSame(format, {5, 3, 1, 16, 10, MVCC_RAW_CFA, 1, 1}, true);
    }
}

TEST_F(FrameReaderTest, RefusesOtherTiffFiles) {
    FrameStoreOptions options;
    options.format = "tiff";
    const auto store = MakeFrameStore(options, directory.PathOf("tiff"));
    EncodedFrame encoded;
    const FrameBytes image = CountingImage(grey, 0);
    store->Encode(grey, image.data(), encoded);
    const std::string content = directory.Read("tiff/" + store->Append(1, grey, encoded).file);
    EXPECT_EQ(Failure("tiff", content, grey), "");
    EXPECT_PRED2(Contains, Failure("tiff", "no TIFF", grey), "frame: it is no TIFF file");
    EXPECT_PRED2(Contains, Failure("tiff", content, {5, 4, 1, 8, 8, MVCC_MONO, 0, 0}),
                 "it has 5 x 3 pixels, not 5 x 4 pixels");
    EXPECT_PRED2(Contains, Failure("tiff", content, {5, 3, 1, 16, 12, MVCC_MONO, 0, 0}),
                 "it has 1 channels of 8 bits, not 1 of 16");
    EXPECT_PRED2(Contains, Failure("tiff", content, {5, 3, 3, 8, 8, MVCC_RGB, 0, 0}),
                 "it has 1 channels of 8 bits, not 3 of 8");
    EXPECT_PRED2(Contains, Failure("multi-tiff", content, grey, 3), "it has no page at byte 3");
    // Of one that is cut off the pixels are read whole or not at all.
    std::size_t whole = 0;
    for (std::size_t size = 0; size < content.size(); ++size) {
        directory.Write("frame", content.substr(0, size));
        FrameReader reader(directory.Path(), "tiff");
        FrameBytes read;
        try {
            reader.Read({"frame", 0, size}, grey, read);
            EXPECT_EQ(read, image) << size;
            ++whole;
        } catch (const CommandFailure&) {
            EXPECT_EQ(whole, 0u) << size;
        }
    }
    EXPECT_LT(whole, content.size() / 2);
}

TEST_F(FrameReaderTest, TakesAlphaThatAFileDoesNotHoldAsOpaque) {
    directory.Write("frame", "P6\n1 2\n255\n\1\2\3\4\5\6");
    FrameReader reader(directory.PathOf("."), "pnm");
    FrameBytes image;
    reader.Read({"frame", 0, 17}, {1, 2, 4, 8, 8, MVCC_BGRA, 0, 0}, image);
    EXPECT_EQ(image, (FrameBytes{3, 2, 1, 255, 6, 5, 4, 255}));
}

TEST_F(FrameReaderTest, TakesCommentsInTheHeadOfAPnmFile) {
    EXPECT_EQ(Failure("pnm", "P5 # a\n# b\n 2 #c\n2\n255\n1234", {2, 2, 1, 8, 8, MVCC_MONO, 0, 0}),
              "");
}

TEST_F(FrameReaderTest, RefusesOtherPnmFiles) {
    const ImageLayout layout{2, 2, 1, 16, 12, MVCC_MONO, 0, 0};
    EXPECT_PRED2(Contains, Failure("pnm", "", layout), "it is no P5 file");
    EXPECT_PRED2(Contains, Failure("pnm", "P6\n2 2\n4095\n12345678", layout), "it is no P5 file");
    for (const char* const head : {"P5", "P5\n2", "P5\n2 2\n", "P5\n2 x 3", "P5\n2 2 # 4095"}) {
        EXPECT_PRED2(Contains, Failure("pnm", head, layout), "it is no PNM file") << head;
    }
    EXPECT_PRED2(Contains, Failure("pnm", "P5\n3 2\n4095\n12345678", layout),
                 "frame: it has 3 x 2 pixels, not 2 x 2 pixels");
    EXPECT_PRED2(Contains, Failure("pnm", "P5\n2 2\n1023\n12345678", layout),
                 "its greatest value is 1023, not 4095");
    EXPECT_PRED2(Contains, Failure("pnm", "P5\n2 2\n4095\n1234567", layout),
                 "it has 7 bytes of samples, not 8");
    EXPECT_PRED2(Contains, Failure("pnm", "P5\n2 2\n4095", layout), "it has 0 bytes of samples");
}

TEST_F(FrameReaderTest, RefusesOtherPngFiles) {
    const std::string content = PngContent(grey);
    EXPECT_EQ(Failure("png", content, grey), "");
    EXPECT_PRED2(Contains, Failure("png", "no PNG", grey), "it is no PNG file");
    EXPECT_PRED2(Contains, Failure("png", content, {5, 4, 1, 8, 8, MVCC_MONO, 0, 0}),
                 "it has 5 x 3 pixels, not 5 x 4 pixels");
    EXPECT_PRED2(Contains, Failure("png", content, {5, 3, 1, 16, 12, MVCC_MONO, 0, 0}),
                 "it has 1 channels of 8 bits, not 1 of 16");
    EXPECT_PRED2(Contains, Failure("png", content, {5, 3, 3, 8, 8, MVCC_RGB, 0, 0}),
                 "it has 1 channels of 8 bits, not 3 of 8");
    for (std::size_t size = 40; size < content.size(); ++size) {
        EXPECT_NE(Failure("png", content.substr(0, size), grey), "") << size;
    }
    std::string changed = content;
    changed[content.size() / 2] = static_cast<char>(~changed[content.size() / 2]);
    EXPECT_PRED2(Contains, Failure("png", changed, grey), "it is damaged");
    // A head that promises more than the file can hold.
    const ImageLayout large{20000, 20000, 1, 8, 8, MVCC_MONO, 0, 0};
    std::string promising = content;
    constexpr std::size_t kSides = 16;
    promising.replace(kSides, 8, std::string("\0\0\x4E\x20\0\0\x4E\x20", 8));
    lodepng_chunk_generate_crc(reinterpret_cast<unsigned char*>(promising.data()) + 8);
    EXPECT_PRED2(Contains, Failure("png", promising, large), "it is too short");
}

TEST_F(FrameReaderTest, RefusesRawBytesOfAnotherLength) {
    EXPECT_EQ(Failure("raw", std::string(15, 'x'), grey), "");
    EXPECT_PRED2(Contains, Failure("raw", std::string(14, 'x'), grey), "it ends at byte 14");
    EXPECT_PRED2(Contains, Failure("raw", std::string(16, 'x'), grey),
                 "it has 16 bytes, not the 15 of 5 x 3 pixels");
    EXPECT_EQ(Failure("stack", std::string(16, 'x'), grey, 1), "");
    EXPECT_PRED2(Contains, Failure("stack", std::string(16, 'x'), grey, 2),
                 "it ends at byte 16, the frame at 2 has 15 bytes");
    EXPECT_PRED2(Contains, Failure("stack", "x", grey, ~std::uint64_t{0}), "it ends at byte 1");
    const ImageLayout huge{1u << 24, 1u << 24, 4, 16, 16, MVCC_RGBA, 0, 0};
    EXPECT_PRED2(Contains, Failure("raw", "x", huge), "it ends at byte 1");
}

TEST_F(FrameReaderTest, RefusesWhatNoImageIs) {
    EXPECT_PRED2(Contains, Failure("raw", "", {0, 1, 1, 8, 8, MVCC_MONO, 0, 0}), "no image has");
    EXPECT_PRED2(Contains, Failure("raw", "xx", {1, 1, 2, 8, 8, MVCC_MONO, 0, 0}), "no image has");
    EXPECT_PRED2(Contains, Failure("png", "xxx", {1, 1, 3, 8, 8, MVCC_RAW_CFA, 0, 0}),
                 "no image has");
    EXPECT_THROW(FrameReader(directory.PathOf("."), "video"), CommandFailure);
}

TEST_F(FrameReaderTest, NamesAFileThatIsMissing) {
    FrameBytes image;
    for (const char* const format : {"tiff", "multi-tiff", "png", "pnm", "raw", "stack"}) {
        FrameReader reader(directory.PathOf("."), format);
        try {
            reader.Read({"absent", 0, 15}, grey, image);
            ADD_FAILURE();
        } catch (const CommandFailure& failure) {
            EXPECT_NE(std::string(failure.what()).find("absent"), std::string::npos);
        }
    }
}

} // namespace
