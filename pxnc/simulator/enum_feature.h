// enum_feature.h - features that are one of several named entries
#pragma once

#include "pxnc/simulator/feature.h"

#include <span>

namespace pxsim {

/// One of several named entries.
class EnumFeature : public Feature {
public:
    struct Entry {
        PxnFeatureEnumEntry info;
        std::function<bool()> available;
    };

    EnumFeature(Module& module, const char* category, const FeatureRow& row, const Enum& type);

    /// More entries, numbered from 0 in the given order.
    EnumFeature& Entries(std::span<const char* const> names);
    /// All pixel formats, numbered by their codes.
    EnumFeature& PixelFormatEntries();
    EnumFeature& EntryAvailableWhen(const char* entry, std::function<bool()> condition);
    EnumFeature& Value(const char* entry);
    EnumFeature& ValueFor(std::int64_t selectorKey, const char* entry);
    /// The value comes from `source` and is never stored.
    EnumFeature& Computed(std::function<const char*()> source);

    /// The current entry's shared name.
    const char* Get() const { return entries[CurrentIndex()].info.name; }
    std::int64_t IntValue() const { return entries[CurrentIndex()].info.intValue; }
    bool Is(const char* entry) const;
    /// The same for another state of the selectors.
    bool IsFor(std::int64_t selectorKey, const char* entry) const;
    PxnError Set(const char* entry);
    void Put(const char* entry);
    /// Null when there is no such entry.
    const Entry* FindEntry(const char* entry) const;

    PxnError GetEnum(const char*& entry) override;
    PxnError SetEnum(const char* entry) override { return Set(entry); }
    PxnError GetEnumEntries(std::vector<const char*>& names) override;
    PxnError IsEnumEntryAvailable(const char* entry, bool& isAvailable) override;
    PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description) override;

    std::int64_t SelectorValue() const override;
    std::vector<std::string> States() const override;
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    void AddEntry(std::string_view name, std::int64_t number);
    std::size_t IndexOf(const char* entry) const;
    std::size_t CurrentIndex() const;

    std::vector<Entry> entries;
    SelectedValues<std::size_t> store; // by index: several names may share one number
    std::function<const char*()> computed;
};

} // namespace pxsim
