// main.cpp - mivora, a host application for the command line
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"
#include "apps/common/shell_command.h"
#include "apps/mivora/commands.h"

int main(int argumentCount, char** arguments) {
    CommandLine program("Grabs images and works with cameras through a grabber module", "mivora");
    program.SetFooter("Exit status: 0 done, 1 an operation failed, 2 bad usage.\n"
                      "mivora COMMAND --help tells more about a command.\n");
    AppOptions options;
    AddAppOptions(program, options);
    program.RequireCommand();
    ModuleMaker modules;
    const MakerSource maker = [&]() -> IGrabberMaker& {
        modules.SetPath(ModuleFile(options));
        return modules;
    };
    AddCamerasCommand(program, options, maker);
    AddInfoCommand(program, options, maker);
    AddSnapCommand(program, options, maker);
    AddGrabCommand(program, options, maker);
    AddFeaturesCommand(program, options, maker);
    AddGetCommand(program, options, maker);
    AddSetCommand(program, options, maker);
    AddDescribeCommand(program, options, maker);
    AddSettingsCommand(program, options, maker);
    AddParamCommand(program, options, maker);
    AddChannelsCommand(program, options, maker);
    AddSerialCommand(program, options, maker);
    AddWatchCommand(program, options, maker);
    AddShellCommand(program, options, maker);
    return FinishTrace(options, program.Run(argumentCount, arguments));
}
