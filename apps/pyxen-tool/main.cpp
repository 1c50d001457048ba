// main.cpp - pyxen-tool, feature and offline tools of the grabber module
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/shell_command.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/linked_maker.h"

int main(int argumentCount, char** arguments) {
    CommandLine program("Formats, files and checks of the grabber module", "pyxen-tool");
    program.SetFooter("Exit status: 0 done, 1 an operation failed, 2 bad usage.\n"
                      "pyxen-tool COMMAND --help tells more about a command.\n");
    AppOptions options;
    AddAppOptions(program, options);
    program.RequireCommand();
    LinkedMaker linked;
    const std::function<IGrabberMaker&()> maker = [&]() -> IGrabberMaker& {
        return linked;
    };
    AddSyncCheckCommand(program);
    AddSdkCheckCommand(program, options);
    AddTraceCommand(program);
    AddConvertCommand(program);
    AddFormatsCommand(program);
    AddCameraKeyCommand(program);
    AddShellCommand(program, options, maker, [&](ShellOperations& operations, const ShellContext&) {
        AddModuleOperations(operations, linked.Grabber());
    });
    return FinishTrace(options, program.Run(argumentCount, arguments));
}
