// number_features.h - features that are integers or floating-point numbers
#pragma once

#include "pxnc/simulator/value_feature.h"

namespace pxsim {

/// Signed 64-bit integer with limits that may move.
class IntFeature : public ValueFeature<IntFeature, std::int64_t> {
public:
    using Source = std::function<std::int64_t()>;

    IntFeature(Module& module, const char* category, const FeatureRow& row, const Int& type);

    IntFeature& Min(Source source);
    IntFeature& Max(Source source);
    IntFeature& Increment(Source source);
    /// Only these values, in ascending order.
    IntFeature& ValidValues(std::vector<std::int64_t> values);

    /// Checks the access and the limits, then writes.
    PxnError Set(std::int64_t value);
    /// Counts an event: adds one without an invalidation, which the event itself raises.
    void Advance() { Store(Get() + 1); }
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

private:
    Source min, max, increment;
    std::vector<std::int64_t> validValues;
};

/// Double with limits that may move.
class FloatFeature : public ValueFeature<FloatFeature, double> {
public:
    using Source = std::function<double()>;

    FloatFeature(Module& module, const char* category, const FeatureRow& row, const Float& type);

    FloatFeature& Max(Source source);

    double UpperLimit() const { return max(); }

    PxnError GetFloat(double& value) override;
    PxnError SetFloat(double value) override;
    PxnError GetFloatRange(double& lowest, double& highest) override;

    bool PutText(const std::string& text) override;

private:
    const double min;
    Source max;
};

} // namespace pxsim
