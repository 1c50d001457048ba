// command_line_test.cpp - tests of describing and parsing command lines
#include "apps/common/command_line.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

namespace {

class CommandLineTest : public testing::Test {
protected:
    CommandLineTest() {
        command.AddOption("WORD", word, "A word").Required();
        command.AddOption("MORE", more, "Another word");
        command.AddOption("-n,--number", number, "A number").Within(2, 5).ShowDefault();
        command.AddOption("--count", count, "A count").Check(PositiveCountProblem).TypeName("N");
        command.AddOption("--size", size, "A size").OneOf({"small", "large"});
        command.AddOption("--mood", mood, "A mood").OneOfIgnoringCase({"Good", "Bad"});
        command.AddFlag("--fast", fast, "Run fast");
        command.AddOption("--each", each, "One of several");
        command.AddOption("--to", to, "A place or none").ValueOptional();
        report.AddJson(json);
        const CommandOption option = report.AddOption("--table", table, "A table");
        report.AddOption("--columns", columns, "Of the table").Needs(option);
        report.AddOption("--plain", plain, "No table").Excludes(option);
        program.AddOption("--place", place, "A place");
        report.Excludes("--place");
        report.OnRun([this] { run(); });
        all.AddOption("ALL", every, "All words").Required();
        command.OnRun([this] { run(); });
    }

    /// Runs the program and returns its exit status; `output` and `errors` receive what it wrote.
    int Run(const std::vector<std::string>& given) {
        Arguments arguments(given);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = program.Run(arguments.Count(), arguments.Values());
        errors = testing::internal::GetCapturedStderr();
        output = testing::internal::GetCapturedStdout();
        return status;
    }

    CommandLine::ParseResult Parse(const std::vector<std::string>& given) {
        Arguments arguments(given);
        return program.Parse(arguments.Count(), arguments.Values(), output);
    }

    CommandLine program{"Does things", "thing"};
    Command command = program.AddCommand("do", "Do a thing");
    std::string word;
    std::optional<std::string> more;
    std::uint32_t number = 3;
    std::uint64_t count = 0;
    std::string size;
    std::string mood;
    bool fast = false;
    std::vector<std::string> each;
    std::optional<std::string> to;
    Command all = program.AddCommand("all", "Do all");
    std::vector<std::string> every;
    Command report = program.AddCommand("report", "Report a thing");
    bool json = false;
    std::string table;
    std::string columns;
    std::string plain;
    std::string place;
    std::function<void()> run = [] {
    };
    std::string output;
    std::string errors;

private:
    /// The arguments of a main function.
    class Arguments {
    public:
        explicit Arguments(const std::vector<std::string>& given) : texts{"thing"} {
            texts.insert(texts.end(), given.begin(), given.end());
            for (std::string& text : texts) {
                pointers.push_back(text.data());
            }
        }
        int Count() const { return static_cast<int>(pointers.size()); }
        char** Values() { return pointers.data(); }

