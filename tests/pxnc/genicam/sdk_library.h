// sdk_library.h - the built GenICam library, loaded as a host loads it
#pragma once

#include "platform/shared_library.h"
#include "pxnc/include/pxnc.h"

#include <string>
#include <vector>

namespace genicam_test {

/// All entry points by their names without the prefix.
#define GENICAM_TEST_ENTRIES(X)                                                                    \
    X(VersionQuery)                                                                                \
    X(Startup)                                                                                     \
    X(Shutdown)                                                                                    \
    X(CamerasList)                                                                                 \
    X(CameraInfoQueryByHandle)                                                                     \
    X(CameraInfoQuery)                                                                             \
    X(CameraOpen)                                                                                  \
    X(CameraClose)                                                                                 \
    X(FeaturesList)                                                                                \
    X(FeatureInfoQuery)                                                                            \
    X(FeatureListSelected)                                                                         \
    X(FeatureAccessQuery)                                                                          \
    X(FeatureIntGet)                                                                               \
    X(FeatureIntSet)                                                                               \
    X(FeatureIntRangeQuery)                                                                        \
    X(FeatureIntIncrementQuery)                                                                    \
    X(FeatureIntValidValueSetQuery)                                                                \
    X(FeatureFloatGet)                                                                             \
    X(FeatureFloatSet)                                                                             \
    X(FeatureFloatRangeQuery)                                                                      \
    X(FeatureEnumGet)                                                                              \
    X(FeatureEnumSet)                                                                              \
    X(FeatureEnumRangeQuery)                                                                       \
    X(FeatureEnumIsAvailable)                                                                      \
    X(FeatureEnumAsInt)                                                                            \
    X(FeatureEnumAsString)                                                                         \
    X(FeatureEnumEntryGet)                                                                         \
    X(FeatureStringGet)                                                                            \
    X(FeatureStringSet)                                                                            \
    X(FeatureStringMaxlengthQuery)                                                                 \
    X(FeatureBoolGet)                                                                              \
    X(FeatureBoolSet)                                                                              \
    X(FeatureCommandRun)                                                                           \
    X(FeatureCommandIsDone)                                                                        \
    X(FeatureRawGet)                                                                               \
    X(FeatureRawSet)                                                                               \
    X(FeatureRawLengthQuery)                                                                       \
    X(FeatureInvalidationRegister)                                                                 \
    X(FeatureInvalidationUnregister)                                                               \
    X(PayloadSizeGet)                                                                              \
    X(FrameAnnounce)                                                                               \
    X(FrameRevoke)                                                                                 \
    X(FrameRevokeAll)                                                                              \
    X(CaptureStart)                                                                                \
    X(CaptureEnd)                                                                                  \
    X(CaptureFrameQueue)                                                                           \
    X(CaptureFrameWait)                                                                            \
    X(CaptureQueueFlush)                                                                           \
    X(TransportLayersList)                                                                         \
    X(InterfacesList)                                                                              \
    X(MemoryRead)                                                                                  \
    X(MemoryWrite)                                                                                 \
    X(SettingsSave)                                                                                \
    X(SettingsLoad)                                                                                \
    X(ChunkDataAccess)

/// The library and its entry points. Constructed once for the whole program.
class SdkLibrary {
public:
    /// The one instance; loads the library the first time. A library that cannot be loaded or
    /// lacks an entry ends the program with a message.
    static const SdkLibrary& Instance();

#define GENICAM_TEST_MEMBER(name) decltype(&::Pxn##name) name = nullptr;
    GENICAM_TEST_ENTRIES(GENICAM_TEST_MEMBER)
#undef GENICAM_TEST_MEMBER

private:
    SdkLibrary();
    platform::SharedLibrary library;
};

/// Lists by the two-step protocol: count, then fill.
std::vector<PxnCameraInfo> ListCameras();
std::vector<PxnFeatureInfo> ListFeatures(PxnHandle handle);
std::vector<std::string> EnumEntries(PxnHandle handle, const char* name);
/// The whole text of a string feature; a failure fails the test.
std::string GetString(PxnHandle handle, const char* name);
/// The record of a feature; null name in it when the module has none of that name.
PxnFeatureInfo FindFeature(PxnHandle handle, const char* name);

} // namespace genicam_test
