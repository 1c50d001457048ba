// typed_features.h - the seven types of feature
#pragma once

#include "pxnc/simulator/feature.h"

namespace pxsim {

/// Signed 64-bit integer with limits that may move.
class IntFeature : public FeatureNode<IntFeature> {
public:
    using Source = std::function<std::int64_t()>;

    IntFeature(Module& module, const char* name);

    IntFeature& Value(std::int64_t initial);
    IntFeature& ValueFor(std::int64_t selectorKey, std::int64_t initial);
    IntFeature& Range(std::int64_t lowest, std::int64_t highest, std::int64_t step = 1);
    IntFeature& Min(Source source);
    IntFeature& Max(Source source);
    IntFeature& Increment(Source source);
    /// Only these values, in ascending order.
    IntFeature& ValidValues(std::vector<std::int64_t> values);
    /// The value comes from `source` and is never stored.
    IntFeature& Computed(Source source);
    /// Written values go to `sink` instead of the store.
    IntFeature& Writes(std::function<PxnError(std::int64_t)> sink);

    std::int64_t Get() const;
    PxnError Set(std::int64_t value);
    /// Stores a value that the device itself brings about, without looking at the limits.
    void Put(std::int64_t value);
    /// Counts an event: adds one without raising the invalidation, which the event itself is.
    void Advance() { store.Set(SelectorKey(), Get() + 1); }
    std::int64_t LowerLimit() const { return min(); }
    std::int64_t UpperLimit() const { return max(); }
    std::int64_t Step() const { return increment(); }
    const std::vector<std::int64_t>& ValidValueSet() const { return validValues; }
    /// The value next to `value` that the limits allow at present.
    std::int64_t Nearest(std::int64_t value) const;

    std::int64_t SelectorValue() const override { return Get(); }
    std::vector<std::string> States() const override;
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    SelectedValues<std::int64_t> store;
    Source min, max, increment, computed;
    std::function<PxnError(std::int64_t)> sink;
    std::vector<std::int64_t> validValues;
};

/// Double with limits that may move.
class FloatFeature : public FeatureNode<FloatFeature> {
public:
    using Source = std::function<double()>;

    FloatFeature(Module& module, const char* name);

    FloatFeature& Value(double initial);
    FloatFeature& ValueFor(std::int64_t selectorKey, double initial);
    FloatFeature& Range(double lowest, double highest);
    FloatFeature& Min(Source source);
    FloatFeature& Max(Source source);
    FloatFeature& Computed(Source source);

    double Get() const;
    PxnError Set(double value);
    void Put(double value);
    double LowerLimit() const { return min(); }
    double UpperLimit() const { return max(); }

    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    SelectedValues<double> store;
    Source min, max, computed;
};

/// One of several named entries.
class EnumFeature : public FeatureNode<EnumFeature> {
public:
    struct Entry {
        PxnFeatureEnumEntry info;
        std::function<bool()> available;
    };
    struct NamedValue {
        const char* name;
        std::int64_t value;
    };

    EnumFeature(Module& module, const char* name);

    /// Entries numbered from 0 in the given order.
    EnumFeature& Entries(const std::vector<const char*>& names);
    EnumFeature& EntriesWithValues(const std::vector<NamedValue>& entries);
    EnumFeature& EntryText(const char* entry, const char* description);
    EnumFeature& EntryAvailableWhen(const char* entry, std::function<bool()> condition);
    EnumFeature& Value(const char* entry);
    EnumFeature& ValueFor(std::int64_t selectorKey, const char* entry);
    EnumFeature& Computed(std::function<const char*()> source);

    /// The current entry's shared name.
    const char* Get() const { return entries[CurrentIndex()].info.name; }
    std::int64_t IntValue() const { return entries[CurrentIndex()].info.intValue; }
    bool Is(const char* entry) const;
    /// The same for another state of the selectors.
    bool IsFor(std::int64_t selectorKey, const char* entry) const;
    PxnError Set(const char* entry);
    void Put(const char* entry);
    const std::vector<Entry>& List() const { return entries; }
    /// Null when there is no such entry.
    const Entry* FindEntry(const char* entry) const;

    std::int64_t SelectorValue() const override;
    std::vector<std::string> States() const override;
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    std::size_t IndexOf(const char* entry) const;
    std::size_t CurrentIndex() const;

    std::vector<Entry> entries;
    SelectedValues<std::size_t> store; // by index: several names may share one number
    std::function<const char*()> computed;
};

/// Text of limited length, UTF-8.
class StringFeature : public FeatureNode<StringFeature> {
public:
    using Source = std::function<std::string()>;

    StringFeature(Module& module, const char* name);

    StringFeature& Value(std::string initial);
    StringFeature& ValueFor(std::int64_t selectorKey, std::string initial);
    StringFeature& MaxLength(std::uint32_t bytes);
    StringFeature& Computed(Source source);

    std::string Get() const;
    PxnError Set(const std::string& value);
    void Put(std::string value);
    std::uint32_t Limit() const { return maxLength; }

    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    SelectedValues<std::string> store;
    Source computed;
    std::uint32_t maxLength = 63;
};

class BoolFeature : public FeatureNode<BoolFeature> {
public:
    using Source = std::function<bool()>;

    BoolFeature(Module& module, const char* name);

    BoolFeature& Value(bool initial);
    BoolFeature& ValueFor(std::int64_t selectorKey, bool initial);
    BoolFeature& Computed(Source source);
    /// Written values go to `sink` instead of the store.
    BoolFeature& Writes(std::function<PxnError(bool)> sink);

    bool Get() const;
    /// The same for another state of the selectors.
    bool GetFor(std::int64_t selectorKey) const { return store.Get(selectorKey); }
    PxnError Set(bool value);
    void Put(bool value);

    std::int64_t SelectorValue() const override { return Get() ? 1 : 0; }
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    SelectedValues<bool> store;
    Source computed;
    std::function<PxnError(bool)> sink;
};

class CommandFeature : public FeatureNode<CommandFeature> {
public:
    CommandFeature(Module& module, const char* name);

    CommandFeature& Runs(std::function<PxnError()> action);
    /// Without it a command is done as soon as it ran.
    CommandFeature& DoneWhen(std::function<bool()> condition);

    PxnError Run();
    bool IsDone() const { return !done || done(); }

private:
    std::function<PxnError()> action;
    std::function<bool()> done;
};

/// Bytes of a fixed length.
class RawFeature : public FeatureNode<RawFeature> {
public:
    using Source = std::function<std::string()>;

    RawFeature(Module& module, const char* name);

    RawFeature& Value(std::string initial);
    RawFeature& Computed(Source source);

    std::string Get() const;
    /// `value` must have the feature's length.
    PxnError Set(std::string value);
    void Put(std::string value);

    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;
    PxnError ToText(std::string& text) const override;
    PxnError FromText(const std::string& text) override;

private:
    SelectedValues<std::string> store;
    Source computed;
};

} // namespace pxsim
