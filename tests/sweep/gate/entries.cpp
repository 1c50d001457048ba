// entries.cpp - the 55 functions of the SDK, each passed on to the library behind
#include "tests/sweep/gate/library_behind.h"
#include "tests/sweep/gate/sweep_gate.h"

using sweep::LibraryBehind;

namespace {

template <typename... Arguments>
sweep::CallObject ObjectOf(Arguments...) {
    return {};
}
template <typename... Rest>
sweep::CallObject ObjectOf(PxnHandle, const char* feature, Rest...) {
    return {feature, 0};
}
template <typename... Rest>
sweep::CallObject ObjectOf(PxnHandle, uint64_t address, Rest...) {
    return {nullptr, address};
}

/// A call of the function `entry` of the library behind.
template <typename Function, typename... Arguments>
PxnError Pass(const char* name, Function LibraryBehind::*entry, Arguments... arguments) {
    const LibraryBehind& behind = LibraryBehind::Instance();
    const sweep::SdkVisit visit;
    const sweep::Verdict verdict = sweep::BeginCall(name, ObjectOf(arguments...));
    if (verdict.code != PxnErrSuccess && !verdict.isDone) {
        return verdict.code;
    }
    const PxnError result = (behind.*entry)(arguments...);
    return verdict.code != PxnErrSuccess ? verdict.code : result;
}

} // namespace

void PXN_CALL PxnShutdown() {
    const LibraryBehind& behind = LibraryBehind::Instance();
    const sweep::SdkVisit visit;
    sweep::BeginCall(__func__); // it cannot fail
    behind.PxnShutdown();
}
PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnVersionQuery, info, size);
}
// A startup that fails counts, so the library behind has to see it in any case.
PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    const LibraryBehind& behind = LibraryBehind::Instance();
    const sweep::SdkVisit visit;
    const PxnError failed = sweep::BeginCall(__func__).code;
    const PxnError result = behind.PxnStartup(configPath);
    return failed != PxnErrSuccess ? failed : result;
}
PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnCamerasList, cameras, capacity, found, size);
}
PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnCameraInfoQueryByHandle, camera, info, size);
}
PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnCameraInfoQuery, id, info, size);
}
PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return Pass(__func__, &LibraryBehind::PxnCameraOpen, id, accessMode, camera);
}
PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return Pass(__func__, &LibraryBehind::PxnCameraClose, camera);
}
PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnFeaturesList, handle, features, capacity, found, size);
}
PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnFeatureInfoQuery, handle, name, info, size);
}
PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                         PxnFeatureInfo* features, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnFeatureListSelected, handle, name, features, capacity,
                found, size);
}
PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return Pass(__func__, &LibraryBehind::PxnFeatureAccessQuery, handle, name, readable, writeable);
}
PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureIntGet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureIntSet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return Pass(__func__, &LibraryBehind::PxnFeatureIntRangeQuery, handle, name, min, max);
}
PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return Pass(__func__, &LibraryBehind::PxnFeatureIntIncrementQuery, handle, name, increment);
}
PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    return Pass(__func__, &LibraryBehind::PxnFeatureIntValidValueSetQuery, handle, name, buffer,
                capacity, setSize);
}
PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureFloatGet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureFloatSet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return Pass(__func__, &LibraryBehind::PxnFeatureFloatRangeQuery, handle, name, min, max);
}
PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumGet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumSet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumRangeQuery, handle, name, entries, capacity,
                found);
}
PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumIsAvailable, handle, name, entry,
                available);
}
PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumAsInt, handle, name, entry, value);
}
PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumAsString, handle, name, value, entry);
}
PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnFeatureEnumEntryGet, handle, name, entry, info, size);
}
PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    return Pass(__func__, &LibraryBehind::PxnFeatureStringGet, handle, name, buffer, bufferSize,
                sizeFilled);
}
PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureStringSet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return Pass(__func__, &LibraryBehind::PxnFeatureStringMaxlengthQuery, handle, name, maxLength);
}
PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureBoolGet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return Pass(__func__, &LibraryBehind::PxnFeatureBoolSet, handle, name, value);
}
PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    return Pass(__func__, &LibraryBehind::PxnFeatureCommandRun, handle, name);
}
PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return Pass(__func__, &LibraryBehind::PxnFeatureCommandIsDone, handle, name, done);
}
PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    return Pass(__func__, &LibraryBehind::PxnFeatureRawGet, handle, name, buffer, bufferSize,
                sizeFilled);
}
PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return Pass(__func__, &LibraryBehind::PxnFeatureRawSet, handle, name, buffer, bufferSize);
}
PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return Pass(__func__, &LibraryBehind::PxnFeatureRawLengthQuery, handle, name, length);
}
PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return Pass(__func__, &LibraryBehind::PxnFeatureInvalidationRegister, handle, name, callback,
                userContext);
}
PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return Pass(__func__, &LibraryBehind::PxnFeatureInvalidationUnregister, handle, name, callback);
}
PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return Pass(__func__, &LibraryBehind::PxnPayloadSizeGet, handle, payloadSize);
}
PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnFrameAnnounce, handle, frame, size);
}
PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return Pass(__func__, &LibraryBehind::PxnFrameRevoke, handle, frame);
}
PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return Pass(__func__, &LibraryBehind::PxnFrameRevokeAll, handle);
}
PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return Pass(__func__, &LibraryBehind::PxnCaptureStart, handle);
}
PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return Pass(__func__, &LibraryBehind::PxnCaptureEnd, handle);
}
PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return Pass(__func__, &LibraryBehind::PxnCaptureFrameQueue, handle, frame, callback);
}
PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return Pass(__func__, &LibraryBehind::PxnCaptureFrameWait, handle, frame, timeout);
}
PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return Pass(__func__, &LibraryBehind::PxnCaptureQueueFlush, handle);
}
PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnTransportLayersList, layers, capacity, found, size);
}
PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnInterfacesList, interfaces, capacity, found, size);
}
PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return Pass(__func__, &LibraryBehind::PxnMemoryRead, handle, address, size, buffer,
                sizeComplete);
}
PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return Pass(__func__, &LibraryBehind::PxnMemoryWrite, handle, address, size, buffer,
                sizeComplete);
}
PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnSettingsSave, handle, path, settings, size);
}
PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return Pass(__func__, &LibraryBehind::PxnSettingsLoad, handle, path, settings, size);
}
PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    return Pass(__func__, &LibraryBehind::PxnChunkDataAccess, frame, callback, userContext);
}
