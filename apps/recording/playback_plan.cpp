// playback_plan.cpp - which frames of a recording are sent, and when
#include "apps/recording/playback_plan.h"

#include <algorithm>
#include <optional>

namespace {

constexpr double kSecondInNanoseconds = 1e9;
// Nothing is waited for longer than that between the first frame and the last.
constexpr std::uint64_t kMostNanoseconds = std::uint64_t{1} << 62;

using TimeOfFrame = std::optional<std::uint64_t> FrameStamp::*;

bool IsSent(const FrameLine& line) {
    return !line.file.empty() || line.status == FrameStatus::kIncomplete;
}

/// False when frames lack that time or it goes back; then nothing has changed.
bool SetDueTimes(const RecordingIndex& index, TimeOfFrame time, std::vector<PlannedFrame>& frames) {
    std::vector<PlannedFrame> timed = frames;
    std::uint64_t last = 0;
    std::uint64_t first = 0;
    for (PlannedFrame& frame : timed) {
        const std::optional<std::uint64_t>& at = index.lines[frame.line].stamp.*time;
        first = &frame == &timed.front() ? at.value_or(0) : first;
        if (!at || *at < last || *at - first > kMostNanoseconds) {
            return false;
        }
        last = *at;
        frame.due = std::chrono::nanoseconds(*at - first);
    }
    frames = std::move(timed);
    return true;
}

/// The time between two frames that the description states; 0 when it states none.
std::chrono::nanoseconds StatedInterval(const RecordingDescription& description) {
    const double rate = description.frameRate.value_or(0);
    constexpr double kLeastRate = 1e-3;
    return std::chrono::nanoseconds(
        rate >= kLeastRate ? static_cast<std::int64_t>(kSecondInNanoseconds / rate) : 0);
}

/// From one repetition to the next: one more than from the first value to the last.
std::uint64_t SpanOf(const RecordingIndex& index, TimeOfFrame value,
                     const std::vector<PlannedFrame>& frames, std::uint64_t step) {
    std::optional<std::uint64_t> least;
    std::uint64_t most = 0;
    for (const PlannedFrame& frame : frames) {
        if (const auto& one = index.lines[frame.line].stamp.*value) {
            least = std::min(least.value_or(*one), *one);
            most = std::max(most, *one);
        }
    }
    return least ? most - *least + step : 0;
}

} // namespace

PlaybackPlan MakePlaybackPlan(const RecordingIndex& index) {
    PlaybackPlan plan;
    for (std::size_t line = 0; line < index.lines.size(); ++line) {
        const FrameLine& frame = index.lines[line];
        if (!IsSent(frame)) {
            continue;
        }
        if (!frame.file.empty() && frame.layout != index.description.layout) {
            ++plan.otherLayouts;
            continue;
        }
        plan.frames.push_back({line});
    }
    std::chrono::nanoseconds interval = StatedInterval(index.description);
    if (!SetDueTimes(index, &FrameStamp::timestampNs, plan.frames) &&
        !SetDueTimes(index, &FrameStamp::hostNs, plan.frames)) {
        const std::size_t first = plan.frames.empty() ? 0 : plan.frames.front().line;
        for (PlannedFrame& frame : plan.frames) {
            frame.due = interval * static_cast<std::int64_t>(frame.line - first);
        }
    }
    if (!plan.frames.empty()) {
        const std::chrono::nanoseconds last = plan.frames.back().due;
        if (interval.count() == 0 && plan.frames.size() > 1) {
            interval = last / static_cast<std::int64_t>(plan.frames.size() - 1);
        }
        plan.length = last + interval;
    }
    plan.idSpan = SpanOf(index, &FrameStamp::frameId, plan.frames, 1);
    plan.timestampSpan = SpanOf(index, &FrameStamp::timestampNs, plan.frames,
                                static_cast<std::uint64_t>(interval.count()));
    return plan;
}
