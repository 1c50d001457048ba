// baseline_test.cpp - comparing measurements with a saved baseline
#include "bench/support/baseline.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Lines = std::vector<std::string>;

class Baseline : public testing::Test {
protected:
    void Keep(const Ratios& ratios) { ASSERT_TRUE(SaveRatios(path, ratios)); }
    Lines Fallen(const Ratios& ratios) const {
        return FindFallen(path, ratios).value_or(Lines{"cannot be read"});
    }

    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("ratios.txt");
};

TEST_F(Baseline, FindsNothingWhenNothingHasChanged) {
    Keep({{"a copy, of some size", {0.5, 12.25}}, {"another", {100}}});

    EXPECT_EQ(Fallen({{"a copy, of some size", {0.5, 12.25}}, {"another", {100}}}), Lines{});
}

TEST_F(Baseline, ReportsARatioThatFellByMoreThanFifteenPercent) {
    Keep({{"first", {1}}, {"second", {2}}});

    EXPECT_EQ(Fallen({{"first", {0.86}}, {"second", {1.72}}}), Lines{});
    EXPECT_EQ(Fallen({{"first", {0.84}}, {"second", {1.72}}}), Lines{"FELL  first: 0.84, was 1"});
    EXPECT_EQ(Fallen({{"first", {0.84}}, {"second", {1.68}}}),
              (Lines{"FELL  first: 0.84, was 1", "FELL  second: 1.68, was 2"}));
}

TEST_F(Baseline, IgnoresAMeasurementWithOnlyOneFallenRatio) {
    Keep({{"both", {1, 10}}});

    EXPECT_EQ(Fallen({{"both", {0.5, 10}}}), Lines{});
    EXPECT_EQ(Fallen({{"both", {1, 5}}}), Lines{});
    EXPECT_EQ(Fallen({{"both", {0.5, 5}}}), Lines{"FELL  both: 0.5 5, was 1 10"});
}

TEST_F(Baseline, ReportsMissingMeasurements) {
    Keep({{"first", {1}}, {"second", {2}}});

    EXPECT_EQ(Fallen({{"second", {2}}}), Lines{"GONE  first"});
}

TEST_F(Baseline, IgnoresNewMeasurements) {
    Keep({{"first", {1}}});

    EXPECT_EQ(Fallen({{"first", {1}}, {"new", {0.01}}}), Lines{});
}

TEST_F(Baseline, ReportsAFileThatCannotBeRead) {
    EXPECT_EQ(FindFallen(directory.PathOf("missing.txt"), {}), std::nullopt);

    for (const std::string line :
         {"1.0 no tab", "x\tno number", "\tno ratio", "1 x\thalf a number"}) {
        directory.Write("ratios.txt", "processor\n" + line + "\n");
        EXPECT_EQ(FindFallen(path, {}), std::nullopt) << line;
    }
}

} // namespace
