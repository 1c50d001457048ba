// shell_command.cpp - the command "shell" of both programs
#include "apps/common/shell_command.h"

#include "apps/common/command_line.h"
#include "apps/common/input_lines.h"
#include "apps/common/serve_windows.h"
#include "apps/common/session.h"
#include "apps/common/shell.h"
#include "apps/common/shell_context.h"
#include "platform/interrupt.h"

#include <cstdio>
#include <memory>

namespace {

constexpr const char* kFooter =
    "Arguments are separated by blanks; one that holds blanks stands in double quotes, inside\n"
    "which two double quotes in a row are one. Blank lines and lines from # are skipped.\n"
    "Every operation prints one line, NAME = RESULT key=value ..., or NAME ? REASON when it is\n"
    "unknown or an argument is bad; the shell then ends with status 2 after the last line.\n"
    "With --strict it ends with 1 when an operation returned a code other than 0, or waited in\n"
    "vain.\n"
    "Nothing runs before the first line: begin with LoadGrabberConfig and Init. The operation\n"
    "Help lists all names.\n"
    "\n"
    "Example:\n"
    "  printf 'Init\\nSetActCameraIndex 0\\nOpenActCamera\\nPrepareFrameBuffers 2\\nSnap 2\\n"
    "WaitFrames 1\\nWaitIdle\\nSaveBuffer 0 image.png\\n' | mivora shell\n";

void AddHelp(ShellOperations& operations, bool isJson) {
    operations.Add("Help", "", [&operations, isJson] {
        ShellAnswer answer = ShellAnswer::Ok();
        for (const auto& [name, entry] : operations.All()) {
            if (isJson) {
                answer.WithText(name.c_str(), entry.usage);
            } else {
                std::printf("# %s %s\n", name.c_str(), entry.usage.c_str());
            }
        }
        return answer;
    });
}

} // namespace

void AddShellCommand(CommandLine& program, const AppOptions& options,
                     const std::function<IGrabberMaker&()>& maker,
                     const std::function<void(ShellOperations&, const ShellContext&)>& addOwn) {
    Command command =
        program.AddCommand("shell", "The grabber's operations, one a line from standard input");
    const auto isStrict = std::make_shared<bool>(false);
    command.AddFlag("--strict", *isStrict, "End with status 1 when an operation failed");
    const auto isJson = std::make_shared<bool>(false);
    command.AddJson(*isJson);
    command.Excludes("--camera");
    command.SetFooter(kFooter);
    command.OnRun([&options, maker, addOwn, isStrict, isJson] {
        Session session(options, maker());
        const ShellContext context{session.Grabber(), session.Events(), session.Log(),
                                   session.Sdk()};
        ShellOperations operations;
        AddAllOperations(operations, context);
        AddHelp(operations, *isJson);
        if (addOwn) {
            addOwn(operations, context);
        }
        platform::InstallInterruptHandler();
        InputLines input([&session] {
            ServeWindows(session.Grabber());
            return true;
        });
        const int status =
            Shell(operations, *isStrict, *isJson)
                .Run([&input](std::string& line) { return input.Next(line); }, stdout);
        if (status != 0) {
            throw ExitStatus{status};
        }
    });
}
