// local_feature.cpp - features that this library computes itself
#include "pxnc/skeleton/local_feature.h"

#include <cstring>
#include <utility>

namespace skeleton {
namespace {

constexpr std::uint32_t kReadOnly = PxnFeatureFlagRead;
constexpr std::uint32_t kReadWrite = PxnFeatureFlagRead | PxnFeatureFlagWrite;

/// A feature whose access never changes.
class FixedAccessFeature : public DescribedFeature {
public:
    using DescribedFeature::DescribedFeature;

    PxnError GetAccess(bool& readable, bool& writable) override {
        readable = (Info().featureFlags & PxnFeatureFlagRead) != 0;
        writable = (Info().featureFlags & PxnFeatureFlagWrite) != 0;
        return PxnErrSuccess;
    }
};

class TextFeature : public FixedAccessFeature {
public:
    TextFeature(const PxnFeatureInfo& featureInfo, LocalFeatures::Reader<std::string> reader)
        : FixedAccessFeature(featureInfo), read(std::move(reader)) {}

    PxnError GetString(std::string& value) override { return read(value); }
    PxnError SetString(const char*) override { return RequireWritable(); }

    PxnError GetStringMaxLength(std::uint32_t& maxLength) override {
        std::string value;
        const PxnError result = read(value);
        maxLength = static_cast<std::uint32_t>(value.size());
        return result;
    }

private:
    const LocalFeatures::Reader<std::string> read;
};

class IntFeature : public FixedAccessFeature {
public:
    IntFeature(const PxnFeatureInfo& featureInfo, const LocalFeatures::IntLimits& intLimits,
               LocalFeatures::Reader<std::int64_t> reader,
               LocalFeatures::Writer<std::int64_t> writer)
        : FixedAccessFeature(featureInfo),
          limits(intLimits),
          read(std::move(reader)),
          write(std::move(writer)) {}

    PxnError GetInt(std::int64_t& value) override { return read(value); }

    PxnError SetInt(std::int64_t value) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        const bool fits = value >= limits.min && value <= limits.max &&
                          (value - limits.min) % limits.increment == 0;
        return fits ? write(value) : PxnErrInvalidValue;
    }

    PxnError GetIntRange(std::int64_t& min, std::int64_t& max) override {
        min = limits.min;
        max = limits.max;
        return PxnErrSuccess;
    }

    PxnError GetIntIncrement(std::int64_t& increment) override {
        increment = limits.increment;
        return PxnErrSuccess;
    }

private:
    const LocalFeatures::IntLimits limits;
    const LocalFeatures::Reader<std::int64_t> read;
    const LocalFeatures::Writer<std::int64_t> write;
};

class FloatFeature : public FixedAccessFeature {
public:
    FloatFeature(const PxnFeatureInfo& featureInfo,
                 LocalFeatures::Reader<LocalFeatures::FloatLimits> limitsReader,
                 LocalFeatures::Reader<double> reader, LocalFeatures::Writer<double> writer)
        : FixedAccessFeature(featureInfo),
          readLimits(std::move(limitsReader)),
          read(std::move(reader)),
          write(std::move(writer)) {}

    PxnError GetFloat(double& value) override { return read(value); }

    PxnError SetFloat(double value) override {
        LocalFeatures::FloatLimits limits = {};
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        if (const PxnError failed = readLimits(limits)) {
            return failed;
        }
        // Written so that NaN is refused as well.
        return value >= limits.min && value <= limits.max ? write(value) : PxnErrInvalidValue;
    }

    PxnError GetFloatRange(double& min, double& max) override {
        LocalFeatures::FloatLimits limits = {};
        const PxnError result = readLimits(limits);
        min = limits.min;
        max = limits.max;
        return result;
    }

private:
    const LocalFeatures::Reader<LocalFeatures::FloatLimits> readLimits;
    const LocalFeatures::Reader<double> read;
    const LocalFeatures::Writer<double> write;
};

class BoolFeature : public FixedAccessFeature {
public:
    BoolFeature(const PxnFeatureInfo& featureInfo, LocalFeatures::Reader<bool> reader,
                LocalFeatures::Writer<bool> writer)
        : FixedAccessFeature(featureInfo), read(std::move(reader)), write(std::move(writer)) {}

    PxnError GetBool(bool& value) override { return read(value); }

    PxnError SetBool(bool value) override {
        const PxnError refused = RequireWritable();
        return refused != PxnErrSuccess ? refused : write(value);
    }

private:
    const LocalFeatures::Reader<bool> read;
    const LocalFeatures::Writer<bool> write;
};

class EnumFeature : public FixedAccessFeature {
public:
    /// The names in `enumEntries` are texts of the pool.
    EnumFeature(const PxnFeatureInfo& featureInfo, std::vector<LocalFeatures::Entry> enumEntries,
                LocalFeatures::Reader<std::int64_t> reader)
        : FixedAccessFeature(featureInfo),
          entries(std::move(enumEntries)),
          read(std::move(reader)) {}

