// peers.cpp - YUV 4:2:2 to RGB by other libraries
#include "bench/peers.h"

#include <algorithm>
#include <cstddef>

#include <libyuv.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
extern "C" {
#include <libswscale/swscale.h>
}

namespace {

// libyuv converts full-range YUV of this layout to three bytes per pixel only by way of planes. A
// few lines are converted at a time, so that the planes stay in the cache.
class LibYuv : public Peer {
public:
    LibYuv(int imageWidth, int imageHeight)
        : width(imageWidth),
          height(imageHeight),
          y(Size(width)),
          u(Size(width / 2)),
          v(Size(width / 2)) {}

    const char* Name() const override { return "libyuv"; }
    void Convert(const std::uint8_t* source, std::uint8_t* destination) override {
        for (int line = 0; line < height; line += kLines) {
            const int lines = std::min(kLines, height - line);
            libyuv::UYVYToI422(source + std::ptrdiff_t{line} * width * 2, width * 2, y.data(),
                               width, u.data(), width / 2, v.data(), width / 2, width, lines);
            // U and V are swapped to get red before blue.
            libyuv::I422ToRGB24Matrix(y.data(), width, v.data(), width / 2, u.data(), width / 2,
                                      destination + std::ptrdiff_t{line} * width * 3, width * 3,
                                      &libyuv::kYvuJPEGConstants, width, lines);
        }
    }

private:
    static constexpr int kLines = 8;
    static std::size_t Size(int bytes) { return static_cast<std::size_t>(bytes) * kLines; }

    int width;
    int height;
    std::vector<std::uint8_t> y;
    std::vector<std::uint8_t> u;
    std::vector<std::uint8_t> v;
};

class SwScale : public Peer {
public:
    SwScale(int imageWidth, int imageHeight)
        : width(imageWidth),
          height(imageHeight),
          context(sws_getContext(width, height, AV_PIX_FMT_UYVY422, width, height, AV_PIX_FMT_RGB24,
                                 SWS_FAST_BILINEAR, nullptr, nullptr, nullptr)) {
        constexpr int kFullRange = 1;
        const int* const table = sws_getCoefficients(SWS_CS_ITU601);
        sws_setColorspaceDetails(context, table, kFullRange, table, kFullRange, 0, 1 << 16,
                                 1 << 16);
    }
    ~SwScale() override { sws_freeContext(context); }
    SwScale(const SwScale&) = delete;
    SwScale& operator=(const SwScale&) = delete;

    const char* Name() const override { return "libswscale"; }
    void Convert(const std::uint8_t* source, std::uint8_t* destination) override {
        const std::uint8_t* const from[] = {source};
        const int fromStride[] = {width * 2};
        std::uint8_t* const to[] = {destination};
        const int toStride[] = {width * 3};
        sws_scale(context, from, fromStride, 0, height, to, toStride);
    }

private:
    int width;
    int height;
    SwsContext* context;
};

// OpenCV supports this layout only with luma from 16 to 235, so its results differ by design.
class OpenCv : public Peer {
public:
    OpenCv(int imageWidth, int imageHeight) : width(imageWidth), height(imageHeight) {
        cv::setNumThreads(1);
    }

    const char* Name() const override { return "OpenCV"; }
    void Convert(const std::uint8_t* source, std::uint8_t* destination) override {
        const cv::Mat from(height, width, CV_8UC2, const_cast<std::uint8_t*>(source));
        cv::Mat to(height, width, CV_8UC3, destination);
        cv::cvtColor(from, to, cv::COLOR_YUV2RGB_UYVY);
    }

private:
    int width;
    int height;
};

} // namespace

std::vector<std::unique_ptr<Peer>> MakePeers(int width, int height) {
    std::vector<std::unique_ptr<Peer>> peers;
    peers.push_back(std::make_unique<LibYuv>(width, height));
    peers.push_back(std::make_unique<SwScale>(width, height));
    peers.push_back(std::make_unique<OpenCv>(width, height));
    return peers;
}
