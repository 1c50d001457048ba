// value_feature.h - features that hold a value
#pragma once

#include "pxnc/simulator/feature.h"

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace pxsim {

/// A feature with one value for every state of the features that select it.
template <typename Derived, typename T>
class ValueFeature : public Feature {
public:
    /// The value at power-on, for all states or for one.
    Derived& Value(T newInitial) {
        initial = std::move(newInitial);
        return Self();
    }
    Derived& ValueFor(std::int64_t selectorKey, T newInitial) {
        initialByKey[selectorKey] = std::move(newInitial);
        return Self();
    }
    /// The value comes from `source` and is never stored.
    Derived& Computed(std::function<T()> source) {
        computed = std::move(source);
        return Self();
    }
    /// Written values go to `newSink` instead of the store.
    Derived& Writes(std::function<PxnError(T)> newSink) {
        sink = std::move(newSink);
        return Self();
    }

    T Get() const { return computed ? computed() : GetFor(SelectorKey()); }
    /// What is stored for a state of the selectors.
    const T& GetFor(std::int64_t selectorKey) const {
        if (auto found = values.find(selectorKey); found != values.end()) {
            return found->second;
        }
        auto found = initialByKey.find(selectorKey);
        return found == initialByKey.end() ? initial : found->second;
    }
    /// Stores a value that the device itself brings about, without checks.
    void Put(T value) {
        if (GetFor(SelectorKey()) != value) {
            Store(std::move(value));
            Changed();
        }
    }

    void Reset() override { values.clear(); }
    std::any Snapshot() const override { return values; }
    void Restore(const std::any& saved) override { values = std::any_cast<const Values&>(saved); }

protected:
    using Feature::Feature;

    /// Passes on a value that a host writes, after the checks.
    PxnError Write(T value) {
        if (!sink) {
            Put(std::move(value));
            return PxnErrSuccess;
        }
        const PxnError result = sink(std::move(value));
        if (result == PxnErrSuccess) {
            Changed();
        }
        return result;
    }
    /// Without invalidation.
    void Store(T value) { values[SelectorKey()] = std::move(value); }

private:
    using Values = std::map<std::int64_t, T>;
    Derived& Self() { return static_cast<Derived&>(*this); }

    T initial{};
    Values initialByKey;
    Values values;
    std::function<T()> computed;
    std::function<PxnError(T)> sink;
};

} // namespace pxsim
