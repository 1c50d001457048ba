// main.cpp - mivora, a host application for the command line
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"
#include "apps/common/shell_command.h"
#include "apps/mivora/commands.h"

int main(int argumentCount, char** arguments) {
    CLI::App app("Grabs images and works with cameras through a grabber module", "mivora");
    app.footer("Exit status: 0 done, 1 an operation failed, 2 bad usage.\n"
               "mivora COMMAND --help tells more about a command.\n");
    AppOptions options;
    AddAppOptions(app, options);
    ModuleMaker modules;
    const MakerSource maker = [&]() -> IGrabberMaker& {
        modules.SetPath(ModuleFile(options));
        return modules;
    };
    AddCamerasCommand(app, options, maker);
    AddInfoCommand(app, options, maker);
    AddSnapCommand(app, options, maker);
    AddGrabCommand(app, options, maker);
    AddParamCommand(app, options, maker);
    AddChannelsCommand(app, options, maker);
    AddSerialCommand(app, options, maker);
    AddWatchCommand(app, options, maker);
    AddShellCommand(app, options, maker);
    return RunApp(app, argumentCount, arguments);
}
