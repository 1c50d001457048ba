// sdk_library.h - a camera SDK's library and its functions
#pragma once

#include "platform/shared_library.h"
#include "pxnc.h"
#include "pxnc_entries.h"

#include <string>

namespace conformance {

/// The functions of pxnc.h in a library that was loaded.
struct SdkFunctions {
#define PXN_FUNCTION_MEMBER(name) decltype(&::name) name = nullptr;
    PXN_ENTRIES(PXN_FUNCTION_MEMBER)
#undef PXN_FUNCTION_MEMBER
};

/// Loads a library and looks its functions up. They are valid as long as the object.
class SdkLibrary {
public:
    /// False when the library cannot be loaded or lacks functions; `error` says why.
    bool Load(const std::string& path, std::string& error);
    const SdkFunctions& Functions() const { return functions; }
    /// A symbol that is not part of the interface; null when there is none.
    void* FindSymbol(const char* name) const { return library.FindSymbol(name); }

private:
    platform::SharedLibrary library;
    SdkFunctions functions;
};

} // namespace conformance
