// event_recorder.cpp - records a grabber's events
#include "apps/common/event_recorder.h"

#include "apps/common/serve_windows.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/interrupt.h"
#include "platform/window_message.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
constexpr std::uint64_t kLookAgainMs = 10;
constexpr std::uint64_t kInterruptionMs = 100;

} // namespace

EventRecorder::EventRecorder(CMivoraGrabber& grabberToWatch) : grabber(grabberToWatch) {
    const bool isInstalled = grabber.InstPostProcessCallBack(OnPostProcess, this) == MV_OK &&
                             grabber.InstCamCfgChangeCallBack(OnCamCfgChange, this) == MV_OK &&
                             grabber.InstCamCntrlCallBack(OnCamCntrl, this) == MV_OK &&
                             grabber.InstDialogUpdateCallBack(OnDialogUpdate, this) == MV_OK;
    if (!isInstalled) {
        RemoveReceivers();
        throw std::bad_alloc(); // the only reason why there can be no receiver
    }
}

EventRecorder::~EventRecorder() {
    RemoveReceivers();
}

void EventRecorder::RemoveReceivers() {
    grabber.InstPostProcessCallBack(nullptr, nullptr);
    grabber.InstCamCfgChangeCallBack(nullptr, nullptr);
    grabber.InstCamCntrlCallBack(nullptr, nullptr);
    grabber.InstDialogUpdateCallBack(nullptr, nullptr);
}

GrabberEvents EventRecorder::Take() {
    platform::MutexLock lock(mutex);
    return std::exchange(events, {});
}

std::uint64_t EventRecorder::Frames() const {
    platform::MutexLock lock(mutex);
    return frames;
}

void EventRecorder::ResetFrames() {
    platform::MutexLock lock(mutex);
    frames = 0;
}

std::uint64_t EventRecorder::ConfigurationChanges() const {
    platform::MutexLock lock(mutex);
    return configurationChanges;
}

bool EventRecorder::WaitFor(const std::function<bool()>& condition, std::uint64_t timeoutMs) {
    return Wait(condition, timeoutMs, kLookAgainMs);
}

bool EventRecorder::WaitForEvent(const std::function<bool()>& condition, std::uint64_t timeoutMs) {
    return Wait(condition, timeoutMs, platform::HasMessages() ? kLookAgainMs : kInterruptionMs);
}

bool EventRecorder::Wait(const std::function<bool()>& condition, std::uint64_t timeoutMs,
                         std::uint64_t lookAgainMs) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    for (;;) {
        changed.Reset();
        ServeWindows(grabber);
        if (condition()) {
            return true;
        }
        const std::uint64_t elapsedMs =
            (platform::MonotonicNanoseconds() - begin) / kNanosecondsPerMillisecond;
        if (elapsedMs >= timeoutMs || platform::InterruptRequested()) {
            return false;
        }
        changed.Wait(static_cast<std::uint32_t>(std::min(timeoutMs - elapsedMs, lookAgainMs)));
    }
}

void EventRecorder::SetFrameHook(std::function<void(std::uint64_t bufferIndex)> hook) {
    frameHook = std::move(hook);
}

void EventRecorder::OnPostProcess(std::uint64_t bufferIndex, std::uint32_t, void* self) {
    auto& recorder = *static_cast<EventRecorder*>(self);
    if (recorder.frameHook) {
        recorder.frameHook(bufferIndex);
    }
    {
        platform::MutexLock lock(recorder.mutex);
        ++recorder.events.postProcess;
        recorder.events.lastBuffer = static_cast<std::int64_t>(bufferIndex);
        ++recorder.frames;
    }
    recorder.changed.Set();
}

void EventRecorder::OnCamCfgChange(void* self) {
    auto& recorder = *static_cast<EventRecorder*>(self);
    {
        platform::MutexLock lock(recorder.mutex);
        ++recorder.events.camCfgChange;
        ++recorder.configurationChanges;
    }
    recorder.changed.Set();
}

std::uint32_t EventRecorder::OnCamCntrl(std::uint32_t code, void* self) {
    auto& recorder = *static_cast<EventRecorder*>(self);
    {
        platform::MutexLock lock(recorder.mutex);
        recorder.events.camCntrl.push_back(code);
    }
    recorder.changed.Set();
    return 1;
}

void EventRecorder::OnDialogUpdate(std::uint32_t mask, void* self) {
    auto& recorder = *static_cast<EventRecorder*>(self);
    {
        platform::MutexLock lock(recorder.mutex);
        recorder.events.dialogs.push_back(mask);
    }
    recorder.changed.Set();
}
