// continuous_grab.cpp - continuous acquisition with an account of every frame
#include "apps/common/continuous_grab.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/clock.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kContinuous = 1;

} // namespace

FrameAccount& FrameAccount::operator+=(const FrameAccount& other) {
    completed += other.completed;
    delivered += other.delivered;
    taken += other.taken;
    lost += other.lost;
    flushed += other.flushed;
    damaged += other.damaged;
    inError += other.inError;
    if (!other.sdk) {
        sdk.reset();
    } else if (sdk) {
        *sdk += *other.sdk;
    }
    return *this;
}

bool FrameAccount::IsClosed() const {
    const bool hostIsClosed = completed == delivered && delivered == taken + lost + flushed;
    const bool sdkIsClosed =
        !sdk || (sdk->announced == sdk->revoked && sdk->queued == sdk->completed + sdk->flushed &&
                 sdk->callbacks == completed + inError);
    return hostIsClosed && sdkIsClosed;
}

double FrameTiming::Rate() const {
    const double seconds = static_cast<double>(takenNanoseconds) / 1e9;
    return seconds > 0 ? static_cast<double>(takenIntervals) / seconds : 0;
}

ContinuousGrab::ContinuousGrab(Session& grabbingSession, std::uint64_t buffers, bool pacesFrames)
    : session(grabbingSession), bufferCount(buffers), isPaced(pacesFrames) {
    session.Events().SetFrameHook([this](std::uint64_t index) { OnFrame(index); });
}

ContinuousGrab::~ContinuousGrab() {
    Stop();
    session.Events().SetFrameHook(nullptr);
}

void ContinuousGrab::Prepare() {
    CMivoraGrabber& grabber = session.Grabber();
    layout = DescribeImage(session.CheckedMode());
    session.PrepareBuffers(bufferCount, std::to_string(bufferCount) + " frame buffers");
    {
        platform::MutexLock lock(timingMutex);
        timing.last = 0; // a pause between two runs is not an interval
    }
    lastTaken = 0;
    journal.Begin(static_cast<std::size_t>(bufferCount));
    pace.Begin(isPaced ? bufferCount : 1);
    ServiceClient* const services = Services();
    errorsReported = 0;
    isReported = services && services->TryInstallFrameReceiver(OnReceived, this);
    // The grabber must keep every frame and return them in order.
    grabber.SetFeature(EMV_FEATURE_KEEP_NEWEST, 0);
    takenInRun = 0;
    damagedInRun = 0;
    errorsBefore = session.Log().ReceiveErrors();
    errorsNoted = errorsBefore;
    changesAtLastFrame = session.Events().ConfigurationChanges();
    session.Events().ResetFrames();
    sdkBefore = CountOfSdk();
    running = true;
}

void ContinuousGrab::Begin() {
    session.Check("Snap", session.Grabber().Snap(kContinuous), session.ActCameraText());
}

/// The SDK counts for all cameras together.
std::optional<SdkCounts> ContinuousGrab::CountOfSdk() {
    return session.IsShared() ? std::nullopt : session.Sdk().Counts();
}

/// The log has the errors of all cameras, the module's reports those of this one.
std::uint64_t ContinuousGrab::ErrorsInRun() const {
    return isReported ? errorsReported.load() : session.Log().ReceiveErrors() - errorsBefore;
}

ServiceClient* ContinuousGrab::Services() {
    try {
        return &session.Services();
    } catch (const CommandFailure&) {
        return nullptr; // the module offers none
    }
}

void ContinuousGrab::OnReceived(const MV_FRAME_INFO* frame, void* self) {
    auto& grab = *static_cast<ContinuousGrab*>(self);
    if (frame->status != MV_FRAME_COMPLETE) {
        ++grab.errorsReported;
    }
    grab.pace.Await();
    grab.journal.Received(*frame, platform::MonotonicNanoseconds());
}

void ContinuousGrab::OnFrame(std::uint64_t bufferIndex) {
    const std::uint64_t now = platform::MonotonicNanoseconds();
    const std::optional<std::uint64_t> age = session.Sdk().FrameAge();
    if (!isReported) {
        pace.Await();
        // The log has a line for each frame in error, from this thread.
        const std::uint64_t errors = session.Log().ReceiveErrors();
        journal.ReceivedInError(errors - errorsNoted, now);
        errorsNoted = errors;
    }
    pace.HandedOver();
    journal.HandedOver(bufferIndex, now);
    changesAtLastFrame = session.Events().ConfigurationChanges();
    platform::MutexLock lock(timingMutex);
    if (age) {
        timing.latency.Add(*age);
    }
    if (timing.last != 0) {
        timing.interval.Add(now - timing.last);
    }
    timing.last = now;
}

