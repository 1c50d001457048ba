// app_options.cpp - the options that the programs share
#include "apps/common/app_options.h"

#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/sdk_control.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"

#include <cstring>
#include <utility>

namespace {

constexpr const char* kHome = "PYXEN_HOME";
constexpr const char* kTracePrefix = "trace:";
constexpr const char* kRecordingPrefix = "recording:";
constexpr std::uint32_t kMostTraceMegabytes = 1u << 20;
constexpr std::size_t kPathLimit = 4096;

/// Where the module or a camera SDK may be: beside the program, as in a build directory, and where
/// an installation has them.
std::pair<std::string, std::string> PlacesOf(const std::string& name) {
    const std::string programs = platform::DirectoryOf(platform::ExecutablePath());
    return {platform::JoinPath(programs, name),
            platform::JoinPath(platform::JoinPath(programs, MIVORA_PLUGINS_FROM_BIN), name)};
}

std::string FindPart(const std::string& name) {
    const auto [beside, installed] = PlacesOf(name);
    return platform::PathExists(beside) || !platform::PathExists(installed) ? beside : installed;
}

bool IsReplay(const AppOptions& options) {
    return options.sdk.starts_with(kTracePrefix);
}

/// The name of this product's SDK that is wanted; empty when the user named a directory.
std::string OwnSdk(const std::string& sdk) {
    if (sdk.empty()) {
        return platform::GetEnvironment(kHome).empty() ? "simulator" : "";
    }
    if (sdk.starts_with(kRecordingPrefix)) {
        return "recording";
    }
    return sdk == "simulator" || sdk == "genicam" ? sdk : "";
}

/// The directory of an SDK that is no trace.
std::string SdkHome(const std::string& sdk) {
    const std::string own = OwnSdk(sdk);
    if (!own.empty()) {
        return FindPart(own);
    }
    return sdk.empty() ? platform::GetEnvironment(kHome) : sdk;
}

std::string PlacesText(const std::string& sdk) {
    const std::string own = OwnSdk(sdk);
    if (own.empty()) {
        return "";
    }
    const auto [beside, installed] = PlacesOf(own);
    const std::string reason =
        sdk.empty() ? "neither --sdk nor PYXEN_HOME names a camera SDK: " : "";
    return reason + "the SDK \"" + own + "\" was looked for in " + beside + " and in " +
           platform::FullPath(installed, kPathLimit);
}

/// An empty text is what a script has of a variable that is not set, not a choice.
std::string EmptyProblem(const std::string& text) {
    return text.empty() ? "it is given without a value" : "";
}

void SetVariable(const char* name, const std::string& value) {
    if (!platform::SetEnvironment(name, value)) {
        throw CommandFailure(std::string("cannot set ") + name + " to " + value);
    }
}

/// What the library that plays recordings reads from the environment.
void SetRecording(const AppOptions& options) {
    const bool isRecording = options.sdk.starts_with(kRecordingPrefix);
    if (options.asFastAsPossible && !isRecording) {
        throw BadUsage("--as-fast-as-possible has an effect with --sdk recording:DIR only");
    }
    if (isRecording) {
        SetVariable("PYXEN_RECORDING", options.sdk.substr(std::strlen(kRecordingPrefix)));
        SetVariable("PYXEN_RECORDING_FAST", options.asFastAsPossible ? "1" : "");
    }
}

} // namespace

std::string AppOptions::Camera() const {
    if (cameras.size() > 1) {
        throw BadUsage("--camera: this command takes one camera, not " +
                       std::to_string(cameras.size()));
    }
    return cameras.empty() ? "" : cameras.front();
}

