// sync_feature.cpp - copies the value of one feature to another
//
// One way for every type; what differs (how a value is read, tested, compared and written, and the
// words for it) stands in one class per type. The irregular words are intended.
#include "platform/text.h"
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"
#include "sync/feature_cache.h"
#include "sync/sync_engine.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

/// A feature that a value is read from or written to.
struct Place {
    PxnHandle handle;
    const char* name;
    std::string path;
};

class ValueCopy {
public:
    ValueCopy(CPyxenAPIAccess& access, Logger sink, const Place& from, const Place& to)
        : api(access), log(sink), source(from), target(to) {}

    /// 1 when the target holds the source's value afterwards, else 0.
    int Run(bool onlyIfDifferent) {
        if (!ReadSource() || !FitsTarget()) {
            return 0;
        }
        if (onlyIfDifferent) {
            bool equal = false;
            if (!CompareWithTarget(equal)) {
                return 0;
            }
            if (equal) {
                log.Information(
                    "CMivoraKVNPyxenClass::SyncFeature: %s already has appropriate value. Skipping update.",
                    target.path.c_str());
                return 1;
            }
        }
        return WriteTarget() ? 1 : 0;
    }

protected:
    ~ValueCopy() = default;
    virtual bool ReadSource() = 0;
    virtual bool FitsTarget() = 0;
    /// False when the target cannot be read.
    virtual bool CompareWithTarget(bool& equal) = 0;
    virtual bool WriteTarget() = 0;

    bool Fail(PxnError code, const std::string& context) {
        ReportSdkError(context.c_str(), code, log);
        return false;
    }

    CPyxenAPIAccess& api;
    Logger log;
    const Place& source;
    const Place& target;
};

const char* Insert(bool can) {
    return can ? "" : "NOT ";
}

class IntCopy final : public ValueCopy {
    using ValueCopy::ValueCopy;

    bool ReadSource() override {
        const PxnError code = api.PxnFeatureIntGet(source.handle, source.name, &value);
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot sync int64 feature from %s to %s (read error)",
                       source.path.c_str(), target.path.c_str()));
    }

    bool FitsTarget() override {
        std::int64_t min = 0;
        std::int64_t max = 0;
        const PxnError code = api.PxnFeatureIntRangeQuery(target.handle, target.name, &min, &max);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature from %s",
                    target.path.c_str()));
        }
        const bool fits = min <= value && value <= max;
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: int64 feature can %sbe synched to %s (value = %I64d, min = %I64d, max = %I64d)",
            Insert(fits), target.path.c_str(), value, min, max);
        return fits;
    }

    bool CompareWithTarget(bool& equal) override {
        std::int64_t present = 0;
        const PxnError code = api.PxnFeatureIntGet(target.handle, target.name, &present);
        equal = present == value;
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot get int64 feature from %s (read error)",
                       target.path.c_str()));
    }

    bool WriteTarget() override {
        const PxnError code = api.PxnFeatureIntSet(target.handle, target.name, value);
        if (code != 0) {
            // The failed write reports a read error on purpose.
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot read int64 feature from %s (read error)",
                    target.path.c_str()));
        }
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: Synched int64 feature from %s to %s (value = %I64d)",
            source.path.c_str(), target.path.c_str(), value);
        return true;
    }

    std::int64_t value = 0;
};

class FloatCopy final : public ValueCopy {
    using ValueCopy::ValueCopy;

    bool ReadSource() override {
        const PxnError code = api.PxnFeatureFloatGet(source.handle, source.name, &value);
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot sync float feature from %s to %s (read error)",
                       source.path.c_str(), target.path.c_str()));
    }

    bool FitsTarget() override {
        double min = 0;
        double max = 0;
        const PxnError code = api.PxnFeatureFloatRangeQuery(target.handle, target.name, &min, &max);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of float feature from %s",
                    target.path.c_str()));
        }
        const bool fits = min <= value && value <= max;
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: float feature can %sbe synched to %s (value = %lf, min = %lf, max = %lf)",
            Insert(fits), target.path.c_str(), value, min, max);
        return fits;
    }

    bool CompareWithTarget(bool& equal) override {
        double present = 0;
        const PxnError code = api.PxnFeatureFloatGet(target.handle, target.name, &present);
        equal = present == value; // without tolerance on purpose
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot get float feature from %s (read error)",
                       target.path.c_str()));
    }

    bool WriteTarget() override {
        const PxnError code = api.PxnFeatureFloatSet(target.handle, target.name, value);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot sync float feature from %s to %s value = %lf, (write error)",
                    source.path.c_str(), target.path.c_str(), value));
        }
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: Synched float feature from %s to %s. value = %lf,",
            source.path.c_str(), target.path.c_str(), value);
        return true;
    }

    double value = 0;
};

