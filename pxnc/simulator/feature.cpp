#include "pxnc/simulator/feature.h"

#include "pxnc/simulator/module.h"

#include <cassert>
#include <cctype>

namespace pxsim {
namespace {

// "ExposureTime" reads "Exposure Time"; runs of capitals stay together.
std::string DisplayNameOf(const char* name) {
    std::string text;
    for (const char* c = name; *c != 0; ++c) {
        const bool upper = std::isupper(static_cast<unsigned char>(*c)) != 0;
        const bool afterLower = c != name && std::islower(static_cast<unsigned char>(c[-1])) != 0;
        const bool beforeLower = std::islower(static_cast<unsigned char>(c[1])) != 0;
        if (upper && c != name && (afterLower || beforeLower)) {
            text += ' ';
        }
        text += *c;
    }
    return text;
}

} // namespace

Feature::Feature(Module& module, const char* name, std::uint32_t dataType) : owner(module) {
    info.name = module.Strings().Intern(name);
    info.category = "/";
    info.displayName = module.Strings().Intern(DisplayNameOf(name));
    info.tooltip = "";
    info.description = "";
    info.sfncNamespace = "Standard";
    info.unit = "";
    info.representation = "";
    info.featureDataType = dataType;
    info.featureFlags = PxnFeatureFlagRead | PxnFeatureFlagWrite;
    info.visibility = PxnVisibilityBeginner;
    info.isStreamable = 1;
}

PxnError Feature::GetAccess(bool& readable, bool& writable) {
    readable = IsReadable();
    writable = IsWritable();
    return PxnErrSuccess;
}

std::vector<std::string> Feature::Selected() {
    std::vector<std::string> names;
    for (const Feature* one : selected) {
        if (!one->IsHidden()) {
            names.emplace_back(one->Name());
        }
    }
    return names;
}

bool Feature::IsReadable() const {
    return (info.featureFlags & PxnFeatureFlagRead) != 0 && (!available || available());
}

bool Feature::IsWritable() const {
    return (info.featureFlags & PxnFeatureFlagWrite) != 0 && (!available || available()) &&
           (!lockedWhileStreaming || !owner.IsStreaming()) && (!writableWhen || writableWhen());
}

bool Feature::IsStored() const {
    const std::uint32_t both = PxnFeatureFlagRead | PxnFeatureFlagWrite;
    return info.isStreamable != 0 && (info.featureFlags & both) == both &&
           info.featureDataType != PxnFeatureDataCommand;
}

std::int64_t Feature::SelectorKey() const {
    constexpr std::int64_t kStates = 1 << 20;
    std::int64_t key = 0;
    for (const Feature* selector : selectors) {
        key = key * kStates + selector->SelectorValue();
    }
    return key;
}

void Feature::Changed() {
    if (reaction) {
        reaction();
    }
    owner.Invalidate(*this);
}

void Feature::SetSelector(const char* name) {
    Feature* selector = owner.Find(name);
    assert(selector != nullptr);
    selectors.push_back(selector);
    selector->selected.push_back(this);
    selector->info.hasSelectedFeatures = 1;
}

} // namespace pxsim
