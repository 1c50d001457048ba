// app_options.h - the options that the programs share
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class CommandLine;

struct AppOptions {
    /// simulator, genicam, trace:FILE, recording:DIR or a directory; empty: PYXEN_HOME, else
    /// simulator.
    std::string sdk;
    std::string module;     ///< file of the grabber module; empty: the one beside the program
    std::string configFile; ///< the host's ini file, or empty
    bool mayBeNew = false;  ///< that file may be one that the program makes; not for users
    std::string log;        ///< file or "-", empty for none
    bool logTimes = false;  ///< begin the lines of the log with the time
    std::string sdkScript;  ///< script for the SDK's control interface, or empty
    std::vector<std::string> cameras;  ///< see FindCameras; none: as configured, else the first
    std::string traceFile;             ///< where calls of the SDK are traced to, or empty
    std::uint32_t traceMegabytes = 64; ///< the trace's greatest size
    bool asFastAsPossible = false;     ///< play a recording without its pauses
    bool traceFrames = false;          ///< trace the content of frames as well
    std::uint16_t gigePort = 3956;     ///< at which GigE Vision cameras are asked; not for users

    /// The camera that is named, empty for none. Throws BadUsage when there are several.
    std::string Camera() const;
};

enum class CameraLimit { kOne, kSeveral };

/// Adds the options to a program's command line. With kSeveral the camera option may be repeated;
/// a command that can use one only is refused by AppOptions::Camera.
void AddAppOptions(CommandLine& program, AppOptions& options,
                   CameraLimit limit = CameraLimit::kOne);

/// Sets PYXEN_HOME of this process for the value of --sdk, and what the libraries for traces and
/// recordings read from the environment. Returns a line for people that names the directories in
/// which one of this product's SDKs was looked for, or an empty text when the user named a
/// directory. Throws CommandFailure.
std::string ApplySdk(const AppOptions& options);
/// At the end of a program: ends the trace. Returns `status`, but 1 in place of 0 when a session
/// that was played back from a trace differed from it, which the library has reported.
int FinishTrace(const AppOptions& options, int status);
/// The grabber module to load.
std::string ModuleFile(const AppOptions& options);
