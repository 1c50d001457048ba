// logger_test.cpp - lines of the log with checked formats
#include "sdk/logger.h"

#include "sdk/format_text.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

TEST(LoggerTest, WritesEachLineAtItsLevel) {
    support::RecordingSink sink;
    const Logger log(&sink);
    int number = 0;
    log.Information("%s = %I64d, %u", "Width", std::int64_t{-5}, 7u);
    log.Error("0x%p %08X %c", static_cast<void*>(&number), 0xABCu, 'x');
    log.ErrorText("100 %s");
    const std::vector<std::string> expected = {
        "1 Width = -5, 7", FormatText("0 0x%p 00000ABC x", static_cast<void*>(&number)),
        "0 100 %s"};
    EXPECT_EQ(sink.Lines(), expected);
}

TEST(LoggerTest, LeavesAPercentSignBeforeABlankAsItStands) {
    support::RecordingSink sink;
    Logger(&sink).Error("Feature % cannot be written");
    EXPECT_EQ(sink.Lines(), std::vector<std::string>{"0 Feature % cannot be written"});
}

TEST(LoggerTest, ReportsAndToleratesAMissingSink) {
    const Logger log;
    EXPECT_FALSE(log);
    EXPECT_EQ(log.Sink(), nullptr);
    log.Information("%u", 1u);
    log.Error("%u", 1u);
    log.ErrorText("text");
    support::RecordingSink sink;
    EXPECT_TRUE(Logger(&sink));
}

} // namespace
