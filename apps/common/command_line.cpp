// command_line.cpp - describes and parses the command line of a program
//
// The only source that includes CLI11, which takes many seconds to compile.
#include "apps/common/command_line.h"

#include "apps/common/command_failure.h"
#include "apps/common/guarded_main.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "platform/console.h"
#include "platform/printable_text.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;
constexpr int kFramesMissing = 3;
constexpr const char* kOutOfMemoryJson =
    R"({"schema":1,"error":{"status":1,"message":"out of memory","details":[]}})"
    "\n";

using Texts = std::vector<std::string>;

template <typename T>
CommandOption Add(CLI::App& command, const char* names, T& variable, const char* description) {
    return CommandOption(*command.add_option(names, variable, description));
}

/// The parser stops at the first argument that it does not understand, so that a later --json is
/// looked for among the arguments themselves.
bool HasJson(int argumentCount, char** arguments) {
    for (int i = 1; i < argumentCount && std::strcmp(arguments[i], "--") != 0; ++i) {
        if (std::strcmp(arguments[i], "--json") == 0 || std::strcmp(arguments[i], "-j") == 0) {
            return true;
        }
    }
    return false;
}

/// The texts of an option's checks.
Texts ChecksOf(CLI::Option& option) {
    Texts checks;
    try {
        for (int index = 0;; ++index) {
            checks.push_back(option.get_validator(index)->get_description());
        }
    } catch (const CLI::OptionNotFound&) {
        return checks;
    }
}

Texts Split(const std::string& text, char separator) {
    Texts parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// "2 to 5" for the parser's "UINT in [2 - 5]".
std::string LimitsText(const std::string& check) {
    const std::size_t begin = check.find("in [");
    const std::size_t middle = check.find(" - ", begin);
    const std::size_t end = check.find(']', begin);
    if (begin == std::string::npos || middle == std::string::npos || end == std::string::npos) {
        return "";
    }
    return check.substr(begin + 4, middle - begin - 4) + " to " +
           check.substr(middle + 3, end - middle - 3);
}

OptionDescription DescribeOption(CLI::Option& option) {
    OptionDescription described;
    described.isPositional = option.get_positional();
    if (described.isPositional) {
        described.names = {option.get_name(true, false)};
    }
    for (const std::string& name : option.get_snames()) {
        described.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        described.names.push_back("--" + name);
    }
    std::string type = option.get_type_name();
    for (const std::string& check : ChecksOf(option)) {
        if (!check.empty() && type.ends_with(":" + check)) {
            type.resize(type.size() - check.size() - 1);
        }
        if (check.starts_with('{') && check.ends_with('}')) {
            described.choices = Split(check.substr(1, check.size() - 2), ',');
        } else if (described.limits.empty()) {
            described.limits = LimitsText(check);
        }
    }
    described.value = option.get_type_size_max() == 0 ? "" : type;
    described.defaultText = option.get_default_str();
    described.description = option.get_description();
    described.isRequired = option.get_required();
    described.isValueOptional = !described.value.empty() && option.get_expected_min() == 0;
    described.mayRepeat = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll ||
                          option.get_expected_max() > 1;
    return described;
}

CommandDescription DescribeCommand(CLI::App& command) {
    CommandDescription described;
    described.name = command.get_name();
    described.description = command.get_description();
    described.footer = command.get_footer();
    described.needsCommand = command.get_require_subcommand_min() > 0;
    for (CLI::Option* const option : command.get_options([](CLI::Option*) { return true; })) {
        if (option != command.get_help_ptr()) {
            described.options.push_back(DescribeOption(*option));
        }
    }
    for (CLI::App* const inner : command.get_subcommands([](CLI::App*) { return true; })) {
        described.commands.push_back(DescribeCommand(*inner));
    }
    return described;
}

// Output may stay buffered until here, so that a full disk shows only now.
bool IsOutputWritten(std::string& reason) {
    if (std::fflush(stdout) != 0) {
        reason = ": " + std::generic_category().message(errno);
        return false;
    }
    return std::ferror(stdout) == 0;
}

} // namespace

CommandOption& CommandOption::Needs(const CommandOption& other) {
    option.needs(&other.option);
    return *this;
}

CommandOption& CommandOption::Excludes(const CommandOption& other) {
    option.excludes(&other.option);
    return *this;
}

