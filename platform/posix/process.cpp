// process.cpp - child processes on POSIX
#include "platform/process.h"

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <map>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char** environ;

namespace platform {

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;

void CloseDescriptor(int& descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
    }
}

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;

    ~Pipe() {
        CloseDescriptor(readEnd);
        CloseDescriptor(writeEnd);
    }
    bool Open() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            return false;
        }
        readEnd = ends[0];
        writeEnd = ends[1];
        return true;
    }
};

/// Reads one output stream of the child to its end on a separate thread.
class StreamReader {
public:
    ~StreamReader() { Finish(); }

    void Start(int readEnd) {
        descriptor = readEnd;
        const auto procedure = [](void* self) {
            static_cast<StreamReader*>(self)->ReadAll();
        };
        thread = Thread::Start(procedure, this, 0);
    }
    void Finish() {
        thread.Join();
        CloseDescriptor(descriptor);
    }
    std::string Text() const {
        MutexLock lock(mutex);
        return text;
    }

private:
    void ReadAll() {
        char buffer[4096];
        ssize_t count = 0;
        while ((count = read(descriptor, buffer, sizeof buffer)) > 0 ||
               (count < 0 && errno == EINTR)) {
            if (count > 0) {
                MutexLock lock(mutex);
                text.append(buffer, static_cast<std::size_t>(count));
            }
        }
    }

    int descriptor = -1;
    Thread thread;
    mutable Mutex mutex;
    std::string text GUARDED_BY(mutex);
};

std::vector<std::string>
Environment(const std::vector<std::pair<std::string, std::string>>& changes) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const std::size_t sign = text.find('=');
        variables[text.substr(0, sign)] = sign == std::string::npos ? "" : text.substr(sign + 1);
    }
    for (const auto& [name, value] : changes) {
        if (value.empty()) {
            variables.erase(name);
        } else {
            variables[name] = value;
        }
    }
    std::vector<std::string> list;
    list.reserve(variables.size());
    for (const auto& [name, value] : variables) {
        list.push_back(std::string(name).append("=").append(value));
    }
    return list;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

int Spawn(const ProcessStart& start, int input, int output, int errors, pid_t& id) {
    std::vector<std::string> arguments{start.program};
    arguments.insert(arguments.end(), start.arguments.begin(), start.arguments.end());
    std::vector<std::string> environment = Environment(start.environment);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, 0);
    posix_spawn_file_actions_adddup2(&actions, output, 1);
    posix_spawn_file_actions_adddup2(&actions, errors, 2);
    if (!start.workingDirectory.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, start.workingDirectory.c_str());
    }
    const int result = posix_spawn(&id, start.program.c_str(), &actions, nullptr,
                                   Pointers(arguments).data(), Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    return result;
}

} // namespace

struct Process::Impl {
    pid_t id = -1;
    bool ended = false;
    int status = 0;
    int input = -1; // a socket, since MSG_NOSIGNAL avoids SIGPIPE when the child has exited
    StreamReader output;
    StreamReader errors;

    bool Poll() {
        int raw = 0;
        if (!ended && waitpid(id, &raw, WNOHANG) == id) {
            ended = true;
            status = WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : WEXITSTATUS(raw);
        }
        return ended;
    }
};

std::string FindProgram(const std::string& name) {
    const std::string path = GetEnvironment("PATH");
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find(':', begin), path.size());
        // An empty entry is the current directory, where nothing is looked for.
        std::string candidate = JoinPath(path.substr(begin, end - begin), name);
        if (end != begin && IsRegularFile(candidate) && access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        begin = end + 1;
    }
    return "";
}

Process::Process() : impl(std::make_unique<Impl>()) {}

Process::~Process() {
    CloseInput();
    if (impl->id > 0) {
        int status = 0;
        Kill();
        Wait(kInfinite, status);
    }
}

bool Process::Start(const ProcessStart& start, std::string* error) {
    Pipe output;
    Pipe errors;
    int inputs[2] = {-1, -1};
    int code = 0;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, inputs) != 0 || !output.Open() ||
        !errors.Open()) {
        code = errno;
    } else {
        code = Spawn(start, inputs[1], output.writeEnd, errors.writeEnd, impl->id);
    }
    CloseDescriptor(inputs[1]);
    if (code != 0) {
        CloseDescriptor(inputs[0]);
        impl->id = -1;
        if (error) {
            *error = start.program + ": " + std::generic_category().message(code);
        }
        return false;
    }
    impl->input = inputs[0];
    impl->output.Start(std::exchange(output.readEnd, -1));
    impl->errors.Start(std::exchange(errors.readEnd, -1));
    return true;
}

bool Process::Write(std::string_view data) {
    while (!data.empty()) {
        const ssize_t count = send(impl->input, data.data(), data.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        data.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

void Process::CloseInput() {
    CloseDescriptor(impl->input);
}

bool Process::Wait(std::uint32_t timeoutMs, int& status) {
    const std::uint64_t begin = MonotonicNanoseconds();
    while (!impl->Poll()) {
        const std::uint64_t elapsed = MonotonicNanoseconds() - begin;
        if (timeoutMs != kInfinite && elapsed >= timeoutMs * kNanosecondsPerMillisecond) {
            return false;
        }
        // Not SleepMs: a test's replacement must not turn this into a busy loop.
        const timespec rest{0, 2 * static_cast<long>(kNanosecondsPerMillisecond)};
        nanosleep(&rest, nullptr);
    }
    impl->output.Finish();
    impl->errors.Finish();
    status = impl->status;
    return true;
}

bool Process::Interrupt() {
    return impl->id > 0 && !impl->ended && kill(impl->id, SIGINT) == 0;
}

void Process::Kill() {
    if (impl->id > 0 && !impl->ended) {
        kill(impl->id, SIGKILL);
    }
}

std::string Process::Output() const {
    return impl->output.Text();
}

std::string Process::Errors() const {
    return impl->errors.Text();
}

} // namespace platform
