// frame_callback_scope.cpp - knows whether this thread is inside a grabber's frame callback
#include "acquisition/frame_callback_scope.h"

namespace {

thread_local const CPyxenGrabber* running = nullptr;

} // namespace

FrameCallbackScope::FrameCallbackScope(const CPyxenGrabber* grabber) : outer(running) {
    running = grabber;
}

FrameCallbackScope::~FrameCallbackScope() {
    running = outer;
}

bool FrameCallbackScope::IsInside(const CPyxenGrabber* grabber) {
    return running == grabber;
}
