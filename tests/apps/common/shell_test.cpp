// shell_test.cpp - tests of the shell and of how operations read their arguments
#include "apps/common/shell.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

class ShellTest : public testing::Test {
protected:
    ShellTest() {
        operations.Add("None", "", [] { return ShellAnswer::Ok(); });
        operations.Add("Small", "N", [](std::uint32_t n) { return ShellAnswer::Number(n); });
        operations.Add("Large", "N",
                       [](std::uint64_t n) { return ShellAnswer::Ok().With("n", n); });
        operations.Add("Signed", "I", [](std::int32_t n) { return ShellAnswer::Number(n); });
        operations.Add("Value", "V", [](ParameterValue value) {
            return ShellAnswer::Ok().With("bits", value.bits);
        });
        operations.Add("Flag", "0|1", [](bool on) { return ShellAnswer::Number(on); });
        operations.Add("Text", "TEXT",
                       [](const std::string& text) { return ShellAnswer::Text(text.c_str()); });
        operations.Add("Bytes", "HEX", [](const std::vector<std::uint8_t>& bytes) {
            return ShellAnswer::Ok().WithBytes("data", bytes);
        });
        operations.Add("Wait", "N [MS]",
                       [](std::uint32_t n, std::optional<std::uint64_t> timeoutMs) {
                           return ShellAnswer::Number(n).With("ms", timeoutMs.value_or(5000));
                       });
        operations.Add("Rest", "ANYTHING",
                       [](const RestOfLine& rest) { return ShellAnswer::Text(rest.text.c_str()); });
        operations.Add("Refuse", "", []() -> ShellAnswer { throw ShellRefusal("not today"); });
    }

    std::string Answer(const char* line) { return Shell(operations).Answer(line); }
    /// Runs lines and returns the exit status; `output` receives what was printed.
    int Run(const std::string& lines, std::string& output) {
        std::istringstream input(lines);
        std::FILE* const written = std::fopen(directory.PathOf("out").c_str(), "wb");
        const int status = Shell(operations)
                               .Run(
                                   [&input](std::string& line) {
                                       return static_cast<bool>(std::getline(input, line));
                                   },
                                   written);
        std::fclose(written);
        output = directory.Read("out");
        return status;
    }

    support::TemporaryDirectory directory;
    ShellOperations operations;
};

TEST_F(ShellTest, PrintsObjectsInJson) {
    Shell shell(operations, false, true);
    EXPECT_EQ(shell.Answer("Wait 3 20"),
              R"({"schema":1,"operation":"Wait","result":3,"values":{"ms":20}})");
    EXPECT_EQ(shell.Answer("Refuse"), R"({"schema":1,"operation":"Refuse","refusal":"not today"})");
    EXPECT_EQ(shell.Answer("# a comment"), "");
}

TEST_F(ShellTest, PrintsNameAndResult) {
    EXPECT_EQ(Answer("None"), "None = ok");
    EXPECT_EQ(Answer("  Small  17 "), "Small = 17");
}

TEST_F(ShellTest, PrintsNothingForBlankLinesAndComments) {
    EXPECT_EQ(Answer("   "), "");
    EXPECT_EQ(Answer("# None"), "");
}

TEST_F(ShellTest, ReadsNumbersInDecimalAndHexadecimal) {
    EXPECT_EQ(Answer("Small 0x1F"), "Small = 31");
    EXPECT_EQ(Answer("Small 4294967295"), "Small = 4294967295");
    EXPECT_EQ(Answer("Large 18446744073709551615"), "Large = ok n=18446744073709551615");
    EXPECT_EQ(Answer("Large 0xFFFFFFFFFFFFFFFF"), "Large = ok n=18446744073709551615");
    EXPECT_EQ(Answer("Signed -1"), "Signed = -1");
    EXPECT_EQ(Answer("Signed -2147483648"), "Signed = -2147483648");
}

TEST_F(ShellTest, RefusesNumbersOutOfRangeAndOtherTexts) {
    EXPECT_EQ(Answer("Small 4294967296"), "Small ? \"4294967296\" is no number in range");
    EXPECT_EQ(Answer("Small -1"), "Small ? \"-1\" is no number in range");
    EXPECT_EQ(Answer("Small 1x"), "Small ? \"1x\" is no number in range");
    EXPECT_EQ(Answer("Small \"\""), "Small ? \"\" is no number in range");
    EXPECT_EQ(Answer("Large 18446744073709551616"),
              "Large ? \"18446744073709551616\" is no number in range");
    EXPECT_EQ(Answer("Signed 2147483648"), "Signed ? \"2147483648\" is no number in range");
}

TEST_F(ShellTest, TakesParameterValuesOfEitherSign) {
    EXPECT_EQ(Answer("Value -3"), "Value = ok bits=18446744073709551613");
    EXPECT_EQ(Answer("Value 18446744073709551615"), "Value = ok bits=18446744073709551615");
    EXPECT_EQ(Answer("Value x"), "Value ? \"x\" is no number");
}