class EnumCopy final : public ValueCopy {
    using ValueCopy::ValueCopy;

    bool ReadSource() override {
        const PxnError code = api.PxnFeatureEnumGet(source.handle, source.name, &value);
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot sync enum feature from %s to %s (read error)",
                       source.path.c_str(), target.path.c_str()));
    }

    bool FitsTarget() override {
        std::vector<const char*> names;
        const PxnError code = ListTargetEntries(names);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of enum feature from %s",
                    target.path.c_str()));
        }
        // The pointers are compared, not the texts, on purpose: the SDK shares one text per name.
        const bool fits = value && std::find(names.begin(), names.end(), value) != names.end();
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: enum feature can %sbe synched to %s (value = %s)",
            Insert(fits), target.path.c_str(), value);
        return fits;
    }

    bool CompareWithTarget(bool& equal) override {
        const char* present = nullptr;
        const PxnError code = api.PxnFeatureEnumGet(target.handle, target.name, &present);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot get enum feature from %s (read error)",
                    target.path.c_str()));
        }
        equal = present && platform::CompareNoCase(present, value) == 0;
        return true;
    }

    bool WriteTarget() override {
        const PxnError code = api.PxnFeatureEnumSet(target.handle, target.name, value);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot sync enum feature from %s to %s value = %s (write error)",
                    source.path.c_str(), target.path.c_str(), value));
        }
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: Synched enum feature from %s to %s value = %s.",
            source.path.c_str(), target.path.c_str(), value);
        return true;
    }

    PxnError ListTargetEntries(std::vector<const char*>& names) {
        std::uint32_t count = 0;
        PxnError code =
            api.PxnFeatureEnumRangeQuery(target.handle, target.name, nullptr, 0, &count);
        if (code != 0 || count == 0) {
            return code;
        }
        names.resize(count);
        std::uint32_t found = 0;
        code =
            api.PxnFeatureEnumRangeQuery(target.handle, target.name, names.data(), count, &found);
        names.resize(std::min(count, found));
        return code;
    }

    const char* value = nullptr;
};

class StringCopy final : public ValueCopy {
    using ValueCopy::ValueCopy;

    bool ReadSource() override {
        const PxnError code = api.GetStringFeature(source.handle, source.name, value);
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot query string-feature %s for synching to %s",
                       source.path.c_str(), target.path.c_str()));
    }

    bool FitsTarget() override {
        std::uint32_t maxLength = 0;
        const PxnError code =
            api.PxnFeatureStringMaxlengthQuery(target.handle, target.name, &maxLength);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot query length of string feature from %s",
                    target.path.c_str()));
        }
        const bool fits = value.size() <= maxLength;
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: string feature can %sbe synched to %s (value = %s)",
            Insert(fits), target.path.c_str(), value.c_str());
        return fits;
    }

    bool CompareWithTarget(bool& equal) override {
        std::string present;
        const PxnError code = api.GetStringFeature(target.handle, target.name, present);
        equal = present == value;
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot get string feature from %s (read error)",
                       target.path.c_str()));
    }

    bool WriteTarget() override {
        const PxnError code = api.PxnFeatureStringSet(target.handle, target.name, value.c_str());
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: string feature from %s to %s (value = %s) (write error)",
                    source.path.c_str(), target.path.c_str(), value.c_str()));
        }
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: Synched string feature from %s to %s (value = %s)",
            source.path.c_str(), target.path.c_str(), value.c_str());
        return true;
    }

    std::string value;
};

