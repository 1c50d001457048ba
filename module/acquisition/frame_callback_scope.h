// frame_callback_scope.h - knows whether this thread is inside a grabber's frame callback
#pragma once

class CPyxenGrabber;

/// Marks the calling thread as running the frame callback of a grabber, for the scope's time.
class FrameCallbackScope {
public:
    explicit FrameCallbackScope(const CPyxenGrabber* grabber);
    ~FrameCallbackScope();
    FrameCallbackScope(const FrameCallbackScope&) = delete;
    FrameCallbackScope& operator=(const FrameCallbackScope&) = delete;

    /// True when the calling thread is inside the grabber's frame callback.
    static bool IsInside(const CPyxenGrabber* grabber);

private:
    const CPyxenGrabber* const outer;
};
