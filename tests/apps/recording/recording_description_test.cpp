// recording_description_test.cpp - tests of the description of a recording
#include "apps/recording/recording_description.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

namespace {

RecordingDescription Whole() {
    RecordingDescription description;
    description.program = "mivora";
    description.camera = {"Korvane", "G-130", "1234", "left", "DEV_1", "Eth0|DEV_1", "Eth0"};
    description.sdkVersion = "1.4.0";
    description.moduleName = "libMivoraKVNPyxen.so";
    description.moduleVersion = "1.2.3.4";
    description.pixelFormat = "Mono12p";
    description.layout = {640, 480, 1, 16, 12, MVCC_MONO, 0, 0};
    description.offsetX = 16;
    description.offsetY = -8;
    description.exposureUs = 1000.5;
    description.frameRate = 100;
    description.clock = ClockRelation{-5, 7, "TimestampLatch"};
    description.start = "2026-01-31T12:00:00.000000000Z";
    description.format = "tiff";
    description.frames = {300, 298, 2};
    description.reason = "2 frames are missing";
    return description;
}

TEST(RecordingDescription, ReadsWhatItWrites) {
    const RecordingDescription whole = Whole();
    EXPECT_EQ(ParseRecordingDescription(whole.Json()), whole);
    RecordingDescription complete = whole;
    complete.complete = true;
    complete.reason.clear();
    EXPECT_EQ(ParseRecordingDescription(complete.Json()), complete);
    RecordingDescription little;
    little.layout = whole.layout;
    little.start = "2026";
    little.format = "png";
    EXPECT_EQ(ParseRecordingDescription(little.Json()), little);
}

TEST(RecordingDescription, IsALineOfJson) {
    const std::string text = Whole().Json();
    EXPECT_EQ(text.find("{\"schema\":1,\"program\":\"mivora\",\"camera\":{\"vendor\":\"Korvane\""),
              0u);
    EXPECT_NE(text.find("\"clock\":{\"offsetNs\":-5,\"uncertaintyNs\":7,\"method\":"
                        "\"TimestampLatch\"},"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\"frames\":{\"wanted\":300,\"recorded\":298,\"missing\":2},"
                        "\"complete\":false,\"reason\":\"2 frames are missing\"}\n"),
              std::string::npos)
        << text;
    EXPECT_NE(
        text.find("\"layout\":{\"width\":640,\"height\":480,\"components\":1,"
                  "\"allocatedBits\":16,\"bits\":12,\"colorCoding\":0,\"cfaX\":0,\"cfaY\":0}"),
        std::string::npos)
        << text;
}

TEST(RecordingDescription, IsRefusedWithTheReason) {
    const std::string text = Whole().Json();
    for (const auto& [from, to] : std::initializer_list<std::pair<const char*, const char*>>{
             {"\"schema\":1", "\"schema\":2"},
             {"\"schema\"", "\"other\""},
             {"\"camera\"", "\"other\""},
             {"\"width\":640", "\"width\":0"},
             {"\"recorded\":298", "\"recorded\":null"},
             {"\"model\":\"G-130\"", "\"model\":1"},
             {"\"offsetX\":16", "\"offsetX\":0.5"},
             {"\"uncertaintyNs\":7", "\"uncertaintyNs\":-7"},
             {"\"format\"", "\"other\""},
             {"}\n", "\n"}}) {
        std::string changed = text;
        changed.replace(changed.find(from), std::string(from).size(), to);
        EXPECT_THROW(ParseRecordingDescription(changed), CommandFailure) << to;
    }
}

TEST(RecordingDescription, WritesTimesAsText) {
    EXPECT_EQ(TimeText(0), "1970-01-01T00:00:00.000000000Z");
    EXPECT_EQ(TimeText(1709209845000000007u), "2024-02-29T12:30:45.000000007Z");
}

} // namespace
