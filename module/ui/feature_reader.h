// feature_reader.h - what the feature control dialog reads of a feature
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "ui/feature_leaf.h"

#include <cstdint>
#include <optional>
#include <string>

class CPyxenAPIAccess;

/// An integer or float feature with its range.
template <class Number>
struct NumberForm {
    Number min{};
    Number max{};
    Number value{};
};
using IntegerForm = NumberForm<std::int64_t>;
using FloatForm = NumberForm<double>;

/// The entries of an enumeration; a null pointer stands for one that is not available.
struct EnumRange {
    MallocArray<const char*> entries;
    std::uint32_t count = 0;
};

struct EnumForm {
    EnumRange range;
    const char* value = nullptr;
};

/// Reads features for the dialog's editors and descriptions. What fails is empty and has its line
/// in the log. The SDK must be valid. User-interface thread only.
class FeatureReader {
public:
    /// `sink` may be null.
    FeatureReader(CPyxenAPIAccess& access, Logger sink) : api(access), log(sink) {}

    bool IsWriteable(const FeatureLeaf& leaf) const;

    // For an editor that is to be made.
    std::optional<IntegerForm> IntegerToEdit(const FeatureLeaf& leaf) const;
    std::optional<FloatForm> FloatToEdit(const FeatureLeaf& leaf) const;
    std::optional<EnumForm> EnumToEdit(const FeatureLeaf& leaf) const;
    std::optional<bool> BoolToEdit(const FeatureLeaf& leaf) const;
    std::optional<std::string> StringToEdit(const FeatureLeaf& leaf) const;

    // For the editor that stands.
    std::optional<IntegerForm> IntegerToRefresh(const FeatureLeaf& leaf) const;
    std::optional<FloatForm> FloatToRefresh(const FeatureLeaf& leaf) const;
    std::optional<EnumForm> EnumToRefresh(const FeatureLeaf& leaf) const;
    std::optional<bool> BoolToRefresh(const FeatureLeaf& leaf) const;
    std::optional<std::string> StringToRefresh(const FeatureLeaf& leaf) const;

    /// The limits or options of a feature, for its description; empty for types without.
    std::string RangeText(const FeatureLeaf& leaf, const PxnFeatureInfo& description) const;

    bool GetEnumRange(PxnHandle handle, const char* name, bool onlyAvailable,
                      EnumRange& range) const;

private:
    PxnError ReadRange(const FeatureLeaf& leaf, IntegerForm& form) const;
    PxnError ReadRange(const FeatureLeaf& leaf, FloatForm& form) const;
    PxnError ReadValue(const FeatureLeaf& leaf, IntegerForm& form) const;
    PxnError ReadValue(const FeatureLeaf& leaf, FloatForm& form) const;
    template <class Form>
    std::optional<Form> ReadNumber(const FeatureLeaf& leaf, NameFormat rangeFailed,
                                   NameFormat valueFailed) const;
    std::optional<EnumForm> ReadEnum(const FeatureLeaf& leaf, NameFormat rangeFailed,
                                     NameFormat valueFailed) const;
    std::optional<bool> ReadBool(const FeatureLeaf& leaf, NameFormat failed) const;
    /// Logs `format`, filled with the feature's name, and the SDK's error.
    void Report(NameFormat format, const std::string& name, PxnError error) const;
    void Report(NameFormat format, const std::string& name) const;

    CPyxenAPIAccess& api;
    const Logger log;
};
