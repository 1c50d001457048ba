// recording_summary.cpp - what the index of a recording adds up to
#include "apps/recording/recording_summary.h"

namespace {

/// Nothing unless all recorded frames have that time and it never goes back.
std::optional<double> SecondsBetween(const RecordingIndex& index,
                                     std::optional<std::uint64_t> FrameStamp::*time) {
    constexpr double kNanoseconds = 1e9;
    std::optional<std::uint64_t> first;
    std::uint64_t last = 0;
    for (const FrameLine& line : index.lines) {
        if (line.file.empty()) {
            continue;
        }
        const std::optional<std::uint64_t>& at = line.stamp.*time;
        if (!at || *at < last) {
            return std::nullopt;
        }
        last = *at;
        first = first.value_or(last);
    }
    return first ? std::optional(static_cast<double>(last - *first) / kNanoseconds) : std::nullopt;
}

/// True when the line goes on with what the gap has so far.
bool GoesOn(const RecordedGap& gap, const FrameLine& line) {
    return gap.lastN + 1 == line.n && gap.status == line.status &&
           gap.lastId.has_value() == line.stamp.frameId.has_value() &&
           (!gap.lastId || *gap.lastId + 1 == *line.stamp.frameId);
}

} // namespace

RecordingSummary Summarise(const RecordingIndex& index) {
    RecordingSummary summary;
    for (const FrameLine& line : index.lines) {
        ++summary.byStatus[static_cast<std::size_t>(line.status)];
        if (!line.file.empty()) {
            ++summary.recorded;
            summary.bytes += line.bytes;
            continue;
        }
        ++summary.missing;
        const std::optional<std::uint64_t>& id = line.stamp.frameId;
        if (summary.gaps.empty() || !GoesOn(summary.gaps.back(), line)) {
            summary.gaps.push_back({line.status, line.n, line.n, id, id});
        } else {
            summary.gaps.back().lastN = line.n;
            summary.gaps.back().lastId = id;
        }
    }
    summary.seconds = SecondsBetween(index, &FrameStamp::timestampNs);
    if (!summary.seconds) {
        summary.seconds = SecondsBetween(index, &FrameStamp::hostNs);
    }
    if (summary.seconds.value_or(0) > 0) {
        summary.framesPerSecond = static_cast<double>(summary.recorded - 1) / *summary.seconds;
    }
    return summary;
}
