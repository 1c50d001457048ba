// script.cpp - runs lines of the control interface from a text or a file
#include "pxnc/simulator/script.h"

#include "platform/file_system.h"
#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/simulator/commands.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <sstream>
#include <utility>
#include <vector>

namespace pxsim {

namespace {

/// A line and where it stands.
struct ScriptLine {
    std::string text;
    std::string name;
    std::size_t number = 0;
};

class WaitingLines {
public:
    void Add(const ScriptLine& line) EXCLUDES(mutex) {
        platform::MutexLock lock(mutex);
        lines.push_back(line);
    }
    std::vector<ScriptLine> Take() EXCLUDES(mutex) {
        platform::MutexLock lock(mutex);
        return std::exchange(lines, {});
    }

private:
    platform::Mutex mutex;
    std::vector<ScriptLine> lines GUARDED_BY(mutex);
};

WaitingLines& TheWaitingLines() {
    static skeleton::NeverDestroyed<WaitingLines> lines;
    return lines.Get();
}

std::int32_t RunLine(const ScriptLine& line, std::string& answer) {
    std::string word;
    std::istringstream(line.text) >> word;
    if (word.empty() || word.front() == '#') {
        return PxnErrSuccess;
    }
    std::int32_t result = PxnErrInvalidCall;
    // Two files could run each other endlessly.
    std::string reason = "a script cannot run another script";
    if (word != "script") {
        result = RunCommand(line.text, reason);
    }
    if (result != PxnErrSuccess) {
        answer = std::string(line.name).append(":").append(std::to_string(line.number));
        answer.append(": ").append(reason);
    }
    return result;
}

std::int32_t RunLines(const std::string& text, const std::string& name, std::size_t firstLine,
                      bool mayWait, std::string& answer) {
    std::istringstream lines(text);
    ScriptLine line{"", name, firstLine};
    for (; std::getline(lines, line.text); ++line.number) {
        const std::int32_t result = RunLine(line, answer);
        if (result == PxnErrApiNotStarted && mayWait) {
            TheWaitingLines().Add(line);
        } else if (result != PxnErrSuccess) {
            return result;
        }
    }
    answer = "ok";
    return PxnErrSuccess;
}

} // namespace

std::int32_t RunScript(const std::string& text, const std::string& name, std::size_t firstLine,
                       std::string& answer) {
    return RunLines(text, name, firstLine, false, answer);
}

std::int32_t RunScriptFile(const std::string& path, std::string& answer) {
    std::string text;
    std::string error;
    if (!platform::ReadWholeFile(path, text, &error)) {
        answer = path + ": cannot be read: " + error;
        return PxnErrNotFound;
    }
    return RunLines(text, path, 1, true, answer);
}

std::int32_t RunWaitingLines(std::string& answer) {
    for (const ScriptLine& line : TheWaitingLines().Take()) {
        if (const std::int32_t result = RunLine(line, answer); result != PxnErrSuccess) {
            return result;
        }
    }
    return PxnErrSuccess;
}

void ForgetWaitingLines() {
    TheWaitingLines().Take();
}

} // namespace pxsim
