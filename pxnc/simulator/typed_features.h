// typed_features.h - the seven types of feature
#pragma once

#include "pxnc/simulator/enum_feature.h"
#include "pxnc/simulator/feature.h"
#include "pxnc/simulator/number_features.h"

namespace pxsim {

/// Text of limited length, UTF-8.
class StringFeature : public Feature {
public:
    StringFeature(Module& module, const char* category, const FeatureRow& row, const String& type);

    StringFeature& ValueFor(std::int64_t selectorKey, std::string initial);

    const std::string& Get() const { return store.Get(SelectorKey()); }
    PxnError Set(const std::string& value);
    void Put(std::string value);

    PxnError GetString(std::string& value) override;
    PxnError SetString(const char* value) override { return Set(value); }
    PxnError GetStringMaxLength(std::uint32_t& bytes) override;

    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    SelectedValues<std::string> store;
    const std::uint32_t maxLength;
};

class BoolFeature : public Feature {
public:
    using Source = std::function<bool()>;

    BoolFeature(Module& module, const char* category, const FeatureRow& row, const Bool& type);

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

    PxnError GetBool(bool& value) override;
    PxnError SetBool(bool value) override { return Set(value); }
    std::int64_t SelectorValue() const override { return Get() ? 1 : 0; }
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    SelectedValues<bool> store;
    Source computed;
    std::function<PxnError(bool)> sink;
};

class CommandFeature : public Feature {
public:
    CommandFeature(Module& module, const char* category, const FeatureRow& row,
                   const Command& type);

    CommandFeature& Runs(std::function<PxnError()> action);

    PxnError Run() override;
    bool IsStartOrStop() const override { return startsOrStops; }
    /// A command is done as soon as it has run.
    PxnError IsDone(bool& isDone) override;

private:
    std::function<PxnError()> action;
    const bool startsOrStops;
};

/// Bytes of a fixed length.
class RawFeature : public Feature {
public:
    RawFeature(Module& module, const char* category, const FeatureRow& row, const Raw& type);

    const std::string& Get() const { return store.Get(SelectorKey()); }
    /// `value` must have the feature's length.
    PxnError Set(std::string value);
    void Put(std::string value);

    PxnError GetRaw(std::vector<char>& bytes) override;
    PxnError SetRaw(const char* bytes, std::uint32_t size) override;
    PxnError GetRawLength(std::uint32_t& length) override;
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    SelectedValues<std::string> store;
};

} // namespace pxsim
