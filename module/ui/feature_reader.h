// feature_reader.h - what the feature control dialog reads of a feature
#pragma once

#include "sdk/feature.h"
#include "sdk/logger.h"

#include <optional>
#include <string>

namespace pyxen {

struct ReadWords;

/// What an editor shows. Names of entries that are not available are null.
struct FeatureForm {
    FeatureRange range; ///< of numbers and enumerations
    FeatureValue value;
};

/// Reads features for the dialog's editors and descriptions. What fails is empty and has its line
/// in the log. The SDK must be valid. User-interface thread only.
class FeatureReader {
public:
    /// `sink` may be null.
    explicit FeatureReader(Logger sink) : log(sink) {}

    /// For an editor that is to be made.
    std::optional<FeatureForm> ToEdit(const Feature& feature) const;
    /// For the editor that stands.
    std::optional<FeatureForm> ToRefresh(const Feature& feature) const;
    /// The limits or options of a feature, for its description; empty for types without. `unit` may
    /// be null.
    std::string RangeText(const Feature& feature, const char* unit) const;
    /// Lists the entries of an enumeration, as null those that are not available where only the
    /// others are wanted.
    bool GetEnumRange(const Feature& feature, bool onlyAvailable, FeatureRange& range) const;

private:
    std::optional<FeatureForm> ReadForm(const Feature& feature, const ReadWords* words) const;
    bool ReadRange(const Feature& feature, NameFormat failed, FeatureRange& range) const;
    /// Logs `format`, filled with the feature's name, and the SDK's error.
    void Report(NameFormat format, const Feature& feature, PxnError error) const;

    const Logger log;
};

} // namespace pyxen
