// commands.h - the commands of mivora
#pragma once

#include <functional>

class CommandLine;
class IGrabberMaker;
struct AppOptions;

/// Returns the grabber maker; called after the options have been parsed.
using MakerSource = std::function<IGrabberMaker&()>;

// Each adds one command with its help to the program.
void AddCamerasCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddInfoCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddSnapCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddGrabCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddParamCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddChannelsCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddSerialCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddServeCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddFeaturesCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddGetCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddSetCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddDescribeCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddSettingsCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddDoctorCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddSelftestCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
void AddRecordingCommand(CommandLine& program);
void AddWatchCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker);