void AddAppOptions(CommandLine& program, AppOptions& options, CameraLimit limit) {
    const CommandOption sdk =
        program
            .AddOption("-s,--sdk", options.sdk,
                       "Camera SDK: simulator, genicam, trace:FILE to play back a traced session, "
                       "recording:DIR to play a recording as a camera, or a directory that has "
                       "the SDK's library in its subdirectory Bin. Default: PYXEN_HOME of the "
                       "environment, else simulator")
            .Check(EmptyProblem)
            .TypeName("simulator|genicam|trace:FILE|recording:DIR|DIR");
    program
        .AddFlag("--as-fast-as-possible", options.asFastAsPossible,
                 "Play the recording of --sdk recording:DIR without its pauses")
        .Needs(sdk);
    const CommandOption trace =
        program
            .AddOption("--trace-sdk", options.traceFile,
                       "Write every call of the camera SDK and every callback to a file that "
                       "pyxen-tool trace prints (docs/sdk-trace.md)")
            .Check(EmptyProblem)
            .TypeName("FILE");
    program
        .AddOption("--trace-size", options.traceMegabytes,
                   "Greatest size of that file; what is oldest in it goes first")
        .TypeName("MB")
        .ShowDefault()
        .Within(1u, kMostTraceMegabytes)
        .Needs(trace);
    program.AddFlag("--trace-frames", options.traceFrames, "Trace the images of frames as well")
        .Needs(trace);
    program
        .AddOption("--sdk-script", options.sdkScript,
                   "Run the lines of a file on the SDK's control interface before the grabber is "
                   "initialised, those that need a started SDK right after its startup: faults on "
                   "demand, when the SDK has them (docs/simulator.md)")
        .Check(EmptyProblem)
        .TypeName("FILE");
    program
        .AddOption("-m,--module", options.module,
                   "Grabber module that mivora loads. Default: the one beside it. pyxen-tool has "
                   "the module linked in and does not look at this")
        .Check(EmptyProblem)
        .TypeName("FILE");
    program
        .AddOption("-C,--config", options.configFile,
                   "The host's configuration file. Its directory is also where the SDK's PxnC.xml "
                   "and feature synchronisation files are looked for")
        .Check(EmptyProblem)
        .TypeName("FILE.ini");
    const CommandOption log =
        program
            .AddOption("-l,--log", options.log,
                       "Write log lines as LEVEL TEXT to a file, or with - to standard error")
            .Check(EmptyProblem)
            .TypeName("FILE|-");
    program
        .AddFlag("--log-times", options.logTimes, "Begin each of these lines with its time in UTC")
        .Needs(log);
    CommandOption camera =
        program
            .AddOption(
                "-c,--camera", options.cameras,
                "Camera to use: its index, its unique id (decimal or 0x...) or any text of the "
                "command cameras that only it has. Default: the configured one, else the "
                "first")
            .Check(EmptyProblem)
            .TypeName("N|ID|NAME");
    if (limit == CameraLimit::kOne) {
        camera.Once();
    }
}

std::string ApplySdk(const AppOptions& options) {
    SetRecording(options);
    const bool isReplay = IsReplay(options);
    const bool isTraced = !options.traceFile.empty();
    if (options.sdk.empty() && !isTraced && !platform::GetEnvironment(kHome).empty()) {
        return "";
    }
    std::string places = isReplay ? "" : PlacesText(options.sdk);
    std::string home = SdkHome(options.sdk);
    if (isReplay || isTraced) {
        SetVariable("PYXEN_TRACE_REPLAY",
                    isReplay ? options.sdk.substr(std::strlen(kTracePrefix)) : "");
        SetVariable("PYXEN_TRACE_SDK", isReplay ? "" : home);
        SetVariable("PYXEN_TRACE_FILE", options.traceFile);
        SetVariable("PYXEN_TRACE_SIZE", std::to_string(options.traceMegabytes));
        SetVariable("PYXEN_TRACE_FRAMES", options.traceFrames ? "1" : "");
        home = FindPart("trace");
    }
    SetVariable(kHome, home);
    return places;
}

int FinishTrace(const AppOptions& options, int status) {
    if (status != 0 || (!IsReplay(options) && options.traceFile.empty())) {
        return status;
    }
    platform::SharedLibrary library;
    using Finish = std::int32_t (*)();
    const auto finish = library.Load(SdkLibraryPath(), true)
                            ? reinterpret_cast<Finish>(library.FindSymbol("PxnTraceFinish"))
                            : nullptr;
    return finish && finish() == 0 ? 1 : 0;
}

std::string ModuleFile(const AppOptions& options) {
    return options.module.empty() ? FindPart(platform::LibraryFileName("MivoraKVNPyxen"))
                                  : options.module;
}
