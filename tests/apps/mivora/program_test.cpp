// program_test.cpp - tests of the command lines of both programs
#include "apps/mivora/program.h"

#include "apps/pyxen-tool/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

bool HasOption(const CommandDescription& command, const std::string& name) {
    return std::any_of(command.options.begin(), command.options.end(), [&](const auto& option) {
        return std::find(option.names.begin(), option.names.end(), name) != option.names.end();
    });
}

/// The names of commands that do something by themselves and have no option of this name.
std::string Without(const CommandDescription& command, const std::string& name) {
    std::string lacking;
    for (const CommandDescription& inner : command.commands) {
        if (!inner.needsCommand && !HasOption(inner, name)) {
            lacking += " " + inner.name;
        }
        lacking += Without(inner, name);
    }
    return lacking;
}

/// Options of a command that have the name of one of the program.
std::string Hidden(const CommandDescription& command, const CommandDescription& program) {
    std::string hidden;
    for (const CommandDescription& inner : command.commands) {
        for (const OptionDescription& option : inner.options) {
            for (const std::string& name : option.names) {
                hidden += HasOption(program, name) ? " " + inner.name + " " + name : "";
            }
        }
        hidden += Hidden(inner, program);
    }
    return hidden;
}

TEST(Programs, HaveJsonForEveryCommand) {
    EXPECT_EQ(Without(MivoraProgram().Line().Describe(), "--json"), "");
    EXPECT_EQ(Without(PyxenToolProgram().Line().Describe(), "--json"), "");
    EXPECT_EQ(Without(MivoraProgram().Line().Describe(), "-j"), "");
    EXPECT_EQ(Without(PyxenToolProgram().Line().Describe(), "-j"), "");
}

TEST(Programs, UseNoNameOfAnOptionTwice) {
    const CommandDescription mivora = MivoraProgram().Line().Describe();
    EXPECT_EQ(Hidden(mivora, mivora), "");
    const CommandDescription tool = PyxenToolProgram().Line().Describe();
    EXPECT_EQ(Hidden(tool, tool), "");
}

} // namespace
