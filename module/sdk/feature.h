// feature.h - one feature of one module of the camera SDK
#pragma once

#include "pxnc.h"
#include "sdk/feature_value.h"

#include <cstdint>
#include <type_traits>
#include <vector>

class CPyxenAPIAccess;

namespace pyxen {

/// What a feature takes at present. Only the members of the feature's type are filled.
struct FeatureRange {
    template <typename Number>
    struct Limits {
        Number least{};
        Number most{};

        bool Contain(Number value) const { return least <= value && value <= most; }
    };

    Limits<std::int64_t> integers;
    Limits<double> floats;
    std::uint32_t longestText = 0;    ///< bytes, without the terminator
    std::vector<const char*> entries; ///< the SDK's names; null for one that the SDK left out

    template <typename Number>
    const Limits<Number>& LimitsOf() const {
        if constexpr (std::is_same_v<Number, double>) {
            return floats;
        } else {
            return integers;
        }
    }
    /// By the type of the value: within the limits (included), short enough, or the text of one of
    /// the entries. Booleans and bytes always fit.
    bool Contains(const FeatureValue& value) const;
};

/// The step at which reading something of unknown length failed. What is read in one call fails at
/// kContent.
enum class FeatureStep {
    kLength,  ///< asking for the length
    kMemory,  ///< no memory for it; the code is PxnErrOther
    kContent, ///< reading itself
};

/// One feature, named by its module's handle. Cheap to copy. Access object and name are not owned;
/// the access object must be valid whenever a call is made. Every function returns the SDK's code.
/// After a failure ranges and values are unchanged, booleans are false. Never throws. Any thread.
class Feature {
public:
    Feature(const CPyxenAPIAccess& access, PxnHandle moduleHandle, const char* featureName,
            FeatureType featureType)
        : api(&access), handle(moduleHandle), name(featureName), type(featureType) {}

    const char* Name() const { return name; }
    FeatureType Type() const { return type; }

    PxnError Access(bool& readable, bool& writable) const;
    /// One kind of range for each type that has any; success without a call for the other types.
    PxnError Range(FeatureRange& range, FeatureStep* failed = nullptr) const;
    /// The distance of valid integers.
    PxnError Increment(std::int64_t& increment) const;
    /// Whether an entry can be selected at present.
    PxnError IsAvailable(const char* entry, bool& available) const;
    /// The number of an entry, available or not.
    PxnError EntryNumber(const char* entry, std::int64_t& number) const;
    /// What this feature selects; null for a name that the SDK left out.
    PxnError Selected(std::vector<const char*>& names, FeatureStep* failed = nullptr) const;
    /// PxnErrWrongType, without a call, for types without a value.
    PxnError Read(FeatureValue& value, FeatureStep* failed = nullptr) const;
    /// Writes by the value's type.
    PxnError Write(const FeatureValue& value) const;
    /// Starts a command, and asks whether it has been carried out.
    PxnError Run() const;
    PxnError IsDone(bool& done) const;

private:
    PxnError ReadText(FeatureValue& value, FeatureStep& step) const;

    const CPyxenAPIAccess* api;
    PxnHandle handle;
    const char* name;
    FeatureType type;
};

} // namespace pyxen
