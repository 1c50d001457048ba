// feature_access.h - access to a module's feature by name
#pragma once

#include "pxnc.h"
#include "sdk/feature.h"

#include <optional>
#include <string>

class CMivoraKVNPyxenClass;
class FeatureCache;

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

    FeatureCache& Cache() const { return cache; }
    const pyxen::Feature& Get() const { return feature; }
    std::string Path() const;

    /// Parses the text according to the feature's type: numbers in decimal or 0x..., true or false
    /// (also 1 and 0, On and Off), raw bytes in hexadecimal. An entry's name is kept by `text`.
    /// Throws CommandFailure.
    pyxen::FeatureValue Parse(const std::string& text) const;

private:
    const char* TypeName() const;
    template <typename T>
    const T& Require(const std::optional<T>& value, const std::string& text) const;

    FeatureCache& cache;
    const PxnFeatureInfo& info;
    const pyxen::Feature feature;
};
