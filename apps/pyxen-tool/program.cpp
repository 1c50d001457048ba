// program.cpp - the program pyxen-tool
#include "apps/pyxen-tool/program.h"

#include "apps/common/program_version.h"
#include "apps/common/shell_command.h"
#include "apps/pyxen-tool/commands.h"

#include <functional>

PyxenToolProgram::PyxenToolProgram()
    : line("Formats, files and checks of the grabber module", "pyxen-tool") {
    line.SetFooter("Exit status: 0 done, 1 an operation failed, 2 bad usage.\n"
                   "pyxen-tool COMMAND --help tells more about a command.\n");
    AddAppOptions(line, options);
    line.Excludes("--module"); // the module is linked in
    line.SetVersion(
        [](bool isJson) { return VersionText("pyxen-tool", VersionOfLinkedModule(), isJson); });
    line.RequireCommand();
    const std::function<IGrabberMaker&()> maker = [this]() -> IGrabberMaker& {
        return linked;
    };
    AddSyncCheckCommand(line);
    AddSdkCheckCommand(line, options);
    AddTraceCommand(line);
    AddConvertCommand(line);
    AddFormatsCommand(line);
    AddCameraKeyCommand(line);
    AddShellCommand(line, options, maker, [this](ShellOperations& operations, const ShellContext&) {
        AddModuleOperations(operations, linked.Grabber());
    });
}

int PyxenToolProgram::Run(int argumentCount, char** arguments) {
    return FinishTrace(options, line.Run(argumentCount, arguments));
}
