#include "pxnc/simulator/callback_scope.h"

namespace pxsim {
namespace {

thread_local bool insideFrameCallback = false;

} // namespace

FrameCallbackScope::FrameCallbackScope() {
    insideFrameCallback = true;
}

FrameCallbackScope::~FrameCallbackScope() {
    insideFrameCallback = false;
}

bool InsideFrameCallback() {
    return insideFrameCallback;
}

} // namespace pxsim
