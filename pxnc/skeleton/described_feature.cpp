// described_feature.cpp - a feature with a fixed description
#include "pxnc/skeleton/described_feature.h"

namespace skeleton {

PxnError DescribedFeature::RequireReadable() {
    bool readable = false;
    bool writable = false;
    const PxnError result = GetAccess(readable, writable);
    return result != PxnErrSuccess || readable ? result : PxnErrInvalidAccess;
}

PxnError DescribedFeature::RequireWritable() {
    bool readable = false;
    bool writable = false;
    const PxnError result = GetAccess(readable, writable);
    return result != PxnErrSuccess || writable ? result : PxnErrInvalidAccess;
}

} // namespace skeleton
