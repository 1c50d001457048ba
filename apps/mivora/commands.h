// commands.h - the commands of mivora
#pragma once

#include <functional>

namespace CLI {
class App;
}

class IGrabberMaker;
struct AppOptions;

/// Gives the grabber maker once the options are known.
using MakerSource = std::function<IGrabberMaker&()>;

// Each adds one command with its help to the program.
void AddCamerasCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddInfoCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddSnapCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddGrabCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddParamCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddChannelsCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddSerialCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
void AddWatchCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker);
