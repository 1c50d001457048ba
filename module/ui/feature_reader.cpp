// feature_reader.cpp - what the feature control dialog reads of a feature
#include "ui/feature_reader.h"

#include "sdk/format_text.h"
#include "sdk/sdk_error.h"
#include "ui/value_text.h"

namespace pyxen {

/// What is said of a feature of one type that cannot be read.
struct ReadWords {
    NameFormat range; // of a text, its length
    NameFormat value;
    std::optional<NameFormat> memory = std::nullopt; // else as `value`
};

namespace {

constexpr TypeTable<ReadWords> kEditWords = {{
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of integer %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of integer %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of float %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of float %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could not query range of enum %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get enum value %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get length of string %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of string %s",
     NameFormat(
         "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could not allocate memory for string %s")},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get boolean value %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get boolean value %s"},
}};

constexpr TypeTable<ReadWords> kRefreshWords = {{
    {"CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of integer %s",
     "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query integer %s"},
    {"CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of float %s",
     "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query float %s"},
    {"CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of enum %s",
     "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not value of enum %s"},
    {"CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could get string %s",
     "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could get string %s"},
    {"CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query boolean %s",
     "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query boolean %s"},
}};

} // namespace

void FeatureReader::Report(NameFormat format, const Feature& feature, PxnError error) const {
    ReportSdkError(FormatText(format, feature.Name()).c_str(), error, log);
}

bool FeatureReader::GetEnumRange(const Feature& feature, bool onlyAvailable,
                                 FeatureRange& range) const {
    FeatureRange listed;
    FeatureStep failed{};
    if (const PxnError error = feature.Range(listed, &failed)) {
        if (failed == FeatureStep::kMemory) {
            log.Error(
                "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Could not allocate memory for enum entries");
        } else if (failed == FeatureStep::kLength) {
            Report(
                "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to query number of enum entries for feature %s",
                feature, error);
        } else {
            Report(
                "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to enum entry range of feature %s",
                feature, error);
        }
        return false;
    }
    for (const char*& entry : listed.entries) {
        if (!onlyAvailable || !entry) {
            continue;
        }
        bool available = false;
        if (const PxnError error = feature.IsAvailable(entry, available)) {
            Report(
                "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to get availability of feature %s",
                feature, error);
        }
        if (!available) {
            entry = nullptr;
        }
    }
    range = std::move(listed);
    return true;
}

bool FeatureReader::ReadRange(const Feature& feature, NameFormat failed,
                              FeatureRange& range) const {
    if (feature.Type() == FeatureType::kEnumeration) {
        if (!GetEnumRange(feature, true, range)) {
            log.Error(failed, feature.Name());
            return false;
        }
    } else if (const PxnError error = feature.Range(range)) {
        Report(failed, feature, error);
        return false;
    }
    return true;
}

std::optional<FeatureForm> FeatureReader::ReadForm(const Feature& feature,
                                                   const ReadWords* words) const {
    if (!words) {
        return std::nullopt;
    }
    FeatureForm form;
    // How long a text may be is of no use to its editor.
    if (feature.Type() != FeatureType::kText && !ReadRange(feature, words->range, form.range)) {
        return std::nullopt;
    }
    FeatureStep failed{};
    if (const PxnError error = feature.Read(form.value, &failed)) {
        if (failed == FeatureStep::kMemory && words->memory) {
            log.Error(*words->memory, feature.Name());
        } else {
            Report(failed == FeatureStep::kLength ? words->range : words->value, feature, error);
        }
        return std::nullopt;
    }
    return form;
}

std::optional<FeatureForm> FeatureReader::ToEdit(const Feature& feature) const {
    return ReadForm(feature, kEditWords.Find(feature.Type()));
}

std::optional<FeatureForm> FeatureReader::ToRefresh(const Feature& feature) const {
    return ReadForm(feature, kRefreshWords.Find(feature.Type()));
}

std::string FeatureReader::RangeText(const Feature& feature, const char* unit) const {
    const FeatureType type = feature.Type();
    FeatureRange range;
    if ((type != FeatureType::kInteger && type != FeatureType::kFloat &&
         type != FeatureType::kEnumeration) ||
        !ReadRange(feature, kEditWords.Find(type)->range, range)) {
        return {};
    }
    if (type == FeatureType::kEnumeration) {
        std::string options;
        for (const char* const entry : range.entries) {
            if (entry) {
                options += (options.empty() ? "" : ", ") + std::string(entry);
            }
        }
        return "Possible options: " + options;
    }
    const bool whole = type == FeatureType::kInteger;
    const std::string end = unit ? unit : "";
    return "Min: " +
           (whole ? FormatInteger(range.integers.least) : FormatFloat(range.floats.least)) + end +
           ", Max: " +
           (whole ? FormatInteger(range.integers.most) : FormatFloat(range.floats.most)) + end;
}

} // namespace pyxen
