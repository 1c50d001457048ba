// running_recording.cpp - a recording of what a page looks at
#include "apps/serve/running_recording.h"

#include "apps/recording/host_clock.h"

namespace {

constexpr std::uint32_t kWithoutWaiting = 0;

GrabOptions OptionsFor(const RecordingWish& wish) {
    GrabOptions options;
    options.frames = wish.frames;
    options.format = wish.format;
    options.output = wish.directory;
    return options;
}

} // namespace

RunningRecording::RunningRecording(Session& session, const RecordingWish& wish)
    : options(OptionsFor(wish)),
      name(wish.name),
      recording(session, options, UnixMinusHostNanoseconds()) {}

std::vector<std::uint8_t>* RunningRecording::NextBuffer(std::uint64_t imageBytes) {
    return recording.NextBuffer(imageBytes);
}

void RunningRecording::Add(FrameResult result, const TakenFrame& frame, const ImageLayout& layout) {
    recording.Add(result, frame, layout);
    ++taken;
    if (taken == options.frames || recording.IsOver()) {
        hasAll = true;
    }
}

RecordingState RunningRecording::State() const {
    RecordingState state;
    const RecorderCounts counts = recording.Counts();
    state.directory = name;
    state.written = counts.recorded;
    state.taken = taken;
    state.wanted = options.frames;
    state.lost = counts.Missing();
    state.waiting = counts.waiting;
    return state;
}

void RunningRecording::EndEarly(const std::string& why) {
    if (!hasAll) {
        ending = why + " after " + std::to_string(taken.load()) + " of " +
                 std::to_string(options.frames) + " frames";
    }
    hasAll = true;
}

bool RunningRecording::TryClose() {
    if (!recording.WaitUntilWritten(kWithoutWaiting)) {
        return false;
    }
    Close();
    return true;
}

void RunningRecording::Close() {
    const RecordingReport report = recording.Close(ending);
    outcome = State();
    outcome.isDone = true;
    outcome.error = !report.failure.empty()    ? report.failure
                    : !report.Reason().empty() ? report.Reason()
                                               : ending;
}
