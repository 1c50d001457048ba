// startup_checks.cpp - checks of startup, shutdown and version
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"

namespace conformance {
namespace {

constexpr const wchar_t* kNoConfiguration = L"there-is-no-such-directory/PxnC.xml";

bool IsRunning(const SdkFunctions& sdk) {
    std::uint32_t found = 0;
    return sdk.PxnTransportLayersList(nullptr, 0, &found, sizeof(PxnTransportLayerInfo)) !=
           PxnErrApiNotStarted;
}

/// Undoes the startups of a check, however it ends.
class Startups {
public:
    explicit Startups(const SdkFunctions& functions) : sdk(functions) {}
    ~Startups() {
        while (count > 0) {
            Undo();
        }
    }
    Startups(const Startups&) = delete;
    Startups& operator=(const Startups&) = delete;

    PxnError Start(const wchar_t* path) {
        ++count;
        return sdk.PxnStartup(path);
    }
    void Undo() {
        --count;
        sdk.PxnShutdown();
    }

private:
    const SdkFunctions& sdk;
    unsigned count = 0;
};

void CheckVersion(Session& session, Findings& findings) {
    PxnVersionInfo before{};
    PxnVersionInfo after{};
    findings.ExpectSuccess(session.Sdk().PxnVersionQuery(&before, sizeof before),
                           "PxnVersionQuery before the startup");
    session.Prepare(Stage::kStarted);
    findings.ExpectSuccess(session.Sdk().PxnVersionQuery(&after, sizeof after), "PxnVersionQuery");
    findings.Expect(before.major == after.major && before.minor == after.minor &&
                        before.patch == after.patch,
                    "the version is another one after the startup");
}

void CheckVersionArguments(Session& session, Findings& findings) {
    PxnVersionInfo info{};
    findings.ExpectResult(PxnErrBadParameter, session.Sdk().PxnVersionQuery(nullptr, sizeof info),
                          "PxnVersionQuery without info");
    for (const std::uint32_t size : {0u, 11u, 13u, 0xFFFFFFFFu}) {
        findings.ExpectResult(PxnErrStructSize, session.Sdk().PxnVersionQuery(&info, size),
                              "PxnVersionQuery with size " + std::to_string(size));
    }
}

void CheckNotStarted(Session& session, Findings& findings) {
    const PxnFrame frame{};
    for (const Call& call : AllCalls()) {
        findings.ExpectResult(PxnErrApiNotStarted,
                              call.run(session.Sdk(), {PXN_SYSTEM_HANDLE, kNoFeature, &frame}),
                              call.function);
    }
    for (const IncompleteCall& call : IncompleteCalls()) {
        findings.ExpectResult(PxnErrApiNotStarted, call.run(session.Sdk(), nullptr), call.text);
    }
}

void CheckCounting(Session& session, Findings& findings) {
    Startups startups(session.Sdk());
    findings.RequireSuccess(startups.Start(session.ConfigPath()), "the first PxnStartup");
    findings.ExpectSuccess(startups.Start(session.ConfigPath()), "the second PxnStartup");
    startups.Undo();
    findings.Expect(IsRunning(session.Sdk()), "the first of two shutdowns stopped the library");
    startups.Undo();
    findings.Expect(!IsRunning(session.Sdk()), "the second of two shutdowns did not stop it");
}

void CheckFailedStartup(Session& session, Findings& findings) {
    Startups startups(session.Sdk());
    const PxnError result = startups.Start(kNoConfiguration);
    if (result == PxnErrSuccess) {
        throw NotApplicable("the SDK accepts a configuration file that does not exist");
    }
    findings.ExpectResult(PxnErrNotFound, result, "PxnStartup with a path that does not exist");
    findings.Expect(!IsRunning(session.Sdk()), "the library runs after a startup that failed");
    findings.RequireSuccess(startups.Start(session.ConfigPath()),
                            "PxnStartup after one that failed");
    startups.Undo();
    findings.Expect(IsRunning(session.Sdk()),
                    "a startup that failed does not count: one shutdown stopped the library");
    startups.Undo();
    findings.Expect(!IsRunning(session.Sdk()), "two shutdowns did not undo two startups");
}

void CheckFailedSecondStartup(Session& session, Findings& findings) {
    Startups startups(session.Sdk());
    findings.RequireSuccess(startups.Start(session.ConfigPath()), "PxnStartup");
    // Only the first startup reads its configuration.
    findings.ExpectSuccess(startups.Start(kNoConfiguration),
                           "PxnStartup of a started library with a path that does not exist");
    startups.Undo();
    findings.Expect(IsRunning(session.Sdk()), "the first of two shutdowns stopped the library");
}

void CheckExtraShutdown(Session& session, Findings& findings) {
    session.Sdk().PxnShutdown();
    session.Sdk().PxnShutdown();
    Startups startups(session.Sdk());
    findings.RequireSuccess(startups.Start(session.ConfigPath()),
                            "PxnStartup after a shutdown too many");
    findings.Expect(IsRunning(session.Sdk()), "the library does not run after that");
    findings.Expect(!ListFeatures(session.Sdk(), PXN_SYSTEM_HANDLE).empty(),
                    "the system module has no features after that");
}

} // namespace

std::vector<Check> StartupChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"startup", name, Stage::kStopped, Scope::kHarmless, run};
    };
    return {
        check("version is known before the startup", CheckVersion),
        check("version query with wrong arguments", CheckVersionArguments),
        check("nothing else works before the startup", CheckNotStarted),
        check("startups are counted", CheckCounting),
        check("a failed startup counts", CheckFailedStartup),
        check("a later startup reads no configuration", CheckFailedSecondStartup),
        check("a shutdown too many does nothing", CheckExtraShutdown),
    };
}

} // namespace conformance
