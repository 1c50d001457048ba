// process.cpp - child processes on Windows
#include "platform/process.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/mutex.h"
#include "platform/thread.h"
#include "platform/win32/last_error.h"

#include <windows.h>

#include <algorithm>
#include <map>

namespace platform {

namespace {

void CloseIfOpen(HANDLE& handle) {
    if (handle) {
        CloseHandle(handle);
        handle = nullptr;
    }
}

/// A pipe of which the child inherits one end.
struct Pipe {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;

    ~Pipe() {
        CloseIfOpen(readEnd);
        CloseIfOpen(writeEnd);
    }
    bool Open(bool programReads) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        return CreatePipe(&readEnd, &writeEnd, &inherited, 0) &&
               SetHandleInformation(programReads ? writeEnd : readEnd, HANDLE_FLAG_INHERIT, 0);
    }
};

/// Reads one output stream of the child to its end on a separate thread.
class StreamReader {
public:
    ~StreamReader() { Finish(); }

    void Start(HANDLE readEnd) {
        handle = readEnd;
        const auto procedure = [](void* self) {
            static_cast<StreamReader*>(self)->ReadAll();
        };
        thread = Thread::Start(procedure, this, 0);
    }
    void Finish() {
        thread.Join();
        CloseIfOpen(handle);
    }
    std::string Text() const {
        MutexLock lock(mutex);
        return text;
    }

private:
    void ReadAll() {
        char buffer[4096];
        DWORD count = 0;
        while (ReadFile(handle, buffer, sizeof buffer, &count, nullptr) && count > 0) {
            MutexLock lock(mutex);
            text.append(buffer, count);
        }
    }

    HANDLE handle = nullptr;
    Thread thread;
    mutable Mutex mutex;
    std::string text GUARDED_BY(mutex);
};

/// Appends `argument`, quoted the way the C library parses command lines.
void AppendArgument(std::string& line, const std::string& argument) {
    line += line.empty() ? "\"" : " \"";
    std::size_t backslashes = 0;
    for (const char character : argument) {
        if (character == '\\') {
            ++backslashes;
            continue;
        }
        line.append(character == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        backslashes = 0;
        line += character;
    }
    line.append(backslashes * 2, '\\');
    line += '"';
}

std::string CommandLine(const ProcessStart& start) {
    std::string line;
    AppendArgument(line, start.program);
    for (const std::string& argument : start.arguments) {
        AppendArgument(line, argument);
    }
    return line;
}

struct NoCase {
    bool operator()(const std::string& left, const std::string& right) const {
        return lstrcmpiA(left.c_str(), right.c_str()) < 0;
    }
};

std::string Environment(const std::vector<std::pair<std::string, std::string>>& changes) {
    std::map<std::string, std::string, NoCase> variables;
    char* const all = GetEnvironmentStringsA();
    for (const char* entry = all; *entry; entry += std::string(entry).size() + 1) {
        const std::string text = entry;
        // The names of some internal variables start with '=' ("=C:").
        const std::size_t sign = text.find('=', 1);
        variables[text.substr(0, sign)] = sign == std::string::npos ? "" : text.substr(sign + 1);
    }
    FreeEnvironmentStringsA(all);
    for (const auto& [name, value] : changes) {
        if (value.empty()) {
            variables.erase(name);
        } else {
            variables[name] = value;
        }
    }
    std::string block;
    for (const auto& [name, value] : variables) {
        block += name + "=" + value + '\0';
    }
    return block + '\0';
}

} // namespace

struct Process::Impl {
    HANDLE process = nullptr;
    HANDLE input = nullptr;
    StreamReader output;
    StreamReader errors;

    ~Impl() { CloseIfOpen(process); }
};

std::string FindProgram(const std::string& name) {
    const std::string path = GetEnvironment("PATH");
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find(';', begin), path.size());
        // An empty entry would be the current directory, where nothing is looked for.
        std::string candidate = JoinPath(path.substr(begin, end - begin), name + ".exe");
        if (end != begin && IsRegularFile(candidate)) {
            return candidate;
        }
        begin = end + 1;
    }
    return "";
}

Process::Process() : impl(std::make_unique<Impl>()) {}

Process::~Process() {
    CloseInput();
    if (impl->process) {
        int status = 0;
        Kill();
        Wait(INFINITE, status);
    }
}

bool Process::Start(const ProcessStart& start, std::string* error) {
    Pipe input;
    Pipe output;
    Pipe errors;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    std::string line = CommandLine(start);
    std::string environment = Environment(start.environment);
    PROCESS_INFORMATION started{};
    bool isStarted = input.Open(true) && output.Open(false) && errors.Open(false);
    if (isStarted) {
        startup.hStdInput = input.readEnd;
        startup.hStdOutput = output.writeEnd;
        startup.hStdError = errors.writeEnd;
        const char* const directory =
            start.workingDirectory.empty() ? nullptr : start.workingDirectory.c_str();
        isStarted = CreateProcessA(start.program.c_str(), line.data(), nullptr, nullptr, TRUE,
                                   CREATE_NO_WINDOW, environment.data(), directory, &startup,
                                   &started) != FALSE;
    }
    if (!isStarted) {
        if (error) {
            *error = start.program + ": " + SystemErrorText(GetLastError());
        }
        return false;
    }
    CloseHandle(started.hThread);
    impl->process = started.hProcess;
    impl->input = std::exchange(input.writeEnd, nullptr);
    impl->output.Start(std::exchange(output.readEnd, nullptr));
    impl->errors.Start(std::exchange(errors.readEnd, nullptr));
    return true;
}

bool Process::Write(std::string_view data) {
    while (!data.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(data.size(), 1u << 20));
        DWORD count = 0;
        if (!WriteFile(impl->input, data.data(), size, &count, nullptr)) {
            return false;
        }
        data.remove_prefix(count);
    }
    return true;
}

void Process::CloseInput() {
    CloseIfOpen(impl->input);
}

bool Process::Wait(std::uint32_t timeoutMs, int& status) {
    if (WaitForSingleObject(impl->process, timeoutMs) != WAIT_OBJECT_0) {
        return false;
    }
    impl->output.Finish();
    impl->errors.Finish();
    DWORD code = 0;
    GetExitCodeProcess(impl->process, &code);
    status = static_cast<int>(code);
    return true;
}

bool Process::Interrupt() {
    // Console events are sent to all processes of a console, and the child has none.
    return false;
}

void Process::Kill() {
    if (impl->process) {
        TerminateProcess(impl->process, 1);
    }
}

std::string Process::Output() const {
    return impl->output.Text();
}

std::string Process::Errors() const {
    return impl->errors.Text();
}

} // namespace platform
