// shared_library.cpp - shared libraries on POSIX (dlopen)
#include "platform/shared_library.h"

#include <dlfcn.h>

#include <utility>

namespace platform {

bool SharedLibrary::Load(const std::string& path, bool, std::string* error) {
    Unload();
    // For an empty name dlopen returns the program itself.
    if (path.empty()) {
        if (error) {
            *error = "no file name";
        }
        return false;
    }
    handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle && error) {
        const char* reason = dlerror();
        *error = reason ? reason : "";
    }
    return handle != nullptr;
}

void SharedLibrary::Unload() {
    if (handle) {
        dlclose(std::exchange(handle, nullptr));
    }
}

void* SharedLibrary::FindSymbol(const char* name) const {
    return handle ? dlsym(handle, name) : nullptr;
}

void KeepThisLibraryLoaded() {
    Dl_info here{};
    if (dladdr(reinterpret_cast<const void*>(&KeepThisLibraryLoaded), &here) != 0) {
        // The handle is never closed; it counts as one more user.
        static_cast<void>(dlopen(here.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE));
    }
}

} // namespace platform
