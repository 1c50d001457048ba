// shared_library.cpp - shared libraries on Windows (LoadLibrary)
#include "platform/shared_library.h"

#include "platform/win32/last_error.h"

#include <windows.h>

#include <utility>

namespace platform {

namespace {

// Compatibility: installed libraries rely on exactly these flags (0x1100) to find their
// dependencies, which are in their own directory.
constexpr DWORD kOwnAndDefaultDirectories =
    LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
static_assert(kOwnAndDefaultDirectories == 0x1100);

} // namespace

bool SharedLibrary::Load(const std::string& path, bool absolutePath, std::string* error) {
    Unload();
    handle = absolutePath ? LoadLibraryExA(path.c_str(), nullptr, kOwnAndDefaultDirectories)
                          : LoadLibraryA(path.c_str());
    if (!handle && error) {
        *error = SystemErrorText(GetLastError());
    }
    return handle != nullptr;
}

void SharedLibrary::Unload() {
    if (handle) {
        FreeLibrary(static_cast<HMODULE>(std::exchange(handle, nullptr)));
    }
}

void* SharedLibrary::FindSymbol(const char* name) const {
    return handle ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name))
                  : nullptr;
}

void KeepThisLibraryLoaded() {
    HMODULE pinned = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&KeepThisLibraryLoaded), &pinned);
}

} // namespace platform
