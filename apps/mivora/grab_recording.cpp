// grab_recording.cpp - records what the command "grab" takes
#include "apps/mivora/grab_recording.h"

#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/common/session.h"
#include "apps/mivora/camera_clock.h"
#include "apps/mivora/recording_facts.h"
#include "apps/recording/recording_directory.h"
#include "apps/recording/stream_store.h"
#include "platform/clock.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr std::uint64_t kBytesPerMegabyte = 1000000;
constexpr std::uint64_t kMostMegabytes = 1000000000000; // more than any computer has

std::unique_ptr<FrameStore> MakeStore(const GrabOptions& options) {
    if (options.IsStream()) {
        return std::make_unique<StreamStore>(stdout, "standard output", options.Format());
    }
    FrameStoreOptions store;
    store.format = options.Format();
    store.pngLevel = static_cast<std::uint32_t>(
        ParseUnsigned(options.pngLevel.value_or("")).value_or(store.pngLevel));
    store.deflate = options.deflate;
    store.expectedFrames = options.frames;
    return MakeFrameStore(store, options.output);
}

std::string Frames(std::uint64_t count) {
    return std::to_string(count) + (count == 1 ? " frame" : " frames");
}

void AppendPart(std::string& text, std::uint64_t count, const char* what) {
    if (count != 0) {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
    }
}

} // namespace

GrabRecording::GrabRecording(Session& session, const GrabOptions& grabOptions,
                             std::uint64_t unixMinusHostNs)
    : options(grabOptions), unixMinusHost(unixMinusHostNs) {
    if (ServiceClient* const services = options.IsStream() ? nullptr : session.OptionalServices()) {
        latchedClock = LatchCameraClock(*services, unixMinusHostNs);
    }
    RecordingDescription description = DescribeRecording(session);
    description.clock = latchedClock;
    description.start = TimeText(platform::MonotonicNanoseconds() + unixMinusHostNs);
    description.format = options.Format();
    if (options.frames != 0) {
        description.frames.wanted = options.frames;
    }
    RecorderOptions recording;
    recording.queueBytes = std::min(options.queueMegabytes, kMostMegabytes) * kBytesPerMegabyte;
    recording.unixMinusHostNs = unixMinusHostNs;
    if (!options.IsStream()) {
        PrepareRecordingDirectory(options.output, options.overwrite);
        recording.directory = options.output;
    }
    recorder = std::make_unique<Recorder>(MakeStore(options), recording, std::move(description));
}

std::vector<std::uint8_t>* GrabRecording::NextBuffer(std::uint64_t imageBytes) {
    hasRoom = recorder->HasRoom(imageBytes);
    if (hasRoom && buffer.empty()) {
        buffer = recorder->TakeBuffer(static_cast<std::size_t>(imageBytes));
    }
    return hasRoom ? &buffer : nullptr;
}

void GrabRecording::Add(FrameResult result, const TakenFrame& taken, const ImageLayout& layout) {
    if (!hasRoom && options.whenFull == "stop") {
        queueFull = "the recording ended with its queue of " +
                    std::to_string(options.queueMegabytes) + " MB full";
        return;
    }
    AddGaps(taken.before);
    if (!hasRoom) {
        recorder->AddGap({FrameStatus::kLost, taken.stamp, 1, "the queue was full"});
    } else if (result == FrameResult::kDamaged) {
        recorder->AddGap({FrameStatus::kDamaged, taken.stamp});
    } else {
        if (taken.stamp.timestampNs && taken.stamp.hostNs) {
            arrivals.Add(*taken.stamp.timestampNs, *taken.stamp.hostNs + unixMinusHost);
        }
        recorder->AddFrame(taken.stamp, layout, std::exchange(buffer, {}));
    }
}

void GrabRecording::AddGaps(const std::vector<FrameGap>& gaps) {
    for (const FrameGap& gap : gaps) {
        unknownGaps += gap.note ? 1 : 0;
        recorder->AddGap(gap);
    }
}

void GrabRecording::AddPause() {
    AddGaps({{FrameStatus::kDropped, {}, 1, "the camera was away"}});
}

std::uint64_t GrabRecording::GiveUp() {
    const std::uint64_t count = recorder->Abandon();
    givenUp += count;
    return count;
}

RecordingReport GrabRecording::Report() const {
    RecordingReport report;
    report.output = options.output;
    report.format = options.Format();
    report.wanted = options.frames;
    report.counts = recorder->Counts();
    report.givenUp = givenUp;
    report.unknownGaps = unknownGaps;
    report.queueFull = queueFull;
    report.failure = recorder->Failure();
    return report;
}

/// What was latched before the first frame, unless the frames' timestamps are of another clock.
void GrabRecording::RelateClocks() {
    if (!latchedClock || !arrivals.Agrees(*latchedClock)) {
        recorder->DescribeClock(arrivals.Relation());
    }
}

RecordingReport GrabRecording::Close(const std::string& ending) {
    recorder->WaitUntilWritten(0xFFFFFFFFu);
    RelateClocks();
    const std::string reason = Report().Reason();
    recorder->Close(reason.empty() ? ending : reason);
    return Report();
}

std::string RecordingReport::Reason() const {
    std::string text = queueFull;
    if (wanted != 0 && (!queueFull.empty() || !failure.empty())) {
        text += (text.empty() ? "" : ": ") + std::to_string(counts.recorded) + " of " +
                std::to_string(wanted) + " frames are recorded";
    }
    const std::uint64_t missing = counts.Missing();
    if (missing == 0) {
        return text;
    }
    std::string parts;
    AppendPart(parts, counts.MissingFor(FrameStatus::kDropped) - unknownGaps,
               "dropped by the camera or its SDK");
    AppendPart(parts, counts.MissingFor(FrameStatus::kIncomplete), "incomplete");
    AppendPart(parts, counts.MissingFor(FrameStatus::kLost) - givenUp,
               failure.empty() ? "lost because this program was too slow" : "not written");
    AppendPart(parts, givenUp, "given up before they were written");
    AppendPart(parts, counts.MissingFor(FrameStatus::kDamaged),
               "written over by the camera while being copied");
    AppendPart(parts, unknownGaps,
               unknownGaps == 1 ? "gap of unknown length" : "gaps of unknown length");
    text += text.empty() ? "" : "; ";
    text += unknownGaps == 0 ? Frames(missing) : "at least " + Frames(missing);
    return text + (missing == 1 ? " is" : " are") + " missing from the recording: " + parts;
}

JsonValue RecordingReport::Json() const {
    const std::string reason = failure.empty() ? Reason() : failure;
    const auto missing = [this](FrameStatus status) {
        return counts.MissingFor(status);
    };
    return JsonObject({{"output", output},
                       {"format", format},
                       {"wanted", wanted == 0 ? JsonValue(nullptr) : JsonValue(wanted)},
                       {"recorded", counts.recorded},
                       {"bytes", counts.bytes},
                       {"missing", counts.Missing()},
                       {"dropped", missing(FrameStatus::kDropped)},
                       {"incomplete", missing(FrameStatus::kIncomplete)},
                       {"lost", missing(FrameStatus::kLost)},
                       {"damaged", missing(FrameStatus::kDamaged)},
                       {"givenUp", givenUp},
                       {"reason", reason.empty() ? JsonValue(nullptr) : JsonValue(reason)}});
}
