// settings_file.h - what a file with the settings of a camera contains
#pragma once

#include "sdk/feature_value.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

/// A value as a file has it, independent of the SDK.
struct StoredValue {
    FeatureType type = FeatureType::kUnknown;
    std::int64_t integer = 0; ///< integers; booleans as 0 and 1
    double real = 0;
    std::string text; ///< entries by name, texts, bytes

    static StoredValue Of(const FeatureValue& value);
    /// An entry's name is that of this object.
    FeatureValue Get() const;
    /// False for numbers that are not finite, texts with a zero byte and texts that are not UTF-8.
    bool CanBeWritten() const;
    /// As JSON. It can be written.
    std::string Json() const;
    /// For people: without quotes.
    std::string Shown() const;

    bool operator==(const StoredValue&) const = default;
};

/// A selector with the position that a setting belongs to.
struct SelectorPosition {
    std::string feature;
    StoredValue value; ///< an entry, an integer or a boolean

    bool operator==(const SelectorPosition&) const = default;
};

struct StoredSetting {
    std::string module;
    std::string feature;
    std::vector<SelectorPosition> selectors; ///< the outermost first
    StoredValue value;

    /// "GainSelector=Red, ..."; empty for none.
    std::string ShownSelectors() const;

    bool operator==(const StoredSetting&) const = default;
};

/// What the camera was that the settings have been saved from.
struct SettingsCamera {
    std::string vendor;
    std::string model;
    std::string serial;
    std::string id;

    bool operator==(const SettingsCamera&) const = default;
};

struct SettingsFile {
    SettingsCamera camera;
    std::vector<StoredSetting> settings;

    bool operator==(const SettingsFile&) const = default;
};

/// Larger files are not read.
inline constexpr std::size_t kMostSettingsBytes = std::size_t{4} << 20;

/// The content of a file; the same settings give the same bytes.
std::string WriteSettingsText(const SettingsFile& file);
/// False with the reason, and where in the text, when it is not wholly a settings file.
bool ReadSettingsText(std::string_view text, SettingsFile& file, std::string& error);

} // namespace pyxen
