// shared_library.h - loading a library at run time
#pragma once

#include <string>

namespace platform {

/// A loaded library; move-only, so that nobody closes it twice.
class SharedLibrary {
public:
    SharedLibrary() = default;
    ~SharedLibrary();
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Loads `path` after unloading what was loaded before. On Windows an `absolutePath` is loaded
    /// with the flags 0x1100 (the loaded file's own directory and the default directories are
    /// searched for what it depends on), any other path with the system's usual search; elsewhere
    /// both are loaded with all symbols resolved at once and kept local. False when the system
    /// refused; `error`, when given, receives the system's own words.
    bool Load(const std::string& path, bool absolutePath, std::string* error = nullptr);
    void Unload();
    bool IsLoaded() const { return handle != nullptr; }
    /// The address of an exported symbol, or null.
    void* FindSymbol(const char* name) const;
    /// The opaque handle the system gave, or null.
    void* Handle() const { return handle; }

private:
    void* handle = nullptr;
};

} // namespace platform
