// value_store_test.cpp - results of a trace in the places that a host gives
#include "pxnc/trace/value_store.h"

#include "pxnc/trace/encoder.h"
#include "tests/pxnc/trace/trace_fixture.h"

#include <cstring>
#include <string>

namespace trace_tests {
namespace {

using sdktrace::Words;

/// What was stored in the places of `from` is stored in those of `to`.
void Copy(sdktrace::ValueStore& store, Entry entry, PxnError result, const Words& from,
          const Words& to) {
    sdktrace::Encoder encoder;
    EncodeResults(encoder, entry, from, result, 100);
    const auto values = sdktrace::DecodeResults(entry, encoder.Content());
    ASSERT_TRUE(values);
    store.StoreResults(entry, to, result, *values);
}

TEST(ValueStoreTest, WritesListsAsTheSdkDid) {
    PxnFeatureInfo before[3]{};
    for (PxnFeatureInfo& info : before) {
        info = {"Width", "/Format", "Width of image",
                "tip",   "text",    "Standard",
                "px",    "Linear",  1,
                3,       500,       2,
                1,       0};
    }
    before[1].name = "Height";
    before[1].unit = nullptr;
    std::uint32_t found = 3;
    PxnFeatureInfo after[3]{};
    std::uint32_t foundAfter = 0;
    sdktrace::ValueStore store;
    Copy(store, Entry::kPxnFeaturesList, PxnErrMoreData, ToWords(nullptr, before, 2u, &found, 88u),
         ToWords(nullptr, after, 2u, &foundAfter, 88u));
    EXPECT_EQ(foundAfter, 3u);
    EXPECT_STREQ(after[0].name, "Width");
    EXPECT_STREQ(after[1].name, "Height");
    EXPECT_EQ(after[0].category, after[1].category); // one pointer for each text
    EXPECT_EQ(after[1].unit, nullptr);
    EXPECT_EQ(after[0].pollingTime, 500u);
    EXPECT_EQ(after[0].visibility, 2u);
    EXPECT_EQ(after[0].isStreamable, 1);
    EXPECT_EQ(after[0].hasSelectedFeatures, 0);
    EXPECT_EQ(after[2].name, nullptr); // beyond the capacity
}

TEST(ValueStoreTest, CountsNoMoreStreamsThanThereAre) {
    const PxnHandle stream = PXN_SYSTEM_HANDLE;
    PxnCameraInfo before{};
    before.streamHandles = &stream;
    before.streamCount = 1;
    const Words from = ToWords("id", &before, 80u);
    sdktrace::Encoder encoder;
    EncodeResults(encoder, Entry::kPxnCameraInfoQuery, from, 0, 0);
    std::string content(encoder.Content());
    // The count stands before the last number, each in 8 bytes.
    ASSERT_EQ(content[content.size() - 16], 1);
    content[content.size() - 16] = 100;
    const auto values = sdktrace::DecodeResults(Entry::kPxnCameraInfoQuery, content);
    ASSERT_TRUE(values);
    PxnCameraInfo after{};
    sdktrace::ValueStore store;
    store.StoreResults(Entry::kPxnCameraInfoQuery, ToWords("id", &after, 80u), 0, *values);
    EXPECT_EQ(after.streamCount, 1u);
}

TEST(ValueStoreTest, WritesNumbersHandlesAndStreams) {
    const PxnHandle streams[2] = {PXN_SYSTEM_HANDLE, nullptr};
    PxnCameraInfo before{"id",    "ext",   "name",  "model", "1", nullptr,
                         nullptr, nullptr, streams, 2,       1};
    PxnCameraInfo after{};
    sdktrace::ValueStore store;
    Copy(store, Entry::kPxnCameraInfoQuery, 0, ToWords("id", &before, 80u),
         ToWords("id", &after, 80u));
    EXPECT_STREQ(after.serialString, "1");
    ASSERT_EQ(after.streamCount, 2u);
    EXPECT_EQ(after.streamHandles[0], PXN_SYSTEM_HANDLE);
    EXPECT_EQ(after.permittedAccess, 1u);
    double limits[4] = {-1.5, 1e300, 0, 0};
    Copy(store, Entry::kPxnFeatureFloatRangeQuery, 0,
         ToWords(nullptr, "Gain", &limits[0], &limits[1]),
         ToWords(nullptr, "Gain", &limits[2], &limits[3]));
    EXPECT_EQ(limits[2], -1.5);
    EXPECT_EQ(limits[3], 1e300);
    PxnBool flags[2] = {1, 7};
    Copy(store, Entry::kPxnFeatureBoolGet, 0, ToWords(nullptr, "Flag", &flags[0]),
         ToWords(nullptr, "Flag", &flags[1]));
    EXPECT_EQ(flags[1], 1);
    const char* names[2] = {"On", nullptr};
    Copy(store, Entry::kPxnFeatureEnumGet, 0, ToWords(nullptr, "Mode", &names[0]),
         ToWords(nullptr, "Mode", &names[1]));
    EXPECT_STREQ(names[1], "On");
}

TEST(ValueStoreTest, WritesBytesAndAnswersWithinTheirLimits) {
    char before[8] = "abcdef";
    char after[8] = "xxxxxxx";
    std::uint32_t size = 7;
    std::uint32_t sizeAfter = 0;
    sdktrace::ValueStore store;
    Copy(store, Entry::kPxnFeatureStringGet, 0, ToWords(nullptr, "Name", before, 8u, &size),
         ToWords(nullptr, "Name", after, 8u, &sizeAfter));
    EXPECT_STREQ(after, "abcdef");
    EXPECT_EQ(sizeAfter, 7u);
    Copy(store, Entry::kPxnControl, -17, ToWords("help", before, 8u), ToWords("help", after, 4u));
    EXPECT_STREQ(after, "abc");
    Copy(store, Entry::kPxnControl, 0, ToWords("help", before, 8u), ToWords("help", nullptr, 0u));
}

TEST(ValueStoreTest, LeavesPlacesAloneAfterAFailure) {
    std::int64_t before = 1;
    std::int64_t after = 2;
    sdktrace::ValueStore store;
    Copy(store, Entry::kPxnFeatureIntGet, -6, ToWords(nullptr, "Width", &before),
         ToWords(nullptr, "Width", &after));
    EXPECT_EQ(after, 2);
}

TEST(ValueStoreTest, FillsFramesWithPixelsOrZeros) {
    for (const std::size_t traced : {std::size_t{8}, std::size_t{0}}) {
        FilledFrame before;
        FilledFrame after;
        std::memset(after.pixels, 0xEE, sizeof after.pixels);
        after.frame.width = after.frame.imageSize = 0;
        after.frame.imageData = nullptr;
        sdktrace::Encoder encoder;
        EncodeResults(encoder, Entry::kPxnCaptureFrameWait, ToWords(nullptr, &before.frame, 10u), 0,
                      traced);
        const auto values = DecodeResults(Entry::kPxnCaptureFrameWait, encoder.Content());
        ASSERT_TRUE(values);
        sdktrace::ValueStore store;
        store.StoreResults(Entry::kPxnCaptureFrameWait, ToWords(nullptr, &after.frame, 10u), 0,
                           *values);
        EXPECT_EQ(after.frame.imageData, after.pixels + 2);
        EXPECT_EQ(after.frame.width, 3u);
        EXPECT_EQ(after.frame.timestamp, before.frame.timestamp);
        EXPECT_EQ(after.pixels[0], traced > 0 ? 1 : 0);
        EXPECT_EQ(after.pixels[7], traced > 0 ? 8 : 0);
    }
}

} // namespace
} // namespace trace_tests
