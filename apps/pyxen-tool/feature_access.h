// feature_access.h - one feature of one module, by name and as text
#pragma once

#include "apps/common/json_text.h"
#include "pxnc.h"

#include <optional>
#include <string>

class CMivoraKVNPyxenClass;
class CPyxenAPIAccess;
class FeatureCache;

/// A feature of an initialised grabber. Lives as long as the module's cache stays filled.
class FeatureAccess {
public:
    FeatureAccess(CPyxenAPIAccess& access, FeatureCache& moduleCache, const PxnFeatureInfo& record)
        : api(access), cache(moduleCache), info(record) {}

    /// Finds "MODULE/FEATURE", or the whole path with the categories between. Throws CommandFailure
    /// that names what is unknown.
    static FeatureAccess Find(CMivoraKVNPyxenClass& grabber, const std::string& path);
    /// The cache of a module by name, case ignored, the system's "PxnSystem" among them. Null when
    /// there is none.
    static FeatureCache* FindModule(CMivoraKVNPyxenClass& grabber, const std::string& name);
    /// The same; throws CommandFailure with the names that there are.
    static FeatureCache& RequireModule(CMivoraKVNPyxenClass& grabber, const std::string& name);

    FeatureCache& Cache() const { return cache; }
    const PxnFeatureInfo& Info() const { return info; }
    std::string Path() const;
    const char* TypeName() const;
    /// "RW", "R", "W" or "-": what the SDK allows now.
    std::string Access() const;
    /// Null where there is no value, or none can be read.
    Json Value() const;
    /// Adds "min", "max" and "increment", "maxLength", "length" or "entries" as the type has them.
    void AddRange(Json& object) const;
    /// The value as `get` prints it. Throws CommandFailure.
    std::string ValueText() const;

private:
    Json ReadValue(PxnError& error) const;
    Json Entries() const;

    CPyxenAPIAccess& api;
    FeatureCache& cache;
    const PxnFeatureInfo& info;
};
