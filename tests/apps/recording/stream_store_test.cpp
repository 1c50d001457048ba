// stream_store_test.cpp - tests of frames one after another on a stream
#include "apps/recording/stream_store.h"

#include "apps/common/command_failure.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace {

const ImageLayout kGrey{2, 1, 1, 8, 8, MVCC_MONO, 0, 0};

class StreamStoreTest : public testing::Test {
protected:
    StreamStoreTest() : stream(std::fopen(directory.PathOf("stream").c_str(), "wb")) {}
    ~StreamStoreTest() override { std::fclose(stream); }

    StoredFrame Put(StreamStore& store, std::uint8_t first) {
        const std::array<std::uint8_t, 2> image = {first, 'x'};
        EncodedFrame frame;
        store.Encode(kGrey, image.data(), frame);
        return store.Append(1, kGrey, frame);
    }

    support::TemporaryDirectory directory;
    std::FILE* const stream;
};

TEST_F(StreamStoreTest, WritesEachFrameAtOnce) {
    StreamStore store(stream, "the stream", "raw");
    const StoredFrame stored = Put(store, 'a');
    EXPECT_EQ(stored.file, "");
    EXPECT_EQ(stored.bytes, 2u);
    EXPECT_EQ(directory.Read("stream"), "ax");
    Put(store, 'b');
    store.Finish();
    EXPECT_EQ(directory.Read("stream"), "axbx");
}

TEST_F(StreamStoreTest, WritesWholeFilesOneAfterAnother) {
    StreamStore store(stream, "the stream", "pnm");
    EXPECT_EQ(Put(store, 'a').bytes, 13u);
    Put(store, 'b');
    EXPECT_EQ(directory.Read("stream"), "P5\n2 1\n255\naxP5\n2 1\n255\nbx");
}

TEST_F(StreamStoreTest, SaysWhatCannotBeWritten) {
    std::FILE* const reading = std::fopen(directory.Write("file", "").c_str(), "rb");
    ASSERT_TRUE(reading);
    StreamStore store(reading, "the stream", "raw");
    try {
        Put(store, 'a');
        ADD_FAILURE();
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(std::string(failure.what()).find("cannot write to the stream: "), 0u)
            << failure.what();
    }
    std::fclose(reading);
}

} // namespace
