// run_program.h - running the built programs from a test
#pragma once

#include "platform/process.h"

#include <string>
#include <vector>

namespace support {

/// How a program ended and what it wrote.
struct ProgramResult {
    bool ended = false; ///< false when it had to be killed at the time limit
    int status = -1;
    std::string output;
    std::string errors;
};

/// The path of a program or file that is built into the directory of this test.
std::string BuiltFile(const std::string& name);
/// The path of a built program, with the ending that programs have here.
std::string BuiltProgram(const std::string& name);

/// How to run a program, for who wants to change it before.
platform::ProcessStart ProgramStart(const std::string& name,
                                    const std::vector<std::string>& arguments);

/// Runs a program to its end with `input` on its standard input; PYXEN_HOME is not set unless
/// `start` sets it. One that does not end within two minutes is killed and fails the test.
ProgramResult RunProgram(const platform::ProcessStart& start, const std::string& input = {});
ProgramResult RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::string& input = {});

} // namespace support
