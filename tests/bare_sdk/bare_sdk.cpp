// bare_sdk.cpp - libraries with the SDK's names and nothing behind them
//
// All entries succeed and do nothing, and the file carries no version. Built once with all 55
// entries, and once with two of them missing; in that one starting and shutting down end the
// program, because nobody may call them.
#include <cstdint>
#include <cstdlib>

#if defined(BARE_SDK_LACKS_ENTRIES)
extern "C" std::int32_t PxnStartup() {
    std::abort();
}
extern "C" void PxnShutdown() {
    std::abort();
}
#else
extern "C" std::int32_t PxnStartup() {
    return 0;
}
extern "C" void PxnShutdown() {}
extern "C" std::int32_t PxnFeatureEnumAsInt() {
    return 0;
}
extern "C" std::int32_t PxnChunkDataAccess() {
    return 0;
}
#endif

#define BARE_ENTRY(name)                                                                           \
    extern "C" std::int32_t name() {                                                               \
        return 0;                                                                                  \
    }

BARE_ENTRY(PxnVersionQuery)
BARE_ENTRY(PxnCamerasList)
BARE_ENTRY(PxnCameraInfoQueryByHandle)
BARE_ENTRY(PxnCameraInfoQuery)
BARE_ENTRY(PxnCameraOpen)
BARE_ENTRY(PxnCameraClose)
BARE_ENTRY(PxnFeaturesList)
BARE_ENTRY(PxnFeatureInfoQuery)
BARE_ENTRY(PxnFeatureListSelected)
BARE_ENTRY(PxnFeatureAccessQuery)
BARE_ENTRY(PxnFeatureIntGet)
BARE_ENTRY(PxnFeatureIntSet)
BARE_ENTRY(PxnFeatureIntRangeQuery)
BARE_ENTRY(PxnFeatureIntIncrementQuery)
BARE_ENTRY(PxnFeatureIntValidValueSetQuery)
BARE_ENTRY(PxnFeatureFloatGet)
BARE_ENTRY(PxnFeatureFloatSet)
BARE_ENTRY(PxnFeatureFloatRangeQuery)
BARE_ENTRY(PxnFeatureEnumGet)
BARE_ENTRY(PxnFeatureEnumSet)
BARE_ENTRY(PxnFeatureEnumRangeQuery)
BARE_ENTRY(PxnFeatureEnumIsAvailable)
BARE_ENTRY(PxnFeatureEnumAsString)
BARE_ENTRY(PxnFeatureEnumEntryGet)
BARE_ENTRY(PxnFeatureStringGet)
BARE_ENTRY(PxnFeatureStringSet)
BARE_ENTRY(PxnFeatureStringMaxlengthQuery)
BARE_ENTRY(PxnFeatureBoolGet)
BARE_ENTRY(PxnFeatureBoolSet)
BARE_ENTRY(PxnFeatureCommandRun)
BARE_ENTRY(PxnFeatureCommandIsDone)
BARE_ENTRY(PxnFeatureRawGet)
BARE_ENTRY(PxnFeatureRawSet)
BARE_ENTRY(PxnFeatureRawLengthQuery)
BARE_ENTRY(PxnFeatureInvalidationRegister)
BARE_ENTRY(PxnFeatureInvalidationUnregister)
BARE_ENTRY(PxnPayloadSizeGet)
BARE_ENTRY(PxnFrameAnnounce)
BARE_ENTRY(PxnFrameRevoke)
BARE_ENTRY(PxnFrameRevokeAll)
BARE_ENTRY(PxnCaptureStart)
BARE_ENTRY(PxnCaptureEnd)
BARE_ENTRY(PxnCaptureFrameQueue)
BARE_ENTRY(PxnCaptureFrameWait)
BARE_ENTRY(PxnCaptureQueueFlush)
BARE_ENTRY(PxnTransportLayersList)
BARE_ENTRY(PxnInterfacesList)
BARE_ENTRY(PxnMemoryRead)
BARE_ENTRY(PxnMemoryWrite)
BARE_ENTRY(PxnSettingsSave)
BARE_ENTRY(PxnSettingsLoad)
