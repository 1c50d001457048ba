// commands.h - the commands of pyxen-tool
#pragma once

namespace CLI {
class App;
}

class CMivoraKVNPyxenClass;
class LinkedMaker;
class ShellOperations;
struct AppOptions;

// Each adds one command with its help to the program.
void AddFeaturesCommand(CLI::App& app, const AppOptions& options, LinkedMaker& maker);
void AddGetCommand(CLI::App& app, const AppOptions& options, LinkedMaker& maker);
void AddSetCommand(CLI::App& app, const AppOptions& options, LinkedMaker& maker);
void AddSyncCheckCommand(CLI::App& app);
void AddConvertCommand(CLI::App& app);
void AddFormatsCommand(CLI::App& app);
void AddCameraKeyCommand(CLI::App& app);

/// The shell's operations that only this module has.
void AddModuleOperations(ShellOperations& operations, CMivoraKVNPyxenClass& grabber);
