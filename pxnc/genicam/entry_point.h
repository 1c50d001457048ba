// entry_point.h - what the entry points share
#pragma once

#include "pxnc/genicam/library.h"
#include "pxnc/include/pxnc.h"

#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace genicam {

/// Runs `body(library)` with the started library. No exception leaves an entry point: the only one
/// that can reach here is the lack of memory.
template <typename Body>
PxnError Enter(Body body) noexcept {
    try {
        const std::shared_ptr<Library> library = Library::Current();
        return library != nullptr ? body(*library) : PxnError{PxnErrApiNotStarted};
    } catch (const std::bad_alloc&) {
        return PxnErrResources;
    } catch (...) {
        return PxnErrInternalFault;
    }
}

/// As Enter, with the module of `handle`: `body(library, module)`. A handle that stands for
/// nothing, or for a vanished camera, answers PxnErrBadHandle.
template <typename Body>
PxnError EnterModule(PxnHandle handle, Body body) noexcept {
    return Enter([&](Library& library) -> PxnError {
        const std::shared_ptr<Module> module = library.Handles().Find(handle);
        if (module == nullptr || module->IsLost()) {
            return PxnErrBadHandle;
        }
        const PxnError result = body(library, *module);
        // What fails while the camera vanishes fails because of that.
        return result != PxnErrSuccess && module->IsLost() ? PxnError{PxnErrBadHandle} : result;
    });
}

/// As EnterModule, with one feature and its module's mutex held: `body(feature)`.
template <typename Body>
PxnError EnterFeature(PxnHandle handle, const char* name, Body body) noexcept {
    return EnterModule(handle, [&](Library&, const Module& module) {
        return name == nullptr ? PxnError{PxnErrBadParameter} : module.With(name, body);
    });
}

/// As EnterFeature for what changes something; whoever watches the module's features is told.
template <typename Body>
PxnError EnterWrite(PxnHandle handle, const char* name, Body body) noexcept {
    return EnterModule(handle, [&](Library& library, const Module& module) -> PxnError {
        if (name == nullptr) {
            return PxnErrBadParameter;
        }
        const PxnError result = module.With(name, body);
        if (result == PxnErrSuccess) {
            library.Changes().ReportWrite(handle, name);
            for (const PxnHandle dependent : module.Dependents()) {
                library.Changes().ReportWrite(dependent, {});
            }
        }
        return result;
    });
}

/// Hands out a list as every list entry does: null array and capacity 0 only count.
template <typename Record>
PxnError CopyList(const std::vector<Record>& list, Record* array, uint32_t capacity,
                  uint32_t* found) {
    if (found == nullptr || (array == nullptr && capacity != 0)) {
        return PxnErrBadParameter;
    }
    *found = static_cast<uint32_t>(list.size());
    if (array == nullptr) {
        return PxnErrSuccess;
    }
    for (uint32_t i = 0; i < capacity && i < *found; ++i) {
        array[i] = list[i];
    }
    return *found > capacity ? PxnErrMoreData : PxnErrSuccess;
}

} // namespace genicam
