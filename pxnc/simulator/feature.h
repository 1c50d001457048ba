// feature.h - one named feature of a module, whatever its type
#pragma once

#include "pxnc.h"
#include "pxnc/simulator/feature_row.h"
#include "pxnc/skeleton/feature.h"

#include <any>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pxsim {

class Module;

/// What all features have: the description, the access, the selectors and the dependents.
///
/// Made from a row of a table and completed with code while the module is built; after that only
/// the value changes. The caller must hold the owner's mutex.
class Feature : public skeleton::Feature {
public:
    Feature(Module& module, const char* category, const FeatureRow& row, std::uint32_t dataType,
            const char* representation = "");
    Feature(const Feature&) = delete;
    Feature& operator=(const Feature&) = delete;

    /// Neither readable nor writable while `condition` is false.
    Feature& AvailableWhen(std::function<bool()> condition);
    Feature& WritableWhen(std::function<bool()> condition);
    /// Runs after every change of the value.
    Feature& OnChange(std::function<void()> action);

    const char* Name() const { return info.name; }
    std::uint32_t DataType() const override { return info.featureDataType; }
    PxnFeatureInfo Info() const override { return info; }
    PxnError GetAccess(bool& isReadable, bool& isWritable) override;
    std::vector<std::string> Selected() override;

    /// Readable and writable at present, apart from the rights of the handle.
    bool IsReadable() const;
    bool IsWritable() const;
    /// Part of user sets and settings files.
    bool IsStored() const;

    void Hide() { hidden = true; }
    bool IsHidden() const { return hidden; }
    bool IsLockedWhileStreaming() const { return lockedWhileStreaming; }

    const std::vector<Feature*>& SelectedFeatures() const { return selected; }
    const std::vector<Feature*>& Selectors() const { return selectors; }
    const std::vector<std::string>& Dependents() const { return dependents; }
    /// One number for the present state of the selectors.
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
    /// Sets the value even if a host may not write it at present. False when the feature can never
    /// have that value.
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
    /// After a new value: runs the reaction and raises the invalidations.
    void Changed();

    Module& owner;
    PxnFeatureInfo info{};

private:
    std::vector<Feature*> selectors;
    std::vector<Feature*> selected;
    std::vector<std::string> dependents;
    const bool lockedWhileStreaming;
    bool hidden = false;
    std::function<bool()> available;
    std::function<bool()> writable;
    std::function<void()> reaction;
};

/// The words of a text; single spaces separate them.
std::vector<std::string> SplitWords(std::string_view text);

} // namespace pxsim