class BoolCopy final : public ValueCopy {
    using ValueCopy::ValueCopy;

    bool ReadSource() override {
        PxnBool read = 0;
        const PxnError code = api.PxnFeatureBoolGet(source.handle, source.name, &read);
        value = read != 0;
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot sync bool feature %s to %s (read error)",
                       source.path.c_str(), target.path.c_str()));
    }

    bool FitsTarget() override {
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: bool feature can be synched to %s value = %s",
            target.path.c_str(), Text());
        return true;
    }

    bool CompareWithTarget(bool& equal) override {
        PxnBool present = 0;
        const PxnError code = api.PxnFeatureBoolGet(target.handle, target.name, &present);
        equal = (present != 0) == value;
        // The words of the string type are shared on purpose.
        return code == 0 ||
               Fail(
                   code,
                   FormatText(
                       "CMivoraKVNPyxenClass::SyncFeature: Cannot get string feature from %s (read error)",
                       target.path.c_str()));
    }

    bool WriteTarget() override {
        const PxnError code = api.PxnFeatureBoolSet(target.handle, target.name, value ? 1 : 0);
        if (code != 0) {
            return Fail(
                code,
                FormatText(
                    "CMivoraKVNPyxenClass::SyncFeature: Cannot sync bool feature from %s to %s (value = %s) (write error)",
                    source.path.c_str(), target.path.c_str(), Text()));
        }
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: Synched boolean feature from %s to %s. value = %s",
            source.path.c_str(), target.path.c_str(), Text());
        return true;
    }

    const char* Text() const { return value ? "true" : "false"; }

    bool value = false;
};

bool IsReadable(CPyxenAPIAccess& api, const Place& place) {
    PxnBool readable = 0;
    PxnBool writeable = 0;
    return api.PxnFeatureAccessQuery(place.handle, place.name, &readable, &writeable) == 0 &&
           readable != 0;
}

bool IsWriteable(CPyxenAPIAccess& api, const Place& place) {
    PxnBool readable = 0;
    PxnBool writeable = 0;
    return api.PxnFeatureAccessQuery(place.handle, place.name, &readable, &writeable) == 0 &&
           writeable != 0;
}

} // namespace

int SyncEngine::SyncFeature(FeatureCache* source, const char* sourceName, FeatureCache* target,
                            const char* targetName, bool onlyIfDifferent) {
    return NoThrow(
        0, [&] { return CopyValue(source, sourceName, target, targetName, onlyIfDifferent); });
}

int SyncEngine::CopyValue(FeatureCache* source, const char* sourceName, FeatureCache* target,
                          const char* targetName, bool onlyIfDifferent) {
    if (!source || !target) {
        return 0;
    }
    const PxnFeatureInfo* sourceInfo = source->Find(sourceName);
    const PxnFeatureInfo* targetInfo = target->Find(targetName);
    if (!sourceInfo || !targetInfo || sourceInfo->featureDataType != targetInfo->featureDataType) {
        return 0;
    }
    const Place from{source->GetHandle(), sourceName, source->GetFeaturePath(sourceName)};
    const Place to{target->GetHandle(), targetName, target->GetFeaturePath(targetName)};
    const bool readable = IsReadable(api, from);
    const bool writeable = IsWriteable(api, to);
    if (!readable || !writeable) {
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: %s is either not readable or %s not writeable",
            from.path.c_str(), to.path.c_str());
        return 0;
    }
    switch (sourceInfo->featureDataType) {
    case PxnFeatureDataInt:
        return IntCopy(api, log, from, to).Run(onlyIfDifferent);
    case PxnFeatureDataFloat:
        return FloatCopy(api, log, from, to).Run(onlyIfDifferent);
    case PxnFeatureDataEnum:
        return EnumCopy(api, log, from, to).Run(onlyIfDifferent);
    case PxnFeatureDataString:
        return StringCopy(api, log, from, to).Run(onlyIfDifferent);
    case PxnFeatureDataBool:
        return BoolCopy(api, log, from, to).Run(onlyIfDifferent);
    default:
        return 0; // commands, raw features and those without data are never synchronised
    }
}
