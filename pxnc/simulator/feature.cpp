// feature.cpp - one named feature of a module, whatever its type
#include "pxnc/simulator/feature.h"

#include "pxnc/simulator/module.h"

#include <algorithm>
#include <cctype>

namespace pxsim {
namespace {

// "ExposureTime" becomes "Exposure Time"; runs of capitals stay together.
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

std::vector<std::string> SplitWords(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        words.emplace_back(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return words;
}

Feature::Feature(Module& module, const char* category, const FeatureRow& row,
                 std::uint32_t dataType, const char* representation)
    : owner(module),
      dependents(SplitWords(row.extra.affects)),
      lockedWhileStreaming((row.flags & kLocked) != 0) {
    const Extra& extra = row.extra;
    info.name = module.Strings().Intern(row.name);
    info.category = module.Strings().Intern(extra.category ? extra.category : category);
    info.displayName = module.Strings().Intern(DisplayNameOf(row.name));
    info.tooltip = row.text;
    info.description = row.text;
    info.sfncNamespace = (row.flags & kCustom) != 0 ? "Custom" : "Standard";
    info.unit = extra.unit;
    info.representation = extra.representation ? extra.representation : representation;
    info.featureDataType = dataType;
    if ((row.flags & kWriteOnly) == 0) {
        info.featureFlags |= PxnFeatureFlagRead;
    }
    if ((row.flags & kReadOnly) == 0) {
        info.featureFlags |= PxnFeatureFlagWrite;
    }
    if (extra.pollingMs) {
        info.featureFlags |= PxnFeatureFlagVolatile;
        info.pollingTime = *extra.pollingMs;
    }
    info.visibility = row.flags & kVisibilityMask;
    const bool stored = (row.flags & (kReadOnly | kWriteOnly | kNotStored)) == 0;
    info.isStreamable = stored && !extra.pollingMs ? 1 : 0;
    for (const std::string& name : SplitWords(extra.selectors)) {
        Feature& selector = module.At(name.c_str());
        selectors.push_back(&selector);
        selector.selected.push_back(this);
        selector.info.hasSelectedFeatures = 1;
    }
}

Feature& Feature::AvailableWhen(std::function<bool()> condition) {
    available = std::move(condition);
    return *this;
}

Feature& Feature::WritableWhen(std::function<bool()> condition) {
    writable = std::move(condition);
    return *this;
}

Feature& Feature::OnChange(std::function<void()> action) {
    reaction = std::move(action);
    return *this;
}

PxnError Feature::GetAccess(bool& isReadable, bool& isWritable) {
    isReadable = IsReadable();
    isWritable = IsWritable();
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
           (!lockedWhileStreaming || !owner.IsStreaming()) && (!writable || writable());
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

} // namespace pxsim
