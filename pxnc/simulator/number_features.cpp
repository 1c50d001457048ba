// number_features.cpp - features that are integers or floating-point numbers
#include "pxnc/simulator/number_features.h"

#include "pxnc/simulator/module.h"
#include "pxnc/skeleton/number_text.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace pxsim {
namespace {

template <typename T>
std::function<T()> Always(T value) {
    return [value] {
        return value;
    };
}

} // namespace

// ---- integer ----

IntFeature::IntFeature(Module& module, const char* category, const FeatureRow& row, const Int& type)
    : ValueFeature(module, category, row, PxnFeatureDataInt, "Linear"),
      min(Always(type.min)),
      max(Always(type.max)),
      increment(Always(type.step)) {
    Value(type.value);
}

IntFeature& IntFeature::Min(Source source) {
    min = std::move(source);
    return *this;
}

IntFeature& IntFeature::Max(Source source) {
    max = std::move(source);
    return *this;
}

IntFeature& IntFeature::Increment(Source source) {
    increment = std::move(source);
    return *this;
}

IntFeature& IntFeature::ValidValues(std::vector<std::int64_t> allowed) {
    assert(!allowed.empty() && std::is_sorted(allowed.begin(), allowed.end()));
    min = Always(allowed.front());
    max = Always(allowed.back());
    validValues = std::move(allowed);
    return *this;
}

PxnError IntFeature::Set(std::int64_t value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const std::int64_t low = min();
    const std::int64_t high = max();
    const std::uint64_t step = static_cast<std::uint64_t>(increment());
    const std::uint64_t distance =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(low);
    if (value < low || value > high || distance % step != 0) {
        return PxnErrInvalidValue;
    }
    if (!validValues.empty() &&
        !std::binary_search(validValues.begin(), validValues.end(), value)) {
        return PxnErrInvalidValue;
    }
    return Write(value);
}

PxnError IntFeature::GetInt(std::int64_t& value) {
    return Read(value, [this] { return Get(); });
}

PxnError IntFeature::GetIntRange(std::int64_t& lowest, std::int64_t& highest) {
    lowest = min();
    highest = max();
    return PxnErrSuccess;
}

PxnError IntFeature::GetIntIncrement(std::int64_t& step) {
    step = increment();
    return PxnErrSuccess;
}

PxnError IntFeature::GetIntValueSet(std::vector<std::int64_t>& set) {
    set = validValues;
    return set.empty() ? PxnErrValidValueSetNotPresent : PxnErrSuccess;
}

std::int64_t IntFeature::Nearest(std::int64_t value) const {
    const std::int64_t low = min();
    const std::int64_t high = std::max(low, max());
    const std::int64_t inside = std::clamp(value, low, high);
    return low + (inside - low) / increment() * increment();
}

std::vector<std::string> IntFeature::States() const {
    std::vector<std::string> states;
    for (std::int64_t value = min(); value <= max(); value += increment()) {
        states.push_back(std::to_string(value));
    }
    return states;
}

bool IntFeature::PutText(const std::string& text) {
    std::int64_t value = 0;
    if (!skeleton::ParseInt(text, value) || Nearest(value) != value) {
        return false;
    }
    Put(value);
    return true;
}

// ---- float ----

FloatFeature::FloatFeature(Module& module, const char* category, const FeatureRow& row,
                           const Float& type)
    : ValueFeature(module, category, row, PxnFeatureDataFloat, "Linear"),
      min(type.min),
      max(Always(type.max)) {
    Value(type.value);
}

FloatFeature& FloatFeature::Max(Source source) {
    max = std::move(source);
    return *this;
}

PxnError FloatFeature::SetFloat(double value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (!std::isfinite(value) || value < min || value > max()) {
        return PxnErrInvalidValue;
    }
    return Write(value);
}

PxnError FloatFeature::GetFloat(double& value) {
    return Read(value, [this] { return Get(); });
}

PxnError FloatFeature::GetFloatRange(double& lowest, double& highest) {
    lowest = min;
    highest = max();
    return PxnErrSuccess;
}

bool FloatFeature::PutText(const std::string& text) {
    double value = 0;
    if (!skeleton::ParseFloat(text, value) || !(value >= min && value <= max())) {
        return false;
    }
    Put(value);
    return true;
}

} // namespace pxsim
