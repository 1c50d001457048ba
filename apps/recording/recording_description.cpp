// recording_description.cpp - what a recording is: the contents of recording.json
#include "apps/recording/recording_description.h"

#include "apps/common/command_failure.h"
#include "apps/common/json_text.h"
#include "apps/common/layout_members.h"
#include "apps/recording/recording_json.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdio>

namespace {

constexpr std::uint64_t kNanosecondsPerSecond = 1000000000;

template <typename T>
JsonValue OrNull(const std::optional<T>& value) {
    return value ? JsonValue(*value) : JsonValue(nullptr);
}

JsonValue ClockObject(const ClockRelation& clock) {
    return JsonObject({{"offsetNs", clock.offsetNs},
                       {"uncertaintyNs", clock.uncertaintyNs},
                       {"method", clock.method}});
}

/// Recordings that were made without it have none.
std::optional<ClockRelation> ClockOf(const nlohmann::json& object) {
    const auto found = object.find("clock");
    if (found == object.end() || !found->is_object()) {
        return std::nullopt;
    }
    ClockRelation clock;
    clock.offsetNs = Needed(SignedNumberOf(*found, "offsetNs"), "offsetNs");
    clock.uncertaintyNs = Needed(NumberOf(*found, "uncertaintyNs"), "uncertaintyNs");
    clock.method = Needed(TextOf(*found, "method"), "method");
    return clock;
}

} // namespace

JsonValue RecordedCamera::Json() const {
    return JsonObject({{"vendor", OrNull(vendor)},
                       {"model", OrNull(model)},
                       {"serial", OrNull(serial)},
                       {"userName", OrNull(userName)},
                       {"id", OrNull(id)},
                       {"extendedId", OrNull(extendedId)},
                       {"interface", OrNull(interfaceName)}});
}

JsonValue RecordedFrames::Json() const {
    return JsonObject({{"wanted", OrNull(wanted)}, {"recorded", recorded}, {"missing", missing}});
}

std::string RecordingDescription::Json() const {
    const JsonValue text = JsonObject(
        {{"schema", kRecordingSchema},
         {"program", program},
         {"camera", camera.Json()},
         {"sdk", JsonObject({{"version", OrNull(sdkVersion)}})},
         {"module", JsonObject({{"name", OrNull(moduleName)}, {"version", OrNull(moduleVersion)}})},
         {"pixelFormat", OrNull(pixelFormat)},
         {"layout", LayoutJson(layout)},
         {"offsetX", OrNull(offsetX)},
         {"offsetY", OrNull(offsetY)},
         {"exposureUs", OrNull(exposureUs)},
         {"frameRate", OrNull(frameRate)},
         {"clock", clock ? ClockObject(*clock) : JsonValue(nullptr)},
         {"start", start},
         {"format", format},
         {"frames", frames.Json()},
         {"complete", complete},
         {"reason", reason.empty() ? JsonValue(nullptr) : JsonValue(reason)}});
    return text.Text() + "\n";
}

RecordingDescription ParseRecordingDescription(const std::string& text) {
    const nlohmann::json object = nlohmann::json::parse(text, nullptr, false);
    if (!object.is_object()) {
        throw CommandFailure("no JSON object");
    }
    CheckSchema(object);
    if (object.contains("cameras")) {
        throw CommandFailure("this describes the recordings of several cameras; name the folder of "
                             "one of them");
    }
    RecordingDescription description;
    description.program = TextOf(object, "program").value_or("");
    description.camera = ReadRecordedCamera(object);
    description.sdkVersion = TextOf(ObjectOf(object, "sdk"), "version");
    description.moduleName = TextOf(ObjectOf(object, "module"), "name");
    description.moduleVersion = TextOf(ObjectOf(object, "module"), "version");
    description.pixelFormat = TextOf(object, "pixelFormat");
    ReadLayout(ObjectOf(object, "layout"), description.layout);
    description.offsetX = SignedNumberOf(object, "offsetX");
    description.offsetY = SignedNumberOf(object, "offsetY");
    description.exposureUs = RealOf(object, "exposureUs");
    description.frameRate = RealOf(object, "frameRate");
    description.clock = ClockOf(object);
    description.start = Needed(TextOf(object, "start"), "start");
    description.format = Needed(TextOf(object, "format"), "format");
    description.frames = ReadRecordedFrames(object);
    description.complete = IsTrue(object, "complete");
    description.reason = TextOf(object, "reason").value_or("");
    return description;
}

std::string TimeText(std::uint64_t unixNs) {
    namespace chrono = std::chrono;
    const chrono::sys_seconds time{
        chrono::seconds(static_cast<std::int64_t>(unixNs / kNanosecondsPerSecond))};
    const auto midnight = chrono::floor<chrono::days>(time);
    const chrono::year_month_day day(midnight);
    const chrono::hh_mm_ss clock(time - midnight);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%09uZ",
                  static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()),
                  static_cast<unsigned>(unixNs % kNanosecondsPerSecond));
    return text;
}
