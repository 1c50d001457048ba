// camera_order.h - what one thread has another one do
#pragma once

#include "platform/condition.h"
#include "platform/mutex.h"

#include <functional>

/// An order that a thread waits for while the owner of the camera carries it out. A failure is
/// thrown anew to the one that waits, from its texts: no exception is shared by two threads.
class CameraOrder {
public:
    /// Runs `job`; ends the wait whatever it throws. The owner's thread, once.
    void Run(const std::function<void()>& job);
    /// Waits for the end of Run and throws what it has caught: RequestFailure and CommandFailure as
    /// they are, everything else as std::runtime_error.
    void Await();

private:
    void Finish(std::function<void()> failure);

    platform::Mutex mutex;
    platform::Condition finished;
    bool isFinished GUARDED_BY(mutex) = false;
    std::function<void()> raise GUARDED_BY(mutex); // throws the failure; null without one
};
