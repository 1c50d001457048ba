// number_features.h - features that are whole or broken numbers
#pragma once

#include "pxnc/simulator/feature.h"

namespace pxsim {

/// Signed 64-bit integer with limits that may move.
class IntFeature : public Feature {
public:
    using Source = std::function<std::int64_t()>;

    IntFeature(Module& module, const char* category, const FeatureRow& row, const Int& type);

    IntFeature& Value(std::int64_t initial);
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
    /// The value next to `value` that the limits allow at present.
    std::int64_t Nearest(std::int64_t value) const;

    PxnError GetInt(std::int64_t& value) override;
    PxnError SetInt(std::int64_t value) override { return Set(value); }
    PxnError GetIntRange(std::int64_t& lowest, std::int64_t& highest) override;
    PxnError GetIntIncrement(std::int64_t& step) override;
    PxnError GetIntValueSet(std::vector<std::int64_t>& values) override;

    std::int64_t SelectorValue() const override { return Get(); }
    std::vector<std::string> States() const override;
    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    SelectedValues<std::int64_t> store;
    Source min, max, increment, computed;
    std::function<PxnError(std::int64_t)> sink;
    std::vector<std::int64_t> validValues;
};

/// Double with limits that may move.
class FloatFeature : public Feature {
public:
    using Source = std::function<double()>;

    FloatFeature(Module& module, const char* category, const FeatureRow& row, const Float& type);

    FloatFeature& ValueFor(std::int64_t selectorKey, double initial);
    FloatFeature& Max(Source source);
    FloatFeature& Computed(Source source);

    double Get() const;
    PxnError Set(double value);
    void Put(double value);
    double UpperLimit() const { return max(); }

    PxnError GetFloat(double& value) override;
    PxnError SetFloat(double value) override { return Set(value); }
    PxnError GetFloatRange(double& lowest, double& highest) override;

    bool PutText(const std::string& text) override;
    void Reset() override { store.Reset(); }
    std::any Snapshot() const override { return store.Values(); }
    void Restore(const std::any& saved) override;

private:
    SelectedValues<double> store;
    Source min, max, computed;
};

} // namespace pxsim
