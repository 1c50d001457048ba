// selector_scope.h - selectors that are moved for a while, and which features they select
#pragma once

#include "services/service_context.h"
#include "services/settings_file.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

/// Which features of one module belong to the position of which selectors.
class SelectorMap {
public:
    explicit SelectorMap(const ServiceModule& describedModule);

    /// The selectors of a feature, and theirs, each before those that belong to it.
    std::vector<const PxnFeatureInfo*> Of(std::string_view feature) const;

private:
    void Collect(const std::string& feature, unsigned depth,
                 std::vector<const PxnFeatureInfo*>& chain) const;

    std::map<std::string, std::vector<const PxnFeatureInfo*>, std::less<>> selectors;
};

/// Moves a selector and moves it back. Nothing is written that the selector has already.
class SelectorScope {
public:
    /// `failures` gets a line when the selector cannot be moved back.
    SelectorScope(const ServiceFeature& movedSelector, std::vector<std::string>& failures);
    ~SelectorScope();
    SelectorScope(const SelectorScope&) = delete;
    SelectorScope& operator=(const SelectorScope&) = delete;

    /// Whether the position could be read.
    const ServiceOutcome& Readable() const { return readable; }
    /// Where the selector stood in the beginning.
    const StoredValue& Position() const { return position; }
    ServiceOutcome Move(const StoredValue& value);
    /// The positions it can be moved to, at most `most`; the present one when it cannot be moved.
    /// False when there are more.
    bool List(std::size_t most, std::vector<StoredValue>& positions) const;

private:
    ServiceFeature selector;
    std::vector<std::string>& restoreFailures;
    ServiceOutcome readable;
    StoredValue position;
    StoredValue present;
};

} // namespace pyxen
