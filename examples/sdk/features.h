// features.h - the features of a module, by their types
#pragma once

#include "pxnc/skeleton/feature.h"
#include "pxnc/skeleton/invalidations.h"
#include "pxnc/skeleton/module.h"
#include "pxnc/skeleton/text_pool.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace test_camera {

/// What is fixed about a feature. All texts live as long as the program.
struct Description {
    const char* name;
    const char* category;
    const char* text;
    const char* unit = "";
    /// Whether it can be written now; null for what never can.
    std::function<bool()> isWritable = nullptr;
};

/// What all types have in common. The module's lock is held during every operation.
class BasicFeature : public skeleton::Feature {
public:
    BasicFeature(Description featureDescription, std::uint32_t dataType)
        : description(std::move(featureDescription)), type(dataType) {}

    std::uint32_t DataType() const final { return type; }
    PxnFeatureInfo Info() const final;
    PxnError GetAccess(bool& readable, bool& writable) final;

protected:
    bool IsWritable() const { return description.isWritable && description.isWritable(); }

private:
    const Description description;
    const std::uint32_t type;
};

class IntegerFeature final : public BasicFeature {
public:
    struct Limits {
        std::int64_t least;
        std::int64_t greatest;
        std::int64_t increment = 1;
    };
    IntegerFeature(Description featureDescription, std::int64_t initial, Limits valueLimits)
        : BasicFeature(std::move(featureDescription), PxnFeatureDataInt),
          limits(valueLimits),
          value(initial) {}

    std::int64_t Value() const { return value; }

    PxnError GetInt(std::int64_t& place) override;
    PxnError SetInt(std::int64_t newValue) override;
    PxnError GetIntRange(std::int64_t& least, std::int64_t& greatest) override;
    PxnError GetIntIncrement(std::int64_t& place) override;

private:
    const Limits limits;
    std::int64_t value;
};

/// An integer that follows from others and cannot be written.
class DerivedInteger final : public BasicFeature {
public:
    DerivedInteger(Description featureDescription, std::function<std::int64_t()> computation)
        : BasicFeature(std::move(featureDescription), PxnFeatureDataInt),
          compute(std::move(computation)) {}

    PxnError GetInt(std::int64_t& place) override;
    PxnError SetInt(std::int64_t newValue) override;
    PxnError GetIntRange(std::int64_t& least, std::int64_t& greatest) override;
    PxnError GetIntIncrement(std::int64_t& place) override;

private:
    const std::function<std::int64_t()> compute;
};

class FloatFeature final : public BasicFeature {
public:
    FloatFeature(Description featureDescription, double initial, double leastValue,
                 double greatestValue)
        : BasicFeature(std::move(featureDescription), PxnFeatureDataFloat),
          least(leastValue),
          greatest(greatestValue),
          value(initial) {}

    double Value() const { return value; }

    PxnError GetFloat(double& place) override;
    PxnError SetFloat(double newValue) override;
    PxnError GetFloatRange(double& leastPlace, double& greatestPlace) override;

private:
    const double least;
    const double greatest;
    double value;
};

/// Entries are numbered as given; the first one is selected at first.
class EntryFeature final : public BasicFeature {
public:
    using Entry = std::pair<const char*, std::int64_t>;
    EntryFeature(Description featureDescription, skeleton::TextPool& pool,
                 std::vector<Entry> newEntries);

    PxnError GetEnum(const char*& entry) override;
    PxnError SetEnum(const char* entry) override;
    PxnError GetEnumEntries(std::vector<const char*>& names) override;
    PxnError IsEnumEntryAvailable(const char* entry, bool& isAvailable) override;
    PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& info) override;

private:
    const Entry* Find(const char* entry) const;

    std::vector<Entry> entries; // names are texts of the pool
    const char* value;
};

/// A text that does not change.
class TextFeature final : public BasicFeature {
public:
    TextFeature(Description featureDescription, std::string fixedText)
        : BasicFeature(std::move(featureDescription), PxnFeatureDataString),
          text(std::move(fixedText)) {}

    PxnError GetString(std::string& place) override;
    PxnError SetString(const char* newText) override;
    PxnError GetStringMaxLength(std::uint32_t& length) override;

private:
    const std::string text;
};

/// A command that starts or stops the acquisition, and is done when it returns.
class AcquisitionCommand final : public BasicFeature {
public:
    AcquisitionCommand(Description featureDescription, std::function<void()> commandAction)
        : BasicFeature(std::move(featureDescription), PxnFeatureDataCommand),
          action(std::move(commandAction)) {}

    PxnError Run() override;
    bool IsStartOrStop() const override { return true; }
    PxnError IsDone(bool& isDone) override;

private:
    const std::function<void()> action;
};

/// A module: some features under one lock. Features are added before it is used.
class FeatureSet : public skeleton::Module {
public:
    FeatureSet(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher)
        : texts(pool), changes(dispatcher) {}

    template <typename T, typename... Arguments>
    T& Add(Arguments&&... arguments) {
        auto added = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        T& feature = *added;
        features.push_back(std::move(added));
        return feature;
    }
    /// The handle that changes are reported for.
    void SetHandle(PxnHandle newHandle) { handle = newHandle; }
    /// Reports a change of the feature. Any thread, any lock.
    void Report(const char* name);

    std::vector<PxnFeatureInfo> ListFeatures() override;
    PxnError With(const char* name,
                  skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) override;
    void OnWritten(const char* name) override { Report(name); }

private:
    skeleton::Feature* Find(const char* name) const;

    skeleton::TextPool& texts;
    skeleton::Invalidations& changes;
    std::recursive_mutex mutex; // guards the values
    std::vector<std::unique_ptr<BasicFeature>> features;
    std::atomic<PxnHandle> handle = nullptr;
};

} // namespace test_camera
