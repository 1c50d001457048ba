// script.cpp - runs lines of the control interface from a text or a file
#include "pxnc/simulator/script.h"

#include "platform/file_system.h"
#include "pxnc.h"
#include "pxnc/simulator/commands.h"

#include <sstream>

namespace pxsim {

std::int32_t RunScript(const std::string& text, const std::string& name, std::size_t firstLine,
                       std::string& answer) {
    std::istringstream lines(text);
    std::size_t number = firstLine;
    for (std::string line; std::getline(lines, line); ++number) {
        std::string word;
        std::istringstream(line) >> word;
        if (word.empty() || word.front() == '#') {
            continue;
        }
        std::int32_t result = PxnErrInvalidCall;
        // Two files could run each other endlessly.
        std::string reason = "a script cannot run another script";
        if (word != "script") {
            result = RunCommand(line, reason);
        }
        if (result != PxnErrSuccess) {
            answer = std::string(name).append(":").append(std::to_string(number));
            answer.append(": ").append(reason);
            return result;
        }
    }
    answer = "ok";
    return PxnErrSuccess;
}

std::int32_t RunScriptFile(const std::string& path, std::string& answer) {
    std::string text;
    std::string error;
    if (!platform::ReadWholeFile(path, text, &error)) {
        answer = path + ": cannot be read: " + error;
        return PxnErrNotFound;
    }
    return RunScript(text, path, 1, answer);
}

} // namespace pxsim
