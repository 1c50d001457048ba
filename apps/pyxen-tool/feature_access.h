// feature_access.h - access to a module's feature by name
#pragma once

#include "apps/common/json_text.h"
#include "pxnc.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class CMivoraKVNPyxenClass;
class CPyxenAPIAccess;
class FeatureCache;

struct EnumEntry {
    std::string name;
};

/// A value of one of the types that can be read and written.
using FeatureValue =
    std::variant<std::int64_t, double, EnumEntry, std::string, bool, std::vector<std::uint8_t>>;

/// Combines lambdas into one visitor for FeatureValue.
template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

JsonValue ToJson(const FeatureValue& value);

/// The limits of a feature's values. Members that do not apply to its type or cannot be read are
/// empty.
struct FeatureRange {
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
    FeatureAccess(CPyxenAPIAccess& access, FeatureCache& moduleCache, const PxnFeatureInfo& record)
        : api(access), cache(moduleCache), info(record) {}

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
    std::string Path() const;
    const char* TypeName() const;
    /// "RW", "R", "W" or "-": the access that the SDK currently allows.
    std::string Access() const;
    /// Empty if there is no value or it cannot be read.
    std::optional<FeatureValue> Value() const;
    FeatureRange Range() const;
    /// The value as printed by "get". Throws CommandFailure.
    std::string ValueText() const;

private:
    std::optional<FeatureValue> ReadValue(PxnError& error) const;
    std::vector<FeatureRange::Entry> Entries() const;

    CPyxenAPIAccess& api;
    FeatureCache& cache;
    const PxnFeatureInfo& info;
};
