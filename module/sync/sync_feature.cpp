// sync_feature.cpp - copies the value of one feature to another
#include "platform/text.h"
#include "sdk/feature.h"
#include "sdk/format_text.h"
#include "sdk/no_throw.h"
#include "sdk/sdk_error.h"
#include "sync/feature_cache.h"
#include "sync/sync_engine.h"

#include <algorithm>
#include <optional>
#include <variant>

namespace pyxen {

namespace {

template <typename Shown>
using CopyLine = LogFormat<const char*, const char*, Shown>; // source, target, value
template <typename Shown>
using CanLine = LogFormat<const char*, const char*, Shown>; // "" or "NOT ", target, value
template <typename Number>                                  // as CanLine, and the limits
using CanNumberLine = LogFormat<const char*, const char*, Number, Number, Number>;

/// The words of one type. Compatibility: they differ from type to type. A single path is the
/// target's.
struct SyncWords {
    LogFormat<const char*, const char*> sourceUnreadable; // source, target
    std::optional<NameFormat> rangeUnreadable;
    std::variant<CanNumberLine<std::int64_t>, CanNumberLine<double>, CanLine<const char*>,
                 LogFormat<const char*, const char*>> // target, value
        can;
    NameFormat targetUnreadable;
    std::variant<NameFormat, CopyLine<double>, CopyLine<const char*>> writeFailed;
    std::variant<CopyLine<std::int64_t>, CopyLine<double>, CopyLine<const char*>> written;
};

constexpr TypeTable<SyncWords> kSyncWords = {{
    {
        "CMivoraKVNPyxenClass::SyncFeature: Cannot sync int64 feature from %s to %s (read error)",
        NameFormat(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature from %s"),
        CanNumberLine<std::int64_t>(
            "CMivoraKVNPyxenClass::SyncFeature: int64 feature can %sbe synched to %s (value = %I64d, min = %I64d, max = %I64d)"),
        "CMivoraKVNPyxenClass::SyncFeature: Cannot get int64 feature from %s (read error)",
        // Compatibility: the failed write reports a read error.
        NameFormat(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot read int64 feature from %s (read error)"),
        CopyLine<std::int64_t>(
            "CMivoraKVNPyxenClass::SyncFeature: Synched int64 feature from %s to %s (value = %I64d)"),
    },
    {
        "CMivoraKVNPyxenClass::SyncFeature: Cannot sync float feature from %s to %s (read error)",
        NameFormat(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of float feature from %s"),
        CanNumberLine<double>(
            "CMivoraKVNPyxenClass::SyncFeature: float feature can %sbe synched to %s (value = %lf, min = %lf, max = %lf)"),
        "CMivoraKVNPyxenClass::SyncFeature: Cannot get float feature from %s (read error)",
        CopyLine<double>(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot sync float feature from %s to %s value = %lf, (write error)"),
        CopyLine<double>(
            "CMivoraKVNPyxenClass::SyncFeature: Synched float feature from %s to %s. value = %lf,"),
    },
    {
        "CMivoraKVNPyxenClass::SyncFeature: Cannot sync enum feature from %s to %s (read error)",
        NameFormat("CMivoraKVNPyxenClass::SyncFeature: Cannot query range of enum feature from %s"),
        CanLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: enum feature can %sbe synched to %s (value = %s)"),
        "CMivoraKVNPyxenClass::SyncFeature: Cannot get enum feature from %s (read error)",
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot sync enum feature from %s to %s value = %s (write error)"),
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: Synched enum feature from %s to %s value = %s."),
    },
    {
        "CMivoraKVNPyxenClass::SyncFeature: Cannot query string-feature %s for synching to %s",
        NameFormat(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query length of string feature from %s"),
        CanLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: string feature can %sbe synched to %s (value = %s)"),
        "CMivoraKVNPyxenClass::SyncFeature: Cannot get string feature from %s (read error)",
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: string feature from %s to %s (value = %s) (write error)"),
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: Synched string feature from %s to %s (value = %s)"),
    },
    {
        "CMivoraKVNPyxenClass::SyncFeature: Cannot sync bool feature %s to %s (read error)",
        std::nullopt,
        LogFormat<const char*, const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: bool feature can be synched to %s value = %s"),
        // Compatibility: the string's words.
        "CMivoraKVNPyxenClass::SyncFeature: Cannot get string feature from %s (read error)",
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot sync bool feature from %s to %s (value = %s) (write error)"),
        CopyLine<const char*>(
            "CMivoraKVNPyxenClass::SyncFeature: Synched boolean feature from %s to %s. value = %s"),
    },
}};

bool FitsTarget(const FeatureRange& range, const FeatureValue& value) {
    const EnumEntry* const entry = value.GetIf<EnumEntry>();
    if (!entry) {
        return range.Contains(value);
    }
    // Compatibility: the pointers are compared, not the texts; the SDK shares one text per name.
    return entry->name && std::find(range.entries.begin(), range.entries.end(), entry->name) !=
                              range.entries.end();
}

/// Compatibility: entries are equal ignoring case, floats without tolerance.
bool IsSameValue(const FeatureValue& present, const FeatureValue& value) {
    const EnumEntry* const entry = present.GetIf<EnumEntry>();
    return entry ? entry->name &&
                       platform::CompareNoCase(entry->name, value.Get<EnumEntry>().name) == 0
                 : present == value;
}

/// One copy, and what is said about it.
struct ValueCopy {
    const Logger& log;
    const SyncWords& words;
    const std::string source; // paths
    const std::string target;
    FeatureValue value;

    int Fail(PxnError code, const std::string& context) const {
        ReportSdkError(context.c_str(), code, log);
        return 0;
    }

    template <typename Write>
    void Show(Write&& write) const {
        value.Show("false", "true", std::forward<Write>(write));
    }

    void LogCan(bool fits, const FeatureRange& range) const {
        const char* const insert = fits ? "" : "NOT ";
        Show([&](auto shown) {
            using Shown = decltype(shown);
            if constexpr (std::is_arithmetic_v<Shown>) {
                const auto& limits = range.LimitsOf<Shown>();
                log.Information(std::get<CanNumberLine<Shown>>(words.can), insert, target.c_str(),
                                shown, limits.least, limits.most);
            } else if (const auto* line = std::get_if<CanLine<Shown>>(&words.can)) {
                log.Information(*line, insert, target.c_str(), shown);
            } else {
                log.Information(std::get<LogFormat<const char*, const char*>>(words.can),
                                target.c_str(), shown);
            }
        });
    }

    std::string WriteFailure() const {
        std::string context;
        Show([&](auto shown) {
            if constexpr (std::is_same_v<decltype(shown), std::int64_t>) {
                context = FormatText(std::get<NameFormat>(words.writeFailed), target.c_str());
            } else {
                context = FormatText(std::get<CopyLine<decltype(shown)>>(words.writeFailed),
                                     source.c_str(), target.c_str(), shown);
            }
        });
        return context;
    }

    void LogWritten() const {
        Show([&](auto shown) {
            log.Information(std::get<CopyLine<decltype(shown)>>(words.written), source.c_str(),
                            target.c_str(), shown);
        });
    }

    /// 1 when `to` holds the value of `from` afterwards, else 0.
    int Run(const Feature& from, const Feature& to, bool onlyIfDifferent) {
        if (const PxnError code = from.Read(value)) {
            return Fail(code, FormatText(words.sourceUnreadable, source.c_str(), target.c_str()));
        }
        FeatureRange range;
        const PxnError unknown = to.Range(range);
        if (unknown && words.rangeUnreadable) {
            return Fail(unknown, FormatText(*words.rangeUnreadable, target.c_str()));
        }
        const bool fits = FitsTarget(range, value);
        LogCan(fits, range);
        if (!fits) {
            return 0;
        }
        if (onlyIfDifferent) {
            FeatureValue present;
            if (const PxnError code = to.Read(present)) {
                return Fail(code, FormatText(words.targetUnreadable, target.c_str()));
            }
            if (IsSameValue(present, value)) {
                log.Information(
                    "CMivoraKVNPyxenClass::SyncFeature: %s already has appropriate value. Skipping update.",
                    target.c_str());
                return 1;
            }
        }
        if (const PxnError code = to.Write(value)) {
            return Fail(code, WriteFailure());
        }
        LogWritten();
        return 1;
    }
};

} // namespace

int SyncEngine::SyncFeature(FeatureCache* source, const char* sourceName, FeatureCache* target,
                            const char* targetName, bool onlyIfDifferent) {
    return NoThrow(
        0, [&] { return CopyValue(source, sourceName, target, targetName, onlyIfDifferent); });
}

int SyncEngine::CopyValue(FeatureCache* source, const char* sourceName, FeatureCache* target,
                          const char* targetName, bool onlyIfDifferent) {
    const PxnFeatureInfo* const sourceInfo = source ? source->Find(sourceName) : nullptr;
    const PxnFeatureInfo* const targetInfo = target ? target->Find(targetName) : nullptr;
    if (!sourceInfo || !targetInfo || sourceInfo->featureDataType != targetInfo->featureDataType) {
        return 0;
    }
    const Feature from = source->GetFeature(*sourceInfo);
    const Feature to = target->GetFeature(*targetInfo);
    const std::string sourcePath = source->GetFeaturePath(sourceName);
    const std::string targetPath = target->GetFeaturePath(targetName);
    bool readable = false;
    bool writable = false;
    bool other = false;
    from.Access(readable, other);
    to.Access(other, writable);
    if (!readable || !writable) {
        log.Information(
            "CMivoraKVNPyxenClass::SyncFeature: %s is either not readable or %s not writeable",
            sourcePath.c_str(), targetPath.c_str());
        return 0;
    }
    // Commands, raw features and those without data are never synchronised.
    const SyncWords* const words = kSyncWords.Find(from.Type());
    return words ? ValueCopy{log, *words, sourcePath, targetPath, {}}.Run(from, to, onlyIfDifferent)
                 : 0;
}

} // namespace pyxen
