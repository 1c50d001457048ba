// description_checks.cpp - checks of the records that describe cameras, modules and features
#include "pxnc/conformance/checks.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <map>
#include <set>
#include <string>

namespace conformance {
namespace {

void ExpectTexts(std::initializer_list<const char*> texts, const std::string& whose,
                 Findings& findings) {
    findings.Expect(
        std::none_of(texts.begin(), texts.end(), [](const char* text) { return !text; }),
        "a text of " + whose + " is a null pointer");
}

bool IsSameText(const char* left, const char* right) {
    return left && right && std::strcmp(left, right) == 0;
}

void CheckCameraTexts(Session& session, Findings& findings) {
    session.CameraId();
    std::set<std::string> ids;
    for (const PxnCameraInfo& info : ListCameras(session.Sdk())) {
        ExpectTexts({info.cameraIdString, info.cameraIdExtended, info.cameraName, info.modelName,
                     info.serialString},
                    "a camera", findings);
        if (findings.HasFailures()) {
            return;
        }
        findings.Expect(*info.cameraIdString && *info.cameraIdExtended,
                        "an identifier of a camera is empty");
        findings.Expect(ids.insert(info.cameraIdString).second,
                        std::string("two cameras have the identifier ") + info.cameraIdString);
        findings.Expect((info.permittedAccess & ~7u) == 0, "permittedAccess has unknown bits");
    }
}

void CheckClosedCameraHandles(Session& session, Findings& findings) {
    PxnCameraInfo info{};
    findings.RequireSuccess(
        session.Sdk().PxnCameraInfoQuery(session.CameraId().c_str(), &info, sizeof info),
        "PxnCameraInfoQuery");
    findings.Expect(!info.localDeviceHandle, "a closed camera has a local device");
    findings.Expect(!info.streamHandles && info.streamCount == 0, "a closed camera has streams");
}

void CheckCameraQueries(Session& session, Findings& findings) {
    PxnCameraInfo byHandle{};
    findings.RequireSuccess(
        session.Sdk().PxnCameraInfoQueryByHandle(session.Camera(), &byHandle, sizeof byHandle),
        "PxnCameraInfoQueryByHandle");
    findings.Expect(byHandle.localDeviceHandle, "the open camera has no local device");
    for (const char* id : {byHandle.cameraIdString, byHandle.cameraIdExtended}) {
        PxnCameraInfo byId{};
        const std::string call = "PxnCameraInfoQuery of " + ToText(id);
        findings.RequireSuccess(session.Sdk().PxnCameraInfoQuery(id, &byId, sizeof byId), call);
        findings.Expect(IsSameText(byId.cameraIdExtended, byHandle.cameraIdExtended) &&
                            IsSameText(byId.serialString, byHandle.serialString) &&
                            byId.interfaceHandle == byHandle.interfaceHandle &&
                            byId.localDeviceHandle == byHandle.localDeviceHandle,
                        call + " describes another camera");
    }
}

void CheckTopology(Session& session, Findings& findings) {
    std::map<PxnHandle, PxnInterfaceInfo> interfaces;
    std::set<PxnHandle> layers;
    for (const auto& layer : ListRecords<PxnTransportLayerInfo>([&](auto... arguments) {
             return session.Sdk().PxnTransportLayersList(arguments...,
                                                         sizeof(PxnTransportLayerInfo));
         })) {
        ExpectTexts({layer.transportLayerIdString, layer.transportLayerName,
                     layer.transportLayerModelName, layer.transportLayerVendor,
                     layer.transportLayerVersion, layer.transportLayerPath},
                    "a transport layer", findings);
        findings.Expect(layer.transportLayerType <= PxnTransportLayerMixed,
                        "the type of a transport layer is unknown");
        findings.Expect(layers.insert(layer.transportLayerHandle).second,
                        "two transport layers have the same handle");
    }
    for (const auto& one : ListRecords<PxnInterfaceInfo>([&](auto... arguments) {
             return session.Sdk().PxnInterfacesList(arguments..., sizeof(PxnInterfaceInfo));
         })) {
        ExpectTexts({one.interfaceIdString, one.interfaceName}, "an interface", findings);
        findings.Expect(one.interfaceType <= PxnTransportLayerMixed,
                        "the type of an interface is unknown");
        findings.Expect(layers.count(one.transportLayerHandle) == 1,
                        "an interface belongs to a transport layer that is not listed");
        findings.Expect(interfaces.emplace(one.interfaceHandle, one).second,
                        "two interfaces have the same handle");
    }
    for (const PxnCameraInfo& camera : ListCameras(session.Sdk())) {
        const auto found = interfaces.find(camera.interfaceHandle);
        findings.Expect(found != interfaces.end() &&
                            found->second.transportLayerHandle == camera.transportLayerHandle,
                        ToText(camera.cameraIdString) +
                            " belongs to an interface or a transport layer that is not listed");
    }
}

void CheckFeatureTexts(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.Features()) {
        ExpectTexts({info.name, info.category, info.displayName, info.tooltip, info.description,
                     info.sfncNamespace, info.unit, info.representation},
                    name, findings);
        findings.Expect(info.category && info.category[0] == '/',
                        "the category of " + name + " does not begin with '/'");
    }
}

void CheckFeatureNumbers(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.Features()) {
        findings.Expect(info.featureDataType <= PxnFeatureDataNone,
                        "the type of " + name + " is unknown");
        findings.Expect((info.featureFlags & ~(1u | 2u | 8u | 16u)) == 0,
                        name + " has unknown flags");
        findings.Expect(info.visibility <= PxnVisibilityInvisible,
                        "the visibility of " + name + " is unknown");
        findings.Expect(info.isStreamable <= 1 && info.hasSelectedFeatures <= 1,
                        "a flag of " + name + " is neither 0 nor 1");
    }
}