CommandOption& CommandOption::Required() {
    option.required();
    return *this;
}

CommandOption& CommandOption::TypeName(const char* name) {
    option.type_name(name);
    return *this;
}

CommandOption& CommandOption::ShowDefault() {
    option.capture_default_str();
    return *this;
}

CommandOption& CommandOption::ValueOptional() {
    option.expected(0, 1);
    return *this;
}

CommandOption& CommandOption::Once() {
    option.multi_option_policy(CLI::MultiOptionPolicy::Throw);
    return *this;
}

CommandOption& CommandOption::OneOf(std::initializer_list<const char*> values) {
    option.check(CLI::IsMember(Texts(values.begin(), values.end())));
    return *this;
}

CommandOption& CommandOption::OneOfIgnoringCase(std::initializer_list<const char*> values) {
    option.transform(CLI::IsMember(Texts(values.begin(), values.end()), CLI::ignore_case));
    return *this;
}

CommandOption& CommandOption::Within(int least, int most) {
    option.check(CLI::Range(least, most));
    return *this;
}

CommandOption& CommandOption::Within(std::uint32_t least, std::uint32_t most) {
    option.check(CLI::Range(least, most));
    return *this;
}

CommandOption& CommandOption::Check(std::string (*problem)(const std::string& value)) {
    option.check(problem);
    return *this;
}

CommandOption Command::AddOption(const char* names, std::string& variable,
                                 const char* description) {
    return Add(*command, names, variable, description);
}

CommandOption Command::AddOption(const char* names, std::optional<std::string>& variable,
                                 const char* description) {
    return Add(*command, names, variable, description);
}

