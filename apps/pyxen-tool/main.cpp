// main.cpp - pyxen-tool, feature and offline tools of the grabber module
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/shell_command.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/linked_maker.h"

int main(int argumentCount, char** arguments) {
    CLI::App app("Features, formats and files of the grabber module", "pyxen-tool");
    app.footer("Exit status: 0 done, 1 an operation failed, 2 bad usage.\n"
               "pyxen-tool COMMAND --help tells more about a command.\n");
    AppOptions options;
    AddAppOptions(app, options);
    LinkedMaker linked;
    const std::function<IGrabberMaker&()> maker = [&]() -> IGrabberMaker& {
        return linked;
    };
    AddFeaturesCommand(app, options, linked);
    AddGetCommand(app, options, linked);
    AddSetCommand(app, options, linked);
    AddSyncCheckCommand(app);
    AddConvertCommand(app);
    AddFormatsCommand(app);
    AddCameraKeyCommand(app);
    AddShellCommand(app, options, maker, [&](ShellOperations& operations, const ShellContext&) {
        AddModuleOperations(operations, linked.Grabber());
    });
    return RunApp(app, argumentCount, arguments);
}
