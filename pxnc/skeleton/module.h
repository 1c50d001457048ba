// module.h - a module of the SDK, as an implementation provides it
#pragma once

#include "pxnc/skeleton/feature.h"
#include "pxnc/skeleton/function_ref.h"
#include "pxnc/skeleton/stored_value.h"

#include <cstdint>
#include <string>
#include <vector>

namespace skeleton {

/// System, transport layer, interface, camera, local device, stream or the chunk data of a frame:
/// a set of features, and what else its handle offers. Any thread.
class Module {
public:
    virtual ~Module() = default;

    /// The descriptions of all features, in their order.
    virtual std::vector<PxnFeatureInfo> ListFeatures() = 0;
    /// Runs `use(feature)` with the feature lock held, which may be taken again inside it.
    /// PxnErrNotFound when there is no such feature.
    virtual PxnError With(const char* name, FunctionRef<PxnError(Feature&)> use) = 0;
    /// A host has written or run the feature. Called without a lock.
    virtual void OnWritten(const char* /*name*/) {}
    /// A capture has started or ended, which locks and unlocks features. Called without a lock.
    virtual void OnCaptureChanged() {}
    /// A host is about to register for changes of the feature. Called without a lock.
    virtual void OnWatched(const char* /*name*/) {}

    /// Bytes of a frame at the present settings. Camera and stream modules only.
    virtual PxnError GetPayloadSize(std::uint32_t& /*bytes*/) { return PxnErrBadHandle; }
    ///@{
    /// Registers; `done` is the number of bytes transferred, also on a failure. Camera modules
    /// only.
    virtual PxnError ReadMemory(std::uint64_t /*address*/, char* /*buffer*/, std::uint32_t /*size*/,
                                std::uint32_t& /*done*/) {
        return PxnErrNotSupported;
    }
    virtual PxnError WriteMemory(std::uint64_t /*address*/, const char* /*bytes*/,
                                 std::uint32_t /*size*/, std::uint32_t& /*done*/) {
        return PxnErrNotSupported;
    }
    ///@}

    /// The present values that a settings file keeps.
    virtual std::vector<StoredValue> GetStoredValues();
    /// Gives features stored values, all or none. Returns PxnErrInvalidAccess when settings cannot
    /// be loaded now, PxnErrInvalidValue when a value is refused for good: what was changed is
    /// changed back then.
    virtual PxnError ApplyStoredValues(std::vector<StoredValue> values);
};

} // namespace skeleton
