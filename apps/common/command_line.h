// command_line.h - describes and parses the command line of a program
#pragma once

#include "apps/common/command_description.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class Error;
class Option;
} // namespace CLI

/// An option or positional argument of a command. A handle: valid as long as the CommandLine.
class CommandOption {
public:
    explicit CommandOption(CLI::Option& parserOption) : option(parserOption) {}

    CommandOption& Required();
    /// The placeholder for the value in the help text; by default the type of the variable.
    CommandOption& TypeName(const char* name);
    /// Shows the variable's current value as the default in the help text.
    CommandOption& ShowDefault();
    /// The option may be given without a value, which stores an empty text.
    CommandOption& ValueOptional();
    /// For a list: the option may be given once only.
    CommandOption& Once();
    /// Accepts only these values.
    CommandOption& OneOf(std::initializer_list<const char*> values);
    /// The same regardless of case; stores the value as spelled here.
    CommandOption& OneOfIgnoringCase(std::initializer_list<const char*> values);
    /// Accepts only numbers within the limits, both included.
    CommandOption& Within(int least, int most);
    CommandOption& Within(std::uint32_t least, std::uint32_t most);
    /// Accepts only values for which `problem` returns an empty text; the text is the error
    /// message.
    CommandOption& Check(std::string (*problem)(const std::string& value));
    /// Makes it bad usage to give the option without the other one, or with it: for an option that
    /// would have no effect.
    CommandOption& Needs(const CommandOption& other);
    CommandOption& Excludes(const CommandOption& other);

private:
    CLI::Option& option;
};

/// A command with its options; also the program itself. A handle: valid as long as the CommandLine.
class Command {
public:
    explicit Command(CLI::App& parserCommand) : command(&parserCommand) {}

    /// Adds an option ("--name", "-n,--name") or, for a name without dashes, the next positional
    /// argument. The variable must outlive parsing; it keeps its value if the option is not given.
    CommandOption AddOption(const char* names, std::string& variable, const char* description);
    CommandOption AddOption(const char* names, std::optional<std::string>& variable,
                            const char* description);
    /// May be given several times; a positional argument takes all that are left.
    CommandOption AddOption(const char* names, std::vector<std::string>& variable,
                            const char* description);
    CommandOption AddOption(const char* names, std::uint32_t& variable, const char* description);
    CommandOption AddOption(const char* names, std::uint64_t& variable, const char* description);
    CommandOption AddFlag(const char* names, bool& variable, const char* description);
    /// Adds -j and --json. With it a failure is reported as JSON as well, see CommandLine::Run.
    CommandOption AddJson(bool& variable);
    /// Makes it bad usage to give the command with this option of the program, which would have no
    /// effect on it.
    void Excludes(const char* programOption);
    /// The same for all options of the program, of a command that works on files alone.
    void ExcludesCameraOptions();

    Command AddCommand(const char* name, const char* description);
    /// Makes it bad usage to name none of the commands.
    void RequireCommand();

    /// Sets the text at the end of the help text.
    void SetFooter(const char* text);
    /// Sets what runs after parsing if the command was named.
    void OnRun(std::function<void()> run);

private:
    CLI::App* command;
};

/// Thrown by a command that has already reported its failure: ends the program with this status.
struct ExitStatus {
    int code;
};

/// Thrown by a command that needs an optional argument which was not given: bad usage. The text is
/// the argument's name.
class MissingArgument : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Thrown by a command whose options do not fit together in a way that the parser cannot check: bad
/// usage. The text is the reason.
class BadUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The command line of a program, with --help for it and for every command.
class CommandLine : public Command {
public:
    CommandLine(const char* description, const char* programName);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Adds --version, which prints what `text` returns for the options given before and after it,
    /// as JSON with --json, and runs no command. To be called behind the program's options.
    void SetVersion(std::function<std::string(bool isJson)> text);

    /// For console programs: parses, runs the command and returns the exit status: 0 success, 1 the
    /// operation failed (reason on standard error) or the output could not be written, 2 bad usage,
    /// 3 done, but frames are missing from what was recorded (how many and why on standard error).
    /// With --json among the arguments the reason is one JSON object on a line of its own:
    /// {"schema":1,"error":{"status":1,"message":"...","details":["..."]}}.
    int Run(int argumentCount, char** arguments);

    /// The program and its commands, for pages and completion.
    CommandDescription Describe();

    enum class ParseResult { kReady, kHelpRequested, kBadUsage };
    /// For programs that show their messages themselves: parses only. `text` receives the help
    /// text, for bad usage preceded by the error message.
    ParseResult Parse(int argumentCount, char** arguments, std::string& text);

private:
    explicit CommandLine(std::unique_ptr<CLI::App> parser);
    int ParseAndRun(int argumentCount, char** arguments);
    static void PrintError(int status, const std::string& message,
                           const std::vector<std::string>& details);
    int Fail(const std::exception& failure);
    int Explain(const CLI::Error& error);
    int ReportMissing(const CLI::Error& error);

    std::unique_ptr<CLI::App> app;
    bool isJson = false; // --json is among the arguments
};

/// Check for options that take a count: the parser alone would accept -1 as the largest number.
std::string CountProblem(const std::string& text);
/// The same for a count that must not be 0.
std::string PositiveCountProblem(const std::string& text);