void CheckFeatureNames(Session& session, Findings& findings) {
    std::set<std::pair<PxnHandle, std::string>> names;
    for (const auto& [name, handle, info] : session.Features()) {
        findings.Expect(info.name && *info.name != '\0', name + " has no name");
        findings.Expect(names.emplace(handle, ToText(info.name)).second, name + " is listed twice");
    }
}

void CheckFeatureQueries(Session& session, Findings& findings) {
    for (const auto& [name, handle, listed] : session.Features()) {
        PxnFeatureInfo queried{};
        const std::string call = "PxnFeatureInfoQuery of " + name;
        if (findings.ExpectSuccess(
                session.Sdk().PxnFeatureInfoQuery(handle, listed.name, &queried, sizeof queried),
                call)) {
            findings.Expect(IsSameText(listed.name, queried.name) &&
                                IsSameText(listed.category, queried.category) &&
                                IsSameText(listed.displayName, queried.displayName) &&
                                IsSameText(listed.description, queried.description) &&
                                IsSameText(listed.unit, queried.unit) &&
                                listed.featureDataType == queried.featureDataType &&
                                listed.featureFlags == queried.featureFlags &&
                                listed.hasSelectedFeatures == queried.hasSelectedFeatures,
                            call + " differs from the list");
        }
    }
}

void CheckSelectedFeatures(Session& session, Findings& findings) {
    for (const auto& [name, handle, info] : session.Features()) {
        const auto selected =
            ListRecords<PxnFeatureInfo>([&, module = handle, selector = info.name](auto... list) {
                return session.Sdk().PxnFeatureListSelected(module, selector, list...,
                                                            sizeof(PxnFeatureInfo));
            });
        findings.Expect(selected.empty() == (info.hasSelectedFeatures == 0),
                        "hasSelectedFeatures of " + name + " is " +
                            std::to_string(info.hasSelectedFeatures) + ", but it selects " +
                            std::to_string(selected.size()));
        for (const PxnFeatureInfo& one : selected) {
            PxnFeatureInfo queried{};
            findings.ExpectSuccess(
                session.Sdk().PxnFeatureInfoQuery(handle, one.name, &queried, sizeof queried),
                "PxnFeatureInfoQuery of what " + name + " selects");
        }
    }
}

/// Notes when a name is not the pointer that it was before.
class EntryPointers {
public:
    explicit EntryPointers(Findings& checkFindings) : findings(checkFindings) {}

    void Add(const char* entry, const std::string& call) {
        if (findings.Expect(entry, call + " stores a null pointer")) {
            findings.Expect(pointers.emplace(entry, entry).first->second == entry,
                            call + " stores another pointer for " + entry);
        }
    }

private:
    Findings& findings;
    std::map<std::string, const char*> pointers;
};

void CheckEntryPointers(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    EntryPointers pointers(findings);
    for (const auto& [name, handle, info] : session.RequireFeatures(PxnFeatureDataEnum)) {
        for (const char* entry : ListEnumEntries(sdk, handle, info.name)) {
            pointers.Add(entry, "PxnFeatureEnumRangeQuery of " + name);
            PxnFeatureEnumEntry description{};
            if (sdk.PxnFeatureEnumEntryGet(handle, info.name, entry, &description,
                                           sizeof description) == PxnErrSuccess) {
                pointers.Add(description.name, "PxnFeatureEnumEntryGet of " + name);
            }
        }
        const char* value = nullptr;
        if (sdk.PxnFeatureEnumGet(handle, info.name, &value) == PxnErrSuccess) {
            pointers.Add(value, "PxnFeatureEnumGet of " + name);
        }
    }
}

} // namespace

std::vector<Check> DescriptionChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"descriptions", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("texts of cameras", CheckCameraTexts),
        check("cameras by handle and by both identifiers", CheckCameraQueries),
        check("interfaces and transport layers", CheckTopology),
        check("texts of features", CheckFeatureTexts),
        check("numbers of features", CheckFeatureNumbers),
        check("names of features are unique", CheckFeatureNames),
        check("features by name", CheckFeatureQueries),
        check("selected features", CheckSelectedFeatures),
        check("one pointer for each name of an entry", CheckEntryPointers),
        {"descriptions", "a closed camera has no modules", Stage::kStarted, Scope::kHarmless,
         CheckClosedCameraHandles},
    };
}

} // namespace conformance
