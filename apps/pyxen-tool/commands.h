// commands.h - the commands of pyxen-tool
#pragma once

class CommandLine;
class CMivoraKVNPyxenClass;
class ShellOperations;
struct AppOptions;

// Each adds one command with its help to the program.
void AddSdkCheckCommand(CommandLine& program, const AppOptions& options);
void AddTraceCommand(CommandLine& program);
void AddSyncCheckCommand(CommandLine& program);
void AddConvertCommand(CommandLine& program);
void AddFormatsCommand(CommandLine& program);
void AddCameraKeyCommand(CommandLine& program);

/// Adds the shell operations that only this module has.
void AddModuleOperations(ShellOperations& operations, CMivoraKVNPyxenClass& grabber);