    PxnError GetAccess(bool& readable, bool& writable) override {
        std::int64_t value = 0;
        readable = read(value) == PxnErrSuccess;
        writable = false;
        return PxnErrSuccess;
    }

    PxnError GetEnum(const char*& entry) override {
        std::int64_t value = 0;
        if (const PxnError failed = read(value)) {
            return failed;
        }
        for (const LocalFeatures::Entry& candidate : entries) {
            if (candidate.value == value) {
                entry = candidate.name;
                return PxnErrSuccess;
            }
        }
        return PxnErrInternalFault;
    }

    PxnError SetEnum(const char*) override { return RequireWritable(); }

    PxnError GetEnumEntries(std::vector<const char*>& names) override {
        for (const LocalFeatures::Entry& entry : entries) {
            names.push_back(entry.name);
        }
        return PxnErrSuccess;
    }

    PxnError IsEnumEntryAvailable(const char* entry, bool& available) override {
        available = true;
        return Find(entry) ? PxnErrSuccess : PxnErrNotFound;
    }

    PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description) override {
        const LocalFeatures::Entry* found = Find(entry);
        if (!found) {
            return PxnErrNotFound;
        }
        description = {found->name, found->name, "", "", found->value, PxnVisibilityBeginner};
        return PxnErrSuccess;
    }

private:
    const LocalFeatures::Entry* Find(const char* name) const {
        for (const LocalFeatures::Entry& entry : entries) {
            if (std::strcmp(entry.name, name) == 0) {
                return &entry;
            }
        }
        return nullptr;
    }

    const std::vector<LocalFeatures::Entry> entries;
    const LocalFeatures::Reader<std::int64_t> read;
};

class CommandFeature : public FixedAccessFeature {
public:
    CommandFeature(const PxnFeatureInfo& featureInfo, LocalFeatures::Action action)
        : FixedAccessFeature(featureInfo), run(std::move(action)) {}

    PxnError Run() override { return run(); }

    PxnError IsDone(bool& done) override {
        // The action ends before Run returns.
        done = true;
        return PxnErrSuccess;
    }

private:
    const LocalFeatures::Action run;
};

} // namespace

PxnFeatureInfo LocalFeatures::Describe(const LocalDescription& description, std::uint32_t dataType,
                                       std::uint32_t flags) const {
    PxnFeatureInfo info = {};
    info.name = texts.Intern(description.name);
    info.category = texts.Intern(description.category);
    info.displayName = texts.Intern(description.displayName);
    info.tooltip = texts.Intern(description.description);
    info.description = info.tooltip;
    info.sfncNamespace = texts.Intern("Custom");
    info.unit = texts.Intern(description.unit);
    info.representation = texts.Intern(description.representation);
    info.featureDataType = dataType;
    info.featureFlags = flags;
    info.visibility = description.visibility;
    return info;
}

void LocalFeatures::AddText(const LocalDescription& description, Reader<std::string> read) {
    features.push_back(std::make_unique<TextFeature>(
        Describe(description, PxnFeatureDataString, kReadOnly), std::move(read)));
}

void LocalFeatures::AddText(const LocalDescription& description, const std::string& value) {
    AddText(description, [value](std::string& text) {
        text = value;
        return PxnErrSuccess;
    });
}

void LocalFeatures::AddInt(const LocalDescription& description, const IntLimits& limits,
                           Reader<std::int64_t> read, Writer<std::int64_t> write) {
    const std::uint32_t flags = write ? kReadWrite : kReadOnly;
    features.push_back(std::make_unique<IntFeature>(Describe(description, PxnFeatureDataInt, flags),
                                                    limits, std::move(read), std::move(write)));
}

void LocalFeatures::AddFloat(const LocalDescription& description, Reader<FloatLimits> limits,
                             Reader<double> read, Writer<double> write) {
    const std::uint32_t flags = write ? kReadWrite : kReadOnly;
    features.push_back(
        std::make_unique<FloatFeature>(Describe(description, PxnFeatureDataFloat, flags),
                                       std::move(limits), std::move(read), std::move(write)));
}

void LocalFeatures::AddBool(const LocalDescription& description, Reader<bool> read,
                            Writer<bool> write) {
    const std::uint32_t flags = write ? kReadWrite : kReadOnly;
    features.push_back(std::make_unique<BoolFeature>(
        Describe(description, PxnFeatureDataBool, flags), std::move(read), std::move(write)));
}

void LocalFeatures::AddEnum(const LocalDescription& description, std::vector<Entry> entries,
                            Reader<std::int64_t> read) {
    for (Entry& entry : entries) {
        entry.name = texts.Intern(entry.name);
    }
    features.push_back(std::make_unique<EnumFeature>(
        Describe(description, PxnFeatureDataEnum, kReadOnly), std::move(entries), std::move(read)));
}

void LocalFeatures::AddCommand(const LocalDescription& description, Action run) {
    features.push_back(std::make_unique<CommandFeature>(
        Describe(description, PxnFeatureDataCommand, PxnFeatureFlagWrite), std::move(run)));
}

} // namespace skeleton
