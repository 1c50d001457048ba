// process.h - starting a program and talking to it
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// What a program is started with.
struct ProcessStart {
    std::string program;                ///< path of the program's file
    std::vector<std::string> arguments; ///< without the program's name
    std::string workingDirectory;       ///< empty: that of this process
    /// Variables set on top of this process's environment; an empty value removes one.
    std::vector<std::pair<std::string, std::string>> environment;
};

/// A program that this process started, its standard streams connected to this object. What it
/// writes is read all the time, so that it never waits for its reader. Destroying the object ends
/// the program if it still runs. One thread at a time.
class Process {
public:
    Process();
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// False when the system refused; `error`, when given, then says why. To be called once.
    bool Start(const ProcessStart& start, std::string* error = nullptr);
    /// Writes to the program's standard input, waiting until it has taken all; false when it takes
    /// no more.
    bool Write(std::string_view data);
    /// Ends the program's standard input.
    void CloseInput();
    /// Waits at most `timeoutMs` milliseconds for the program's end. True when it has ended: then
    /// `status` receives its exit status (128 and the signal's number when one ended it), and all
    /// that it wrote can be had.
    bool Wait(std::uint32_t timeoutMs, int& status);
    /// Asks the program to stop, as Ctrl-C does. False where a program cannot be asked.
    bool Interrupt();
    /// Ends the program at once.
    void Kill();
    /// What the program has written to its standard output and standard error so far.
    std::string Output() const;
    std::string Errors() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
