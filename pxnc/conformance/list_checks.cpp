// list_checks.cpp - checks of the functions that fill arrays
#include "pxnc/conformance/checks.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace conformance {
namespace {

constexpr unsigned char kUnfilled = 0x5A;

template <typename Record>
bool IsUnfilled(const Record& record) {
    unsigned char bytes[sizeof(Record)];
    std::memcpy(bytes, &record, sizeof record);
    return std::all_of(std::begin(bytes), std::end(bytes),
                       [](unsigned char byte) { return byte == kUnfilled; });
}

/// Calls `list(array, capacity, found)` with arrays of all kinds of sizes.
template <typename Record>
class ListProtocol {
public:
    ListProtocol(std::string listText, Findings& checkFindings)
        : text(std::move(listText)), findings(checkFindings) {}

    /// Returns the number of elements.
    template <typename List>
    std::uint32_t Run(List list) {
        std::uint32_t count = 0;
        findings.RequireSuccess(list(static_cast<Record*>(nullptr), 0u, &count),
                                text + " that only counts");
        for (const std::uint32_t capacity : {count, count + 2, count / 2, 0u}) {
            Try(list, count, capacity);
        }
        return count;
    }

private:
    template <typename List>
    void Try(List list, std::uint32_t count, std::uint32_t capacity) {
        const std::string call = text + " of " + std::to_string(count) +
                                 " elements with room for " + std::to_string(capacity);
        std::vector<Record> records(std::size_t{std::max(count, capacity)} + 1);
        std::memset(static_cast<void*>(records.data()), kUnfilled, records.size() * sizeof(Record));
        std::uint32_t found = 0xABCD;
        findings.ExpectResult(capacity < count ? PxnErrMoreData : PxnErrSuccess,
                              list(records.data(), capacity, &found), call);
        findings.Expect(found == count, call + " found " + std::to_string(found));
        const std::size_t filled = std::min(count, capacity);
        for (std::size_t index = 0; index < records.size(); ++index) {
            if (IsUnfilled(records[index]) == (index < filled)) {
                findings.Expect(false, call + (index < filled ? " left out" : " wrote to") +
                                           " element " + std::to_string(index));
                break;
            }
        }
    }

    const std::string text;
    Findings& findings;
};

void CheckCameras(Session& session, Findings& findings) {
    ListProtocol<PxnCameraInfo>("PxnCamerasList", findings).Run([&](auto... arguments) {
        return session.Sdk().PxnCamerasList(arguments..., sizeof(PxnCameraInfo));
    });
}

void CheckTransportLayers(Session& session, Findings& findings) {
    ListProtocol<PxnTransportLayerInfo>("PxnTransportLayersList", findings)
        .Run([&](auto... arguments) {
            return session.Sdk().PxnTransportLayersList(arguments...,
                                                        sizeof(PxnTransportLayerInfo));
        });
}

void CheckInterfaces(Session& session, Findings& findings) {
    ListProtocol<PxnInterfaceInfo>("PxnInterfacesList", findings).Run([&](auto... arguments) {
        return session.Sdk().PxnInterfacesList(arguments..., sizeof(PxnInterfaceInfo));
    });
}

void CheckFeatures(Session& session, Findings& findings) {
    for (const NamedModule& module : session.Modules()) {
        const std::uint32_t count =
            ListProtocol<PxnFeatureInfo>("PxnFeaturesList of " + module.name, findings)
                .Run([&](auto... arguments) {
                    return session.Sdk().PxnFeaturesList(module.handle, arguments...,
                                                         sizeof(PxnFeatureInfo));
                });
        findings.Expect(count > 0 || module.handle != session.Camera(),
                        "the camera has no features");
    }
}

void CheckSelected(Session& session, Findings& findings) {
    for (const NamedFeature& one : session.Features()) {
        ListProtocol<PxnFeatureInfo>("PxnFeatureListSelected of " + one.name, findings)
            .Run([&](auto... arguments) {
                return session.Sdk().PxnFeatureListSelected(one.handle, one.info.name, arguments...,
                                                            sizeof(PxnFeatureInfo));
            });
    }
}

void CheckEntries(Session& session, Findings& findings) {
    for (const NamedFeature& one : session.RequireFeatures(PxnFeatureDataEnum)) {
        ListProtocol<const char*>("PxnFeatureEnumRangeQuery of " + one.name, findings)
            .Run([&](auto... arguments) {
                return session.Sdk().PxnFeatureEnumRangeQuery(one.handle, one.info.name,
                                                              arguments...);
            });
    }
}

void CheckValueSets(Session& session, Findings& findings) {
    unsigned sets = 0;
    for (const NamedFeature& one : session.RequireFeatures(PxnFeatureDataInt)) {
        const auto list = [&](auto... arguments) {
            return session.Sdk().PxnFeatureIntValidValueSetQuery(one.handle, one.info.name,
                                                                 arguments...);
        };
        std::uint32_t found = 0;
        if (list(static_cast<std::int64_t*>(nullptr), 0u, &found) !=
            PxnErrValidValueSetNotPresent) {
            ListProtocol<std::int64_t>("PxnFeatureIntValidValueSetQuery of " + one.name, findings)
                .Run(list);
            ++sets;
        }
    }
    if (sets == 0) {
        throw NotApplicable("no integer has a set of valid values");
    }
}

} // namespace

std::vector<Check> ListChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"lists", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("cameras", CheckCameras),
        check("transport layers", CheckTransportLayers),
        check("interfaces", CheckInterfaces),
        check("features", CheckFeatures),
        check("selected features", CheckSelected),
        check("entries of enumerations", CheckEntries),
        check("sets of valid values", CheckValueSets),
    };
}

} // namespace conformance
