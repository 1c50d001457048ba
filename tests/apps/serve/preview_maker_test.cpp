// preview_maker_test.cpp - previews that are made once
#include "apps/serve/preview_maker.h"

#include <turbojpeg.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace {

FramePointer PreviewFrame(std::uint64_t number, std::uint32_t width = 64, std::uint32_t height = 48,
                          MV_COLORCODING coding = MVCC_MONO) {
    auto frame = std::make_shared<ServedFrame>();
    frame->number = number;
    frame->layout.width = width;
    frame->layout.height = height;
    frame->layout.components = coding == MVCC_RGB ? 3 : 1;
    frame->layout.allocatedBits = 8;
    frame->layout.bits = 8;
    frame->layout.colorCoding = coding;
    frame->bytes.assign(static_cast<std::size_t>(frame->layout.Size()), 100);
    return frame;
}

/// Width, height and a pixel of what a browser sees.
struct SeenPreview {
    int width = 0;
    int height = 0;
    int pixel = 0;
};

SeenPreview See(const Preview& preview) {
    SeenPreview seen;
    int sampling = 0;
    int colours = 0;
    const tjhandle handle = tjInitDecompress();
    const auto size = static_cast<unsigned long>(preview.jpeg.size());
    EXPECT_EQ(tjDecompressHeader3(handle, preview.jpeg.data(), size, &seen.width, &seen.height,
                                  &sampling, &colours),
              0);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(seen.width * seen.height * 3));
    EXPECT_EQ(tjDecompress2(handle, preview.jpeg.data(), size, pixels.data(), seen.width, 0,
                            seen.height, TJPF_RGB, 0),
              0);
    seen.pixel = pixels.empty() ? 0 : pixels[0];
    tjDestroy(handle);
    return seen;
}

TEST(PreviewMaker, MakesWhatABrowserShows) {
    PreviewMaker maker;
    for (const MV_COLORCODING coding : {MVCC_MONO, MVCC_RGB}) {
        const SeenPreview whole = See(*maker.Make(PreviewFrame(1, 64, 48, coding), 64, 80));
        EXPECT_EQ(whole.width, 64);
        EXPECT_EQ(whole.height, 48);
        EXPECT_NEAR(whole.pixel, 100, 2);
        const SeenPreview half = See(*maker.Make(PreviewFrame(2, 64, 48, coding), 40, 80));
        EXPECT_EQ(half.width, 32);
        EXPECT_EQ(half.height, 24);
        EXPECT_NEAR(half.pixel, 100, 2);
    }
}

TEST(PreviewMaker, MakesAPreviewOnce) {
    PreviewMaker maker;
    const FramePointer frame = PreviewFrame(1);
    const PreviewPointer first = maker.Make(frame, 64, 80);
    EXPECT_EQ(maker.Make(frame, 64, 80), first);
    EXPECT_EQ(maker.Make(frame, 8000, 80), first) << "there is nothing wider";
    EXPECT_EQ(maker.Made(), 1u);
    EXPECT_NE(maker.Make(frame, 64, 50), first);
    EXPECT_NE(maker.Make(frame, 32, 80), first);
    EXPECT_NE(maker.Make(PreviewFrame(2), 64, 80), first);
    EXPECT_EQ(maker.Made(), 4u);
}

TEST(PreviewMaker, MakesAPreviewOnceForAllWhoAskAtTheSameTime) {
    PreviewMaker maker;
    for (std::uint64_t number = 1; number <= 20; ++number) {
        const FramePointer frame = PreviewFrame(number, 640, 480);
        std::vector<std::thread> readers;
        for (int i = 0; i < 8; ++i) {
            readers.emplace_back([&] { EXPECT_EQ(maker.Make(frame, 640, 80)->frame, number); });
        }
        for (std::thread& reader : readers) {
            reader.join();
        }
    }
    EXPECT_EQ(maker.Made(), 20u);
}

TEST(PreviewMaker, SaysWhyThereIsNone) {
    PreviewMaker maker;
    // No picture of this kind is that wide.
    const FramePointer wide = PreviewFrame(1, 70000, 1);
    EXPECT_ANY_THROW(maker.Make(wide, 70000, 80));
    EXPECT_ANY_THROW(maker.Make(wide, 70000, 80)) << "asked again, it is tried again";
}

} // namespace
