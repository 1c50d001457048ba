// argument_checks.cpp - checks of handles, missing arguments, record sizes and names
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"

#include <string>

namespace conformance {
namespace {

PxnHandle ToHandle(std::uintptr_t number) {
    return reinterpret_cast<PxnHandle>(number);
}

void ExpectBadHandle(const SdkFunctions& sdk, PxnHandle handle, const std::string& what,
                     Findings& findings) {
    PxnFrame frame{};
    for (const Call& call : AllCalls()) {
        if (call.hasHandle) {
            findings.ExpectResult(PxnErrBadHandle, call.run(sdk, {handle, kNoFeature, &frame}),
                                  std::string(call.function) + " with " + what);
        }
    }
}

void CheckMissingArguments(Session& session, Findings& findings) {
    for (const IncompleteCall& call : IncompleteCalls()) {
        findings.ExpectResult(PxnErrBadParameter, call.run(session.Sdk(), session.Camera()),
                              call.text);
    }
}

void CheckSizes(Session& session, Findings& findings) {
    for (const SizedCall& call : SizedCalls()) {
        for (const std::uint32_t size : {0u, call.size - 1, call.size + 1, 0xFFFFFFFFu}) {
            findings.ExpectResult(PxnErrStructSize, call.run(session.Sdk(), session.Camera(), size),
                                  std::string(call.function) + " with size " +
                                      std::to_string(size));
        }
    }
}

void CheckBadHandles(Session& session, Findings& findings) {
    ExpectBadHandle(session.Sdk(), nullptr, "handle null", findings);
    ExpectBadHandle(session.Sdk(), ToHandle(1), "handle 1", findings);
    ExpectBadHandle(session.Sdk(), ToHandle(0x1000000000000003), "handle 0x1000000000000003",
                    findings);
    ExpectBadHandle(session.Sdk(), ToHandle(~std::uintptr_t{0}), "handle -1", findings);
}

void CheckHandleOrder(Session& session, Findings& findings) {
    for (const IncompleteCall& call : IncompleteCalls()) {
        if (call.hasHandle) {
            findings.ExpectResult(PxnErrBadHandle, call.run(session.Sdk(), nullptr),
                                  std::string(call.text) + ", with handle null");
        }
    }
    for (const SizedCall& call : SizedCalls()) {
        if (call.hasHandle) {
            findings.ExpectResult(PxnErrBadHandle, call.run(session.Sdk(), nullptr, 1),
                                  std::string(call.function) + " with size 1 and handle null");
        }
    }
}

void CheckClosedHandles(Session& session, Findings& findings) {
    std::vector<NamedModule> closed{{"the handle of a closed camera", session.Camera()},
                                    {"its local device", session.LocalDevice()}};
    for (const PxnHandle stream : session.Streams()) {
        closed.push_back({"its stream", stream});
    }
    findings.RequireSuccess(session.CloseCamera(), "PxnCameraClose");
    for (const auto& [name, handle] : closed) {
        ExpectBadHandle(session.Sdk(), handle, name, findings);
    }
}

void CheckUnknownFeatures(Session& session, Findings& findings) {
    for (const auto& [name, handle] : session.Modules()) {
        for (const Call& call : AllCalls()) {
            if (call.hasFeature) {
                findings.ExpectResult(PxnErrNotFound, call.run(session.Sdk(), {handle, kNoFeature}),
                                      std::string(call.function) + " for an unknown feature of " +
                                          name);
            }
        }
    }
}

void CheckOtherModules(Session& session, Findings& findings) {
    PxnFrame frame{};
    for (const char* function :
         {"PxnPayloadSizeGet", "PxnFrameAnnounce", "PxnFrameRevoke", "PxnFrameRevokeAll",
          "PxnCaptureStart", "PxnCaptureEnd", "PxnCaptureFrameQueue", "PxnCaptureFrameWait",
          "PxnCaptureQueueFlush", "PxnCameraInfoQueryByHandle", "PxnCameraClose"}) {
        for (const PxnHandle handle : {PXN_SYSTEM_HANDLE, session.LocalDevice()}) {
            findings.ExpectResult(
                PxnErrBadHandle,
                FindCall(function).run(session.Sdk(), {handle, kNoFeature, &frame}),
                std::string(function) + " with the handle of " +
                    (handle == PXN_SYSTEM_HANDLE ? "the system" : "the local device"));
        }
    }
    for (const char* function : {"PxnCameraInfoQueryByHandle", "PxnCameraClose"}) {
        for (const PxnHandle stream : session.Streams()) {
            findings.ExpectResult(PxnErrBadHandle, FindCall(function).run(session.Sdk(), {stream}),
                                  std::string(function) + " with the handle of a stream");
        }
    }
}

void CheckSystemRegisters(Session& session, Findings& findings) {
    for (const char* function : {"PxnMemoryRead", "PxnMemoryWrite"}) {
        findings.ExpectResult(PxnErrNotSupported,
                              FindCall(function).run(session.Sdk(), {PXN_SYSTEM_HANDLE}),
                              std::string(function) + " on the system");
    }
}

void CheckUnknownCameras(Session& session, Findings& findings) {
    for (const char* function : {"PxnCameraInfoQuery", "PxnCameraOpen"}) {
        findings.ExpectResult(PxnErrNotFound, FindCall(function).run(session.Sdk(), {}),
                              std::string(function) + " for an unknown camera");
    }
}

void CheckReservedSettings(Session& session, Findings& findings) {
    const char settings[4] = {};
    const wchar_t* const path = L"there-is-no-such-directory/settings.xml";
    findings.ExpectResult(
        PxnErrStructSize,
        session.Sdk().PxnSettingsSave(session.Camera(), path, settings, sizeof settings),
        "PxnSettingsSave with settings");
    findings.ExpectResult(
        PxnErrStructSize,
        session.Sdk().PxnSettingsLoad(session.Camera(), path, settings, sizeof settings),
        "PxnSettingsLoad with settings");
}

} // namespace

std::vector<Check> ArgumentChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"arguments", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        {"arguments", "unknown cameras", Stage::kStarted, Scope::kHarmless, CheckUnknownCameras},
        check("missing arguments", CheckMissingArguments),
        check("sizes of records", CheckSizes),
        check("reserved settings", CheckReservedSettings),
        check("handles that are none", CheckBadHandles),
        check("handles are checked first", CheckHandleOrder),
        check("unknown features", CheckUnknownFeatures),
        check("handles of other modules", CheckOtherModules),
        check("registers of the system", CheckSystemRegisters),
        check("handles of a closed camera", CheckClosedHandles),
    };
}

} // namespace conformance
