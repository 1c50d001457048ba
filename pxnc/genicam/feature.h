// feature.h - one feature of a module
#pragma once

#include "pxnc/include/pxnc.h"

#include <cstdint>
#include <string>
#include <vector>

namespace genicam {

/// One feature of any module. What a feature's type does not offer answers PxnErrWrongType.
///
/// Every operation but Info and Name is called with the mutex of the feature's module held. Those
/// that read or write check the access themselves (PxnErrInvalidAccess), and the writing ones the
/// value against the present limits (PxnErrInvalidValue).
class Feature {
public:
    virtual ~Feature() = default;
    Feature(const Feature&) = delete;
    Feature& operator=(const Feature&) = delete;

    const PxnFeatureInfo& Info() const { return info; }
    const char* Name() const { return info.name; }

    virtual PxnError GetAccess(bool& readable, bool& writeable) = 0;
    /// The names of the features that this one selects.
    virtual std::vector<std::string> Selected();

    virtual PxnError GetInt(int64_t& value);
    virtual PxnError SetInt(int64_t value);
    virtual PxnError GetIntRange(int64_t& min, int64_t& max);
    virtual PxnError GetIntIncrement(int64_t& increment);
    /// Whether the type is integer at all; no description known to Aravis has a set of values.
    virtual PxnError GetIntValueSet(std::vector<int64_t>& values);

    virtual PxnError GetFloat(double& value);
    virtual PxnError SetFloat(double value);
    virtual PxnError GetFloatRange(double& min, double& max);

    /// `entry` is a text of the pool.
    virtual PxnError GetEnum(const char*& entry);
    virtual PxnError SetEnum(const char* entry);
    /// The names of all entries that the module implements, available or not; pool texts.
    virtual PxnError GetEnumEntries(std::vector<const char*>& entries);
    virtual PxnError IsEnumEntryAvailable(const char* entry, bool& available);
    virtual PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description);

    virtual PxnError GetString(std::string& value);
    virtual PxnError SetString(const char* value);
    virtual PxnError GetStringMaxLength(uint32_t& maxLength);

    virtual PxnError GetBool(bool& value);
    virtual PxnError SetBool(bool value);

    virtual PxnError Run();
    virtual PxnError IsDone(bool& done);

    virtual PxnError GetRaw(std::vector<char>& bytes);
    virtual PxnError SetRaw(const char* bytes, uint32_t size);
    virtual PxnError GetRawLength(uint32_t& length);

    /// Access, value and limits in one text: it differs when one of them has changed.
    std::string Snapshot();

protected:
    explicit Feature(const PxnFeatureInfo& featureInfo) : info(featureInfo) {}

    /// Success when the feature can be read (written) now, PxnErrInvalidAccess when not.
    PxnError RequireReadable();
    PxnError RequireWriteable();

private:
    const PxnFeatureInfo info;
};

} // namespace genicam