TEST_F(ShellTest, TakesOnlyZeroAndOneForAFlag) {
    EXPECT_EQ(Answer("Flag 1"), "Flag = 1");
    EXPECT_EQ(Answer("Flag 0"), "Flag = 0");
    EXPECT_EQ(Answer("Flag 2"), "Flag ? \"2\" is neither 0 nor 1");
}

TEST_F(ShellTest, ReadsBytesAndPrintsThemInCapitals) {
    EXPECT_EQ(Answer("Bytes 00ff1A"), "Bytes = ok data=00FF1A");
    EXPECT_EQ(Answer("Bytes \"\""), "Bytes = ok data=");
    EXPECT_EQ(Answer("Bytes 0"), "Bytes ? \"0\" is no sequence of hexadecimal bytes");
    EXPECT_EQ(Answer("Bytes 0g"), "Bytes ? \"0g\" is no sequence of hexadecimal bytes");
}

TEST_F(ShellTest, PrintsTextsAsJson) {
    EXPECT_EQ(Answer("Text \"a \"\"b\"\"\t\\\""), "Text = \"a \\\"b\\\"\\t\\\\\"");
    EXPECT_EQ(Answer("Text caf\xC3\xA9"), "Text = \"caf\xC3\xA9\"");
    EXPECT_EQ(Answer("Text \xFF"), "Text = \"\xEF\xBF\xBD\"");
}

TEST_F(ShellTest, LeavesOutOptionalArguments) {
    EXPECT_EQ(Answer("Wait 3"), "Wait = 3 ms=5000");
    EXPECT_EQ(Answer("Wait 3 10"), "Wait = 3 ms=10");
}

TEST_F(ShellTest, ReportsTheExpectedArguments) {
    EXPECT_EQ(Answer("Wait"), "Wait ? expects N [MS]");
    EXPECT_EQ(Answer("Wait 1 2 3"), "Wait ? expects N [MS]");
    EXPECT_EQ(Answer("None 1"), "None ? expects no arguments");
}

TEST_F(ShellTest, PassesTheRestOfALineUnchanged) {
    EXPECT_EQ(Answer("Rest  a  \"b c  "), "Rest = \"a  \\\"b c\"");
    EXPECT_EQ(Answer("Rest"), "Rest = \"\"");
}

TEST_F(ShellTest, RefusesUnknownNames) {
    EXPECT_EQ(Answer("none"), "none ? unknown operation");
    EXPECT_EQ(Answer("Refuse"), "Refuse ? not today");
    EXPECT_EQ(Answer("Text \"a"), "Text ? a double quote is missing");
}

TEST_F(ShellTest, RunsEveryLineAndEndsWithStatusZero) {
    std::string output;
    EXPECT_EQ(Run("None\r\n\n# comment\nSmall 2", output), 0);
    EXPECT_EQ(output, "None = ok\nSmall = 2\n");
}

TEST_F(ShellTest, GoesOnAfterARefusalAndEndsWithStatusTwo) {
    std::string output;
    EXPECT_EQ(Run("Small x\nWhat\nNone\n", output), 2);
    EXPECT_EQ(output, "Small ? \"x\" is no number in range\nWhat ? unknown operation\nNone = ok\n");
}

TEST_F(ShellTest, TakesLinesOfAnyLength) {
    const std::string text(100000, 'x');
    std::string output;
    EXPECT_EQ(Run("Text " + text + "\n", output), 0);
    EXPECT_EQ(output, "Text = \"" + text + "\"\n");
}

TEST_F(ShellTest, EndsWithOneWhenItIsStrictAndAnOperationFailed) {
    operations.Add("Fail", "", [] { return ShellAnswer::Code(MV_NOT_INITIALISED); });
    operations.Add("Succeed", "", [] { return ShellAnswer::Code(MV_OK); });
    operations.Add("WaitInVain", "", [] { return ShellAnswer::Number(0).FailedIf(true); });
    const auto run = [this](const char* lines, bool isStrict) {
        std::istringstream input(lines);
        std::FILE* const output = std::fopen(directory.PathOf("out").c_str(), "wb");
        const int status = Shell(operations, isStrict)
                               .Run(
                                   [&input](std::string& line) {
                                       return static_cast<bool>(std::getline(input, line));
                                   },
                                   output);
        std::fclose(output);
        return status;
    };
    EXPECT_EQ(run("Succeed\nSmall 17\n", true), 0) << "a number is no code";
    EXPECT_EQ(run("Fail\nSucceed\n", true), 1);
    EXPECT_EQ(run("WaitInVain\n", true), 1);
    EXPECT_EQ(run("Fail\nUnknown\n", true), 2);
    EXPECT_EQ(run("Fail\nWaitInVain\n", false), 0);
}

} // namespace
