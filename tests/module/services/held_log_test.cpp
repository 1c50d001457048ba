// held_log_test.cpp - log lines that are written later
#include "services/held_log.h"

#include "tests/module/texts.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

TEST(HeldLog, WritesItsLinesInTheirOrderAtItsEnd) {
    support::RecordingSink sink;
    {
        HeldLog held{Logger(&sink)};
        const Logger log = held.Log();
        log.Information("%s: %I64d", "first", std::int64_t{-7});
        log.ErrorText("100 %s");
        log.Error("%s", std::string(3000, 'x').c_str());
        EXPECT_EQ(sink.Lines(), Texts{});
    }
    EXPECT_EQ(sink.Take(), (Texts{"1 first: -7", "0 100 %s", "0 " + std::string(3000, 'x')}));
}

TEST(HeldLog, HasNoLogWithoutASink) {
    HeldLog held{Logger()};
    EXPECT_FALSE(held.Log());
}

} // namespace
