// camera_owner.cpp - the one thread that uses the camera
#include "apps/serve/camera_owner.h"

#include "apps/serve/request_failure.h"
#include "platform/clock.h"
#include "platform/interrupt.h"

namespace {

constexpr std::uint32_t kPollMs = 200;
constexpr std::uint64_t kPollNs = kPollMs * 1000000ull;
/// An interrupt does not end a wait for orders.
constexpr std::uint32_t kLookForInterruptMs = 50;
constexpr std::uint64_t kListInterestNs = 5000000000;

} // namespace

CameraSession& CameraOwner::Present(CameraSession* session) {
    if (!session) {
        throw RequestFailure(kUnavailable, "the program is ending");
    }
    return *session;
}

void CameraOwner::Run() {
    std::uint64_t lastPoll = 0;
    for (;;) {
        Task task;
        if (!TakeTask(task)) {
            break;
        }
        if (task) {
            task(&session);
        }
        const std::uint64_t now = platform::MonotonicNanoseconds();
        if (now - lastPoll >= kPollNs) {
            lastPoll = now;
            bool isListWanted = false;
            {
                const platform::MutexLock lock(mutex);
                isListWanted = listWanted != 0 && now - listWanted < kListInterestNs;
            }
            session.Poll(isListWanted);
        }
    }
    RefuseAll();
}

void CameraOwner::End() {
    const platform::MutexLock lock(mutex);
    isEnding = true;
    posted.NotifyAll();
}

void CameraOwner::WantList() {
    const platform::MutexLock lock(mutex);
    listWanted = platform::MonotonicNanoseconds();
}

void CameraOwner::Post(Task task) {
    {
        const platform::MutexLock lock(mutex);
        if (!isEnding) {
            tasks.push_back(std::move(task));
            posted.NotifyOne();
            return;
        }
    }
    task(nullptr);
}

/// Waits for a task for a moment; an empty one when none has come. False at the end.
bool CameraOwner::TakeTask(Task& task) {
    const platform::MutexLock lock(mutex);
    if (tasks.empty() && !isEnding) {
        posted.WaitFor(mutex, kLookForInterruptMs);
    }
    if (isEnding || platform::InterruptRequested()) {
        isEnding = true;
        return false;
    }
    if (!tasks.empty()) {
        task = std::move(tasks.front());
        tasks.pop_front();
    }
    return true;
}

void CameraOwner::RefuseAll() {
    std::deque<Task> refused;
    {
        const platform::MutexLock lock(mutex);
        refused.swap(tasks);
    }
    for (const Task& task : refused) {
        task(nullptr);
    }
}
