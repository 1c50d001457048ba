// program.cpp - the program mivora
#include "apps/mivora/program.h"

#include "apps/common/program_version.h"
#include "apps/common/shell_command.h"
#include "apps/mivora/commands.h"

MivoraProgram::MivoraProgram()
    : line("Grabs images and works with cameras through a grabber module", "mivora") {
    line.SetFooter(
        "Exit status: 0 done, 1 an operation failed, 2 bad usage, 3 a recording lacks frames.\n"
        "mivora COMMAND --help tells more about a command.\n");
    AddAppOptions(line, options, CameraLimit::kSeveral);
    line.SetVersion([this](bool isJson) {
        return VersionText("mivora", VersionOfModule(ModuleFile(options)), isJson);
    });
    line.RequireCommand();
    const MakerSource maker = [this]() -> IGrabberMaker& {
        modules.SetPath(ModuleFile(options));
        return modules;
    };
    AddCamerasCommand(line, options, maker);
    AddInfoCommand(line, options, maker);
    AddSnapCommand(line, options, maker);
    AddGrabCommand(line, options, maker);
    AddFeaturesCommand(line, options, maker);
    AddGetCommand(line, options, maker);
    AddSetCommand(line, options, maker);
    AddDescribeCommand(line, options, maker);
    AddSettingsCommand(line, options, maker);
    AddParamCommand(line, options, maker);
    AddChannelsCommand(line, options, maker);
    AddSerialCommand(line, options, maker);
    AddDoctorCommand(line, options, maker);
    AddSelftestCommand(line, options, maker);
    AddRecordingCommand(line);
    AddWatchCommand(line, options, maker);
    AddServeCommand(line, options, maker);
    AddShellCommand(line, options, maker);
}

int MivoraProgram::Run(int argumentCount, char** arguments) {
    return FinishTrace(options, line.Run(argumentCount, arguments));
}