CommandOption Command::AddOption(const char* names, Texts& variable, const char* description) {
    CLI::Option& option = *command->add_option(names, variable, description);
    if (!option.get_positional()) {
        option.expected(1);
        option.allow_extra_args(false);
        option.multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
    return CommandOption(option);
}

CommandOption Command::AddOption(const char* names, std::uint32_t& variable,
                                 const char* description) {
    return Add(*command, names, variable, description);
}

CommandOption Command::AddOption(const char* names, std::uint64_t& variable,
                                 const char* description) {
    return Add(*command, names, variable, description);
}

CommandOption Command::AddFlag(const char* names, bool& variable, const char* description) {
    return CommandOption(*command->add_flag(names, variable, description));
}

CommandOption Command::AddJson(bool& variable) {
    return AddFlag("-j,--json", variable, "Print JSON");
}

void Command::Excludes(const char* programOption) {
    CLI::App* program = command;
    while (program->get_parent()) {
        program = program->get_parent();
    }
    // CLI11's own search ends the program where there is no memory for it.
    const std::string_view wanted = std::string_view(programOption).substr(std::strlen("--"));
    for (CLI::Option* const option : program->get_options()) {
        for (const std::string& name : option->get_lnames()) {
            if (name == wanted) {
                command->excludes(option);
                return;
            }
        }
    }
    throw std::logic_error(std::string("no option ") + programOption);
}

void Command::ExcludesCameraOptions() {
    for (const char* const option :
         {"--sdk", "--as-fast-as-possible", "--sdk-script", "--trace-sdk", "--trace-size",
          "--trace-frames", "--module", "--config", "--log", "--log-times", "--camera"}) {
        Excludes(option);
    }
}

Command Command::AddCommand(const char* name, const char* description) {
    return Command(*command->add_subcommand(name, description));
}

void Command::RequireCommand() {
    command->require_subcommand(1);
}

void Command::SetFooter(const char* text) {
    command->footer(text);
}

void Command::OnRun(std::function<void()> run) {
    command->callback(std::move(run));
}

CommandLine::CommandLine(const char* description, const char* programName)
    : CommandLine(std::make_unique<CLI::App>(description, programName)) {}

CommandLine::CommandLine(std::unique_ptr<CLI::App> parser)
    : Command(*parser), app(std::move(parser)) {
    // "/Camera/Width" is a path on every platform.
    app->allow_windows_style_options(false);
    // The program's options may be given before and after the command.
    app->fallthrough();
}

CommandLine::~CommandLine() = default;

void CommandLine::SetVersion(std::function<std::string(bool isJson)> text) {
    app->set_version_flag("-V,--version",
                          std::function<std::string()>([this, text = std::move(text)] {
                              return platform::PrintableLines(text(isJson));
                          }),
                          "Print the versions of the program and of what it runs with");
}

void CommandLine::PrintError(int status, const std::string& message, const Texts& details) {
    const std::vector<JsonValue> list(details.begin(), details.end());
    const JsonValue report = JsonReport(
        {{"error",
          JsonObject({{"status", status}, {"message", message}, {"details", JsonArray(list)}})}});
    std::fprintf(stderr, "%s\n", report.Text().c_str());
}

int CommandLine::Fail(const std::exception& failure) {
    // What was printed before stands above the failure, also where both streams go to one file.
    std::fflush(stdout);
    const int status = dynamic_cast<const FramesMissing*>(&failure) ? kFramesMissing : kFailed;
    if (!isJson) {
        const bool isColoured = platform::ShowsColour(2);
        std::fprintf(stderr, "%s%s:%s %s\n", isColoured ? "\x1B[1;31m" : "",
                     app->get_name().c_str(), isColoured ? "\x1B[0m" : "",
                     platform::PrintableLines(failure.what()).c_str());
    } else if (const auto* known = dynamic_cast<const CommandFailure*>(&failure)) {
        PrintError(status, known->Message(), known->Details());
    } else {
        PrintError(status, failure.what(), {});
    }
    return status;
}

/// Prints help, or what is wrong with the arguments.
int CommandLine::Explain(const CLI::Error& error) {
    if (error.get_exit_code() != 0 && isJson) {
        PrintError(kBadUsage, error.what(), {});
        return kBadUsage;
    }
    std::ostringstream output;
    std::ostringstream errors;
    const int status = app->exit(error, output, errors);
    std::fputs(platform::PrintableLines(output.str()).c_str(), stdout);
    std::fputs(platform::PrintableLines(errors.str()).c_str(), stderr);
    return status == 0 ? 0 : kBadUsage;
}

/// An unknown word in place of a command is reported as such, not as a missing command.
int CommandLine::ReportMissing(const CLI::Error& error) {
    Texts words = app->remaining(true);
    return words.empty() ? Explain(error)
                         : Explain(CLI::ExtrasError(app->get_name(), std::move(words)));
}

int CommandLine::ParseAndRun(int argumentCount, char** arguments) {
    try {
        app->parse(argumentCount, arguments);
        return 0;
    } catch (const ExitStatus& status) {
        return status.code;
    } catch (const BadUsage& reason) {
        return Explain(CLI::ValidationError(reason.what()));
    } catch (const MissingArgument& argument) {
        return ReportMissing(CLI::RequiredError(argument.what()));
    } catch (const CLI::RequiredError& error) {
        return ReportMissing(error);
    } catch (const CLI::ParseError& error) {
        return Explain(error);
    } catch (const std::bad_alloc&) {
        if (isJson) {
            std::fputs(kOutOfMemoryJson, stderr); // what PrintError would have to build
        } else {
            ReportFailure(app->get_name().c_str(), "out of memory");
        }
        return kFailed;
    } catch (const std::exception& failure) {
        return Fail(failure);
    }
}

int CommandLine::Run(int argumentCount, char** arguments) {
    platform::PrepareStandardStreams();
    isJson = HasJson(argumentCount, arguments);
    const int status = ParseAndRun(argumentCount, arguments);
    std::string reason;
    if (!IsOutputWritten(reason) && status == 0) {
        return Fail(CommandFailure("cannot write to standard output" + reason));
    }
    return status;
}

CommandDescription CommandLine::Describe() {
    return DescribeCommand(*app);
}

CommandLine::ParseResult CommandLine::Parse(int argumentCount, char** arguments,
                                            std::string& text) {
    try {
        app->parse(argumentCount, arguments);
        return ParseResult::kReady;
    } catch (const CLI::CallForHelp&) {
        text = app->help();
        return ParseResult::kHelpRequested;
    } catch (const CLI::ParseError& error) {
        text = error.what() + ("\n\n" + app->help());
        return ParseResult::kBadUsage;
    }
}

std::string CountProblem(const std::string& text) {
    return ParseUnsigned(text) ? "" : "\"" + text + "\" is no number from 0 on";
}

std::string PositiveCountProblem(const std::string& text) {
    return ParseUnsigned(text).value_or(0) != 0 ? "" : "\"" + text + "\" is no number from 1 on";
}
