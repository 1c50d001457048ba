// run_program.h - running the built programs from a test
#pragma once

#include "platform/process.h"

#include <string>
#include <vector>

namespace support {

/// Exit status and output of a program.
struct ProgramResult {
    bool ended = false; ///< false when it was killed at the time limit
    int status = -1;
    std::string output;
    std::string errors;
};

/// Path of a file in the build's directory for programs, where this test is.
std::string BuiltFile(const std::string& name);
/// Path of a built program, with the platform's extension for programs.
std::string BuiltProgram(const std::string& name);

/// How to start a built program; a test may change it before it calls RunProgram.
platform::ProcessStart ProgramStart(const std::string& name,
                                    const std::vector<std::string>& arguments);

/// Starts a program. On a busy machine Wine fails now and then to set a process up, with an
/// internal error of its own and before anything of the program runs; that is noted and tried
/// again.
bool StartProgram(platform::Process& process, const platform::ProcessStart& start,
                  std::string* error);

/// Runs a program to completion with `input` as its standard input. PYXEN_HOME is not set unless
/// `start` sets it. A program that runs for more than two minutes is killed and fails the test.
ProgramResult RunProgram(const platform::ProcessStart& start, const std::string& input = {});
ProgramResult RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::string& input = {});

} // namespace support
