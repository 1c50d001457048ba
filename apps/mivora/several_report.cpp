// several_report.cpp - the final report of the command "grab" for several cameras
#include "apps/mivora/several_report.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

RecordedFrames FramesOf(const GrabReport& grab) {
    RecordedFrames frames;
    if (grab.recording) {
        frames.recorded = grab.recording->counts.recorded;
        frames.missing = grab.recording->counts.Missing();
    }
    return frames;
}

std::string CameraLine(const CameraReport& camera) {
    const GrabReport& grab = camera.grab;
    std::array<char, 160> numbers{};
    std::snprintf(numbers.data(), numbers.size(),
                  ": %llu frames, %llu in error, %.2f frames/s, %.2f MB/s",
                  static_cast<unsigned long long>(grab.account.taken),
                  static_cast<unsigned long long>(grab.account.inError), grab.timing.Rate(),
                  grab.MegabytesPerSecond());
    std::string line = camera.name + numbers.data();
    if (grab.recording) {
        const RecordedFrames frames = FramesOf(grab);
        line += "; " + std::to_string(frames.recorded) + " recorded, " +
                std::to_string(frames.missing) + " missing, in " + camera.folder;
    }
    if (grab.reconnects != 0) {
        line += "; reconnected " + std::to_string(grab.reconnects) + " times";
    }
    return line + (grab.account.IsClosed() ? "" : "; the account does not add up") + "\n";
}

} // namespace

FrameAccount SeveralReport::Account() const {
    FrameAccount sum;
    for (const CameraReport& camera : cameras) {
        sum += camera.grab.account;
    }
    sum.sdk = sdk;
    return sum;
}

double SeveralReport::FramesPerSecond() const {
    double sum = 0;
    for (const CameraReport& camera : cameras) {
        sum += camera.grab.timing.Rate();
    }
    return sum;
}

double SeveralReport::MegabytesPerSecond() const {
    double sum = 0;
    for (const CameraReport& camera : cameras) {
        sum += camera.grab.MegabytesPerSecond();
    }
    return sum;
}

std::optional<std::uint64_t> SeveralReport::FirstFramesNs() const {
    std::vector<std::uint64_t> times;
    for (const CameraReport& camera : cameras) {
        if (!camera.grab.firstFrameNs) {
            return std::nullopt;
        }
        times.push_back(*camera.grab.firstFrameNs);
    }
    const auto [first, last] = std::minmax_element(times.begin(), times.end());
    return times.empty() ? std::nullopt : std::optional(*last - *first);
}

RecordedFrames SeveralReport::Recorded() const {
    RecordedFrames sum;
    for (const CameraReport& camera : cameras) {
        const RecordedFrames frames = FramesOf(camera.grab);
        sum.recorded += frames.recorded;
        sum.missing += frames.missing;
    }
    return sum;
}

std::vector<std::string> SeveralReport::Problems() const {
    std::vector<std::string> problems;
    for (const CameraReport& camera : cameras) {
        if (!camera.problem.empty()) {
            problems.push_back(camera.name + ": " + camera.problem);
        }
    }
    return problems;
}

bool SeveralReport::IsFailed() const {
    return std::any_of(cameras.begin(), cameras.end(),
                       [](const CameraReport& camera) { return camera.isFailed; });
}

std::string SeveralReport::Json() const {
    std::vector<JsonValue> list;
    for (const CameraReport& camera : cameras) {
        std::vector<JsonMember> members = {
            {"index", camera.index},
            {"uniqueId", camera.uniqueId},
            {"camera", camera.identity.Json()},
            {"folder", camera.folder.empty() ? JsonValue(nullptr) : camera.folder},
            {"problem", camera.problem.empty() ? JsonValue(nullptr) : camera.problem}};
        const std::vector<JsonMember> grab = camera.grab.Members();
        members.insert(members.end(), grab.begin(), grab.end());
        list.push_back(JsonObject(members));
    }
    const FrameAccount account = Account();
    const RecordedFrames frames = Recorded();
    const std::optional<std::uint64_t> firstFrames = FirstFramesNs();
    const JsonValue microseconds =
        firstFrames ? JsonValue(static_cast<double>(*firstFrames) / 1e3) : nullptr;
    const JsonValue recording =
        output.empty()
            ? JsonValue(nullptr)
            : JsonObject(
                  {{"output", output}, {"recorded", frames.recorded}, {"missing", frames.missing}});
    return JsonReport({{"cameras", JsonArray(list)},
                       {"frames", account.taken},
                       {"errors", account.inError},
                       {"framesPerSecond", FramesPerSecond()},
                       {"megabytesPerSecond", MegabytesPerSecond()},
                       {"account", AccountJson(account, frames.recorded)},
                       {"recording", recording},
                       {"start",
                        JsonObject({{"by", startedBy}, {"firstFramesMicroseconds", microseconds}})},
                       {"interrupted", interrupted}})
        .Text();
}

std::string SeveralReport::Text() const {
    std::string text;
    for (const CameraReport& camera : cameras) {
        text += CameraLine(camera);
    }
    const FrameAccount account = Account();
    text += RateText(account, FramesPerSecond(), MegabytesPerSecond()) + AccountText(account);
    if (!output.empty()) {
        const RecordedFrames frames = Recorded();
        text += "recording   " + std::to_string(frames.recorded) + " frames recorded, " +
                std::to_string(frames.missing) + " missing\n";
    }
    if (const std::optional<std::uint64_t> firstFrames = FirstFramesNs()) {
        std::array<char, 80> line{};
        std::snprintf(line.data(), line.size(),
                      "start       the first frames came within %.3f ms\n",
                      static_cast<double>(*firstFrames) / 1e6);
        text += line.data();
    }
    return text;
}
