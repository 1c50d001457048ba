#include "pxnc/simulator/handle_table.h"

namespace pxsim {

PxnHandle HandleTable::Add(const HandleTarget& target) {
    platform::MutexLock lock(mutex);
    last += 0x10;
    const auto handle = reinterpret_cast<PxnHandle>(last);
    targets.emplace(handle, target);
    return handle;
}

void HandleTable::AddSystem(Module* system) {
    platform::MutexLock lock(mutex);
    HandleTarget target;
    target.module = system;
    targets.emplace(PXN_SYSTEM_HANDLE, target);
}

bool HandleTable::Find(PxnHandle handle, HandleTarget& target) const {
    platform::MutexLock lock(mutex);
    auto found = targets.find(handle);
    if (found == targets.end()) {
        return false;
    }
    target = found->second;
    return true;
}

bool HandleTable::Remove(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    return targets.erase(handle) != 0;
}

void HandleTable::MarkVanished(PxnHandle handle) {
    platform::MutexLock lock(mutex);
    if (auto found = targets.find(handle); found != targets.end()) {
        found->second.vanished = true;
    }
}

} // namespace pxsim
