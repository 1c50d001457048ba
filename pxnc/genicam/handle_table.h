// handle_table.h - which handle stands for which module
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/module.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace genicam {

/// Hands out handles, which are numbers and never used twice, and finds modules by them. Whoever
/// found a module keeps it alive, so that a handle may be closed while another thread uses it. Any
/// thread.
class HandleTable {
public:
    /// A number for a module that is about to be made.
    PxnHandle Reserve();
    void Add(std::shared_ptr<Module> module);
    void Remove(PxnHandle handle);
    /// Null when the handle stands for nothing (any more).
    std::shared_ptr<Module> Find(PxnHandle handle) const;
    /// Forgets everything.
    void Clear();

private:
    mutable platform::Mutex mutex;
    uintptr_t next GUARDED_BY(mutex) = 0x2000000000000010;
    std::unordered_map<PxnHandle, std::shared_ptr<Module>> modules GUARDED_BY(mutex);
};

} // namespace genicam
