// feature_checks.cpp - checks of parameters, features and settings
#include "apps/selftest/feature_checks.h"

#include "apps/common/command_failure.h"
#include "apps/common/feature_text.h"
#include "apps/common/json_text.h"
#include "apps/common/service_client.h"
#include "apps/common/whole_file.h"
#include "apps/selftest/bench.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>

namespace {

/// Those that hosts may set.
constexpr std::uint32_t kParameters[] = {
    MVGF_TIMER_MODE, MVGF_TIMER_VALUES, MVGF_TRIGGER_DELAY, MVGF_TRIGGER_POLARITY,
    MVGF_GAIN,       MVGF_OFFSET,       MVGF_STROBE_VALUES, MVGF_STROBE_POLARITY};

struct ParameterState {
    std::uint64_t values[2] = {};
    std::uint64_t limits[4] = {}; // least and greatest of the first, then of the second
    bool hasLimits = false;

    bool IsWithinLimits() const {
        return !hasLimits ||
               (values[0] >= limits[0] && values[0] <= limits[1] &&
                (limits[3] == 0 || (values[1] >= limits[2] && values[1] <= limits[3])));
    }
};

std::string ParameterName(std::uint32_t id) {
    return "parameter " + std::to_string(id);
}

/// nullopt when the grabber does not serve the parameter.
std::optional<ParameterState> ReadParameter(SelftestBench& bench, std::uint32_t id) {
    ParameterState state;
    CMivoraGrabber& grabber = bench.Grabber();
    const MV_ERRCODE code = grabber.GetGrabberParam(id, &state.values[0], &state.values[1]);
    if (code == MV_NOT_SERVED) {
        bench.Use().Log().TakeErrors();
        return std::nullopt;
    }
    bench.Use().Check("GetGrabberParam", code, ParameterName(id));
    // What is only stored for the host has no limits.
    const MV_ERRCODE limitsCode = grabber.GetGrabberParamLimits(
        id, &state.limits[0], &state.limits[1], &state.limits[2], &state.limits[3]);
    if (limitsCode == MV_NOT_SERVED) {
        bench.Use().Log().TakeErrors();
        return state;
    }
    bench.Use().Check("GetGrabberParamLimits", limitsCode, ParameterName(id));
    state.hasLimits = true;
    return state;
}

std::string ValuesText(const ParameterState& state) {
    return std::to_string(state.values[0]) + " and " + std::to_string(state.values[1]);
}

/// Writes, and returns what is read afterwards, which has to be within the limits.
ParameterState WriteParameter(SelftestBench& bench, std::uint32_t id, std::uint64_t first,
                              std::uint64_t second) {
    bench.Use().Check("SetGrabberParam", bench.SetParameter(id, first, second),
                      ParameterName(id) + " = " + std::to_string(first) + " and " +
                          std::to_string(second));
    const auto state = ReadParameter(bench, id);
    Require(state && state->IsWithinLimits(),
            ParameterName(id) + " is outside its limits after writing " + std::to_string(first) +
                " and " + std::to_string(second));
    return *state;
}

void CheckParameter(SelftestBench& bench, std::uint32_t id, const ParameterState& before) {
    Require(before.IsWithinLimits(),
            ParameterName(id) + " is outside its limits: " + ValuesText(before));
    const ParameterState same = WriteParameter(bench, id, before.values[0], before.values[1]);
    Require(std::equal(std::begin(same.values), std::end(same.values), before.values),
            ParameterName(id) + " becomes " + ValuesText(same) + " when " + ValuesText(before) +
                " is written");
    WriteParameter(bench, id, before.limits[0], before.values[1]);
    // Together, since a long exposure time wants a long interval.
    const ParameterState above = WriteParameter(bench, id, before.limits[1], before.limits[3]);
    if (above.limits[1] != UINT64_MAX) {
        const MV_ERRCODE code =
            bench.Grabber().SetGrabberParam(id, above.limits[1] + 1, above.values[1]);
        bench.Use().Log().TakeErrors();
        const auto after = ReadParameter(bench, id);
        Require(code != MV_OK || (after && after->IsWithinLimits()),
                ParameterName(id) + " takes a value above its limit");
    }
}

std::string CheckParameters(SelftestBench& bench) {
    std::vector<std::string> failures;
    std::string served;
    for (const std::uint32_t id : kParameters) {
        const auto before = ReadParameter(bench, id);
        if (!before || !before->hasLimits) {
            continue; // without limits it can only be read
        }
        served += (served.empty() ? "" : ", ") + std::to_string(id);
        try {
            CheckParameter(bench, id, *before);
        } catch (const CommandFailure& failure) {
            failures.emplace_back(failure.what());
        }
        bench.SetParameter(id, before->values[0], before->values[1]);
        const auto after = ReadParameter(bench, id);
        if (!after ||
            !std::equal(std::begin(after->values), std::end(after->values), before->values)) {
            failures.push_back(ParameterName(id) + " does not become " + ValuesText(*before) +
                               " again");
        }
    }
    Require(failures.empty(), JoinReasons(failures));
    if (served.empty()) {
        throw SelftestNotApplicable("the grabber serves no parameter that can be set");
    }
    return "parameters " + served;
}

bool IsValue(const FeatureDescription& feature) {
    return feature.type != MV_FEATURE_COMMAND && feature.type != MV_FEATURE_CATEGORY &&
           feature.type != MV_FEATURE_UNKNOWN;
}

/// Why a value is not what the description promises; empty if it is.
std::string LimitProblem(const FeatureDescription& feature, const ServiceValue& value) {
    if (value.type != feature.type) {
        return std::string("is a ") + FeatureTypeText(value.type) + " and described as " +
               FeatureTypeText(feature.type);
    }
    if (!feature.hasLimits || !feature.isWritable || feature.isVolatile) {
        return "";
    }
    const bool isInside =
        (feature.type != MV_FEATURE_INTEGER ||
         (value.integer >= feature.integerMin && value.integer <= feature.integerMax)) &&
        (feature.type != MV_FEATURE_FLOAT ||
         (value.real >= feature.realMin && value.real <= feature.realMax));
    return isInside ? "" : "is " + ServiceValueText(value) + ", outside " + RangeText(feature);
}

std::string CheckFeaturesRead(SelftestBench& bench) {
    ServiceClient& features = bench.Features();
    std::vector<std::string> failures;
    std::size_t count = 0;
    const std::vector<std::string> modules = features.ListModules();
    for (const std::string& module : modules) {
        for (const FeatureDescription& listed : features.ListFeatures(module)) {
            if (!IsValue(listed)) {
                continue;
            }
            try {
                const FeatureDescription feature = features.DescribeFeature(module, listed.name);
                ++count;
                const std::string problem =
                    feature.isReadable
                        ? LimitProblem(feature, features.ReadFeature(module, listed.name))
                        : "";
                if (!problem.empty()) {
                    failures.push_back(listed.Path() + " " + problem);
                }
            } catch (const CommandFailure& failure) {
                failures.emplace_back(failure.what());
            }
        }
    }
    Require(failures.empty(), JoinReasons(failures));
    return std::to_string(count) + " features of " + std::to_string(modules.size()) + " modules";
}

bool IsSameValue(const ServiceValue& left, const ServiceValue& right) {
    switch (left.type) {
    case MV_FEATURE_FLOAT:
        return std::abs(left.real - right.real) <= 1e-6 * std::max(1.0, std::abs(left.real));
    case MV_FEATURE_INTEGER:
    case MV_FEATURE_BOOLEAN:
        return left.integer == right.integer;
    default:
        return left.text == right.text;
    }
}

/// Writes what was read, with the checks and the synchronisation that any writing has.
std::string CheckWrittenBack(SelftestBench& bench) {
    ServiceClient& features = bench.Features();
    std::vector<std::string> failures;
    std::size_t count = 0;
    for (const FeatureDescription& listed : features.ListFeatures("Camera")) {
        const auto feature = IsValue(listed) && listed.isStreamable
                                 ? features.TryDescribeFeature("Camera", listed.name)
                                 : std::nullopt;
        const auto value = feature && feature->isReadable && feature->isWritable
                               ? features.TryReadFeature("Camera", listed.name)
                               : std::nullopt;
        if (!value) {
            continue;
        }
        ++count;
        try {
            const auto after =
                features.WriteFeature("Camera", listed.name, *value, ServiceValueText(*value));
            if (!after || !IsSameValue(*value, *after)) {
                failures.push_back("Camera/" + listed.name + " becomes " +
                                   (after ? ServiceValueText(*after) : "unreadable") + " when " +
                                   ServiceValueText(*value) + " is written");
            }
        } catch (const CommandFailure& failure) {
            failures.emplace_back(failure.what());
        }
    }
    Require(failures.empty(), JoinReasons(failures));
    if (count == 0) {
        throw SelftestNotApplicable("the camera has no feature that settings contain");
    }
    return std::to_string(count) + " features";
}

/// The smallest image, and the frame that comes of it.
std::string CheckSmallestImage(SelftestBench& bench) {
    ServiceClient& features = bench.Features();
    bench.RequireFrames(kMvCapContinuous);
    std::int64_t before[2] = {};
    std::int64_t least[2] = {};
    constexpr const char* kSides[] = {"Width", "Height"};
    for (std::size_t i = 0; i < std::size(kSides); ++i) {
        const auto side = features.TryDescribeFeature("Camera", kSides[i]);
        if (!side || !side->isWritable || !side->hasLimits) {
            throw SelftestNotApplicable(std::string("Camera/") + kSides[i] + " cannot be written");
        }
        before[i] = features.ReadFeature("Camera", kSides[i]).integer;
        least[i] = side->integerMin;
    }
    const auto resize = [&](const std::int64_t(&sizes)[2]) {
        for (std::size_t i = 0; i < std::size(kSides); ++i) {
            ServiceValue value;
            value.type = MV_FEATURE_INTEGER;
            value.integer = sizes[i];
            features.WriteFeature("Camera", kSides[i], value, std::to_string(sizes[i]));
        }
    };
    try {
        resize(least);
        CMivoraGfxMode& mode = bench.Use().CheckedMode();
        Require(mode.GetxRes() == least[0] && mode.GetyRes() == least[1],
                "images have " + std::to_string(mode.GetxRes()) + " x " +
                    std::to_string(mode.GetyRes()) + " pixels after " + std::to_string(least[0]) +
                    " x " + std::to_string(least[1]) + " were set");
        bench.TakeFrames(4, 2);
    } catch (const CommandFailure&) {
        bench.Grabber().StopSnap();
        resize(before);
        throw;
    }
    resize(before);
    return std::to_string(least[0]) + " x " + std::to_string(least[1]) + " pixels";
}

void Discard(const MV_SETTING*, void*) {}

/// Loads what was saved without writing: every setting has to be there and to take it.
std::string CheckSettingsDryRun(SelftestBench& bench) {
    const std::string path = bench.PathOf("dry-run.json");
    if (bench.Services().SaveSettings(path.c_str(), Discard, nullptr, nullptr) ==
        MV_SERVICE_NOT_SUPPORTED) {
        throw SelftestNotApplicable("the camera's settings cannot be saved");
    }
    ServiceClient& features = bench.Features();
    const SettingsOutcome saved = features.SaveSettings(path);
    Require(saved.isComplete,
            "not all settings can be saved: " + JoinReasons(RefusedSettings(saved)));
    const SettingsOutcome loaded = features.LoadSettings(path, true);
    Require(loaded.isComplete,
            "settings that were saved are refused: " + JoinReasons(RefusedSettings(loaded)));
    return std::to_string(loaded.settings.size()) + " settings";
}

/// Another value than the present one that the description allows; nullopt if there is none.
std::optional<ServiceValue> OtherValue(const FeatureDescription& feature,
                                       const ServiceValue& present) {
    ServiceValue other = present;
    switch (feature.type) {
    case MV_FEATURE_INTEGER: {
        // The greatest value may lie between two steps; the least is always one.
        const auto least = static_cast<std::uint64_t>(feature.integerMin);
        const std::uint64_t room = static_cast<std::uint64_t>(feature.integerMax) - least;
        const std::uint64_t step =
            feature.hasIncrement ? static_cast<std::uint64_t>(feature.increment) : room;
        if (step > room) {
            return std::nullopt;
        }
        other.integer = present.integer != feature.integerMin
                            ? feature.integerMin
                            : static_cast<std::int64_t>(least + step);
        break;
    }
    case MV_FEATURE_FLOAT:
        other.real = present.real == feature.realMin ? feature.realMax : feature.realMin;
        break;
    case MV_FEATURE_BOOLEAN:
        other.integer = present.integer == 0 ? 1 : 0;
        return other;
    case MV_FEATURE_ENUMERATION: {
        const auto entry = std::find_if(
            feature.entries.begin(), feature.entries.end(),
            [&](const DescribedEntry& one) { return one.isAvailable && one.name != present.text; });
        if (entry == feature.entries.end()) {
            return std::nullopt;
        }
        other.text = entry->name;
        return other;
    }
    default:
        return std::nullopt;
    }
    return feature.hasLimits && !IsSameValue(present, other) ? std::optional(other) : std::nullopt;
}

/// A value that a feature could take in place of its present one.
struct PossibleChange {
    FeatureDescription feature;
    ServiceValue present;
    ServiceValue other;
};

/// One for each setting that has no selectors and other values.
std::vector<PossibleChange> FindPossibleChanges(ServiceClient& features,
                                                const SettingsOutcome& saved) {
    std::vector<PossibleChange> changes;
    for (const SettingReport& setting : saved.settings) {
        const auto feature = setting.result == MV_SERVICE_OK && setting.selector.empty()
                                 ? features.TryDescribeFeature(setting.module, setting.feature)
                                 : std::nullopt;
        const auto present = feature && feature->isWritable && !feature->isVolatile
                                 ? features.TryReadFeature(setting.module, setting.feature)
                                 : std::nullopt;
        const auto other = present ? OtherValue(*feature, *present) : std::nullopt;
        if (other) {
            changes.push_back({*feature, *present, *other});
        }
    }
    return changes;
}

std::string SettingsOf(const std::vector<PossibleChange>& changes) {
    std::vector<JsonValue> settings;
    settings.reserve(changes.size());
    for (const PossibleChange& change : changes) {
        settings.push_back(JsonObject({{"module", change.feature.module},
                                       {"feature", change.feature.name},
                                       {"type", FeatureTypeText(change.feature.type)},
                                       {"value", ServiceValueJson(change.other)}}));
    }
    const JsonValue camera =
        JsonObject({{"vendor", ""}, {"model", ""}, {"serial", ""}, {"id", ""}});
    return JsonObject({{"format", "Mivora settings"},
                       {"version", 1},
                       {"camera", camera},
                       {"settings", JsonArray(settings)}})
        .Text();
}

/// Another value for each setting is checked along all features that depend on it, and is not
/// written: those may refuse it, and nothing may fail or change.
std::string CheckSynchronisation(SelftestBench& bench) {
    const std::string path = bench.PathOf("other-values.json");
    if (bench.Services().SaveSettings(path.c_str(), Discard, nullptr, nullptr) ==
        MV_SERVICE_NOT_SUPPORTED) {
        throw SelftestNotApplicable("the camera's settings cannot be saved");
    }
    ServiceClient& features = bench.Features();
    const std::vector<PossibleChange> changes =
        FindPossibleChanges(features, features.SaveSettings(path));
    if (changes.empty()) {
        throw SelftestNotApplicable("no setting of the camera has another value");
    }
    WriteWholeFile(path, SettingsOf(changes));
    std::vector<std::string> failures;
    const SettingsOutcome checked = features.LoadSettings(path, true);
    for (const PossibleChange& change : changes) {
        const std::string name = change.feature.module + "/" + change.feature.name;
        const auto after = features.TryReadFeature(change.feature.module, change.feature.name);
        if (!after || !IsSameValue(change.present, *after)) {
            failures.push_back(name + " is " + (after ? ServiceValueText(*after) : "unreadable") +
                               " after checking " + ServiceValueText(change.other) + ", and was " +
                               ServiceValueText(change.present));
        }
    }
    std::size_t refused = 0;
    for (const SettingReport& setting : checked.settings) {
        refused += setting.result == MV_SERVICE_REFUSED ? 1u : 0u;
        if (setting.result != MV_SERVICE_OK && setting.result != MV_SERVICE_REFUSED) {
            failures.push_back(setting.module + "/" + setting.feature + " = " + setting.value +
                               ": " + setting.reason);
        }
    }
    Require(failures.empty(), JoinReasons(failures));
    return std::to_string(changes.size()) + " changes, " + std::to_string(refused) +
           " of them refused by features that depend on them";
}

} // namespace

std::vector<SelftestCheck> FeatureSelftestChecks() {
    return {{"parameters", CheckParameters},           {"features-read", CheckFeaturesRead},
            {"features-written", CheckWrittenBack},    {"smallest-image", CheckSmallestImage},
            {"settings-dry-run", CheckSettingsDryRun}, {"synchronisation", CheckSynchronisation}};
}
