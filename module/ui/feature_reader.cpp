// feature_reader.cpp - what the feature control dialog reads of a feature
#include "ui/feature_reader.h"

#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"
#include "ui/value_text.h"

void FeatureReader::Report(NameFormat format, const std::string& name, PxnError error) const {
    ReportSdkError(FormatText(format, name.c_str()).c_str(), error, log);
}

void FeatureReader::Report(NameFormat format, const std::string& name) const {
    log.Error(format, name.c_str());
}

bool FeatureReader::IsWriteable(const FeatureLeaf& leaf) const {
    PxnBool readable = 0;
    PxnBool writeable = 0;
    return api.PxnFeatureAccessQuery(leaf.handle, leaf.name.c_str(), &readable, &writeable) ==
               PxnErrSuccess &&
           writeable;
}

// ---- numbers ----

PxnError FeatureReader::ReadRange(const FeatureLeaf& leaf, IntegerForm& form) const {
    return api.PxnFeatureIntRangeQuery(leaf.handle, leaf.name.c_str(), &form.min, &form.max);
}

PxnError FeatureReader::ReadRange(const FeatureLeaf& leaf, FloatForm& form) const {
    return api.PxnFeatureFloatRangeQuery(leaf.handle, leaf.name.c_str(), &form.min, &form.max);
}

PxnError FeatureReader::ReadValue(const FeatureLeaf& leaf, IntegerForm& form) const {
    return api.PxnFeatureIntGet(leaf.handle, leaf.name.c_str(), &form.value);
}

PxnError FeatureReader::ReadValue(const FeatureLeaf& leaf, FloatForm& form) const {
    return api.PxnFeatureFloatGet(leaf.handle, leaf.name.c_str(), &form.value);
}

template <class Form>
std::optional<Form> FeatureReader::ReadNumber(const FeatureLeaf& leaf, NameFormat rangeFailed,
                                              NameFormat valueFailed) const {
    Form form;
    if (const PxnError error = ReadRange(leaf, form)) {
        Report(rangeFailed, leaf.name, error);
        return std::nullopt;
    }
    if (const PxnError error = ReadValue(leaf, form)) {
        Report(valueFailed, leaf.name, error);
        return std::nullopt;
    }
    return form;
}

std::optional<IntegerForm> FeatureReader::IntegerToEdit(const FeatureLeaf& leaf) const {
    return ReadNumber<IntegerForm>(
        leaf, "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of integer %s",
        "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of integer %s");
}

std::optional<IntegerForm> FeatureReader::IntegerToRefresh(const FeatureLeaf& leaf) const {
    return ReadNumber<IntegerForm>(
        leaf, "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of integer %s",
        "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query integer %s");
}

std::optional<FloatForm> FeatureReader::FloatToEdit(const FeatureLeaf& leaf) const {
    return ReadNumber<FloatForm>(
        leaf, "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of float %s",
        "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of float %s");
}

std::optional<FloatForm> FeatureReader::FloatToRefresh(const FeatureLeaf& leaf) const {
    return ReadNumber<FloatForm>(
        leaf, "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of float %s",
        "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query float %s");
}

// ---- enumerations ----

bool FeatureReader::GetEnumRange(PxnHandle handle, const char* name, bool onlyAvailable,
                                 EnumRange& range) const {
    std::uint32_t count = 0;
    if (const PxnError error = api.PxnFeatureEnumRangeQuery(handle, name, nullptr, 0, &count)) {
        Report(
            "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to query number of enum entries for feature %s",
            name, error);
        return false;
    }
    MallocArray<const char*> entries;
    if (!entries.Resize(count)) {
        log.Error(
            "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Could not allocate memory for enum entries");
        return false;
    }
    std::uint32_t found = 0;
    if (const PxnError error =
            api.PxnFeatureEnumRangeQuery(handle, name, entries.Get(), count, &found)) {
        Report("CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to enum entry range of feature %s",
               name, error);
        return false;
    }
    // Entries that have gone since they were counted.
    for (std::uint32_t index = found; index < count; ++index) {
        entries[index] = nullptr;
    }
    for (std::uint32_t index = 0; onlyAvailable && index < count; ++index) {
        PxnBool available = 0;
        if (!entries[index]) {
            continue;
        }
        if (const PxnError error =
                api.PxnFeatureEnumIsAvailable(handle, name, entries[index], &available)) {
            Report(
                "CKVNPyxenFeatureCtrlDialog::GetEnumRange: Failed to get availability of feature %s",
                name, error);
            available = 0;
        }
        if (!available) {
            entries[index] = nullptr;
        }
    }
    range.entries = std::move(entries);
    range.count = count;
    return true;
}

