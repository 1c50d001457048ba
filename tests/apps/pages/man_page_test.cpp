// man_page_test.cpp - tests of the manual pages of the programs
#include "apps/pages/man_page.h"

#include "apps/mivora/program.h"
#include "apps/pyxen-tool/program.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

namespace {

CommandDescription Small() {
    OptionDescription option;
    option.names = {"-o", "--out-put"};
    option.value = "FILE";
    option.description = ".first of two \\ words";
    option.defaultText = "a.png";
    OptionDescription argument;
    argument.names = {"NAME"};
    argument.value = "TEXT";
    argument.description = "A name";
    argument.isPositional = true;
    argument.isRequired = true;
    argument.mayRepeat = true;
    CommandDescription command;
    command.name = "do";
    command.description = "Do a thing";
    command.footer = "Example:\n  thing do a\n.no request\n";
    command.options = {option, argument};
    CommandDescription program;
    program.name = "thing";
    program.description = "Does things";
    program.commands = {command};
    return program;
}

TEST(ManPage, HasTheSectionsOfACommand) {
    const std::string page = ManPage(Small(), "1.0");
    EXPECT_EQ(
        page.find(".TH THING 1 \"\" \"1.0\" \"User commands\"\n.SH NAME\nthing \\- Does things\n"),
        0u)
        << page;
    EXPECT_NE(page.find(".SS thing do\nDo a thing.\n.PP\n"
                        "\\fBthing do\\fR [\\fB\\-\\-out\\-put\\fR \\fIFILE\\fR] \\fINAME\\fR...\n"
                        ".TP\n\\fB\\-o\\fR, \\fB\\-\\-out\\-put\\fR \\fIFILE\\fR\n"
                        "\\&.first of two \\e words (default: a.png).\n"
                        ".TP\n\\fINAME\\fR\nA name.\n"
                        ".PP\n.nf\nExample:\n  thing do a\n\\&.no request\n.fi\n"),
              std::string::npos)
        << page;
}

/// Calls `visit` with every command below the program and its path.
void Visit(const CommandDescription& command, const std::string& path,
           const std::function<void(const CommandDescription&, const std::string&)>& visit) {
    for (const CommandDescription& inner : command.commands) {
        const std::string innerPath = path + " " + inner.name;
        visit(inner, innerPath);
        Visit(inner, innerPath, visit);
    }
}

TEST(ManPage, OfTheProgramsHasEveryCommandAndOption) {
    MivoraProgram mivora;
    PyxenToolProgram tool;
    for (CommandLine* const line : {&mivora.Line(), &tool.Line()}) {
        const CommandDescription program = line->Describe();
        const std::string page = ManPage(program, "1.0");
        std::size_t options = 0;
        Visit(program, program.name, [&](const CommandDescription& command, std::string path) {
            for (std::size_t at = 0; (at = path.find('-', at)) != std::string::npos; at += 2) {
                path.insert(at, "\\");
            }
            const std::size_t begin = page.find(".SS " + path + "\n");
            ASSERT_NE(begin, std::string::npos) << path;
            for (const OptionDescription& option : command.options) {
                std::string name = option.names.back();
                for (std::size_t at = 0; (at = name.find('-', at)) != std::string::npos; at += 2) {
                    name.insert(at, "\\");
                }
                EXPECT_NE(page.find(name, begin), std::string::npos) << path << name;
                ++options;
            }
        });
        EXPECT_GE(options, 15u);
        std::istringstream lines(page);
        for (std::string text; std::getline(lines, text);) {
            const bool isKnown = !text.starts_with('.') || text.starts_with(".TH ") ||
                                 text.starts_with(".SH ") || text.starts_with(".SS ") ||
                                 text == ".TP" || text == ".PP" || text == ".nf" || text == ".fi";
            EXPECT_TRUE(isKnown) << text;
        }
    }
}

} // namespace
