// console_examples_posix_test.cpp - the pages' examples do what the pages say
//
// In the pages a block that begins with ```console has commands, each behind "$ ", and below each
// what it prints on both streams. There "..." stands for any text, and on a line of its own for any
// number of lines. Commands end with status 0. The blocks of a page run one after the other in one
// directory, on the simulator; a block that begins with ```text file=NAME is first written to it. A
// command whose output depends on the machine stands behind ```text and is not run.
#include "platform/environment.h"
#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr const char* kAnything = "...";

std::string Trimmed(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(' ');
    return begin == std::string::npos ? "" : line.substr(begin);
}

/// True when the line is the pattern, in which "..." stands for any text.
bool IsLike(const std::string& line, const std::string& pattern) {
    const std::size_t open = pattern.find(kAnything);
    if (open == std::string::npos) {
        return line == pattern;
    }
    if (!line.starts_with(pattern.substr(0, open))) {
        return false;
    }
    const std::string rest = pattern.substr(open + 3);
    for (std::size_t begin = open; begin <= line.size(); ++begin) {
        if (IsLike(line.substr(begin), rest)) {
            return true;
        }
    }
    return false;
}

/// The same for lines, from these on.
bool AreLike(const Lines& lines, std::size_t line, const Lines& patterns, std::size_t pattern) {
    if (pattern == patterns.size()) {
        return line == lines.size();
    }
    if (Trimmed(patterns[pattern]) == kAnything) {
        for (std::size_t skipped = line; skipped <= lines.size(); ++skipped) {
            if (AreLike(lines, skipped, patterns, pattern + 1)) {
                return true;
            }
        }
        return false;
    }
    return line < lines.size() && IsLike(lines[line], patterns[pattern]) &&
           AreLike(lines, line + 1, patterns, pattern + 1);
}

Lines Split(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r')) {
            line.pop_back(); // from a serial port
        }
        lines.push_back(line);
    }
    return lines;
}

std::string Joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

struct Example {
    std::size_t line = 0; ///< of the page
    std::string command;
    Lines output;
};

/// A block of a page between lines of ```.
struct Block {
    std::size_t line = 0;
    std::string head; ///< behind the ``` that opens it
    Lines content;
};

std::vector<Block> BlocksOf(const std::string& page) {
    std::vector<Block> blocks;
    bool isInside = false;
    std::size_t number = 0;
    for (const std::string& line : Split(page)) {
        ++number;
        if (line.starts_with("```")) {
            isInside = !isInside;
            if (isInside) {
                blocks.push_back({number, line.substr(3), {}});
            }
        } else if (isInside) {
            blocks.back().content.push_back(line);
        }
    }
    return blocks;
}

std::vector<Example> ExamplesOf(const Block& block) {
    std::vector<Example> examples;
    std::size_t number = block.line;
    for (const std::string& line : block.content) {
        ++number;
        if (line.starts_with("$ ")) {
            examples.push_back({number, line.substr(2), {}});
        } else if (!examples.empty()) {
            examples.back().output.push_back(line);
        }
    }
    return examples;
}

/// Runs a command in a directory; both streams. One that takes longer than a minute is ended, with
/// status 124.
std::string RunThere(const support::TemporaryDirectory& directory, const std::string& command,
                     int& status) {
    const std::string programs =
        platform::DirectoryOf(support::BuiltProgram("mivora")); // in front of others of the name
    directory.Write(".command", "cd '" + directory.PathOf(".") + "' && unset PYXEN_HOME && PATH='" +
                                    programs + "':$PATH\n" + command + "\n");
    std::FILE* const output =
        popen(("timeout 60 sh '" + directory.PathOf(".command") + "' 2>&1").c_str(), "r");
    std::string text;
    std::array<char, 4096> part{};
    while (output && std::fgets(part.data(), part.size(), output)) {
        text += part.data();
    }
    const int ending = output ? pclose(output) : -1;
    status = WIFEXITED(ending) ? WEXITSTATUS(ending) : -1;
    return text;
}

TEST(ConsoleExamples, AreComparedAsTheyAreWritten) {
    EXPECT_TRUE(IsLike("a b", "a b"));
    EXPECT_FALSE(IsLike("a b", "a"));
    EXPECT_TRUE(IsLike("12.5 frames", "... frames"));
    EXPECT_TRUE(IsLike("{a:1,b:2}", "{a:...,b:...}"));
    EXPECT_FALSE(IsLike("{a:1,c:2}", "{a:...,b:...}"));
    EXPECT_TRUE(AreLike({"a", "b", "c"}, 0, {"a", "  ...", "c"}, 0));
    EXPECT_TRUE(AreLike({"a", "c"}, 0, {"a", "...", "c"}, 0)) << "no line is a number of lines";
    EXPECT_FALSE(AreLike({"a", "b"}, 0, {"a"}, 0));
    EXPECT_FALSE(AreLike({"a"}, 0, {"a", "b"}, 0));
    const std::vector<Example> examples =
        ExamplesOf(BlocksOf("x\n```console\n$ one\n1\n2\n$ two\n```\n").at(0));
    ASSERT_EQ(examples.size(), 2u);
    EXPECT_EQ(examples[0].command, "one");
    EXPECT_EQ(examples[0].line, 3u);
    EXPECT_EQ(examples[0].output, (Lines{"1", "2"}));
    EXPECT_EQ(examples[1].output, Lines{});
}

class PageExamples : public testing::TestWithParam<std::string> {};

TEST_P(PageExamples, PrintWhatThePageSays) {
    std::string page;
    ASSERT_TRUE(platform::ReadWholeFile(GetParam(), page));
    const support::TemporaryDirectory directory;
    const std::string name = fs::path(GetParam()).filename().string();
    for (const Block& block : BlocksOf(page)) {
        const std::size_t file = block.head.find(" file=");
        if (file != std::string::npos) {
            directory.Write(block.head.substr(file + 6), Joined(block.content));
        }
        const bool isRun = block.head == "console";
        const std::vector<Example> examples = ExamplesOf(block);
        EXPECT_TRUE(!isRun || !examples.empty()) << name << ":" << block.line << " has no command";
        for (const Example& example : examples) {
            if (!isRun) {
                EXPECT_FALSE(block.head.empty() && (example.command.starts_with("mivora ") ||
                                                    example.command.starts_with("pyxen-tool ")))
                    << name << ":" << block.line << " begins with no ```console";
                continue;
            }
            int status = -1;
            const std::string printed = RunThere(directory, example.command, status);
            EXPECT_TRUE(AreLike(Split(printed), 0, example.output, 0))
                << name << ":" << example.line << " prints\n"
                << printed;
            EXPECT_EQ(status, 0) << name << ":" << example.line;
        }
    }
}

/// The pages that have examples.
std::vector<std::string> PagesWithExamples() {
    std::vector<std::string> pages{MIVORA_SOURCE_DIR "/README.md"};
    for (const fs::directory_entry& entry : fs::directory_iterator(MIVORA_SOURCE_DIR "/docs")) {
        std::string page;
        const bool isPage = entry.path().extension() == ".md" &&
                            platform::ReadWholeFile(entry.path().string(), page);
        if (isPage && page.find("\n$ ") != std::string::npos) {
            pages.push_back(entry.path().string());
        }
    }
    return pages;
}

std::string NameOfPage(const testing::TestParamInfo<std::string>& info) {
    std::string name = fs::path(info.param).stem().string();
    for (char& c : name) {
        c = c == '-' ? '_' : c;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Pages, PageExamples, testing::ValuesIn(PagesWithExamples()), NameOfPage);

} // namespace
