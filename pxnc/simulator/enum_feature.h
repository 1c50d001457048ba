// enum_feature.h - features that are one of several named entries
#pragma once

#include "pxnc/simulator/value_feature.h"

#include <span>
#include <string_view>

namespace pxsim {

/// One of several named entries. The value is the entry's index, as several names may share one
/// number.
class EnumFeature : public ValueFeature<EnumFeature, std::size_t> {
public:
    EnumFeature(Module& module, const char* category, const FeatureRow& row, const Enum& type);

    /// More entries, numbered from 0 in the given order.
    EnumFeature& Entries(std::span<const char* const> names);
    /// All pixel formats, numbered by their codes.
    EnumFeature& PixelFormatEntries();
    EnumFeature& EntryAvailableWhen(const char* entry, std::function<bool()> condition);
    EnumFeature& Value(const char* entry) { return ValueFeature::Value(IndexOf(entry)); }
    EnumFeature& ValueFor(std::int64_t selectorKey, const char* entry) {
        return ValueFeature::ValueFor(selectorKey, IndexOf(entry));
    }
    EnumFeature& Computed(std::function<const char*()> source);

    /// The current entry's shared name.
    const char* EntryName() const { return entries[Get()].info.name; }
    std::int64_t IntValue() const { return entries[Get()].info.intValue; }
    bool Is(const char* entry) const;
    /// The stored entry for a state of the selectors.
    bool IsFor(std::int64_t selectorKey, const char* entry) const;
    void Put(const char* entry) { ValueFeature::Put(IndexOf(entry)); }

    PxnError GetEnum(const char*& entry) override;
    PxnError SetEnum(const char* entry) override;
    PxnError GetEnumEntries(std::vector<const char*>& names) override;
    PxnError IsEnumEntryAvailable(const char* entry, bool& isAvailable) override;
    PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description) override;

    std::int64_t SelectorValue() const override { return static_cast<std::int64_t>(Get()); }
    std::vector<std::string> States() const override;
    bool PutText(const std::string& text) override;

private:
    struct Entry {
        PxnFeatureEnumEntry info;
        std::function<bool()> available;
    };

    void AddEntry(std::string_view name, std::int64_t number);
    /// Null when there is no such entry.
    const Entry* FindEntry(const char* entry) const;
    std::size_t IndexOf(const char* entry) const;

    std::vector<Entry> entries;
};

} // namespace pxsim
