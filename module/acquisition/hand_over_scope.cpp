// hand_over_scope.cpp - whether the calling thread hands over the image of a synchronous snap
#include "acquisition/hand_over_scope.h"

namespace pyxen {

namespace {

thread_local const HandOverScope* innermost = nullptr;

} // namespace

HandOverScope::HandOverScope(const Acquisition& handingOver)
    : acquisition(&handingOver), outer(innermost) {
    innermost = this;
}

HandOverScope::~HandOverScope() {
    innermost = outer;
}

bool HandOverScope::IsInside(const Acquisition& acquisition) {
    for (const HandOverScope* scope = innermost; scope; scope = scope->outer) {
        if (scope->acquisition == &acquisition) {
            return true;
        }
    }
    return false;
}

} // namespace pyxen
