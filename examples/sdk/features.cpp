// features.cpp - the features of a module, by their types
#include "features.h"

#include <cstring>
#include <limits>

namespace test_camera {

PxnFeatureInfo BasicFeature::Info() const {
    PxnFeatureInfo info{};
    info.name = description.name;
    info.category = description.category;
    info.displayName = description.name;
    info.tooltip = description.text;
    info.description = description.text;
    info.sfncNamespace = "Standard";
    info.unit = description.unit;
    info.representation = "";
    info.featureDataType = type;
    info.featureFlags = type == PxnFeatureDataCommand ? 0 : PxnFeatureFlagRead;
    if (description.isWritable) {
        info.featureFlags |= PxnFeatureFlagWrite;
        info.isStreamable = type == PxnFeatureDataCommand ? 0 : 1;
    }
    info.visibility = PxnVisibilityBeginner;
    return info;
}

PxnError BasicFeature::GetAccess(bool& readable, bool& writable) {
    readable = type != PxnFeatureDataCommand;
    writable = IsWritable();
    return PxnErrSuccess;
}

PxnError IntegerFeature::GetInt(std::int64_t& place) {
    place = value;
    return PxnErrSuccess;
}

PxnError IntegerFeature::SetInt(std::int64_t newValue) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (newValue < limits.least || newValue > limits.greatest ||
        (newValue - limits.least) % limits.increment != 0) {
        return PxnErrInvalidValue;
    }
    value = newValue;
    return PxnErrSuccess;
}

PxnError IntegerFeature::GetIntRange(std::int64_t& least, std::int64_t& greatest) {
    least = limits.least;
    greatest = limits.greatest;
    return PxnErrSuccess;
}

PxnError IntegerFeature::GetIntIncrement(std::int64_t& place) {
    place = limits.increment;
    return PxnErrSuccess;
}

PxnError DerivedInteger::GetInt(std::int64_t& place) {
    place = compute();
    return PxnErrSuccess;
}

PxnError DerivedInteger::SetInt(std::int64_t) {
    return PxnErrInvalidAccess;
}

PxnError DerivedInteger::GetIntRange(std::int64_t& least, std::int64_t& greatest) {
    least = 0;
    greatest = std::numeric_limits<std::int64_t>::max();
    return PxnErrSuccess;
}

PxnError DerivedInteger::GetIntIncrement(std::int64_t& place) {
    place = 1;
    return PxnErrSuccess;
}

PxnError FloatFeature::GetFloat(double& place) {
    place = value;
    return PxnErrSuccess;
}

PxnError FloatFeature::SetFloat(double newValue) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (!(newValue >= least && newValue <= greatest)) { // what is no number is refused as well
        return PxnErrInvalidValue;
    }
    value = newValue;
    return PxnErrSuccess;
}

PxnError FloatFeature::GetFloatRange(double& leastPlace, double& greatestPlace) {
    leastPlace = least;
    greatestPlace = greatest;
    return PxnErrSuccess;
}

EntryFeature::EntryFeature(Description featureDescription, skeleton::TextPool& pool,
                           std::vector<Entry> newEntries)
    : BasicFeature(std::move(featureDescription), PxnFeatureDataEnum),
      entries(std::move(newEntries)) {
    for (Entry& entry : entries) {
        entry.first = pool.Intern(entry.first); // hosts compare the pointers
    }
    value = entries.front().first;
}

const EntryFeature::Entry* EntryFeature::Find(const char* entry) const {
    for (const Entry& one : entries) {
        if (std::strcmp(one.first, entry) == 0) {
            return &one;
        }
    }
    return nullptr;
}

PxnError EntryFeature::GetEnum(const char*& entry) {
    entry = value;
    return PxnErrSuccess;
}

PxnError EntryFeature::SetEnum(const char* entry) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const Entry* const found = Find(entry);
    if (!found) {
        return PxnErrInvalidValue;
    }
    value = found->first;
    return PxnErrSuccess;
}

PxnError EntryFeature::GetEnumEntries(std::vector<const char*>& names) {
    for (const Entry& entry : entries) {
        names.push_back(entry.first);
    }
    return PxnErrSuccess;
}

PxnError EntryFeature::IsEnumEntryAvailable(const char* entry, bool& isAvailable) {
    isAvailable = Find(entry) != nullptr;
    return isAvailable ? PxnErrSuccess : PxnErrNotFound;
}

PxnError EntryFeature::GetEnumEntry(const char* entry, PxnFeatureEnumEntry& info) {
    const Entry* const found = Find(entry);
    if (!found) {
        return PxnErrNotFound;
    }
    info = {found->first, found->first, "", "", found->second, PxnVisibilityBeginner};
    return PxnErrSuccess;
}

PxnError TextFeature::GetString(std::string& place) {
    place = text;
    return PxnErrSuccess;
}

PxnError TextFeature::SetString(const char*) {
    return PxnErrInvalidAccess;
}

PxnError TextFeature::GetStringMaxLength(std::uint32_t& length) {
    length = static_cast<std::uint32_t>(text.size());
    return PxnErrSuccess;
}

PxnError AcquisitionCommand::Run() {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    action();
    return PxnErrSuccess;
}

PxnError AcquisitionCommand::IsDone(bool& isDone) {
    isDone = true;
    return PxnErrSuccess;
}

void FeatureSet::Report(const char* name) {
    changes.Post(handle, texts.Intern(name)); // registrations are found by the pool's text
}

std::vector<PxnFeatureInfo> FeatureSet::ListFeatures() {
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    std::vector<PxnFeatureInfo> infos;
    for (const auto& feature : features) {
        infos.push_back(feature->Info());
    }
    return infos;
}

PxnError FeatureSet::With(const char* name,
                          skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) {
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    skeleton::Feature* const feature = Find(name);
    return feature ? use(*feature) : PxnError{PxnErrNotFound};
}

skeleton::Feature* FeatureSet::Find(const char* name) const {
    for (const auto& feature : features) {
        if (std::strcmp(feature->Info().name, name) == 0) {
            return feature.get();
        }
    }
    return nullptr;
}

} // namespace test_camera
