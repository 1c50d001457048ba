// access_checks.cpp - checks of what can be read and written, and by whom
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_values.h"

#include <cmath>
#include <limits>
#include <string>

namespace conformance {
namespace {

/// A camera opened for reading, closed when the object goes.
class ReadOnlyCamera {
public:
    ReadOnlyCamera(Session& session, Findings& findings) : sdk(session.Sdk()) {
        PxnCameraInfo info{};
        const std::string id = session.CameraId();
        findings.RequireSuccess(sdk.PxnCameraInfoQuery(id.c_str(), &info, sizeof info),
                                "PxnCameraInfoQuery");
        const PxnError result = sdk.PxnCameraOpen(id.c_str(), PxnAccessModeRead, &handle);
        if ((info.permittedAccess & PxnAccessModeRead) == 0 && result != PxnErrSuccess) {
            throw NotApplicable("the camera cannot be opened for reading");
        }
        findings.RequireSuccess(result, "PxnCameraOpen for reading");
    }
    ~ReadOnlyCamera() { sdk.PxnCameraClose(handle); }
    ReadOnlyCamera(const ReadOnlyCamera&) = delete;
    ReadOnlyCamera& operator=(const ReadOnlyCamera&) = delete;

    PxnHandle Handle() const { return handle; }
    std::vector<NamedFeature> Features() const {
        std::vector<NamedFeature> features;
        for (const PxnFeatureInfo& info : ListFeatures(sdk, handle)) {
            features.push_back({"camera/" + ToText(info.name), handle, info});
        }
        return features;
    }

private:
    const SdkFunctions& sdk;
    PxnHandle handle = nullptr;
};

/// Notes a failure of `action`, which depends on the access, unless the access has changed.
template <typename Action>
void ExpectByAccess(const SdkFunctions& sdk, const NamedFeature& feature,
                    bool FeatureAccess::*right, PxnError without, Action action, Findings& findings,
                    const char* what) {
    const FeatureAccess before = GetAccess(sdk, feature);
    const PxnError result = action();
    if (GetAccess(sdk, feature) == before) {
        findings.ExpectResult(before.*right ? PxnErrSuccess : without, result,
                              what + feature.name +
                                  (before.*right ? " (accessible)" : " (not accessible)"));
    }
}

void CheckAccessQueries(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.Features()) {
        PxnBool readable = 9;
        PxnBool writable = 9;
        const std::string call = "PxnFeatureAccessQuery of " + name;
        findings.RequireSuccess(
            session.Sdk().PxnFeatureAccessQuery(handle, info.name, &readable, &writable), call);
        findings.Expect(readable <= 1 && writable <= 1, call + " stores neither 0 nor 1");
        findings.Expect(!readable || (info.featureFlags & PxnFeatureFlagRead),
                        name + " is readable against its flags");
        findings.Expect(!writable || (info.featureFlags & PxnFeatureFlagWrite),
                        name + " is writable against its flags");
        findings.ExpectSuccess(
            session.Sdk().PxnFeatureAccessQuery(handle, info.name, nullptr, &writable),
            call + " without readable");
        findings.ExpectSuccess(
            session.Sdk().PxnFeatureAccessQuery(handle, info.name, &readable, nullptr),
            call + " without writeable");
    }
}

void CheckReading(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const NamedFeature& feature : session.Features()) {
        if (HasValue(feature)) {
            ExpectByAccess(
                sdk, feature, &FeatureAccess::isReadable, PxnErrInvalidAccess,
                [&] { return ReadValue(sdk, feature); }, findings, "reading ");
        }
    }
}

void CheckUnwritable(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    bool isAny = false;
    for (const NamedFeature& feature : session.Features()) {
        const FeatureAccess access = GetAccess(sdk, feature);
        if (HasValue(feature) && access.isReadable && !access.isWritable) {
            isAny = true;
            const PxnError result = WriteBack(sdk, feature, feature.handle);
            findings.Expect(result == PxnErrInvalidAccess || !(GetAccess(sdk, feature) == access),
                            "writing " + feature.name + " (not accessible) returned " +
                                std::to_string(result) + ", not -6");
        }
    }
    if (!isAny) {
        throw NotApplicable("all features can be written");
    }
}

