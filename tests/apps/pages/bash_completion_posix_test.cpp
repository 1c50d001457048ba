// bash_completion_posix_test.cpp - completion of the programs' command lines, in a bash
#include "apps/pages/bash_completion.h"

#include "apps/mivora/program.h"
#include "apps/pyxen-tool/program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>

namespace {

class BashCompletionTest : public testing::Test {
protected:
    BashCompletionTest() {
        directory.Write("mivora.bash", BashCompletion(MivoraProgram().Line().Describe()));
        directory.Write("pyxen-tool.bash", BashCompletion(PyxenToolProgram().Line().Describe()));
    }

    /// What completes the last of the words; "(files)" when files do.
    std::set<std::string> Complete(const std::string& words) {
        const std::string program = words.substr(0, words.find(' '));
        std::string function = program;
        for (char& c : function) {
            c = c == '-' ? '_' : c;
        }
        directory.Write("run.bash", "compopt() { echo '(files)'; }\n. " +
                                        directory.PathOf(program + ".bash") + "\nCOMP_WORDS=(" +
                                        words + ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_" +
                                        function + "\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
        std::FILE* const output =
            popen(("bash " + directory.PathOf("run.bash") + " 2>&1").c_str(), "r");
        std::string text;
        char part[256];
        while (std::fgets(part, sizeof part, output)) {
            text += part;
        }
        EXPECT_EQ(pclose(output), 0) << text;
        std::set<std::string> found;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = text.find('\n', begin)) != std::string::npos;
             begin = end + 1) {
            if (end > begin) {
                found.insert(text.substr(begin, end - begin));
            }
        }
        return found;
    }
    using Words = std::set<std::string>;

    support::TemporaryDirectory directory;
};

TEST_F(BashCompletionTest, CompletesCommands) {
    const Words all = Complete("mivora ''");
    EXPECT_TRUE(all.count("cameras") == 1 && all.count("grab") == 1) << all.size();
    EXPECT_EQ(Complete("mivora sna"), Words{"snap"});
    EXPECT_EQ(Complete("mivora --sdk simulator --camera=1 set"), (Words{"set", "settings"}));
    EXPECT_EQ(Complete("mivora settings ''"), (Words{"save", "load", "diff", "show"}));
    EXPECT_EQ(Complete("pyxen-tool camera"), Words{"camera-key"});
}

TEST_F(BashCompletionTest, CompletesOptionsOfTheCommandAndOfTheProgram) {
    EXPECT_EQ(Complete("mivora features --t"),
              (Words{"--tree", "--trace-sdk", "--trace-size", "--trace-frames"}));
    EXPECT_EQ(Complete("mivora settings load a.json --d"), Words{"--dry-run"});
    EXPECT_EQ(Complete("pyxen-tool formats --j"), Words{"--json"});
    EXPECT_EQ(Complete("mivora settings show a.json --d"), Words{});
}

TEST_F(BashCompletionTest, CompletesValues) {
    EXPECT_EQ(Complete("mivora --sdk s"), (Words{"simulator", "(files)"}));
    EXPECT_EQ(Complete("mivora --sdk = g"), (Words{"genicam", "(files)"}));
    EXPECT_EQ(Complete("mivora serial 0 --parity O"), Words{"Odd"});
    EXPECT_EQ(Complete("mivora --log ''"), Words{"(files)"});
    EXPECT_EQ(Complete("mivora features --filter ''"), Words{}) << "any text";
    EXPECT_EQ(Complete("mivora settings load ''"), Words{"(files)"});
    EXPECT_EQ(Complete("mivora --log --sdk ca"), Words{"cameras"}) << "the value of --log";
}

} // namespace
