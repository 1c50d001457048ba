// settings_checks.cpp - checks of settings files
#include "platform/file_system.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_values.h"

#include <string>

namespace conformance {
namespace {

/// A directory for files of a check, removed when the object goes.
class ScratchDirectory {
public:
    ScratchDirectory() : path(platform::CreateTemporaryDirectory("sdk-check")) {
        if (path.empty()) {
            throw NotApplicable("there is no directory for temporary files");
        }
    }
    ~ScratchDirectory() { platform::RemoveDirectoryTree(path); }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::string PathOf(const std::string& name) const { return platform::JoinPath(path, name); }

private:
    const std::string path;
};

PxnError Save(Session& session, PxnHandle handle, const std::string& path) {
    return session.Sdk().PxnSettingsSave(handle, ToWide(path).c_str(), nullptr, 0);
}

PxnError Load(Session& session, PxnHandle handle, const std::string& path) {
    return session.Sdk().PxnSettingsLoad(handle, ToWide(path).c_str(), nullptr, 0);
}

void CheckRoundTrip(Session& session, Findings& findings) {
    const ScratchDirectory directory;
    for (const auto& [name, handle] : session.Modules()) {
        const std::string path = directory.PathOf("settings.xml");
        findings.RequireSuccess(Save(session, handle, path), "PxnSettingsSave of " + name);
        std::string first;
        std::string second;
        findings.Require(platform::ReadWholeFile(path, first), "no file was saved for " + name);
        findings.RequireSuccess(Load(session, handle, path), "PxnSettingsLoad of " + name);
        findings.RequireSuccess(Save(session, handle, path), "PxnSettingsSave of " + name);
        platform::ReadWholeFile(path, second);
        findings.Expect(first == second, "loading what was saved changed " + name);
    }
}

void CheckWrongFiles(Session& session, Findings& findings) {
    const ScratchDirectory directory;
    const PxnHandle camera = session.Camera();
    findings.ExpectResult(PxnErrNotFound, Load(session, camera, directory.PathOf("none.xml")),
                          "PxnSettingsLoad of a file that is not there");
    for (const char* content : {"", "this is no settings file", "<unfinished", "<other/>"}) {
        const std::string path = directory.PathOf("wrong.xml");
        platform::ReplaceWholeFile(path, content);
        findings.ExpectResult(PxnErrXml, Load(session, camera, path),
                              "PxnSettingsLoad of a file with \"" + std::string(content) + "\"");
    }
    findings.ExpectResult(PxnErrIO, Save(session, camera, directory.PathOf("none/settings.xml")),
                          "PxnSettingsSave to a directory that is not there");
}

} // namespace

std::vector<Check> SettingsChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"settings", name, Stage::kOpened, Scope::kThorough, run};
    };
    return {
        check("saving and loading", CheckRoundTrip),
        check("files that cannot be used", CheckWrongFiles),
    };
}

} // namespace conformance
