// feature_access.h - access to a module's feature by name
#pragma once

#include "apps/common/json_text.h"
#include "pxnc.h"
#include "sdk/feature.h"

#include <optional>
#include <string>
#include <vector>

class CMivoraKVNPyxenClass;
class FeatureCache;

JsonValue ToJson(const pyxen::FeatureValue& value);

/// The limits of a feature's values. Members that do not apply to its type or cannot be read are
/// empty.
struct ShownRange {
    struct Entry {
        std::string name;
        bool available;
    };

    std::optional<JsonValue> least;
    std::optional<JsonValue> most;
    std::optional<JsonValue> increment;
    std::optional<JsonValue> maxLength; ///< bytes
    std::optional<std::vector<Entry>> entries;
    bool isWholeType = false; ///< least and most are those of the type itself
};

/// A feature of an initialised grabber. Valid as long as the module's cache stays filled.
class FeatureAccess {
public:
    FeatureAccess(FeatureCache& moduleCache, const PxnFeatureInfo& record);

    /// Finds "MODULE/FEATURE", or a whole path including the categories. Throws CommandFailure that
    /// names the unknown part.
    static FeatureAccess Find(CMivoraKVNPyxenClass& grabber, const std::string& path);
    /// The cache of a module by name, ignoring case; the system is "PxnSystem". Null if there is
    /// none.
    static FeatureCache* FindModule(CMivoraKVNPyxenClass& grabber, const std::string& name);
    /// The same, but throws CommandFailure with the known names.
    static FeatureCache& RequireModule(CMivoraKVNPyxenClass& grabber, const std::string& name);

    FeatureCache& Cache() const { return cache; }
    const PxnFeatureInfo& Info() const { return info; }
    const pyxen::Feature& Get() const { return feature; }
    std::string Path() const;
    const char* TypeName() const;
    /// "RW", "R", "W" or "-": the access that the SDK currently allows.
    std::string Access() const;
    /// Empty if there is no value or it cannot be read.
    std::optional<pyxen::FeatureValue> Value() const;
    ShownRange Range() const;
    /// The value as printed by "get". Throws CommandFailure.
    std::string ValueText() const;

private:
    std::vector<ShownRange::Entry> Entries(const pyxen::FeatureRange& range) const;

    FeatureCache& cache;
    const PxnFeatureInfo& info;
    const pyxen::Feature feature;
};
