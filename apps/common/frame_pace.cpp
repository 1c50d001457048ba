// frame_pace.cpp - keeps a camera that can wait from being faster than the program
#include "apps/common/frame_pace.h"

void FramePace::Begin(std::uint64_t bufferCount) {
    const platform::MutexLock lock(mutex);
    isOn = bufferCount > 1;
    buffers = bufferCount;
    count = 0;
    held.clear();
}

void FramePace::End() {
    const platform::MutexLock lock(mutex);
    isOn = false;
    changed.NotifyAll();
}

void FramePace::Await() {
    const platform::MutexLock lock(mutex);
    ++count;
    // This frame has its buffer; the next one is filled when the callback has returned, and may not
    // be that of the oldest frame, of which all others may be behind.
    while (isOn && !held.empty() && count + 1 - held.front() >= buffers) {
        changed.Wait(mutex);
    }
}

void FramePace::HandedOver() {
    const platform::MutexLock lock(mutex);
    held.push_back(count);
}

void FramePace::Released() {
    const platform::MutexLock lock(mutex);
    if (!held.empty()) {
        held.pop_front();
        changed.NotifyAll();
    }
}
