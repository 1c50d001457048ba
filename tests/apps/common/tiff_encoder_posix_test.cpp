// tiff_encoder_posix_test.cpp - TIFF pages beyond 4 GB, in files with holes
#include "apps/common/tiff_encoder.h"

#include "tests/support/temporary_directory.h"
#include "tests/support/tiff_pages.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

TEST(LongTiffFile, IsReadBeyond4GB) {
    constexpr std::uint64_t kStart = (std::uint64_t{5} << 30) + 1;
    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("long.tiff");
    const ImageLayout layout{3, 2, 1, 16, 12, MVCC_MONO, 0, 0};
    const std::vector<std::uint16_t> image{1, 2, 3, 0x0FFF, 5, 6};
    for (const bool deflate : {false, true}) {
        EncodedFrame strips;
        EncodeTiffStrips(layout, image.data(), deflate, strips);
        const TiffPage page = TiffPageOf(layout, strips, deflate, true, kStart);
        std::ofstream file(path, std::ios::binary);
        const auto write = [&file](const std::uint8_t* data, std::size_t size) {
            file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        };
        write(page.header.data(), page.header.size());
        file.seekp(static_cast<std::streamoff>(kStart));
        write(strips.pixels, strips.pixelBytes);
        write(page.tail.data(), page.tail.size());
        file.close();
        ASSERT_TRUE(file.good());
        const auto pages = support::ReadTiffPages(path);
        ASSERT_EQ(pages.size(), 1u);
        EXPECT_GT(pages[0].directory, kStart);
        EXPECT_EQ(pages[0].samples, image);
    }
}

} // namespace
