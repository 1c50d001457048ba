// library_behind.h - the SDK's library that the calls are passed on to
#pragma once

#include "platform/shared_library.h"
#include "pxnc.h"
#include "pxnc_entries.h"

namespace sweep {

/// Loaded at the first call, never unloaded. Ends the process when that fails, since no function
/// could say so.
class LibraryBehind {
public:
    static const LibraryBehind& Instance();

#define SWEEP_ENTRY(name) decltype(&::name) name = nullptr;
    PXN_ENTRIES(SWEEP_ENTRY)
#undef SWEEP_ENTRY

    /// The control function that some libraries have, or null.
    std::int32_t (*control)(const char*, char*, std::uint32_t) = nullptr;

private:
    LibraryBehind();

    platform::SharedLibrary library;
};

} // namespace sweep
