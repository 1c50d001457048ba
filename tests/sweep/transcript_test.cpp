// transcript_test.cpp - what a run is compared by
#include "tests/sweep/transcript.h"

#include <gtest/gtest.h>

namespace sweep {
namespace {

const Transcript kSoundRun{{"Init", "0", {"1 begin", "1 list", "1 end"}}, {"Open", "0", {}}};

TEST(Transcript, OfTheSameRunHasNoDifferences) {
    EXPECT_EQ(Differences(kSoundRun, kSoundRun), "nothing changes\n");
}

TEST(Transcript, NamesResultsAndLinesThatDiffer) {
    Transcript failed = kSoundRun;
    failed[0].lines = {"1 begin", "0 no list", "1 end"};
    EXPECT_EQ(Differences(kSoundRun, failed), "Init = 0\n  - 1 list\n  + 0 no list\n");
    failed[1].result = "4";
    EXPECT_EQ(Differences(kSoundRun, failed), "Init = 0\n  - 1 list\n  + 0 no list\nOpen = 4\n");
}

TEST(Transcript, CountsManyMissingLines) {
    const Transcript sound{{"Init", "0", {"1 a", "1 b", "1 c", "1 d", "1 e"}}};
    EXPECT_EQ(Differences(sound, {{"Init", "0", {"1 a"}}}), "Init = 0\n  - 4 lines from: 1 b\n");
    EXPECT_EQ(Differences(sound, {{"Init", "0", {"1 a", "1 e"}}}),
              "Init = 0\n  - 1 b\n  - 1 c\n  - 1 d\n");
}

TEST(Transcript, NoticesOtherOperations) {
    EXPECT_EQ(Differences(kSoundRun, {kSoundRun[0]}), "other operations\n");
}

TEST(Transcript, IsPrintedWithItsLinesIndented) {
    EXPECT_EQ(Print(kSoundRun), "Init = 0\n  1 begin\n  1 list\n  1 end\nOpen = 0\n");
}

} // namespace
} // namespace sweep
