// camera_owner.h - the one thread that uses the camera
#pragma once

#include "apps/serve/camera_order.h"
#include "apps/serve/camera_session.h"
#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

/// Does what requests want of the camera, one after another, on the thread that calls Run; looks
/// after the camera in between.
class CameraOwner {
public:
    explicit CameraOwner(CameraSession& cameraSession) : session(cameraSession) {}
    CameraOwner(const CameraOwner&) = delete;
    CameraOwner& operator=(const CameraOwner&) = delete;

    /// Returns after End, or when the user interrupts the program. What is not done then is
    /// refused.
    void Run();
    /// Any thread.
    void End();

    /// Runs `job` with the session on the owner's thread and returns what it returns; throws what
    /// it throws as CameraOrder does, and RequestFailure when the program is ending. Any thread but
    /// the owner's.
    template <typename Job>
    auto Do(Job job) -> std::invoke_result_t<Job, CameraSession&> {
        using Result = std::invoke_result_t<Job, CameraSession&>;
        // Kept by the task as well, which is at work on it until after the wait has ended.
        const auto order = std::make_shared<CameraOrder>();
        if constexpr (std::is_void_v<Result>) {
            Post([&job, order](CameraSession* owned) { order->Run([&] { job(Present(owned)); }); });
            order->Await();
        } else {
            std::optional<Result> result;
            Post([&job, &result, order](CameraSession* owned) {
                order->Run([&] { result.emplace(job(Present(owned))); });
            });
            order->Await();
            return std::move(*result);
        }
    }
    /// Somebody looks at the list of cameras. Any thread.
    void WantList();

private:
    using Task = std::function<void(CameraSession*)>; // null: it is refused

    static CameraSession& Present(CameraSession* session);
    void Post(Task task);
    bool TakeTask(Task& task);
    void RefuseAll();

    CameraSession& session;
    platform::Mutex mutex;
    platform::Condition posted;
    std::deque<Task> tasks GUARDED_BY(mutex);
    std::uint64_t listWanted GUARDED_BY(mutex) = 0; // when; 0: never
    bool isEnding GUARDED_BY(mutex) = false;
};
