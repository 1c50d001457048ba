// sdk_check_command.cpp - checks a camera SDK's library against what pxnc.h states
#include "apps/common/app_options.h"
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/common/sdk_control.h"
#include "apps/pyxen-tool/commands.h"
#include "grabber/camera_key.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"
#include "pxnc/conformance/checks.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

using conformance::Check;
using conformance::CheckReport;
using conformance::Outcome;

struct SdkCheckOptions {
    bool json = false;
    std::uint32_t limit = 60; // seconds for one check
};

/// The file that the module would hand to the SDK; empty for none.
std::wstring ConfigurationPath(const std::string& iniFile) {
    const std::string path = platform::JoinPath(platform::DirectoryOf(iniFile), "PxnC.xml");
    if (iniFile.empty() || !platform::PathExists(path)) {
        return {};
    }
    return conformance::ToWide(path);
}

bool IsCamera(const PxnCameraInfo& info, std::size_t index, const std::string& text) {
    const auto number = ParseUnsigned(text);
    // A library that is being checked may leave texts out.
    const auto is = [&](const char* name) {
        return name && text == name;
    };
    return (number && *number == index) ||
           (number && info.cameraIdExtended && *number == CameraKey(info.cameraIdExtended)) ||
           is(info.cameraName) || is(info.cameraIdString) || is(info.cameraIdExtended);
}

/// The identifier of the camera of --camera. Starts the library to look for it.
std::string FindCamera(const conformance::SdkFunctions& sdk, const std::wstring& configPath,
                       const std::string& text) {
    const PxnError result = sdk.PxnStartup(configPath.empty() ? nullptr : configPath.c_str());
    const std::vector<PxnCameraInfo> cameras =
        result == PxnErrSuccess ? conformance::ListCameras(sdk) : std::vector<PxnCameraInfo>{};
    std::string id;
    for (std::size_t index = cameras.size(); index-- > 0;) {
        if (IsCamera(cameras[index], index, text)) {
            id = cameras[index].cameraIdString ? cameras[index].cameraIdString : "";
        }
    }
    sdk.PxnShutdown();
    if (id.empty()) {
        throw CommandFailure("there is no camera \"" + text + "\"");
    }
    return id;
}

class SdkCheck {
public:
    SdkCheck(const AppOptions& appOptions, const SdkCheckOptions& checkOptions)
        : options(checkOptions) {
        ApplySdk(appOptions);
        path = SdkLibraryPath();
        if (!appOptions.sdkScript.empty()) {
            control.RunScript(appOptions.sdkScript);
        }
        std::string error;
        if (!platform::PathExists(path)) {
            throw CommandFailure("there is no file " + path);
        }
        if (!library.Load(path, error)) {
            throw CommandFailure(error);
        }
        conformance::SessionOptions sessionOptions;
        sessionOptions.configPath = ConfigurationPath(appOptions.configFile);
        if (!appOptions.Camera().empty()) {
            sessionOptions.cameraId =
                FindCamera(library.Functions(), sessionOptions.configPath, appOptions.Camera());
        }
        session = std::make_unique<conformance::Session>(library.Functions(), driver,
                                                         std::move(sessionOptions));
    }

    /// True when no check has failed.
    bool Run() {
        for (const Check& check : conformance::AllChecks()) {
            if (check.scope == conformance::Scope::kHarmless) {
                RunOne(check);
            }
        }
        PrintEnd();
        return Count(Outcome::kFailed) == 0;
    }

private:
    struct Result {
        Check check;
        CheckReport report;
    };

    void RunOne(const Check& check) {
        if (!options.json) {
            // Before the check: a library that crashes has been told what it did.
            std::printf("%s", CheckColumns(check).c_str());
            std::fflush(stdout);
        }
        CheckReport report{};
        platform::Event hasEnded;
        std::thread thread([&] {
            report = RunCheck(check, *session);
            hasEnded.Set();
        });
        if (!hasEnded.Wait(options.limit * 1000)) {
            EndWithout(check);
        }
        thread.join();
        Add(check, report);
    }

    /// A library that does not return cannot be unloaded, nor its threads be ended.
    [[noreturn]] void EndWithout(const Check& check) {
        Add(check, {Outcome::kFailed, "not done after " + std::to_string(options.limit) +
                                          " s; no check after it was run"});
        PrintEnd();
        std::fflush(stdout);
        std::_Exit(EXIT_FAILURE);
    }

    void Add(const Check& check, const CheckReport& report) {
        results.push_back({check, report});
        if (!options.json) {
            std::printf("%s\n", platform::PrintableText(OutcomeColumn(report)).c_str());
        }
    }

    std::size_t Count(Outcome outcome) const {
        return static_cast<std::size_t>(
            std::count_if(results.begin(), results.end(), [outcome](const Result& result) {
                return result.report.outcome == outcome;
            }));
    }

    void PrintEnd() const {
        const std::size_t passed = Count(Outcome::kPassed);
        const std::size_t failed = Count(Outcome::kFailed);
        const std::size_t skipped = Count(Outcome::kSkipped);
        if (!options.json) {
            std::printf("%zu passed, %zu failed, %zu skipped: %s\n", passed, failed, skipped,
                        platform::PrintableText(path).c_str());
            return;
        }
        std::vector<JsonValue> checks;
        for (const auto& [check, report] : results) {
            checks.push_back(JsonObject({{"group", check.group},
                                         {"name", check.name},
                                         {"result", OutcomeText(report.outcome)},
                                         {"detail", report.detail}}));
        }
        PrintReport({{"library", path},
                     {"checks", JsonArray(checks)},
                     {"passed", std::uint64_t{passed}},
                     {"failed", std::uint64_t{failed}},
                     {"skipped", std::uint64_t{skipped}}});
    }

    const SdkCheckOptions& options;
    SdkControl control;
    std::string path;
    conformance::SdkLibrary library;
    conformance::Driver driver;
    std::unique_ptr<conformance::Session> session;
    std::vector<Result> results;
};

} // namespace

void AddSdkCheckCommand(CommandLine& program, const AppOptions& options) {
    Command command = program.AddCommand(
        "sdk-check", "Check a camera SDK's library against the rules of its interface");
    const auto checkOptions = std::make_shared<SdkCheckOptions>();
    command.AddJson(checkOptions->json);
    command.AddOption("--limit", checkOptions->limit, "End when a check takes longer")
        .TypeName("SECONDS")
        .ShowDefault()
        .Check(PositiveCountProblem);
    command.SetFooter(
        "Opens the camera, reads its features, moves frames, starts and stops the acquisition;\n"
        "changes no settings. Prints group, check and result with the reason of a failure.\n"
        "Status 0 when no check failed.\n"
        "\n"
        "Examples:\n"
        "  pyxen-tool --sdk /opt/maker sdk-check\n"
        "  pyxen-tool --sdk simulator --camera 1 sdk-check --json\n");
    command.OnRun([&options, checkOptions] {
        if (!SdkCheck(options, *checkOptions).Run()) {
            throw ExitStatus{EXIT_FAILURE};
        }
    });
}
