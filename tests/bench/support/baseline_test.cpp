// baseline_test.cpp - ratios kept for each processor
#include "bench/support/baseline.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr const char* kThis = "This, family 25, model 17, stepping 1";
constexpr const char* kOther = "Other, family 26, model 2, stepping 1";

/// What a measurement printed at its end.
struct Outcome {
    int status = -1;
    std::string output;
    std::string errors;
};

class Baseline : public testing::Test {
protected:
    Outcome Finish(const char* option, const Ratios& ratios, const std::string& processor) const {
        std::string words[] = {"bench", option, path};
        char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        Outcome outcome;
        outcome.status = FinishRatios(3, arguments, ratios, processor);
        outcome.output = testing::internal::GetCapturedStdout();
        outcome.errors = testing::internal::GetCapturedStderr();
        return outcome;
    }
    void Save(const Ratios& ratios, const std::string& processor = kThis) const {
        const Outcome outcome = Finish("--save", ratios, processor);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
    Outcome Compare(const Ratios& ratios, const std::string& processor = kThis) const {
        return Finish("--baseline", ratios, processor);
    }
    void ExpectQuiet(const Ratios& ratios, const std::string& processor = kThis) const {
        const Outcome outcome = Compare(ratios, processor);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
    void ExpectFailure(const Ratios& ratios, const std::string& output) const {
        const Outcome outcome = Compare(ratios);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, output);
        EXPECT_EQ(outcome.errors, "");
    }

    const support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("ratios.txt");
};

// ---- the processor that the ratios were kept for ----

TEST_F(Baseline, FindsNothingWhenAllIsAsItWas) {
    Save({{"a copy, of some size", {0.5, 12.25}}, {"another", {100}}});
    ExpectQuiet({{"a copy, of some size", {0.5, 12.25}}, {"another", {100}}});
}

TEST_F(Baseline, FailsForARatioThatFellByMoreThanFifteenPercent) {
    Save({{"first", {1}}, {"second", {2}}});
    ExpectQuiet({{"first", {0.86}}, {"second", {1.72}}});
    ExpectFailure({{"first", {0.84}}, {"second", {1.72}}}, "FELL  first: 0.84, was 1\n");
    ExpectFailure({{"first", {0.84}}, {"second", {1.68}}},
                  "FELL  first: 0.84, was 1\nFELL  second: 1.68, was 2\n");
}

TEST_F(Baseline, KeepsQuietWhenOnlyOneOfTheRatiosFell) {
    Save({{"both", {1, 10}}});
    ExpectQuiet({{"both", {0.5, 10}}});
    ExpectQuiet({{"both", {1, 5}}});
    ExpectFailure({{"both", {0.5, 5}}}, "FELL  both: 0.5 5, was 1 10\n");
}

TEST_F(Baseline, FailsForWhatIsNoLongerMeasured) {
    Save({{"first", {1}}, {"second", {2}}});
    ExpectFailure({{"second", {2}}}, "GONE  first\n");
}

TEST_F(Baseline, TakesWhatIsNewAsItIs) {
    Save({{"first", {1}}});
    ExpectQuiet({{"first", {1}}, {"new", {0.01}}});
}

TEST_F(Baseline, ComparesWithTheSectionOfItsProcessorAlone) {
    Save({{"first", {1}}});
    Save({{"first", {100}}}, kOther);
    ExpectQuiet({{"first", {1}}});
    ExpectFailure({{"first", {0.5}}}, "FELL  first: 0.5, was 1\n");
}

// ---- another processor ----

TEST_F(Baseline, ShowsWhatIsKeptForAnotherProcessorAndNeverFails) {
    Save({{"both", {1, 10}}, {"old", {3}}}, kOther);
    const Outcome outcome = Compare({{"both", {0.1, 0.2}}, {"new", {5}}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "nothing is kept for This, family 25, model 17, stepping 1\n"
                              "beside Other, family 26, model 2, stepping 1:\n"
                              "      both: 0.1 0.2, there 1 10\n"
                              "      old: not measured, there 3\n");
}

TEST_F(Baseline, ShowsEveryOtherProcessor) {
    Save({{"first", {1}}}, kOther);
    Save({{"first", {2}}}, "Third");
    const Outcome outcome = Compare({{"first", {0.5}}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "nothing is kept for This, family 25, model 17, stepping 1\n"
                              "beside Other, family 26, model 2, stepping 1:\n"
                              "      first: 0.5, there 1\n"
                              "beside Third:\n"
                              "      first: 0.5, there 2\n");
}

TEST_F(Baseline, TellsProcessorsOfOneModelNameApart) {
    Save({{"first", {1}}}, "Same, family 25, model 17, stepping 1");
    EXPECT_EQ(Compare({{"first", {0.5}}}, "Same, family 25, model 17, stepping 2").status, 0);
    EXPECT_EQ(Compare({{"first", {0.5}}}, "Same").status, 0);
    EXPECT_EQ(Compare({{"first", {0.5}}}, "Same, family 25, model 17, stepping 1").status, 1);
}

// ---- saving ----

TEST_F(Baseline, SavesASectionForEachProcessor) {
    Save({{"first", {1}}, {"second", {2, 30}}});
    Save({{"first", {0.123456}}}, kOther);
    EXPECT_EQ(directory.Read("ratios.txt"), "[Other, family 26, model 2, stepping 1]\n"
                                            "0.123\tfirst\n"
                                            "\n"
                                            "[This, family 25, model 17, stepping 1]\n"
                                            "1\tfirst\n"
                                            "2 30\tsecond\n");
}

TEST_F(Baseline, SavingReplacesItsOwnSectionAndKeepsTheOthers) {
    Save({{"first", {1}}, {"old", {7}}});
    Save({{"first", {100}}, {"other's", {1.5, 2.5}}}, kOther);
    Save({{"first", {0.5}}, {"new", {3}}});
    ExpectQuiet({{"first", {0.5}}, {"new", {3}}});
    ExpectQuiet({{"first", {100}}, {"other's", {1.5, 2.5}}}, kOther);
    EXPECT_EQ(Compare({{"first", {0.1}}, {"other's", {1.5, 2.5}}}, kOther).output,
              "FELL  first: 0.1, was 100\n");
}

TEST_F(Baseline, SavingLeavesADamagedFileAsItIs) {
    const std::string damaged = "[Other]\nx\tfirst\n";
    directory.Write("ratios.txt", damaged);
    const Outcome outcome = Finish("--save", {{"first", {1}}}, kThis);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, path + ":2: \"x\" is not a ratio\n");
    EXPECT_EQ(directory.Read("ratios.txt"), damaged);
}

TEST_F(Baseline, SavingSaysThatAFileCannotBeWritten) {
    std::string words[] = {"bench", "--save", directory.PathOf("missing/ratios.txt")};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    testing::internal::CaptureStderr();
    EXPECT_EQ(FinishRatios(3, arguments, {{"first", {1}}}, kThis), 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr().find(words[2] + ": cannot be written"), 0u);
}

// ---- files that cannot be used ----

TEST_F(Baseline, NamesFileAndLineOfADamage) {
    const struct {
        const char* text;
        const char* complaint;
    } cases[] = {
        {"", ":1: no processor"},
        {"\n\n", ":1: no processor"},
        {"1\tfirst\n", ":1: a ratio before the first [PROCESSOR]"},
        {"[]\n1\tfirst\n", ":1: a processor without a name"},
        {"[A\n1\tfirst\n", ":1: neither \"[PROCESSOR]\" nor \"RATIO ... TAB NAME\""},
        {"[A]\n1\tfirst\n1.0 no tab\n", ":3: neither \"[PROCESSOR]\" nor \"RATIO ... TAB NAME\""},
        {"[A]\n\tno ratio\n", ":2: no ratio"},
        {"[A]\n1\t\n", ":2: a ratio without a name"},
        {"[A]\nx\tno number\n", ":2: \"x\" is not a ratio"},
        {"[A]\n1 2x\thalf a number\n", ":2: \"2x\" is not a ratio"},
        {"[A]\n-1\tnegative\n", ":2: \"-1\" is not a ratio"},
        {"[A]\ninf\tno number\n", ":2: \"inf\" is not a ratio"},
        {"[A]\nnan\tno number\n", ":2: \"nan\" is not a ratio"},
        {"[A]\n1\tfirst\n\n2\tfirst\n", ":4: \"first\" is there twice"},
        {"[A]\n1\tfirst\n[B]\n1\tfirst\n[A]\n1\tsecond\n", ":5: \"A\" is there twice"},
        {"[A]\n[B]\n1\tfirst\n", ":1: nothing is kept for \"A\""},
        {"[A]\n1\tfirst\n[B]\n", ":3: nothing is kept for \"B\""},
    };
    for (const auto& one : cases) {
        directory.Write("ratios.txt", one.text);
        for (const char* processor : {"A", "C"}) {
            const Outcome outcome = Compare({{"first", {1}}}, processor);
            EXPECT_EQ(outcome.status, 2) << one.text;
            EXPECT_EQ(outcome.errors, path + one.complaint + "\n");
            EXPECT_EQ(outcome.output, "");
        }
    }
}

TEST_F(Baseline, SaysThatAFileCannotBeRead) {
    const Outcome outcome = Compare({{"first", {1}}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors.find(path + ": cannot be read"), 0u) << outcome.errors;
}

TEST_F(Baseline, DoesNothingWithoutAnOption) {
    std::string word = "bench";
    char* arguments[] = {word.data(), nullptr};
    EXPECT_EQ(FinishRatios(1, arguments, {{"first", {1}}}, kThis), 0);
    EXPECT_FALSE(platform::PathExists(path));
}

// ---- the name of a processor ----

TEST(ProcessorName, IsModelNameFamilyModelAndStepping) {
    std::istringstream info("processor\t: 0\nvendor_id\t: AuthenticAMD\ncpu family\t: 25\n"
                            "model\t\t: 17\nmodel name\t: AMD EPYC\nstepping\t: 1\n\n"
                            "processor\t: 1\ncpu family\t: 99\nmodel\t\t: 98\n"
                            "model name\t: another\nstepping\t: 97\n");
    EXPECT_EQ(ProcessorName(info), "AMD EPYC, family 25, model 17, stepping 1");
}

TEST(ProcessorName, LeavesOutWhatTheSystemDoesNotTell) {
    std::istringstream name("model name\t: Some Processor\n");
    EXPECT_EQ(ProcessorName(name), "Some Processor");
    std::istringstream unnamed("cpu family\t: 6\nmodel\t\t: 85\n");
    EXPECT_EQ(ProcessorName(unnamed), "unknown processor, family 6, model 85");
    std::istringstream empty;
    EXPECT_EQ(ProcessorName(empty), "unknown processor");
}

TEST(ProcessorName, IsTheSameForThisMachineEveryTime) {
    EXPECT_NE(ProcessorName(), "");
    EXPECT_EQ(ProcessorName(), ProcessorName());
}

} // namespace
