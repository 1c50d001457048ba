#include "pxnc/genicam/handle_table.h"

#include <utility>

namespace genicam {

PxnHandle HandleTable::Reserve() {
    const platform::MutexLock lock(mutex);
    const PxnHandle handle = reinterpret_cast<PxnHandle>(next);
    next += 0x10;
    return handle;
}

void HandleTable::Add(std::shared_ptr<Module> module) {
    const platform::MutexLock lock(mutex);
    const PxnHandle handle = module->Handle();
    modules.emplace(handle, std::move(module));
}

void HandleTable::Remove(PxnHandle handle) {
    std::shared_ptr<Module> removed;
    const platform::MutexLock lock(mutex);
    const auto found = modules.find(handle);
    if (found != modules.end()) {
        removed = std::move(found->second);
        modules.erase(found);
    }
}

std::shared_ptr<Module> HandleTable::Find(PxnHandle handle) const {
    const platform::MutexLock lock(mutex);
    const auto found = modules.find(handle);
    return found != modules.end() ? found->second : nullptr;
}

void HandleTable::Clear() {
    std::unordered_map<PxnHandle, std::shared_ptr<Module>> removed;
    const platform::MutexLock lock(mutex);
    removed.swap(modules);
}

} // namespace genicam
