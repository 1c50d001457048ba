// feature.h - one named feature of a module, whatever its type
#pragma once

#include "pxnc.h"
#include "pxnc/skeleton/feature.h"

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pxsim {

class Module;

/// A feature's value, one for every state of the features that select it.
template <typename T>
class SelectedValues {
public:
    void SetInitial(T value) { initial = std::move(value); }
    void SetInitialFor(std::int64_t key, T value) { initialByKey[key] = std::move(value); }
    const T& Get(std::int64_t key) const {
        if (auto found = values.find(key); found != values.end()) {
            return found->second;
        }
        auto found = initialByKey.find(key);
        return found == initialByKey.end() ? initial : found->second;
    }
    void Set(std::int64_t key, T value) { values[key] = std::move(value); }
    void Reset() { values.clear(); }
    const std::map<std::int64_t, T>& Values() const { return values; }
    using Saved = std::map<std::int64_t, T>;
    void Restore(Saved saved) { values = std::move(saved); }

private:
    T initial{};
    std::map<std::int64_t, T> initialByKey;
    std::map<std::int64_t, T> values;
};

/// What every feature has: its description, its access, its selectors and what depends on it.
///
/// Built once with the module and described by the fluent setters of the typed classes; after
/// that only the value changes. Everything here is used with the owner's mutex held.
class Feature : public skeleton::Feature {
public:
    Feature(Module& module, const char* name, std::uint32_t dataType);
    Feature(const Feature&) = delete;
    Feature& operator=(const Feature&) = delete;

    const char* Name() const { return info.name; }
    std::uint32_t DataType() const override { return info.featureDataType; }
    PxnFeatureInfo Info() const override { return info; }
    PxnError GetAccess(bool& readable, bool& writable) override;
    std::vector<std::string> Selected() override;

    /// Readable and writeable at this moment, apart from the rights of the handle.
    bool IsReadable() const;
    bool IsWritable() const;
    /// Part of what a user set or a settings file keeps.
    bool IsStored() const;

    void Hide() { hidden = true; }
    bool IsHidden() const { return hidden; }
    bool IsLockedWhileStreaming() const { return lockedWhileStreaming; }

    const std::vector<Feature*>& SelectedFeatures() const { return selected; }
    const std::vector<Feature*>& Selectors() const { return selectors; }
    const std::vector<const char*>& Dependents() const { return dependents; }
    /// Tells the selected features apart: one number for the present state of the selectors.
    std::int64_t SelectorKey() const;
    /// The value that this feature contributes as a selector.
    virtual std::int64_t SelectorValue() const { return 0; }

    /// Back to the value at power-on.
    virtual void Reset() {}
    /// All values, for user sets.
    virtual std::any Snapshot() const { return {}; }
    virtual void Restore(const std::any&) {}
    /// All states of a selector, as texts.
    virtual std::vector<std::string> States() const { return {}; }
    /// Gives the feature a value whether a host may write it at present or not. False when it can
    /// never have that value.
    virtual bool PutText(const std::string&) { return false; }

protected:
    /// Sets `value` to what `source` returns, when the feature can be read.
    template <typename Value, typename Source>
    PxnError Read(Value& value, Source source) const {
        if (!IsReadable()) {
            return PxnErrInvalidAccess;
        }
        value = source();
        return PxnErrSuccess;
    }
    /// After a new value: runs the owner's reaction and raises the invalidations.
    void Changed();

    Module& owner;
    PxnFeatureInfo info{};
    std::vector<Feature*> selectors;
    std::vector<Feature*> selected;
    std::vector<const char*> dependents;
    bool lockedWhileStreaming = false;
    bool hidden = false;
    std::function<bool()> available;
    std::function<bool()> writableWhen;
    std::function<void()> reaction;

private:
    template <typename Derived>
    friend class FeatureNode;
    void SetSelector(const char* name);
};

/// The fluent setters, returning the typed feature.
template <typename Derived>
class FeatureNode : public Feature {
public:
    using Feature::Feature;

    /// The category's path; begins with '/'.
    Derived& In(const char* category) {
        info.category = category;
        return Self();
    }
    Derived& Text(const char* description) {
        info.tooltip = description;
        info.description = description;
        return Self();
    }
    Derived& Unit(const char* unit) {
        info.unit = unit;
        return Self();
    }
    Derived& As(const char* representation) {
        info.representation = representation;
        return Self();
    }
    Derived& For(std::uint32_t visibility) {
        info.visibility = visibility;
        return Self();
    }
    /// A feature outside the standard's names.
    Derived& Custom() {
        info.sfncNamespace = "Custom";
        return Self();
    }
    Derived& ReadOnly() {
        info.featureFlags &= ~static_cast<std::uint32_t>(PxnFeatureFlagWrite);
        info.isStreamable = 0;
        return Self();
    }
    Derived& WriteOnly() {
        info.featureFlags &= ~static_cast<std::uint32_t>(PxnFeatureFlagRead);
        info.isStreamable = 0;
        return Self();
    }
    /// Changes by itself; hosts look again every `pollMs` milliseconds.
    Derived& Volatile(std::uint32_t pollMs) {
        info.featureFlags |= PxnFeatureFlagVolatile;
        info.pollingTime = pollMs;
        info.isStreamable = 0;
        return Self();
    }
    /// The device may store another value than the one written.
    Derived& ModifiesOnWrite() {
        info.featureFlags |= PxnFeatureFlagModifyWrite;
        return Self();
    }
    Derived& NotStored() {
        info.isStreamable = 0;
        return Self();
    }
    Derived& LockedWhileStreaming() {
        lockedWhileStreaming = true;
        return Self();
    }
    /// Neither readable nor writeable while `condition` is false.
    Derived& AvailableWhen(std::function<bool()> condition) {
        available = std::move(condition);
        return Self();
    }
    Derived& WritableWhen(std::function<bool()> condition) {
        writableWhen = std::move(condition);
        return Self();
    }
    /// One value per state of the named feature, which was added before.
    Derived& SelectedBy(const char* selector) {
        SetSelector(selector);
        return Self();
    }
    /// Features whose value, limits or access may change with this one; those of the same
    /// module, in any order of definition.
    Derived& Affects(std::vector<const char*> names) {
        dependents.insert(dependents.end(), names.begin(), names.end());
        return Self();
    }
    Derived& OnChange(std::function<void()> action) {
        reaction = std::move(action);
        return Self();
    }

private:
    Derived& Self() { return static_cast<Derived&>(*this); }
};

} // namespace pxsim