FrameResult ContinuousGrab::TakeFrame(std::uint64_t timeoutMs, std::vector<std::uint8_t>* copy,
                                      TakenFrame& taken) {
    CMivoraGrabber& grabber = session.Grabber();
    EventRecorder& events = session.Events();
    // A frame counts only after its callback, when its arrival time is known.
    const auto isFrameWaiting = [&] {
        return events.Frames() > takenInRun + grabber.GetLostBufferCount();
    };
    std::uint64_t index = 0;
    if (!events.WaitForEvent(isFrameWaiting, timeoutMs) ||
        grabber.GetLastFilledBuffer(&index) != MV_OK) {
        return FrameResult::kNone;
    }
    const std::uint64_t now = platform::MonotonicNanoseconds();
    ++takenInRun;
    const bool isKnown = journal.Take(index, taken);
    handOver.Add(now - std::min(now, taken.handedOver));
    if (lastTaken != 0 && taken.handedOver > lastTaken) {
        ++takenIntervals;
        takenNanoseconds += taken.handedOver - lastTaken;
    }
    lastTaken = taken.handedOver;
    const bool isWhole = isKnown && (!copy || CopyImage(index, taken, *copy));
    grabber.ReleaseFrameBuffer(index);
    pace.Released();
    if (!isWhole) {
        ++damagedInRun;
        return FrameResult::kDamaged;
    }
    return FrameResult::kTaken;
}

bool ContinuousGrab::CopyImage(std::uint64_t bufferIndex, const TakenFrame& taken,
                               std::vector<std::uint8_t>& copy) const {
    const auto* const pixels =
        static_cast<const std::uint8_t*>(session.Grabber().GetFrameBuffer(bufferIndex));
    copy.assign(pixels, pixels + static_cast<std::size_t>(layout.Size()));
    // The module returns a buffer to the camera immediately; the camera refills it after having
    // filled all the others, be it with frames that are incomplete.
    return !taken.isOverwritten &&
           journal.CountAfter(taken.number) < std::max<std::uint64_t>(bufferCount - 1, 1);
}

void ContinuousGrab::Stop() {
    if (!running) {
        return;
    }
    running = false;
    CMivoraGrabber& grabber = session.Grabber();
    FrameAccount run;
    run.sdk.reset();
    pace.End(); // the module waits for a callback that runs
    // Frames that arrive between here and the end of the acquisition count as flushed.
    run.lost = grabber.GetLostBufferCount();
    grabber.StopSnap();
    if (isReported) {
        Services()->TryInstallFrameReceiver(nullptr, nullptr);
    }
    std::uint64_t completed = 0;
    grabber.GetGrabberParam(MVGF_FRAMES_RECEIVED, &completed, nullptr);
    run.completed = completed;
    run.delivered = session.Events().Frames();
    run.taken = takenInRun;
    run.damaged = damagedInRun;
    run.flushed = grabber.GetLostBufferCount() - run.lost;
    run.inError = ErrorsInRun();
    isReported = false;
    if (const std::optional<SdkCounts> counts = CountOfSdk(); counts && sdkBefore) {
        run.sdk = *counts - *sdkBefore;
    }
    std::uint64_t index = 0;
    while (grabber.GetLastFilledBuffer(&index) == MV_OK) {
        ++run.flushed;
        grabber.ReleaseFrameBuffer(index);
    }
    account += run;
}

bool ContinuousGrab::IsSuspicious() const {
    return session.Events().ConfigurationChanges() != changesAtLastFrame.load();
}

FrameTiming ContinuousGrab::Timing() const {
    platform::MutexLock lock(timingMutex);
    FrameTiming all = timing;
    all.handOver = handOver;
    all.takenIntervals = takenIntervals;
    all.takenNanoseconds = takenNanoseconds;
    return all;
}

std::uint64_t ContinuousGrab::LongestInterval() const {
    platform::MutexLock lock(timingMutex);
    return timing.interval.Max();
}
