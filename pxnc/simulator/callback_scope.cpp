#include "pxnc/simulator/callback_scope.h"

namespace pxsim {
namespace {

thread_local CallbackKind running = CallbackKind::kNone;
thread_local Clock::time_point timeOfFrame;

} // namespace

CallbackScope::CallbackScope(CallbackKind kind, Clock::time_point frameTime) {
    running = kind;
    timeOfFrame = frameTime;
}

CallbackScope::~CallbackScope() {
    running = CallbackKind::kNone;
}

bool InsideCallback() {
    return running != CallbackKind::kNone;
}

bool InsideFrameCallback() {
    return running == CallbackKind::kFrame;
}

Clock::time_point CurrentFrameTime() {
    return timeOfFrame;
}

} // namespace pxsim
