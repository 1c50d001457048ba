// bare_sdk.cpp - libraries with the SDK's names and nothing behind them
//
// All entries succeed and do nothing, and the file carries no version. Built once with all 55
// entries, once with a dependency beside it, once with the version 5.6.7.8 of a library behind it,
// and once with two entries missing; in that one starting and shutting down end the program,
// because nobody may call them. Loading removes the file that the environment variable
// BARE_SDK_REMOVES names.
#include "pxnc_entries.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#if defined(BARE_SDK_LACKS_ENTRIES)
#define PxnFeatureEnumAsInt BareSdkAnotherName
#define PxnChunkDataAccess BareSdkYetAnotherName
#endif

#if defined(BARE_SDK_NEEDS_COMPANION)
extern "C" std::int32_t BareSdkCompanion();
#endif

namespace {

[[maybe_unused]] const bool removesOnLoad = [] {
    const char* const file = std::getenv("BARE_SDK_REMOVES");
    return file && std::remove(file) == 0;
}();

std::int32_t Call([[maybe_unused]] std::string_view entry) {
#if defined(BARE_SDK_LACKS_ENTRIES)
    if (entry == "PxnStartup" || entry == "PxnShutdown") {
        std::abort();
    }
#endif
#if defined(BARE_SDK_NEEDS_COMPANION)
    return BareSdkCompanion();
#else
    return 0;
#endif
}

} // namespace

#define BARE_ENTRY(name)                                                                           \
    extern "C" std::int32_t name() {                                                               \
        return Call(#name);                                                                        \
    }
PXN_ENTRIES(BARE_ENTRY)
#undef BARE_ENTRY

#if defined(BARE_SDK_FORWARDS)
extern "C" void PxnLibraryVersion(std::uint16_t* parts) {
    for (std::uint16_t part = 5; part < 9; ++part) {
        *parts++ = part;
    }
}
#endif