    private:
        std::vector<std::string> texts;
        std::vector<char*> pointers;
    };
};

TEST_F(CommandLineTest, ReadsValuesOfEveryKind) {
    EXPECT_EQ(Run({"do", "a", "b", "-n", "5", "--count=18446744073709551615", "--size", "large",
                   "--mood", "bAD", "--fast"}),
              0);
    EXPECT_EQ(word, "a");
    EXPECT_EQ(more, "b");
    EXPECT_EQ(number, 5u);
    EXPECT_EQ(count, ~std::uint64_t{0});
    EXPECT_EQ(size, "large");
    EXPECT_EQ(mood, "Bad");
    EXPECT_TRUE(fast);
    EXPECT_EQ(output + errors, "");
}

TEST_F(CommandLineTest, KeepsTheVariablesOfOptionsThatAreNotGiven) {
    EXPECT_EQ(Run({"do", "/path"}), 0);
    EXPECT_EQ(word, "/path") << "an argument on every platform";
    EXPECT_EQ(more, std::nullopt);
    EXPECT_EQ(number, 3u);
    EXPECT_FALSE(fast);
}

TEST_F(CommandLineTest, CollectsTheValuesOfARepeatedOption) {
    EXPECT_EQ(Run({"do", "--each", "a=1,2", "word", "--each", "[b]", "--each=c", "more"}), 0);
    EXPECT_EQ(each, (std::vector<std::string>{"a=1,2", "[b]", "c"}));
    EXPECT_EQ(word, "word");
    EXPECT_EQ(more, "more");
    EXPECT_EQ(Run({"do", "word", "--each"}), 2);
}

TEST_F(CommandLineTest, CollectsAllArguments) {
    EXPECT_EQ(Run({"all", "a", "b c", "=d"}), 0);
    EXPECT_EQ(every, (std::vector<std::string>{"a", "b c", "=d"}));
    EXPECT_EQ(Run({"all"}), 2);
    EXPECT_EQ(errors.find("ALL is required\n"), 0u) << errors;
}

TEST_F(CommandLineTest, TellsAnOptionWithoutItsOptionalValueFromNone) {
    EXPECT_EQ(Run({"do", "word"}), 0);
    EXPECT_EQ(to, std::nullopt);
    EXPECT_EQ(Run({"do", "word", "--to"}), 0);
    EXPECT_EQ(to, "");
    EXPECT_EQ(Run({"do", "word", "--to", "there"}), 0);
    EXPECT_EQ(to, "there");
}

TEST_F(CommandLineTest, RefusesBadValuesWithStatusTwo) {
    run = [] {
        ADD_FAILURE() << "must not run";
    };
    EXPECT_EQ(Run({"do", "a", "-n", "6"}), 2);
    EXPECT_EQ(errors.find("--number: Value 6 not in range 2 to 5\n"), 0u) << errors;
    EXPECT_EQ(Run({"do", "a", "--count", "-1"}), 2);
    EXPECT_EQ(errors.find("--count: \"-1\" is no number from 1 on\n"), 0u) << errors;
    EXPECT_EQ(Run({"do", "a", "--size", "LARGE"}), 2);
    EXPECT_EQ(Run({"do"}), 2);
    EXPECT_EQ(errors.find("WORD is required\n"), 0u) << errors;
    EXPECT_EQ(Run({"do", "a", "b", "c"}), 2);
    EXPECT_EQ(Run({"do", "a", "--slow"}), 2);
    EXPECT_EQ(output, "");
}

TEST_F(CommandLineTest, RequiresACommandOnDemand) {
    EXPECT_EQ(Run({}), 0);
    program.RequireCommand();
    EXPECT_EQ(Run({}), 2);
    EXPECT_EQ(errors.find("A subcommand is required\n"), 0u) << errors;
    EXPECT_EQ(Run({"what"}), 2);
    EXPECT_EQ(errors.find("The following argument was not expected: what\n"), 0u) << errors;
}

TEST_F(CommandLineTest, PrintsHelpAndRunsNothing) {
    run = [] {
        ADD_FAILURE() << "must not run";
    };
    command.SetFooter("The end.");
    EXPECT_EQ(Run({"do", "--help"}), 0);
    EXPECT_NE(output.find("-n,--number UINT:INT in [2 - 5]=3"), std::string::npos) << output;
    EXPECT_NE(output.find("--count N"), std::string::npos) << output;
    EXPECT_NE(output.find("--size TEXT:{small,large}"), std::string::npos) << output;
    EXPECT_NE(output.find("The end."), std::string::npos) << output;
    EXPECT_EQ(errors, "");
}

TEST_F(CommandLineTest, ReportsWhyTheCommandFailed) {
    run = [] {
        throw std::runtime_error("no luck");
    };
    EXPECT_EQ(Run({"do", "a"}), 1);
    EXPECT_EQ(errors, "thing: no luck\n");
    run = [] {
        throw MissingArgument("MORE");
    };
    EXPECT_EQ(Run({"do", "a"}), 2);
    EXPECT_EQ(errors.find("MORE is required\n"), 0u) << errors;
    run = [] {
        throw ExitStatus{7};
    };
    EXPECT_EQ(Run({"do", "a"}), 7);
    EXPECT_EQ(output + errors, "");
}

TEST_F(CommandLineTest, PrintsTheVersionForTheOptionsGiven) {
    program.SetVersion([this](bool isJson) { return place + (isJson ? " json" : " text"); });
    program.RequireCommand();
    EXPECT_EQ(Run({"--version", "--place", "here"}), 0);
    EXPECT_EQ(output, "here text\n");
    EXPECT_EQ(Run({"-V", "--json"}), 0);
    EXPECT_EQ(output, "here json\n");
    EXPECT_EQ(errors, "");
}

TEST_F(CommandLineTest, DescribesWhatThereIs) {
    program.RequireCommand();
    command.SetFooter("The end.");
    const CommandDescription whole = program.Describe();
    EXPECT_EQ(whole.name, "thing");
    EXPECT_EQ(whole.description, "Does things");
    EXPECT_TRUE(whole.needsCommand);
    ASSERT_EQ(whole.commands.size(), 3u);
    const CommandDescription& doing = whole.commands[0];
    EXPECT_EQ(doing.name, "do");
    EXPECT_EQ(doing.footer, "The end.");
    EXPECT_FALSE(doing.needsCommand);
    const auto option = [&doing](std::size_t index) {
        const OptionDescription& one = doing.options.at(index);
        std::string text;
        for (const std::string& name : one.names) {
            text += name + " ";
        }
        text += "<" + one.value + ">";
        for (const std::string& choice : one.choices) {
            text += " " + choice;
        }
        return text + (one.limits.empty() ? "" : " limits " + one.limits) +
               (one.defaultText.empty() ? "" : " default " + one.defaultText) +
               (one.isPositional ? " positional" : "") + (one.isRequired ? " required" : "") +
               (one.isValueOptional ? " optional" : "") + (one.mayRepeat ? " repeat" : "") + ": " +
               one.description;
    };
    ASSERT_EQ(doing.options.size(), 9u);
    EXPECT_EQ(option(0), "WORD <TEXT> positional required: A word");
    EXPECT_EQ(option(1), "MORE <TEXT> positional: Another word");
    EXPECT_EQ(option(2), "-n --number <UINT> limits 2 to 5 default 3: A number");
    EXPECT_EQ(option(3), "--count <N>: A count");
    EXPECT_EQ(option(4), "--size <TEXT> small large: A size");
    EXPECT_EQ(option(5), "--mood <TEXT> Good Bad: A mood");
    EXPECT_EQ(option(6), "--fast <>: Run fast");
    EXPECT_EQ(option(7), "--each <TEXT> repeat: One of several");
    EXPECT_EQ(option(8), "--to <TEXT> optional: A place or none");
    EXPECT_TRUE(whole.commands[1].options.at(0).mayRepeat ||
                whole.commands[2].options.at(0).mayRepeat);
}

TEST_F(CommandLineTest, RefusesOptionsWithoutEffect) {
    run = [] {
        ADD_FAILURE() << "must not run";
    };
    EXPECT_EQ(Run({"report", "--columns", "3"}), 2);
    EXPECT_EQ(errors.find("--columns requires --table\n"), 0u) << errors;
    EXPECT_EQ(Run({"report", "--plain", "p", "--table", "t"}), 2);
    EXPECT_EQ(errors.find("--table excludes --plain\n"), 0u) << errors;
    EXPECT_EQ(Run({"report", "--place", "here"}), 2);
    EXPECT_EQ(errors.find("report excludes --place\n"), 0u) << errors;
    run = [] {
    };
    EXPECT_EQ(Run({"report", "--columns", "3", "--table", "t"}), 0);
    EXPECT_EQ(Run({"--place", "here", "do", "a"}), 0);
    run = [] {
        throw BadUsage("a table of nothing");
    };
    EXPECT_EQ(Run({"report"}), 2);
    EXPECT_EQ(errors, "a table of nothing\nRun with --help for more information.\n");
}

TEST_F(CommandLineTest, ReportsFailuresAsJsonWhereJsonIsWanted) {
    run = [] {
        throw CommandFailure("no \"luck\"", {"once", "tw\x1Bice"});
    };
    EXPECT_EQ(Run({"report"}), 1);
    EXPECT_EQ(errors, "thing: no \"luck\"\n  once\n  tw\\x1Bice\n");
    EXPECT_FALSE(json);
    EXPECT_EQ(Run({"report", "-j"}), 1);
    EXPECT_EQ(errors, R"({"schema":1,"error":{"status":1,"message":"no \"luck\"",)"
                      R"("details":["once","tw\u001bice"]}})"
                      "\n");
    EXPECT_TRUE(json);
    run = [] {
        throw std::runtime_error("nothing");
    };
    EXPECT_EQ(Run({"report", "--json"}), 1);
    EXPECT_EQ(errors, R"({"schema":1,"error":{"status":1,"message":"nothing","details":[]}})"
                      "\n");
    run = [] {
        throw std::bad_alloc();
    };
    EXPECT_EQ(Run({"report", "--json"}), 1);
    EXPECT_EQ(errors, R"({"schema":1,"error":{"status":1,"message":"out of memory","details":[]}})"
                      "\n");
    EXPECT_EQ(output, "");
}

