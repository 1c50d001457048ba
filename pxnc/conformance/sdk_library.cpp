// sdk_library.cpp - a camera SDK's library and its functions
#include "pxnc/conformance/sdk_library.h"

namespace conformance {

bool SdkLibrary::Load(const std::string& path, std::string& error) {
    if (!library.Load(path, true, &error)) {
        error = "cannot load " + path + ": " + error;
        return false;
    }
    std::string missing;
    const auto find = [&](auto& function, const char* name) {
        void* const symbol = library.FindSymbol(name);
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(symbol);
        if (!symbol) {
            missing += (missing.empty() ? "" : ", ") + std::string(name);
        }
    };
#define PXN_FIND_FUNCTION(name) find(functions.name, #name);
    PXN_ENTRIES(PXN_FIND_FUNCTION)
#undef PXN_FIND_FUNCTION
    error = missing.empty() ? "" : path + " lacks " + missing;
    return missing.empty();
}

} // namespace conformance
