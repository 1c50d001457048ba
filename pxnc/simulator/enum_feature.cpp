// enum_feature.cpp - features that are one of several named entries
#include "pxnc/simulator/enum_feature.h"

#include "pxnc/simulator/module.h"
#include "pxnc/simulator/pixel_formats.h"
#include "pxnc/skeleton/number_text.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace pxsim {

EnumFeature::EnumFeature(Module& module, const char* category, const FeatureRow& row,
                         const Enum& type)
    : ValueFeature(module, category, row, PxnFeatureDataEnum) {
    for (const std::string& entry : SplitWords(type.entries)) {
        AddEntry(entry, static_cast<std::int64_t>(entries.size()));
    }
    if (type.value) {
        Value(type.value);
    }
}

void EnumFeature::AddEntry(std::string_view name, std::int64_t number) {
    Entry entry{};
    entry.info.name = owner.Strings().Intern(name);
    entry.info.displayName = entry.info.name;
    entry.info.tooltip = "";
    entry.info.description = "";
    entry.info.intValue = number;
    entry.info.visibility = PxnVisibilityBeginner;
    entries.push_back(std::move(entry));
}

EnumFeature& EnumFeature::Entries(std::span<const char* const> names) {
    for (const char* name : names) {
        AddEntry(name, static_cast<std::int64_t>(entries.size()));
    }
    return *this;
}

EnumFeature& EnumFeature::PixelFormatEntries() {
    for (const PixelFormat& format : AllPixelFormats()) {
        AddEntry(format.name, format.code);
    }
    return *this;
}

EnumFeature& EnumFeature::EntryAvailableWhen(const char* entry, std::function<bool()> condition) {
    entries[IndexOf(entry)].available = std::move(condition);
    return *this;
}

EnumFeature& EnumFeature::Computed(std::function<const char*()> source) {
    return ValueFeature::Computed([this, source = std::move(source)] { return IndexOf(source()); });
}

bool EnumFeature::Is(const char* entry) const {
    return std::strcmp(EntryName(), entry) == 0;
}

bool EnumFeature::IsFor(std::int64_t selectorKey, const char* entry) const {
    return std::strcmp(entries[GetFor(selectorKey)].info.name, entry) == 0;
}

PxnError EnumFeature::SetEnum(const char* entry) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const Entry* found = FindEntry(entry);
    if (!found || (found->available && !found->available())) {
        return PxnErrInvalidValue;
    }
    return Write(IndexOf(entry));
}

const EnumFeature::Entry* EnumFeature::FindEntry(const char* entry) const {
    auto found = std::find_if(entries.begin(), entries.end(), [entry](const Entry& candidate) {
        return std::strcmp(candidate.info.name, entry) == 0;
    });
    return found == entries.end() ? nullptr : &*found;
}

PxnError EnumFeature::GetEnum(const char*& entry) {
    return Read(entry, [this] { return EntryName(); });
}

PxnError EnumFeature::GetEnumEntries(std::vector<const char*>& names) {
    for (const Entry& entry : entries) {
        names.push_back(entry.info.name);
    }
    return PxnErrSuccess;
}

PxnError EnumFeature::IsEnumEntryAvailable(const char* entry, bool& isAvailable) {
    const Entry* const found = FindEntry(entry);
    if (!found) {
        return PxnErrNotFound;
    }
    isAvailable = !found->available || found->available();
    return PxnErrSuccess;
}

PxnError EnumFeature::GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description) {
    const Entry* const found = FindEntry(entry);
    if (!found) {
        return PxnErrNotFound;
    }
    description = found->info;
    return PxnErrSuccess;
}

std::vector<std::string> EnumFeature::States() const {
    std::vector<std::string> states;
    for (const Entry& entry : entries) {
        states.emplace_back(entry.info.name);
    }
    return states;
}

bool EnumFeature::PutText(const std::string& text) {
    if (!FindEntry(text.c_str())) {
        return false;
    }
    Put(text.c_str());
    return true;
}

std::size_t EnumFeature::IndexOf(const char* entry) const {
    const Entry* found = FindEntry(entry);
    assert(found);
    return static_cast<std::size_t>(found - entries.data());
}

} // namespace pxsim
