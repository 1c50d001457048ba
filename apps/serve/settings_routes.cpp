// settings_routes.cpp - files of settings, and the simulator's fault script
#include "apps/common/json_text.h"
#include "apps/common/settings_report.h"
#include "apps/common/whole_file.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"
#include "apps/serve/temporary_file.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr const char* kSettingsName = "settings.json";

/// A reason without the path of a file that nobody knows.
[[noreturn]] void ThrowWithoutPath(const CommandFailure& failure, const std::string& path) {
    std::string reason = failure.Message();
    for (const std::string& detail : failure.Details()) {
        reason += "; " + detail;
    }
    for (std::size_t at = reason.find(path); at != std::string::npos; at = reason.find(path)) {
        reason.replace(at, path.size(), "settings");
    }
    throw RequestFailure(kRefusedValue, reason);
}

std::string SettingsText(CameraSession& session) {
    const TemporaryFile file(kSettingsName);
    const SettingsOutcome outcome = session.Services().SaveSettings(file.Path());
    if (!outcome.isComplete) {
        throw CommandFailure("not all settings can be read: " + outcome.reason,
                             SettingRefusals(outcome.settings));
    }
    return ReadWholeFile(file.Path());
}

SettingsOutcome LoadText(CameraSession& session, const std::string& text) {
    const TemporaryFile file(kSettingsName);
    WriteWholeFile(file.Path(), text);
    ServiceClient& services = session.Services();
    try {
        return services.LoadSettings(file.Path(), false);
    } catch (const CommandFailure& failure) {
        ThrowWithoutPath(failure, file.Path());
    }
}

HttpAnswer LoadAnswer(ServeParts& parts, const RouteCall& call) {
    const bool mayRestart = call.query.Number("restart", 0, 1, 0) == 1;
    return parts.owner.Do([&](CameraSession& session) {
        SettingsOutcome outcome;
        const auto load = [&] {
            outcome = LoadText(session, call.request.body);
        };
        mayRestart ? session.ChangeStopped(load) : load();
        if (!session.IsGrabbing()) {
            session.ReadImage();
        }
        return JsonAnswer(JsonReport(LoadedMembers(outcome.settings, false)).Text());
    });
}

HttpAnswer DiffAnswer(ServeParts& parts, const RouteCall& call) {
    SettingsFile wanted;
    try {
        wanted = ParseSettingsFile("the body", call.request.body);
    } catch (const CommandFailure& failure) {
        throw RequestFailure(kRefusedValue, failure.Message());
    }
    const std::string present =
        parts.owner.Do([](CameraSession& session) { return SettingsText(session); });
    const std::vector<SettingDifference> differences =
        FindDifferences(wanted, ParseSettingsFile("the camera", present));
    return JsonAnswer(JsonReport({{"differences", DifferencesJson(differences)}}).Text());
}

/// The script that was run last.
struct ScriptBox {
    std::string text; // the owner's thread
};

HttpAnswer TextAnswer(std::string text) {
    HttpAnswer answer;
    answer.type = "text/plain; charset=utf-8";
    answer.body = std::move(text);
    return answer;
}

void RequireSimulator(const ServeParts& parts) {
    if (!parts.board.Read().state.hasSimulatorControl) {
        throw RequestFailure(kNotFound, "the camera SDK has no control interface");
    }
}

/// A file of this computer is not for whoever may use the page, at once or by a line that runs
/// another one later.
void RefuseFiles(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        std::istringstream words(line);
        std::string word;
        bool isFirst = true;
        for (; words >> word && !(isFirst && word.front() == '#'); isFirst = false) {
            if (word == "script") {
                throw RequestFailure(kRefusedValue, "line " + std::to_string(number) +
                                                        ": a script cannot run another script");
            }
        }
    }
}

void RunScriptText(CameraSession& session, const std::string& text) {
    RefuseFiles(text);
    const TemporaryFile file("script.txt");
    WriteWholeFile(file.Path(), text);
    std::string answer;
    if (session.Base().Sdk().Run("script " + file.Path(), answer) != 0) {
        const std::size_t at = answer.find(file.Path());
        if (at != std::string::npos) {
            answer.replace(at, file.Path().size(), "line ");
        }
        throw RequestFailure(kRefusedValue, answer);
    }
}

} // namespace

void AddSettingsRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/api/settings", .run = [&parts](const RouteCall&) {
                   HttpAnswer answer;
                   answer.body =
                       parts.owner.Do([](CameraSession& session) { return SettingsText(session); });
                   return answer;
               }});
    table.Add({.method = "POST",
               .path = "/api/settings",
               .query = {"restart"},
               .body = RouteBody::kText,
               .run = [&parts](const RouteCall& call) {
                   return LoadAnswer(parts, call);
               }});
    table.Add({.method = "POST",
               .path = "/api/settings/diff",
               .body = RouteBody::kText,
               .run = [&parts](const RouteCall& call) {
                   return DiffAnswer(parts, call);
               }});
}

void AddSimulatorRoutes(RouteTable& table, ServeParts& parts) {
    const auto box = std::make_shared<ScriptBox>();
    table.Add({.path = "/api/simulator/script", .run = [&parts, box](const RouteCall&) {
                   RequireSimulator(parts);
                   return parts.owner.Do([&](CameraSession&) { return TextAnswer(box->text); });
               }});
    table.Add({.method = "PUT",
               .path = "/api/simulator/script",
               .body = RouteBody::kText,
               .run = [&parts, box](const RouteCall& call) {
                   RequireSimulator(parts);
                   return parts.owner.Do([&](CameraSession& session) {
                       RunScriptText(session, call.request.body);
                       box->text = call.request.body;
                       return JsonAnswer(JsonReport({{"done", true}}).Text());
                   });
               }});
}