void CheckSecondOpening(Session& session, Findings& findings) {
    PxnHandle second = nullptr;
    const std::string id = session.CameraId();
    const PxnError result = session.Sdk().PxnCameraOpen(id.c_str(), PxnAccessModeFull, &second);
    findings.Expect(result == PxnErrInUse || result == PxnErrInvalidAccess,
                    "opening an open camera with full access returned " + std::to_string(result) +
                        ", neither -27 nor -6");
    if (result == PxnErrSuccess) {
        session.Sdk().PxnCameraClose(second);
    }
}

void CheckReopening(Session& session, Findings& findings) {
    const PxnHandle first = session.Camera();
    findings.RequireSuccess(session.CloseCamera(), "PxnCameraClose");
    session.Prepare(Stage::kOpened);
    findings.ExpectResult(PxnErrBadHandle,
                          session.Sdk().PxnCameraClose(first == session.Camera() ? nullptr : first),
                          "PxnCameraClose with a handle that was closed");
    findings.Expect(!ListFeatures(session.Sdk(), session.Camera()).empty(),
                    "a camera that was opened again has no features");
}

void CheckReadOnlyFeatures(Session& session, Findings& findings) {
    const ReadOnlyCamera camera(session, findings);
    const SdkFunctions& sdk = session.Sdk();
    for (const NamedFeature& feature : camera.Features()) {
        const FeatureAccess access = GetAccess(sdk, feature);
        findings.Expect(!access.isWritable, feature.name + " is writable");
        if (HasValue(feature) && access.isReadable) {
            findings.ExpectResult(PxnErrInvalidAccess, WriteBack(sdk, feature, camera.Handle()),
                                  "writing " + feature.name);
        }
    }
}

void CheckReadOnlyCommands(Session& session, Findings& findings) {
    const ReadOnlyCamera camera(session, findings);
    const PxnError result = session.Sdk().PxnFeatureCommandRun(camera.Handle(), "AcquisitionStop");
    if (result == PxnErrNotFound) {
        throw NotApplicable("the camera has no command AcquisitionStop");
    }
    findings.ExpectResult(PxnErrInvalidAccess, result, "PxnFeatureCommandRun");
}

void CheckReadOnlyFrames(Session& session, Findings& findings) {
    const ReadOnlyCamera camera(session, findings);
    PxnFrame frame{};
    std::uint32_t payload = 0;
    findings.ExpectSuccess(session.Sdk().PxnPayloadSizeGet(camera.Handle(), &payload),
                           "PxnPayloadSizeGet");
    for (const char* function :
         {"PxnFrameAnnounce", "PxnFrameRevoke", "PxnFrameRevokeAll", "PxnCaptureStart",
          "PxnCaptureEnd", "PxnCaptureFrameQueue", "PxnCaptureFrameWait", "PxnCaptureQueueFlush"}) {
        findings.ExpectResult(
            PxnErrInvalidAccess,
            FindCall(function).run(session.Sdk(), {camera.Handle(), kNoFeature, &frame}), function);
    }
}

void CheckReadOnlyMemory(Session& session, Findings& findings) {
    const ReadOnlyCamera camera(session, findings);
    const wchar_t* const path = L"there-is-no-such-directory/settings.xml";
    const char bytes[4] = {};
    std::uint32_t done = 0;
    // An address that no camera has: nothing is written, whatever the library does.
    findings.ExpectResult(PxnErrInvalidAccess,
                          session.Sdk().PxnMemoryWrite(camera.Handle(), ~std::uint64_t{3},
                                                       sizeof bytes, bytes, &done),
                          "PxnMemoryWrite");
    findings.ExpectResult(PxnErrInvalidAccess,
                          session.Sdk().PxnSettingsLoad(camera.Handle(), path, nullptr, 0),
                          "PxnSettingsLoad");
}

