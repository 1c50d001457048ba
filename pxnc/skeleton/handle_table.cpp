// handle_table.cpp - the handles that hosts hold, and what they refer to
#include "pxnc/skeleton/handle_table.h"

#include "pxnc/skeleton/backend.h"
#include "pxnc/skeleton/frame_book.h"

#include <utility>

namespace skeleton {

PxnHandle HandleTable::Reserve() {
    platform::MutexLock lock(mutex);
    last += 0x10;
    return reinterpret_cast<PxnHandle>(last);
}

void HandleTable::Put(PxnHandle handle, Target target) {
    platform::MutexLock lock(mutex);
    targets.insert_or_assign(handle, std::move(target));
}

PxnHandle HandleTable::Add(Target target) {
    const PxnHandle handle = Reserve();
    Put(handle, std::move(target));
    return handle;
}

bool HandleTable::Find(PxnHandle handle, Target& target) const {
    platform::MutexLock lock(mutex);
    const auto found = targets.find(handle);
    if (found == targets.end()) {
        return false;
    }
    target = found->second;
    return true;
}

bool HandleTable::Remove(PxnHandle handle) {
    Target removed; // destroyed without the mutex
    platform::MutexLock lock(mutex);
    const auto found = targets.find(handle);
    if (found == targets.end()) {
        return false;
    }
    removed = std::move(found->second);
    targets.erase(found);
    return true;
}

void HandleTable::Clear() {
    std::unordered_map<PxnHandle, Target> removed; // destroyed without the mutex
    platform::MutexLock lock(mutex);
    removed.swap(targets);
}

} // namespace skeleton
