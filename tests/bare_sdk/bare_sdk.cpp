// bare_sdk.cpp - libraries with the SDK's names and nothing behind them
//
// All entries succeed and do nothing, and the file carries no version. Built once with all 55
// entries, and once with two of them missing; in that one starting and shutting down end the
// program, because nobody may call them.
#include "pxnc_entries.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#if defined(BARE_SDK_LACKS_ENTRIES)
#define PxnFeatureEnumAsInt BareSdkAnotherName
#define PxnChunkDataAccess BareSdkYetAnotherName
#endif

namespace {

std::int32_t Call([[maybe_unused]] std::string_view entry) {
#if defined(BARE_SDK_LACKS_ENTRIES)
    if (entry == "PxnStartup" || entry == "PxnShutdown") {
        std::abort();
    }
#endif
    return 0;
}

} // namespace

#define BARE_ENTRY(name)                                                                           \
    extern "C" std::int32_t name() {                                                               \
        return Call(#name);                                                                        \
    }
PXN_ENTRIES(BARE_ENTRY)
#undef BARE_ENTRY