std::optional<EnumForm> FeatureReader::ReadEnum(const FeatureLeaf& leaf, NameFormat rangeFailed,
                                                NameFormat valueFailed) const {
    EnumForm form;
    if (!GetEnumRange(leaf.handle, leaf.name.c_str(), true, form.range)) {
        Report(rangeFailed, leaf.name);
        return std::nullopt;
    }
    if (const PxnError error = api.PxnFeatureEnumGet(leaf.handle, leaf.name.c_str(), &form.value)) {
        Report(valueFailed, leaf.name, error);
        return std::nullopt;
    }
    return form;
}

std::optional<EnumForm> FeatureReader::EnumToEdit(const FeatureLeaf& leaf) const {
    return ReadEnum(leaf,
                    "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could not query range of enum %s",
                    "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get enum value %s");
}

std::optional<EnumForm> FeatureReader::EnumToRefresh(const FeatureLeaf& leaf) const {
    return ReadEnum(
        leaf, "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query range of enum %s",
        "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not value of enum %s");
}

// ---- booleans and strings ----

std::optional<bool> FeatureReader::ReadBool(const FeatureLeaf& leaf, NameFormat failed) const {
    PxnBool value = 0;
    if (const PxnError error = api.PxnFeatureBoolGet(leaf.handle, leaf.name.c_str(), &value)) {
        Report(failed, leaf.name, error);
        return std::nullopt;
    }
    return value != 0;
}

std::optional<bool> FeatureReader::BoolToEdit(const FeatureLeaf& leaf) const {
    return ReadBool(leaf,
                    "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get boolean value %s");
}

std::optional<bool> FeatureReader::BoolToRefresh(const FeatureLeaf& leaf) const {
    return ReadBool(leaf,
                    "CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could not query boolean %s");
}

std::optional<std::string> FeatureReader::StringToEdit(const FeatureLeaf& leaf) const {
    std::uint32_t size = 0;
    if (const PxnError error =
            api.PxnFeatureStringGet(leaf.handle, leaf.name.c_str(), nullptr, 0, &size)) {
        Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get length of string %s",
               leaf.name, error);
        return std::nullopt;
    }
    // One byte more than asked for, so that what comes back always ends.
    MallocArray<char> text;
    if (!text.Resize(std::size_t{size} + 1)) {
        Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Could not allocate memory for string %s",
               leaf.name);
        return std::nullopt;
    }
    text[0] = '\0';
    text[size] = '\0';
    if (const PxnError error =
            api.PxnFeatureStringGet(leaf.handle, leaf.name.c_str(), text.Get(), size, &size)) {
        Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get value of string %s",
               leaf.name, error);
        return std::nullopt;
    }
    return text.Get();
}

std::optional<std::string> FeatureReader::StringToRefresh(const FeatureLeaf& leaf) const {
    std::string text;
    if (const PxnError error = api.GetStringFeature(leaf.handle, leaf.name.c_str(), text)) {
        Report("CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm: Could get string %s", leaf.name,
               error);
        return std::nullopt;
    }
    return text;
}

// ---- descriptions ----

std::string FeatureReader::RangeText(const FeatureLeaf& leaf,
                                     const PxnFeatureInfo& description) const {
    const char* const unit = description.unit ? description.unit : "";
    switch (description.featureDataType) {
    case PxnFeatureDataInt: {
        IntegerForm form;
        if (const PxnError error = ReadRange(leaf, form)) {
            Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of integer %s",
                   leaf.name, error);
            return {};
        }
        return FormatText("Min: %I64d%s, Max: %I64d%s", form.min, unit, form.max, unit);
    }
    case PxnFeatureDataFloat: {
        FloatForm form;
        if (const PxnError error = ReadRange(leaf, form)) {
            Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to get range of float %s",
                   leaf.name, error);
            return {};
        }
        return "Min: " + FormatFloat(form.min) + unit + ", Max: " + FormatFloat(form.max) + unit;
    }
    case PxnFeatureDataEnum: {
        EnumRange range;
        if (!GetEnumRange(leaf.handle, leaf.name.c_str(), true, range)) {
            Report("CKVNPyxenFeatureCtrlDialog::AttrSelected: Could not query range of enum %s",
                   leaf.name);
            return {};
        }
        std::string options;
        for (std::uint32_t index = 0; index < range.count; ++index) {
            if (const char* const entry = range.entries[index]) {
                options += (options.empty() ? "" : ", ") + std::string(entry);
            }
        }
        return "Possible options: " + options;
    }
    default:
        return {};
    }
}
