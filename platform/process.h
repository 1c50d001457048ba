// process.h - child processes with redirected standard streams
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// How to start a program.
struct ProcessStart {
    std::string program;                ///< path of the executable
    std::vector<std::string> arguments; ///< without the program name
    std::string workingDirectory;       ///< empty: the one of this process
    /// Changes to the environment inherited from this process; an empty value removes a variable.
    std::vector<std::pair<std::string, std::string>> environment;
};

/// Path of a program that PATH leads to, without ".exe" in `name`; empty when there is none.
std::string FindProgram(const std::string& name);

/// A child process whose standard streams are connected to this object. Its output is read in the
/// background, so that the child never blocks on a full pipe. The destructor kills a child that is
/// still running. One thread at a time.
class Process {
public:
    Process();
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Starts the program. On failure returns false and stores a message in `error` (unless null).
    /// Call once per object; except for Interrupt and Kill, the members below require that it
    /// succeeded.
    bool Start(const ProcessStart& start, std::string* error = nullptr);
    /// Writes to the child's standard input, blocking until all of `data` has been passed on. False
    /// when the child has closed its standard input or has exited.
    bool Write(std::string_view data);
    /// Closes the child's standard input.
    void CloseInput();
    /// Waits up to `timeoutMs` milliseconds (kInfinite of event.h: no limit) for the child to exit.
    /// False on timeout. When true, `status` is its exit status (128 plus the signal number when a
    /// signal ended it), and Output and Errors are complete.
    bool Wait(std::uint32_t timeoutMs, int& status);
    /// Interrupts the child like Ctrl-C in a terminal. False when the child is not running, and
    /// always on Windows.
    bool Interrupt();
    /// Ends the child immediately. Does nothing when it is not running.
    void Kill();
    /// What the child has written to its standard output and standard error so far.
    std::string Output() const;
    std::string Errors() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
