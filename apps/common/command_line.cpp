// command_line.cpp - the command lines of both programs
#include "apps/common/command_line.h"

#include "apps/common/app_options.h"
#include "apps/common/parse_number.h"
#include "platform/console.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

int Fail(const CLI::App& app, const char* text) {
    std::fprintf(stderr, "%s: %s\n", app.get_name().c_str(), text);
    return kFailed;
}

// Where a word stands that is no command, that word is what was wrong, not the lack of a command.
void TellWhatIsMissing(const CLI::App& app, const CLI::RequiredError& error) {
    std::vector<std::string> words = app.remaining(true);
    if (words.empty()) {
        app.exit(error);
    } else {
        app.exit(CLI::ExtrasError(app.get_name(), std::move(words)));
    }
}

int Run(CLI::App& app, int argumentCount, char** arguments) {
    try {
        app.parse(argumentCount, arguments);
        return 0;
    } catch (const CLI::RuntimeError& status) {
        return status.get_exit_code();
    } catch (const CLI::RequiredError& error) {
        TellWhatIsMissing(app, error);
        return kBadUsage;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kBadUsage;
    } catch (const std::exception& error) {
        return Fail(app, error.what());
    }
}

// What was printed may wait here until the end, and a full disk refuses it only then.
bool IsOutputWritten(std::string& reason) {
    if (std::fflush(stdout) != 0) {
        reason = ": " + std::generic_category().message(errno);
        return false;
    }
    return std::ferror(stdout) == 0;
}

} // namespace

void AddAppOptions(CLI::App& app, AppOptions& options) {
    // "/Camera/Width" is a path on every platform.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.fallthrough();
    app.add_option("--sdk", options.sdk,
                   "Camera SDK: simulator, genicam, or a directory that has the SDK's library in "
                   "its subdirectory Bin. Default: PYXEN_HOME of the environment, else simulator")
        ->type_name("simulator|genicam|DIR");
    app.add_option("--sdk-script", options.sdkScript,
                   "Run the lines of a file on the SDK's control interface before the grabber is "
                   "initialised: faults on demand, when the SDK has them (docs/simulator.md)")
        ->type_name("FILE");
    app.add_option(
           "--module", options.module,
           "Grabber module that mivora loads. Default: the one beside it. pyxen-tool has the "
           "module linked in and does not look at this")
        ->type_name("FILE");
    app.add_option("--config", options.configFile,
                   "The host's configuration file. Its directory is also where the SDK's PxnC.xml "
                   "and feature synchronisation files are looked for")
        ->type_name("FILE.ini");
    app.add_option("--log", options.log,
                   "Write log lines as LEVEL TEXT to a file, or with - to standard error")
        ->type_name("FILE|-");
    app.add_option("--camera", options.camera,
                   "Camera to use: its index, its unique id (decimal or 0x...) or its name. "
                   "Default: the configured one, else the first. The shell does not look at it")
        ->type_name("N|ID");
}

std::string CountProblem(const std::string& text) {
    return ParseUnsigned(text) ? "" : "\"" + text + "\" is no number from 0 on";
}

std::string PositiveCountProblem(const std::string& text) {
    return ParseUnsigned(text).value_or(0) != 0 ? "" : "\"" + text + "\" is no number from 1 on";
}

int RunApp(CLI::App& app, int argumentCount, char** arguments) {
    platform::PrepareStandardStreams();
    const int status = Run(app, argumentCount, arguments);
    std::string reason;
    if (!IsOutputWritten(reason) && status == 0) {
        return Fail(app, ("cannot write to standard output" + reason).c_str());
    }
    return status;
}
