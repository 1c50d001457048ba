// run_program.cpp - running the built programs from a test
#include "tests/support/run_program.h"

#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace support {

namespace {

constexpr std::uint32_t kLimitMs = 120000;
constexpr int kStarts = 3;

} // namespace

std::string BuiltFile(const std::string& name) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name);
}

std::string BuiltProgram(const std::string& name) {
    const bool hasEnding = platform::ExecutablePath().ends_with(".exe");
    return BuiltFile(name + (hasEnding ? ".exe" : ""));
}

platform::ProcessStart ProgramStart(const std::string& name,
                                    const std::vector<std::string>& arguments) {
    platform::ProcessStart start;
    start.program = BuiltProgram(name);
    start.arguments = arguments;
    return start;
}

bool StartProgram(platform::Process& process, const platform::ProcessStart& start,
                  std::string* error) {
    for (int attempt = 1; !process.Start(start, error); ++attempt) {
        // The text of ERROR_INTERNAL_ERROR.
        if (attempt == kStarts || !error->ends_with(": Internal error.")) {
            return false;
        }
        std::fprintf(stderr, "start %d of %d failed: %s\n", attempt, kStarts, error->c_str());
    }
    return true;
}

ProgramResult RunProgram(const platform::ProcessStart& start, const std::string& input) {
    platform::ProcessStart changed = start;
    const auto isHome = [](const auto& variable) {
        return variable.first == "PYXEN_HOME";
    };
    if (std::none_of(start.environment.begin(), start.environment.end(), isHome)) {
        changed.environment.emplace_back("PYXEN_HOME", "");
    }
    ProgramResult result;
    platform::Process process;
    std::string error;
    if (!StartProgram(process, changed, &error)) {
        ADD_FAILURE() << "cannot start " << error;
        return result;
    }
    process.Write(input);
    process.CloseInput();
    result.ended = process.Wait(kLimitMs, result.status);
    if (!result.ended) {
        process.Kill();
        process.Wait(kLimitMs, result.status);
        ADD_FAILURE() << start.program << " did not end; it wrote:\n"
                      << process.Output() << process.Errors();
    }
    result.output = process.Output();
    result.errors = process.Errors();
    return result;
}

ProgramResult RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                         const std::string& input) {
    return RunProgram(ProgramStart(name, arguments), input);
}

} // namespace support