/// Values that the limits exclude, one call for each.
void ExpectRefusedValues(const SdkFunctions& sdk, const NamedFeature& feature, Findings& findings) {
    const auto& [name, handle, info] = feature;
    std::int64_t least = 0;
    std::int64_t greatest = 0;
    std::int64_t increment = 0;
    double leastReal = 0;
    double greatestReal = 0;
    std::uint32_t length = 0;
    const auto expect = [&](PxnError result, const std::string& what) {
        findings.ExpectResult(PxnErrInvalidValue, result,
                              "writing " + what + " to " + feature.name);
    };
    switch (info.featureDataType) {
    case PxnFeatureDataInt:
        sdk.PxnFeatureIntRangeQuery(handle, info.name, &least, &greatest);
        sdk.PxnFeatureIntIncrementQuery(handle, info.name, &increment);
        if (greatest < std::numeric_limits<std::int64_t>::max()) {
            expect(sdk.PxnFeatureIntSet(handle, info.name, greatest + 1), "the maximum and 1");
        }
        if (least > std::numeric_limits<std::int64_t>::min()) {
            expect(sdk.PxnFeatureIntSet(handle, info.name, least - 1), "the minimum less 1");
        }
        if (increment > 1 && least < greatest) {
            expect(sdk.PxnFeatureIntSet(handle, info.name, least + 1),
                   "a value between two of the increment");
        }
        break;
    case PxnFeatureDataFloat:
        sdk.PxnFeatureFloatRangeQuery(handle, info.name, &leastReal, &greatestReal);
        if (greatestReal < 1e300) {
            expect(sdk.PxnFeatureFloatSet(handle, info.name,
                                          greatestReal + 1 + std::abs(greatestReal)),
                   "more than the maximum");
        }
        break;
    case PxnFeatureDataEnum:
        expect(sdk.PxnFeatureEnumSet(handle, info.name, "ThereIsNoSuchEntry"), "an unknown entry");
        break;
    case PxnFeatureDataString:
        sdk.PxnFeatureStringMaxlengthQuery(handle, info.name, &length);
        if (length < 100000) {
            expect(sdk.PxnFeatureStringSet(handle, info.name, std::string(length + 1, 'x').c_str()),
                   "a text that is too long");
        }
        break;
    case PxnFeatureDataRaw:
        sdk.PxnFeatureRawLengthQuery(handle, info.name, &length);
        expect(sdk.PxnFeatureRawSet(handle, info.name, std::string(length + 1, 'x').data(),
                                    length + 1),
               "a byte too many");
        break;
    default:
        break;
    }
}

void CheckRefusedValues(Session& session, Findings& findings) {
    for (const NamedFeature& feature : session.Features()) {
        const FeatureAccess access = GetAccess(session.Sdk(), feature);
        if (HasValue(feature) && access.isReadable && access.isWritable) {
            ExpectRefusedValues(session.Sdk(), feature, findings);
        }
    }
}

} // namespace

std::vector<Check> AccessChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&),
                          Stage stage = Stage::kOpened) {
        return Check{"access", name, stage, Scope::kHarmless, run};
    };
    return {
        check("access of features", CheckAccessQueries),
        check("reading by access", CheckReading),
        check("writing what cannot be written", CheckUnwritable),
        {"access", "values outside the limits", Stage::kOpened, Scope::kThorough,
         CheckRefusedValues},
        check("a second opening with full access", CheckSecondOpening),
        check("closing and opening again", CheckReopening),
        check("features of a camera opened for reading", CheckReadOnlyFeatures, Stage::kStarted),
        check("commands of a camera opened for reading", CheckReadOnlyCommands, Stage::kStarted),
        check("frames of a camera opened for reading", CheckReadOnlyFrames, Stage::kStarted),
        check("registers and settings of a camera opened for reading", CheckReadOnlyMemory,
              Stage::kStarted),
    };
}

} // namespace conformance
