// shared_library.h - loading shared libraries at run time
#pragma once

#include <string>

namespace platform {

/// Owns a loaded library and unloads it when destroyed. One thread at a time.
class SharedLibrary {
public:
    SharedLibrary() = default;
    ~SharedLibrary();
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Unloads the current library and loads `path`. On Windows, with `absolutePath`, the library's
    /// dependencies are searched for in its own directory and the default directories; without, the
    /// library and its dependencies are found by the standard search order. Elsewhere
    /// `absolutePath` has no effect: all symbols are resolved immediately and stay local. On
    /// failure returns false and stores the reason in `error` (unless null).
    bool Load(const std::string& path, bool absolutePath, std::string* error = nullptr);
    void Unload();
    bool IsLoaded() const { return handle != nullptr; }
    /// Address of an exported symbol; null when there is none or nothing is loaded.
    void* FindSymbol(const char* name) const;
    /// The system's handle of the library; null when nothing is loaded.
    void* Handle() const { return handle; }

private:
    void* handle = nullptr;
};

/// Keeps the library or program that this call is linked into loaded until the process ends.
/// Any thread.
void KeepThisLibraryLoaded();

} // namespace platform
