// selector_scope.cpp - selectors that are moved for a while, and which features they select
#include "services/selector_scope.h"

#include "sdk/no_throw.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pyxen {

namespace {

constexpr unsigned kMostDepth = 8;

} // namespace

SelectorMap::SelectorMap(const ServiceModule& describedModule) {
    ServiceFeature selector{describedModule, nullptr};
    const FeatureCache& cache = *describedModule.cache;
    for (std::uint32_t index = 0; index < cache.GetFeatureCount(); ++index) {
        selector.info = cache.GetFeatureList() + index;
        std::vector<const char*> names;
        if (!selector.info->hasSelectedFeatures || !*selector.info->name ||
            SelectedBy(selector.Get(), names) != PxnErrSuccess) {
            continue;
        }
        for (const char* const name : names) {
            if (name) {
                selectors[name].push_back(selector.info);
            }
        }
    }
}

std::vector<const PxnFeatureInfo*> SelectorMap::Of(std::string_view feature) const {
    std::vector<const PxnFeatureInfo*> chain;
    Collect(std::string(feature), 0, chain);
    // Selectors that select one another are left out of their own chain.
    std::erase_if(chain, [&](const PxnFeatureInfo* info) { return feature == info->name; });
    return chain;
}

void SelectorMap::Collect(const std::string& feature, unsigned depth,
                          std::vector<const PxnFeatureInfo*>& chain) const {
    const auto found = selectors.find(feature);
    if (found == selectors.end() || depth == kMostDepth) {
        return;
    }
    for (const PxnFeatureInfo* const selector : found->second) {
        if (std::find(chain.begin(), chain.end(), selector) == chain.end()) {
            Collect(selector->name, depth + 1, chain);
        }
        if (std::find(chain.begin(), chain.end(), selector) == chain.end()) {
            chain.push_back(selector);
        }
    }
}

SelectorScope::SelectorScope(const ServiceFeature& movedSelector,
                             std::vector<std::string>& failures)
    : selector(movedSelector), restoreFailures(failures) {
    FeatureValue value;
    readable = selector.Read(value);
    if (!readable) {
        return;
    }
    position = StoredValue::Of(value);
    present = position;
}

SelectorScope::~SelectorScope() {
    if (!readable || present == position) {
        return;
    }
    NoThrow(false, [&] {
        const ServiceOutcome outcome = Move(position);
        if (!outcome) {
            restoreFailures.push_back(outcome.reason + "; it cannot be moved back to " +
                                      position.Shown());
        }
        return true;
    });
}

ServiceOutcome SelectorScope::Move(const StoredValue& value) {
    if (!readable || value == present) {
        return readable;
    }
    if (value.type != position.type) {
        return {MV_SERVICE_WRONG_TYPE,
                selector.Path() + ": " + value.Shown() + " is of another type"};
    }
    if (const PxnError error = selector.Get().Write(value.Get())) {
        return selector.Failure(error, value.Shown());
    }
    present = value;
    return {};
}

bool SelectorScope::List(std::size_t most, std::vector<StoredValue>& positions) const {
    positions = {position};
    const Feature feature = selector.Get();
    bool isReadable = false;
    bool isWritable = false;
    FeatureRange range;
    if (feature.Access(isReadable, isWritable) != PxnErrSuccess || !isWritable ||
        RangeOf(feature, range) != PxnErrSuccess) {
        return true;
    }
    std::vector<StoredValue> all;
    if (position.type == FeatureType::kEnumeration) {
        for (const char* const entry : range.entries) {
            bool isAvailable = false;
            if (entry && feature.IsAvailable(entry, isAvailable) == PxnErrSuccess && isAvailable) {
                all.push_back(StoredValue::Of(EnumEntry{entry}));
            }
        }
    } else if (position.type == FeatureType::kBoolean) {
        all = {StoredValue::Of(false), StoredValue::Of(true)};
    } else if (position.type == FeatureType::kInteger) {
        std::int64_t step = 1;
        if (feature.Increment(step) != PxnErrSuccess || step < 1) {
            step = 1;
        }
        const auto [least, most64] = range.integers;
        // The difference of unsigned numbers is right whatever the signs.
        const std::uint64_t distance =
            most64 < least ? 0
                           : static_cast<std::uint64_t>(most64) - static_cast<std::uint64_t>(least);
        const std::uint64_t steps = distance / static_cast<std::uint64_t>(step);
        for (std::uint64_t index = 0; index <= steps && index <= most; ++index) {
            all.push_back(StoredValue::Of(static_cast<std::int64_t>(
                static_cast<std::uint64_t>(least) + index * static_cast<std::uint64_t>(step))));
        }
    }
    if (all.size() > most) {
        return false;
    }
    if (!all.empty()) {
        positions = std::move(all);
    }
    return true;
}

} // namespace pyxen
