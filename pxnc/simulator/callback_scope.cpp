#include "pxnc/simulator/callback_scope.h"

namespace pxsim {
namespace {

thread_local CallbackKind running = CallbackKind::kNone;

} // namespace

CallbackScope::CallbackScope(CallbackKind kind) {
    running = kind;
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

} // namespace pxsim
