// feature_text.cpp - whole texts out of the SDK
#include "sdk/malloc_array.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

PxnError CPyxenAPIAccess::GetStringFeature(PxnHandle handle, const char* name, std::string& out) {
    std::uint32_t size = 0;
    const PxnError result = PxnFeatureStringGet(handle, name, nullptr, 0, &size);
    return result == PxnErrSuccess ? ReadString(handle, name, size, out) : result;
}

PxnError CPyxenAPIAccess::GetFeatureAsText(PxnHandle handle, const char* name, std::string& out) {
    std::uint32_t size = 0;
    const PxnError result = PxnFeatureStringGet(handle, name, nullptr, 0, &size);
    if (result == PxnErrSuccess) {
        return ReadString(handle, name, size, out);
    }
    // Only this first call tells the type: a later one that answers the same has failed.
    if (result != PxnErrWrongType) {
        return result;
    }
    const char* entry = nullptr;
    const PxnError enumResult = PxnFeatureEnumGet(handle, name, &entry);
    if (enumResult != PxnErrSuccess) {
        return enumResult;
    }
    return NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
        out = entry ? entry : "";
        return PxnErrSuccess;
    });
}

PxnError CPyxenAPIAccess::ReadString(PxnHandle handle, const char* name, std::uint32_t size,
                                     std::string& out) {
    // One byte more than asked for, so that what comes back always ends.
    MallocArray<char> text;
    if (!text.Resize(std::size_t{size} + 1)) {
        return PxnErrOther;
    }
    text[0] = '\0';
    text[size] = '\0';
    std::uint32_t filled = 0;
    const PxnError result = PxnFeatureStringGet(handle, name, text.Get(), size, &filled);
    if (result != PxnErrSuccess) {
        return result;
    }
    return NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
        out = text.Get();
        return PxnErrSuccess;
    });
}
