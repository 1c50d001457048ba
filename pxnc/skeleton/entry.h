// entry.h - what the functions of the SDK have in common
#pragma once

#include "pxnc/skeleton/backend.h"
#include "pxnc/skeleton/callback_scope.h"
#include "pxnc/skeleton/frame_book.h"
#include "pxnc/skeleton/library.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace skeleton {

/// Runs the body of a function. No exception leaves it.
template <typename Body>
PxnError Guarded(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return PxnErrResources;
    } catch (...) {
        return PxnErrInternalFault;
    }
}

/// `body(backend)` of the started library.
template <typename Body>
PxnError Enter(const EntryCall& call, Body body) noexcept {
    return Guarded([&]() -> PxnError {
        if (const PxnError refused = TheImplementation().OnCall(call)) {
            return refused;
        }
        const std::shared_ptr<Backend> backend = Library::Instance().Current();
        return backend ? body(*backend) : PxnError{PxnErrApiNotStarted};
    });
}

/// `body(backend, target)` of a handle whose camera has not vanished. `isGiven` is false when an
/// argument that the function needs is missing.
template <typename Body>
PxnError EnterModule(const EntryCall& call, PxnHandle handle, bool isGiven, Body body) noexcept {
    return Enter(call, [&](Backend& backend) -> PxnError {
        Target target;
        if (!backend.Find(handle, target) || target.HasVanished()) {
            return PxnErrBadHandle;
        }
        const PxnError result = isGiven ? body(backend, target) : PxnError{PxnErrBadParameter};
        // What fails while the camera vanishes fails because of that.
        return result != PxnErrSuccess && target.HasVanished() ? PxnError{PxnErrBadHandle} : result;
    });
}

/// `body(feature)` of a feature of that type (PxnFeatureDataUnknown: any), with its module's lock
/// held.
template <typename Body>
PxnError WithFeature(const Target& target, const char* name, std::uint32_t type, Body body) {
    return target.module->With(name, [&](Feature& feature) -> PxnError {
        return type == PxnFeatureDataUnknown || feature.DataType() == type
                   ? body(feature)
                   : PxnError{PxnErrWrongType};
    });
}

/// WithFeature on the module of a handle.
template <typename Body>
PxnError EnterFeature(const EntryCall& call, PxnHandle handle, const char* name, std::uint32_t type,
                      bool isGiven, Body body) noexcept {
    return EnterModule(call, handle, name && isGiven, [&](Backend&, const Target& target) {
        return WithFeature(target, name, type, body);
    });
}

/// As EnterFeature, for what fills a record.
template <typename Record, typename Body>
PxnError EnterDescription(const EntryCall& call, PxnHandle handle, const char* name,
                          std::uint32_t type, bool isGiven, Record* record, std::uint32_t size,
                          Body body) noexcept {
    return EnterModule(call, handle, name && isGiven && record,
                       [&](Backend&, const Target& target) {
                           return size == sizeof *record ? WithFeature(target, name, type, body)
                                                         : PxnError{PxnErrStructSize};
                       });
}

/// As EnterFeature, for what changes something: handles opened for reading are refused.
template <typename Body>
PxnError EnterWrite(const EntryCall& call, PxnHandle handle, const char* name, std::uint32_t type,
                    bool isGiven, Body body) noexcept {
    return EnterModule(call, handle, name && isGiven, [&](Backend& backend, Target& target) {
        bool isStartOrStop = false;
        const PxnError result = target.module->With(name, [&](Feature& feature) -> PxnError {
            if (feature.DataType() != type) {
                return PxnErrWrongType;
            }
            isStartOrStop = feature.IsStartOrStop();
            return target.isWritable ? body(feature) : PxnError{PxnErrInvalidAccess};
        });
        if (result == PxnErrSuccess) {
            target.module->OnWritten(name);
        }
        if (isStartOrStop) {
            backend.Changes().DrainPatiently(); // hosts know what is locked when it returns
        }
        return result;
    });
}

/// Hands out a list by the rules of all list functions.
template <typename Record>
PxnError CopyList(const char* entry, const std::vector<Record>& list, Record* array,
                  std::uint32_t capacity, std::uint32_t* found) {
    *found = TheImplementation().ReportedCount(entry, static_cast<std::uint32_t>(list.size()));
    if (!array) {
        return PxnErrSuccess;
    }
    const std::size_t count = std::min({list.size(), std::size_t{capacity}, std::size_t{*found}});
    std::copy_n(list.begin(), count, array);
    return *found > capacity ? PxnErrMoreData : PxnErrSuccess;
}

/// True when a list function has been given what it needs.
template <typename Record>
bool IsListPlace(const Record* array, std::uint32_t capacity, const std::uint32_t* found) {
    return found && (array || capacity == 0);
}

} // namespace skeleton
