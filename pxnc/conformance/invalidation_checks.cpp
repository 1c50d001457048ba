// invalidation_checks.cpp - checks of registrations for changes of features
#include "platform/event.h"
#include "pxnc/conformance/acquisition.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_listener.h"
#include "pxnc/conformance/feature_values.h"
#include "pxnc/conformance/waiting.h"

#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace conformance {
namespace {

/// A feature and a way to change it: one of the driver's own, or one that an acquisition locks.
FeatureChange RequireChange(Session& session) {
    if (auto own = session.GetDriver().OwnChange(session.Camera())) {
        return *std::move(own);
    }
    const std::string& locked = session.LockedFeature();
    if (locked.empty()) {
        throw NotApplicable("no feature is locked by an acquisition, so none can be changed "
                            "without changing a setting");
    }
    // Starts and stops by turns.
    auto running = std::make_shared<std::unique_ptr<Acquisition>>();
    return {session.Camera(), locked, [&session, running] {
                if (*running) {
                    running->reset();
                } else {
                    *running = std::make_unique<Acquisition>(session);
                }
            }};
}

/// Registrations of one feature, undone when the object goes.
class Registrations {
public:
    Registrations(Session& session, FeatureChange featureChange, Findings& checkFindings)
        : sdk(session.Sdk()), change(std::move(featureChange)), findings(checkFindings) {}
    ~Registrations() {
        while (count > 0) {
            --count;
            sdk.PxnFeatureInvalidationUnregister(change.handle, change.feature.c_str(),
                                                 FeatureListener::OnChange);
        }
    }
    Registrations(const Registrations&) = delete;
    Registrations& operator=(const Registrations&) = delete;

    void Add(FeatureListener& listener) {
        findings.RequireSuccess(
            sdk.PxnFeatureInvalidationRegister(change.handle, change.feature.c_str(),
                                               FeatureListener::OnChange, &listener),
            "PxnFeatureInvalidationRegister");
        ++count;
    }
    PxnError RemoveNewest() {
        --count;
        return sdk.PxnFeatureInvalidationUnregister(change.handle, change.feature.c_str(),
                                                    FeatureListener::OnChange);
    }
    /// The camera has been closed, or a callback has removed them.
    void Forget() { count = 0; }

