// grab_report.cpp - the final report of the command "grab"
#include "apps/mivora/grab_report.h"

#include "apps/common/json_text.h"

#include <array>
#include <cstdio>

namespace {

double Microseconds(std::uint64_t nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e3;
}

/// Null without values.
JsonValue Percentiles(const Histogram& times) {
    if (times.Count() == 0) {
        return nullptr;
    }
    return JsonObject({{"count", times.Count()},
                       {"min", Microseconds(times.Min())},
                       {"p50", Microseconds(times.Percentile(50))},
                       {"p90", Microseconds(times.Percentile(90))},
                       {"p99", Microseconds(times.Percentile(99))},
                       {"max", Microseconds(times.Max())}});
}

JsonValue SdkAccount(const std::optional<SdkCounts>& counts) {
    if (!counts) {
        return nullptr;
    }
    return JsonObject({{"announced", counts->announced},
                       {"revoked", counts->revoked},
                       {"queued", counts->queued},
                       {"completed", counts->completed},
                       {"flushed", counts->flushed},
                       {"callbacks", counts->callbacks},
                       {"dropped", counts->dropped}});
}

template <typename... Values>
void AppendLine(std::string& text, const char* format, Values... values) {
    std::array<char, 256> line;
    std::snprintf(line.data(), line.size(), format, values...);
    text += line.data();
    text += '\n';
}

void AppendPercentiles(std::string& text, const char* name, const Histogram& times) {
    if (times.Count() == 0) {
        return;
    }
    AppendLine(text, "%-11s p50 %.1f us, p90 %.1f us, p99 %.1f us, max %.1f us", name,
               Microseconds(times.Percentile(50)), Microseconds(times.Percentile(90)),
               Microseconds(times.Percentile(99)), Microseconds(times.Max()));
}

unsigned long long Wide(std::uint64_t number) {
    return number;
}

} // namespace

double GrabReport::MegabytesPerSecond() const {
    return timing.Rate() * static_cast<double>(imageSize) / 1e6;
}

JsonValue AccountJson(const FrameAccount& account, std::uint64_t written) {
    return JsonObject({{"completed", account.completed},
                       {"delivered", account.delivered},
                       {"taken", account.taken},
                       {"lost", account.lost},
                       {"flushed", account.flushed},
                       {"damaged", account.damaged},
                       {"incomplete", account.inError},
                       {"written", written},
                       {"sdk", SdkAccount(account.sdk)},
                       {"closed", account.IsClosed()}});
}

std::vector<JsonMember> GrabReport::Members() const {
    return {{"frames", account.taken},
            {"errors", account.inError},
            {"framesPerSecond", timing.Rate()},
            {"megabytesPerSecond", MegabytesPerSecond()},
            {"imageSize", imageSize},
            {"account", AccountJson(account, recording ? recording->counts.recorded : 0)},
            {"latencyMicroseconds", Percentiles(timing.latency)},
            {"handOverMicroseconds", Percentiles(timing.handOver)},
            {"intervalMicroseconds", Percentiles(timing.interval)},
            {"recording", recording ? recording->Json() : nullptr},
            {"reconnects", reconnects},
            {"interrupted", interrupted},
            {"packets", packets.Json()},
            {"cameraLost", noFrameCause && noFrameCause->kind == NoFrameKind::kGone},
            {"noFrameCause", noFrameCause ? JsonValue(noFrameCause->text) : nullptr}};
}

std::string GrabReport::Json() const {
    return JsonReport(Members()).Text();
}

std::string RateText(const FrameAccount& account, double framesPerSecond,
                     double megabytesPerSecond) {
    std::string text;
    AppendLine(text, "%-11s %llu", "frames", Wide(account.taken));
    AppendLine(text, "%-11s %llu received in error", "errors", Wide(account.inError));
    AppendLine(text, "%-11s %.2f frames/s, %.2f MB/s", "rate", framesPerSecond, megabytesPerSecond);
    return text;
}

std::string AccountText(const FrameAccount& account) {
    std::string text;
    AppendLine(
        text, "%-11s %llu completed, %llu delivered = %llu taken + %llu lost + %llu flushed%s",
        "account", Wide(account.completed), Wide(account.delivered), Wide(account.taken),
        Wide(account.lost), Wide(account.flushed), account.IsClosed() ? "" : " (does not add up)");
    if (account.sdk) {
        AppendLine(text,
                   "%-11s %llu announced = %llu revoked; %llu queued = %llu filled + %llu "
                   "flushed; %llu frames dropped by the camera",
                   "buffers", Wide(account.sdk->announced), Wide(account.sdk->revoked),
                   Wide(account.sdk->queued), Wide(account.sdk->completed),
                   Wide(account.sdk->flushed), Wide(account.sdk->dropped));
    }
    return text;
}

std::string GrabReport::Text() const {
    std::string text = RateText(account, timing.Rate(), MegabytesPerSecond());
    text += AccountText(account);
    if (!packets.IsEmpty()) {
        text += "stream      " + packets.Text() + "\n";
    }
    if (account.damaged != 0) {
        AppendLine(text, "%-11s %llu frames were written over while being copied", "damaged",
                   Wide(account.damaged));
    }
    if (recording) {
        AppendLine(text, "%-11s %llu frames recorded, %llu missing", "recording",
                   Wide(recording->counts.recorded), Wide(recording->counts.Missing()));
    }
    if (reconnects != 0) {
        AppendLine(text, "%-11s %llu times", "reconnected", Wide(reconnects));
    }
    AppendPercentiles(text, "latency", timing.latency);
    AppendPercentiles(text, "hand-over", timing.handOver);
    AppendPercentiles(text, "interval", timing.interval);
    return text;
}

void PrintGrabReport(const GrabOptions& options, const std::string& json, const std::string& text) {
    std::FILE* const output = options.IsStream() ? stderr : stdout;
    std::fputs(options.json ? (json + "\n").c_str() : text.c_str(), output);
    std::fflush(output);
}
