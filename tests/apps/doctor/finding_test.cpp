// finding_test.cpp - tests of findings as text and as JSON
#include "apps/doctor/finding.h"

#include <gtest/gtest.h>

namespace {

TEST(Finding, ShowsItsAdviceBelowItAndControlsNoTerminal) {
    EXPECT_EQ(FindingText({Severity::kOk, "library", "", "/a/libPxnC.so", ""}),
              "ok       library         /a/libPxnC.so\n");
    EXPECT_EQ(FindingText({Severity::kProblem, "open", "camera \x1B", "busy", "end it"}),
              "problem  open            camera \\x1B: busy\n"
              "                         -> end it\n");
    EXPECT_EQ(FixText({true, "packet-size", "camera 0", "9000 -> 1500"}),
              "fixed    packet-size     camera 0: 9000 -> 1500\n");
    EXPECT_EQ(FixText({false, "address", "", "taken"}), "unfixed  address         taken\n");
}

TEST(Finding, OnlyProblemsCount) {
    EXPECT_FALSE(HasProblem({}));
    EXPECT_FALSE(HasProblem({{Severity::kWarning, "a", "", "", ""}}));
    EXPECT_TRUE(
        HasProblem({{Severity::kOk, "a", "", "", ""}, {Severity::kProblem, "b", "", "", ""}}));
}

TEST(Finding, IsJson) {
    EXPECT_EQ(DoctorJson({{Severity::kWarning, "frames", "camera 0", "gaps", "slower"}},
                         {{true, "address", "", "done"}})
                  .Text(),
              R"({"schema":1,"ok":true,"findings":[{"severity":"warning","check":"frames",)"
              R"("object":"camera 0","text":"gaps","advice":"slower"}],)"
              R"("fixes":[{"fixed":true,"check":"address","object":"","text":"done"}]})");
}

} // namespace
