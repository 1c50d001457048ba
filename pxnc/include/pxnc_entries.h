/* pxnc_entries.h - the 55 functions of the camera SDK, once
 *
 * PXN_ENTRIES(ENTRY) expands to ENTRY(name) for each function of pxnc.h, in the
 * order in which hosts resolve them. A function's type is that of its
 * declaration in pxnc.h, where its behaviour is described as well.
 */
#ifndef PXNC_ENTRIES_H
#define PXNC_ENTRIES_H

/** How many functions PXN_ENTRIES names. */
#define PXN_ENTRY_COUNT 55

/** ENTRY(name) for each function. */
#define PXN_ENTRIES(ENTRY)                                                                         \
    ENTRY(PxnVersionQuery)                                                                         \
    ENTRY(PxnStartup)                                                                              \
    ENTRY(PxnShutdown)                                                                             \
    ENTRY(PxnCamerasList)                                                                          \
    ENTRY(PxnCameraInfoQueryByHandle)                                                              \
    ENTRY(PxnCameraInfoQuery)                                                                      \
    ENTRY(PxnCameraOpen)                                                                           \
    ENTRY(PxnCameraClose)                                                                          \
    ENTRY(PxnFeaturesList)                                                                         \
    ENTRY(PxnFeatureInfoQuery)                                                                     \
    ENTRY(PxnFeatureListSelected)                                                                  \
    ENTRY(PxnFeatureAccessQuery)                                                                   \
    ENTRY(PxnFeatureIntGet)                                                                        \
    ENTRY(PxnFeatureIntSet)                                                                        \
    ENTRY(PxnFeatureIntRangeQuery)                                                                 \
    ENTRY(PxnFeatureIntIncrementQuery)                                                             \
    ENTRY(PxnFeatureIntValidValueSetQuery)                                                         \
    ENTRY(PxnFeatureFloatGet)                                                                      \
    ENTRY(PxnFeatureFloatSet)                                                                      \
    ENTRY(PxnFeatureFloatRangeQuery)                                                               \
    ENTRY(PxnFeatureEnumGet)                                                                       \
    ENTRY(PxnFeatureEnumSet)                                                                       \
    ENTRY(PxnFeatureEnumRangeQuery)                                                                \
    ENTRY(PxnFeatureEnumIsAvailable)                                                               \
    ENTRY(PxnFeatureEnumAsInt)                                                                     \
    ENTRY(PxnFeatureEnumAsString)                                                                  \
    ENTRY(PxnFeatureEnumEntryGet)                                                                  \
    ENTRY(PxnFeatureStringGet)                                                                     \
    ENTRY(PxnFeatureStringSet)                                                                     \
    ENTRY(PxnFeatureStringMaxlengthQuery)                                                          \
    ENTRY(PxnFeatureBoolGet)                                                                       \
    ENTRY(PxnFeatureBoolSet)                                                                       \
    ENTRY(PxnFeatureCommandRun)                                                                    \
    ENTRY(PxnFeatureCommandIsDone)                                                                 \
    ENTRY(PxnFeatureRawGet)                                                                        \
    ENTRY(PxnFeatureRawSet)                                                                        \
    ENTRY(PxnFeatureRawLengthQuery)                                                                \
    ENTRY(PxnFeatureInvalidationRegister)                                                          \
    ENTRY(PxnFeatureInvalidationUnregister)                                                        \
    ENTRY(PxnPayloadSizeGet)                                                                       \
    ENTRY(PxnFrameAnnounce)                                                                        \
    ENTRY(PxnFrameRevoke)                                                                          \
    ENTRY(PxnFrameRevokeAll)                                                                       \
    ENTRY(PxnCaptureStart)                                                                         \
    ENTRY(PxnCaptureEnd)                                                                           \
    ENTRY(PxnCaptureFrameQueue)                                                                    \
    ENTRY(PxnCaptureFrameWait)                                                                     \
    ENTRY(PxnCaptureQueueFlush)                                                                    \
    ENTRY(PxnTransportLayersList)                                                                  \
    ENTRY(PxnInterfacesList)                                                                       \
    ENTRY(PxnMemoryRead)                                                                           \
    ENTRY(PxnMemoryWrite)                                                                          \
    ENTRY(PxnSettingsSave)                                                                         \
    ENTRY(PxnSettingsLoad)                                                                         \
    ENTRY(PxnChunkDataAccess)

#endif /* PXNC_ENTRIES_H */
