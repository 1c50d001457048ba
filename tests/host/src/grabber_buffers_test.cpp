// grabber_buffers_test.cpp - the ring of filled buffers
#include "tests/host/test_grabber.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace {

class FilledBuffers : public testing::Test {
protected:
    FilledBuffers() { EXPECT_EQ(grabber.PrepareFrameBuffers(4), MV_OK); }

    void KeepEveryFrame() { EXPECT_EQ(grabber.SetFeature(EMV_FEATURE_KEEP_NEWEST, 0), MV_OK); }

    void Fill(std::initializer_list<std::uint64_t> indices) {
        for (const std::uint64_t index : indices) {
            grabber.DoPostProcess(index, 1);
        }
    }

    /// Takes and releases all waiting buffers and returns their indices.
    std::vector<std::uint64_t> Drain() {
        std::vector<std::uint64_t> indices;
        std::uint64_t index = 0;
        while (grabber.GetLastFilledBuffer(&index) == MV_OK) {
            indices.push_back(index);
            EXPECT_EQ(grabber.ReleaseFrameBuffer(index), MV_OK);
        }
        return indices;
    }

    TestGrabber grabber;
};

using Indices = std::vector<std::uint64_t>;

TEST_F(FilledBuffers, NoneIsWaitingAtFirst) {
    std::uint64_t index = 77;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_NO_FILLED_BUFFER);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(grabber.GetLastFilledBuffer(nullptr), MV_BAD_VALUE);
}

TEST_F(FilledBuffers, TheNewestIsTakenAndOlderOnesAreLost) {
    Fill({0, 1, 2});
    EXPECT_EQ(Drain(), Indices({2}));
    EXPECT_EQ(grabber.GetLostBufferCount(), 2u);
}

TEST_F(FilledBuffers, TheOldestIsTakenWhenEveryFrameIsWanted) {
    KeepEveryFrame();
    Fill({0, 1, 2});
    EXPECT_EQ(Drain(), Indices({0, 1, 2}));
    EXPECT_EQ(grabber.GetLostBufferCount(), 0u);
}

TEST_F(FilledBuffers, OneThatIsFilledAgainWaitsAsTheNewest) {
    KeepEveryFrame();
    Fill({0, 1, 2, 0});
    EXPECT_EQ(grabber.GetLostBufferCount(), 1u);
    Fill({1, 1});
    EXPECT_EQ(grabber.GetLostBufferCount(), 3u);
    EXPECT_EQ(Drain(), Indices({2, 0, 1}));
}

TEST_F(FilledBuffers, OneThatTheHostHoldsIsLostWhenItIsFilledAgain) {
    Fill({3});
    std::uint64_t index = 0;
    ASSERT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(index, 3u);
    Fill({3});
    EXPECT_EQ(grabber.GetLostBufferCount(), 1u);
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_NO_FILLED_BUFFER);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(3), MV_OK);
    Fill({3});
    EXPECT_EQ(Drain(), Indices({3}));
    EXPECT_EQ(grabber.GetLostBufferCount(), 1u);
}

TEST_F(FilledBuffers, AreReleasedOnce) {
    Fill({1});
    std::uint64_t index = 0;
    ASSERT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(index), MV_OK);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(index), MV_BAD_VALUE);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(0), MV_BAD_VALUE);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(4), MV_BAD_VALUE);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(~std::uint64_t{0}), MV_BAD_VALUE);
}

TEST_F(FilledBuffers, CanBeReleasedWithoutBeingTaken) {
    KeepEveryFrame();
    Fill({0, 1, 2, 3});
    EXPECT_EQ(grabber.ReleaseFrameBuffer(1), MV_OK);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(0), MV_OK);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(3), MV_OK);
    EXPECT_EQ(Drain(), Indices({2}));
    EXPECT_EQ(grabber.GetLostBufferCount(), 0u);
}

TEST_F(FilledBuffers, AreDiscardedWhenBuffersArePreparedAgain) {
    Fill({0, 1});
    std::uint64_t index = 0;
    ASSERT_EQ(grabber.GetLastFilledBuffer(&index), MV_OK);
    Fill({2});
    EXPECT_EQ(grabber.PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(grabber.GetRequestedBufferCount(), 2u);
    EXPECT_EQ(grabber.GetLostBufferCount(), 0u);
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_NO_FILLED_BUFFER);
    EXPECT_EQ(grabber.ReleaseFrameBuffer(1), MV_BAD_VALUE);
}

TEST_F(FilledBuffers, KeepTheRequestedCountEvenWhenItIsRefused) {
    EXPECT_EQ(grabber.PrepareFrameBuffers(~std::uint64_t{0}), MV_REFUSED);
    EXPECT_EQ(grabber.GetRequestedBufferCount(), ~std::uint64_t{0});
    std::uint64_t index = 0;
    EXPECT_EQ(grabber.GetLastFilledBuffer(&index), MV_NO_FILLED_BUFFER);
    EXPECT_EQ(grabber.PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(grabber.PrepareFrameBuffers(65536), MV_OK);
    EXPECT_EQ(grabber.PrepareFrameBuffers(65537), MV_REFUSED);
}

TEST(FilledBuffersLog, NamesABufferThatDoesNotExist) {
    support::RecordingSink sink;
    const InstalledSink installed(&sink);
    TestGrabber grabber;
    grabber.PrepareFrameBuffers(2);
    int calls = 0;
    grabber.InstPostProcessCallBack(
        [](std::uint64_t, std::uint32_t, void* context) { ++*static_cast<int*>(context); }, &calls);
    grabber.DoPostProcess(2, 1);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(sink.Take(),
              std::vector<std::string>({"0 Mivora: DoPostProcess: There is no frame buffer 2"}));
    grabber.DoPostProcess(1, 1);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(sink.Take().empty());
}

TEST(FilledBuffersLog, NeedsNoSink) {
    const InstalledSink none(nullptr);
    TestGrabber grabber;
    EXPECT_EQ(grabber.GetLogSink(), nullptr);
    grabber.DoPostProcess(0, 1);
    EXPECT_EQ(grabber.GetLostBufferCount(), 0u);
}

TEST_F(FilledBuffers, AreAllAccountedForWhenCameraAndHostRunConcurrently) {
    KeepEveryFrame();
    constexpr std::uint64_t kFrames = 3000;
    std::atomic<bool> done{false};
    std::thread camera([&] {
        for (std::uint64_t frame = 0; frame < kFrames; ++frame) {
            grabber.DoPostProcess(frame % 4, 1);
        }
        done = true;
    });
    std::uint64_t taken = 0;
    for (bool last = false;;) {
        std::uint64_t index = 0;
        if (grabber.GetLastFilledBuffer(&index) == MV_OK) {
            ++taken;
            EXPECT_EQ(grabber.ReleaseFrameBuffer(index), MV_OK);
        } else if (last) {
            break;
        } else {
            last = done;
        }
    }
    camera.join();
    EXPECT_EQ(taken + grabber.GetLostBufferCount(), kFrames);
}

} // namespace