TEST_F(CommandLineTest, ReportsBadUsageAsJsonWhereJsonIsWanted) {
    const auto error = [](const std::string& message) {
        return R"({"schema":1,"error":{"status":2,"message":")" + message + R"(","details":[]}})" +
               "\n";
    };
    EXPECT_EQ(Run({"report", "--slow", "--json"}), 2);
    EXPECT_EQ(errors, error("The following argument was not expected: --slow"));
    EXPECT_EQ(Run({"do", "--number", "x", "--json"}), 2) << "where the parser stops before it";
    EXPECT_EQ(errors.find(R"({"schema":1,"error":{"status":2,)"), 0u) << errors;
    run = [] {
        throw BadUsage("a table of nothing");
    };
    EXPECT_EQ(Run({"report", "--json"}), 2);
    EXPECT_EQ(errors, error("a table of nothing"));
    EXPECT_EQ(Run({"do", "--", "--json", "a", "b"}), 2) << "an argument like any other";
    EXPECT_EQ(errors.find("The following argument was not expected"), 0u) << errors;
}

TEST_F(CommandLineTest, ParsesForProgramsThatShowTheirOwnMessages) {
    EXPECT_EQ(Parse({"do", "a"}), CommandLine::ParseResult::kReady);
    EXPECT_EQ(Parse({"--help"}), CommandLine::ParseResult::kHelpRequested);
    EXPECT_EQ(output.find("Does things\nUsage: thing"), 0u) << output;
    EXPECT_EQ(Parse({"--colour"}), CommandLine::ParseResult::kBadUsage);
    EXPECT_EQ(output.find("The following argument was not expected: --colour\n\nDoes things\n"), 0u)
        << output;
}

TEST(CountProblem, AcceptsNumbersFromZeroOn) {
    EXPECT_EQ(CountProblem("0"), "");
    EXPECT_EQ(CountProblem("0x10"), "");
    EXPECT_EQ(CountProblem("-1"), "\"-1\" is no number from 0 on");
    EXPECT_EQ(PositiveCountProblem("1"), "");
    EXPECT_EQ(PositiveCountProblem("0"), "\"0\" is no number from 1 on");
}

} // namespace
