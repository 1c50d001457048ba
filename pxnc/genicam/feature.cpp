// feature.cpp - what the features of all modules have in common
#include "pxnc/genicam/feature.h"

namespace genicam {

PxnError Feature::RequireReadable() {
    bool readable = false;
    bool writable = false;
    const PxnError result = GetAccess(readable, writable);
    return result != PxnErrSuccess || readable ? result : PxnErrInvalidAccess;
}

PxnError Feature::RequireWritable() {
    bool readable = false;
    bool writable = false;
    const PxnError result = GetAccess(readable, writable);
    return result != PxnErrSuccess || writable ? result : PxnErrInvalidAccess;
}

} // namespace genicam
