// frame_line_test.cpp - tests of the lines of a recording's index
#include "apps/recording/frame_line.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

namespace {

const ImageLayout kCommon{64, 48, 1, 16, 12, MVCC_MONO, 0, 0};

std::string JsonOf(const FrameLine& line) {
    std::string text;
    line.AppendJson(text, kCommon);
    return text;
}

void ExpectSame(const FrameLine& line) {
    const FrameLine read = ParseFrameLine(JsonOf(line), kCommon);
    EXPECT_EQ(read.n, line.n);
    EXPECT_EQ(read.stamp, line.stamp);
    EXPECT_EQ(read.status, line.status);
    EXPECT_EQ(read.file, line.file);
    EXPECT_EQ(read.offset, line.offset);
    EXPECT_EQ(read.bytes, line.bytes);
    EXPECT_EQ(read.layout, line.layout);
    EXPECT_EQ(read.note, line.note);
}

TEST(FrameLine, IsOneJsonObject) {
    FrameLine line;
    line.n = 3;
    line.stamp = {17, 18446744073709551615u, 5};
    line.file = "frame-000003.png";
    line.bytes = 1234;
    line.layout = kCommon;
    EXPECT_EQ(JsonOf(line), "{\"n\":3,\"frameId\":17,\"timestampNs\":18446744073709551615,"
                            "\"hostNs\":5,\"status\":\"complete\",\"file\":\"frame-000003.png\","
                            "\"offset\":0,\"bytes\":1234}");
    ExpectSame(line);
}

TEST(FrameLine, SaysWhatWasNotRecorded) {
    FrameLine line;
    line.n = 4;
    line.status = FrameStatus::kDropped;
    line.layout = kCommon;
    EXPECT_EQ(JsonOf(line), "{\"n\":4,\"frameId\":null,\"timestampNs\":null,\"hostNs\":null,"
                            "\"status\":\"dropped\",\"file\":null,\"offset\":0,\"bytes\":0}");
    ExpectSame(line);
    line.note = "a \"note\"";
    for (const FrameStatus status : {FrameStatus::kComplete, FrameStatus::kIncomplete,
                                     FrameStatus::kLost, FrameStatus::kDamaged}) {
        line.status = status;
        ExpectSame(line);
    }
}

TEST(FrameLine, RepeatsTheLayoutWhereItDiffers) {
    FrameLine line;
    line.n = 1;
    line.file = "frames.stack";
    line.offset = 5000000000;
    line.layout = kCommon;
    line.layout.height = 40;
    line.layout.colorCoding = MVCC_RAW_CFA;
    const std::string text = JsonOf(line);
    EXPECT_NE(text.find(",\"height\":40,\"colorCoding\":1}"), std::string::npos) << text;
    EXPECT_EQ(text.find("width"), std::string::npos) << text;
    ExpectSame(line);
}

TEST(FrameLine, IsRefusedWithTheReason) {
    const std::string rest = ",\"frameId\":1,\"status\":\"lost\",\"file\":null}";
    for (const std::string& text :
         {std::string(), std::string("[]"), std::string("{\"n\":1"), "{\"x\":1" + rest,
          "{\"n\":-1" + rest, "{\"n\":\"1\"" + rest, "{\"n\":1,\"width\":0" + rest,
          "{\"n\":1,\"width\":4294967296" + rest, "{\"n\":1,\"bits\":17" + rest,
          "{\"n\":1,\"components\":5" + rest, "{\"n\":1,\"note\":1" + rest,
          std::string("{\"n\":1,\"status\":\"odd\",\"file\":null}"),
          std::string("{\"n\":1,\"status\":\"lost\",\"file\":\"../x\"}"),
          std::string("{\"n\":1,\"status\":\"lost\",\"file\":\"a/x\"}"),
          std::string("{\"n\":1,\"status\":\"lost\",\"file\":\"C:\\\\x\"}")}) {
        EXPECT_THROW(ParseFrameLine(text, kCommon), CommandFailure) << text;
    }
    EXPECT_EQ(ParseFrameLine("{\"n\":1" + rest, kCommon).stamp.frameId, 1u);
}

} // namespace