    /// Changes the feature and waits until `listener` has been called once more; ends the check
    /// when that takes too long.
    void ChangeFor(const FeatureListener& listener) {
        const std::uint64_t before = listener.Ended();
        change.cause();
        findings.Require(WaitUntil([&] { return listener.Ended() > before; }),
                         "a change of " + change.feature + " was not reported within " +
                             std::to_string(kWaitMs / 1000) + " s");
    }
    const FeatureChange& Change() const { return change; }

private:
    const SdkFunctions& sdk;
    const FeatureChange change;
    Findings& findings;
    unsigned count = 0;
};

void CheckRegistering(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    FeatureListener::Record record;
    FeatureListener listener(record);
    for (const auto& [name, handle] : session.Modules()) {
        const std::vector<PxnFeatureInfo> features = ListFeatures(sdk, handle);
        if (features.empty()) {
            continue;
        }
        const char* const feature = features.front().name;
        const auto unregister = [&, module = handle] {
            return sdk.PxnFeatureInvalidationUnregister(module, feature, FeatureListener::OnChange);
        };
        const std::string whose = " of " + name + "/" + ToText(feature);
        findings.ExpectResult(PxnErrNotFound, unregister(),
                              "PxnFeatureInvalidationUnregister" + whose +
                                  " without a registration");
        findings.ExpectSuccess(sdk.PxnFeatureInvalidationRegister(
                                   handle, feature, FeatureListener::OnChange, &listener),
                               "PxnFeatureInvalidationRegister" + whose);
        findings.ExpectSuccess(unregister(), "PxnFeatureInvalidationUnregister" + whose);
        findings.ExpectResult(PxnErrNotFound, unregister(),
                              "a second PxnFeatureInvalidationUnregister" + whose);
    }
}

void CheckReporting(Session& session, Findings& findings) {
    FeatureListener::Record record;
    FeatureListener listener(record);
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    registrations.ChangeFor(listener);
    registrations.ChangeFor(listener);
    for (const FeatureListener::Event& event : record.Events()) {
        findings.Expect(event.handle == registrations.Change().handle,
                        "the callback got another handle");
        findings.Expect(event.feature == registrations.Change().feature,
                        "the callback got the name " + event.feature);
    }
}

void CheckOrder(Session& session, Findings& findings) {
    FeatureListener::Record record;
    FeatureListener first(record);
    FeatureListener second(record);
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(first);
    registrations.Add(second);
    registrations.ChangeFor(second);
    const std::vector<FeatureListener::Event> events = record.Events();
    findings.Require(events.size() >= 2, "only one of two registrations was called");
    findings.Expect(events[0].listener == &first && events[1].listener == &second,
                    "two registrations were not called in their order");
}

void CheckNewestFirst(Session& session, Findings& findings) {
    FeatureListener::Record record;
    FeatureListener first(record);
    FeatureListener second(record);
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(first);
    registrations.Add(second);
    findings.RequireSuccess(registrations.RemoveNewest(), "PxnFeatureInvalidationUnregister");
    registrations.ChangeFor(first);
    registrations.ChangeFor(first);
    Pause(kQuietMs);
    findings.Expect(second.Begun() == 0, "the older of two registrations was removed first");
    findings.ExpectSuccess(registrations.RemoveNewest(), "PxnFeatureInvalidationUnregister");
}

void CheckWaiting(Session& session, Findings& findings) {
    FeatureListener::Record record;
    FeatureListener listener(record);
    platform::Event release;
    listener.onFirst = [&](PxnHandle, const char*) {
        release.Wait(kWaitMs);
    };
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    std::atomic<bool> hasReturned = false;
    PxnError result = PxnErrSuccess;
    {
        const std::jthread causing([&] { registrations.Change().cause(); });
        findings.Require(WaitUntil([&] { return listener.Begun() > 0; }),
                         "a change was not reported");
        const std::jthread removing([&] {
            result = registrations.RemoveNewest();
            findings.Expect(listener.Ended() > 0,
                            "PxnFeatureInvalidationUnregister returned while the callback ran");
            hasReturned = true;
        });
        Pause(kQuietMs);
        findings.Expect(!hasReturned,
                        "PxnFeatureInvalidationUnregister does not wait for the callback");
        release.Set();
    }
    findings.ExpectSuccess(result, "PxnFeatureInvalidationUnregister");
    const std::uint64_t calls = listener.Begun();
    registrations.Change().cause();
    Pause(kQuietMs);
    findings.Expect(listener.Begun() == calls, "a callback fired after it was unregistered");
}

void CheckRemovingInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    FeatureListener::Record record;
    FeatureListener listener(record);
    listener.onFirst = [&](PxnHandle handle, const char* feature) {
        findings.ExpectSuccess(
            sdk.PxnFeatureInvalidationUnregister(handle, feature, FeatureListener::OnChange),
            "PxnFeatureInvalidationUnregister inside the callback");
    };
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    registrations.ChangeFor(listener);
    registrations.Forget();
    registrations.Change().cause();
    Pause(kQuietMs);
    findings.Expect(listener.Begun() == 1, "a callback that unregistered itself fired again");
}

void CheckUsingInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    FeatureListener::Record record;
    FeatureListener listener(record);
    listener.onFirst = [&](PxnHandle handle, const char* name) {
        PxnFeatureInfo info{};
        PxnBool readable = 0;
        std::uint32_t found = 0;
        findings.ExpectSuccess(sdk.PxnFeatureInfoQuery(handle, name, &info, sizeof info),
                               "PxnFeatureInfoQuery inside the callback");
        findings.ExpectSuccess(sdk.PxnFeatureAccessQuery(handle, name, &readable, nullptr),
                               "PxnFeatureAccessQuery inside the callback");
        findings.ExpectSuccess(sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)),
                               "PxnCamerasList inside the callback");
        const NamedFeature feature{ToText(name), handle, info};
        if (readable && HasValue(feature)) {
            findings.ExpectSuccess(ReadValue(sdk, feature), "reading inside the callback");
        }
    };
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    registrations.ChangeFor(listener);
}

void CheckStartupInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    {
        FeatureListener::Record record;
        FeatureListener listener(record);
        listener.onFirst = [&](PxnHandle, const char*) {
            findings.ExpectResult(PxnErrInvalidCall, sdk.PxnStartup(session.ConfigPath()),
                                  "PxnStartup inside the callback");
            sdk.PxnShutdown();
        };
        Registrations registrations(session, RequireChange(session), findings);
        registrations.Add(listener);
        registrations.ChangeFor(listener);
        findings.Require(!session.Modules().empty() && !ListFeatures(sdk, session.Camera()).empty(),
                         "PxnShutdown inside the callback stopped the library");
    }
    session.Stop();
    std::uint32_t found = 0;
    findings.ExpectResult(PxnErrApiNotStarted,
                          sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)),
                          "PxnCamerasList after the last shutdown");
}

void CheckClosingInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const PxnHandle camera = session.Camera();
    FeatureListener::Record record;
    FeatureListener listener(record);
    listener.onFirst = [&](PxnHandle, const char*) {
        findings.ExpectSuccess(sdk.PxnCameraClose(camera), "PxnCameraClose inside the callback");
    };
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    registrations.ChangeFor(listener);
    registrations.Forget();
    session.ForgetCamera();
    PxnCameraInfo info{};
    findings.ExpectResult(PxnErrBadHandle,
                          sdk.PxnCameraInfoQueryByHandle(camera, &info, sizeof info),
                          "PxnCameraInfoQueryByHandle of the closed camera");
}

void CheckClosing(Session& session, Findings& findings) {
    FeatureListener::Record record;
    FeatureListener listener(record);
    Registrations registrations(session, RequireChange(session), findings);
    registrations.Add(listener);
    registrations.ChangeFor(listener);
    findings.RequireSuccess(session.CloseCamera(), "PxnCameraClose");
    registrations.Forget();
    const std::uint64_t calls = listener.Begun();
    session.Prepare(Stage::kOpened);
    registrations.Change().cause();
    registrations.Change().cause(); // the first may have ended what closing had ended already
    Pause(kQuietMs);
    findings.Expect(listener.Begun() == calls, "a registration outlives the closing of the camera");
    findings.ExpectResult(
        PxnErrNotFound,
        session.Sdk().PxnFeatureInvalidationUnregister(
            session.Camera(), registrations.Change().feature.c_str(), FeatureListener::OnChange),
        "PxnFeatureInvalidationUnregister after closing and opening");
}

void CheckLockedFeature(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const std::string& locked = session.LockedFeature();
    if (locked.empty()) {
        throw NotApplicable("no feature is locked by an acquisition");
    }
    FeatureListener::Record record;
    FeatureListener listener(record);
    Registrations registrations(session, {session.Camera(), locked, {}}, findings);
    registrations.Add(listener);
    const auto isWritable = [&] {
        return GetAccess(sdk, session.Camera(), locked.c_str()).isWritable;
    };
    findings.Require(isWritable(), locked + " is locked without an acquisition");
    std::uint64_t calls = 0;
    {
        const Acquisition acquisition(session);
        calls = listener.Ended();
        findings.RequireSuccess(acquisition.Result(), "starting an acquisition");
        findings.Expect(!isWritable(), locked + " is not locked by an acquisition");
        findings.Expect(calls > 0,
                        "that " + locked + " is locked was not reported when the start returned");
    }
    findings.Expect(isWritable(), locked + " stays locked after the acquisition");
    findings.Expect(listener.Ended() > calls,
                    "that " + locked +
                        " is no longer locked was not reported when the end "
                        "returned");
}

} // namespace

std::vector<Check> InvalidationChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"invalidation", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("registering and unregistering", CheckRegistering),
        check("changes are reported", CheckReporting),
        check("registrations are called in their order", CheckOrder),
        check("the newest registration is removed first", CheckNewestFirst),
        check("unregistering waits for the callback", CheckWaiting),
        check("unregistering inside the callback", CheckRemovingInside),
        check("using the camera inside the callback", CheckUsingInside),
        check("closing the camera inside the callback", CheckClosingInside),
        check("closing the camera ends registrations", CheckClosing),
        check("startup and shutdown inside the callback", CheckStartupInside),
        check("locked features are reported before the start returns", CheckLockedFeature),
    };
}

} // namespace conformance
