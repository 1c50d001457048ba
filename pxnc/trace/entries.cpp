// entries.cpp - the functions that the library exports
#include "pxnc/trace/exports.h"
#include "pxnc/trace/library.h"

#include <algorithm>
#include <cstring>

using namespace sdktrace;

namespace {

constexpr const char* kNoControl = "the camera SDK has no control interface";

} // namespace

PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    return Pass(Entry::kPxnVersionQuery, &SdkFunctions::PxnVersionQuery, info, size);
}

PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    return Pass(Entry::kPxnStartup, &SdkFunctions::PxnStartup, configPath);
}

void PXN_CALL PxnShutdown(void) {
    Pass(Entry::kPxnShutdown, &SdkFunctions::PxnShutdown);
}

PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    return Pass(Entry::kPxnCamerasList, &SdkFunctions::PxnCamerasList, cameras, capacity, found,
                size);
}

PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return Pass(Entry::kPxnCameraInfoQueryByHandle, &SdkFunctions::PxnCameraInfoQueryByHandle,
                camera, info, size);
}

PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return Pass(Entry::kPxnCameraInfoQuery, &SdkFunctions::PxnCameraInfoQuery, id, info, size);
}

PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return Pass(Entry::kPxnCameraOpen, &SdkFunctions::PxnCameraOpen, id, accessMode, camera);
}

PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return Pass(Entry::kPxnCameraClose, &SdkFunctions::PxnCameraClose, camera);
}

PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    return Pass(Entry::kPxnFeaturesList, &SdkFunctions::PxnFeaturesList, handle, features, capacity,
                found, size);
}

PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return Pass(Entry::kPxnFeatureInfoQuery, &SdkFunctions::PxnFeatureInfoQuery, handle, name, info,
                size);
}

PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                         PxnFeatureInfo* features, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Pass(Entry::kPxnFeatureListSelected, &SdkFunctions::PxnFeatureListSelected, handle, name,
                features, capacity, found, size);
}

PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return Pass(Entry::kPxnFeatureAccessQuery, &SdkFunctions::PxnFeatureAccessQuery, handle, name,
                readable, writeable);
}

PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return Pass(Entry::kPxnFeatureIntGet, &SdkFunctions::PxnFeatureIntGet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return Pass(Entry::kPxnFeatureIntSet, &SdkFunctions::PxnFeatureIntSet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return Pass(Entry::kPxnFeatureIntRangeQuery, &SdkFunctions::PxnFeatureIntRangeQuery, handle,
                name, min, max);
}

PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return Pass(Entry::kPxnFeatureIntIncrementQuery, &SdkFunctions::PxnFeatureIntIncrementQuery,
                handle, name, increment);
}

PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    return Pass(Entry::kPxnFeatureIntValidValueSetQuery,
                &SdkFunctions::PxnFeatureIntValidValueSetQuery, handle, name, buffer, capacity,
                setSize);
}

PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return Pass(Entry::kPxnFeatureFloatGet, &SdkFunctions::PxnFeatureFloatGet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return Pass(Entry::kPxnFeatureFloatSet, &SdkFunctions::PxnFeatureFloatSet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return Pass(Entry::kPxnFeatureFloatRangeQuery, &SdkFunctions::PxnFeatureFloatRangeQuery, handle,
                name, min, max);
}

PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return Pass(Entry::kPxnFeatureEnumGet, &SdkFunctions::PxnFeatureEnumGet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return Pass(Entry::kPxnFeatureEnumSet, &SdkFunctions::PxnFeatureEnumSet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    return Pass(Entry::kPxnFeatureEnumRangeQuery, &SdkFunctions::PxnFeatureEnumRangeQuery, handle,
                name, entries, capacity, found);
}

PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return Pass(Entry::kPxnFeatureEnumIsAvailable, &SdkFunctions::PxnFeatureEnumIsAvailable, handle,
                name, entry, available);
}

PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return Pass(Entry::kPxnFeatureEnumAsInt, &SdkFunctions::PxnFeatureEnumAsInt, handle, name,
                entry, value);
}

PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return Pass(Entry::kPxnFeatureEnumAsString, &SdkFunctions::PxnFeatureEnumAsString, handle, name,
                value, entry);
}

PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return Pass(Entry::kPxnFeatureEnumEntryGet, &SdkFunctions::PxnFeatureEnumEntryGet, handle, name,
                entry, info, size);
}

PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    return Pass(Entry::kPxnFeatureStringGet, &SdkFunctions::PxnFeatureStringGet, handle, name,
                buffer, bufferSize, sizeFilled);
}

PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return Pass(Entry::kPxnFeatureStringSet, &SdkFunctions::PxnFeatureStringSet, handle, name,
                value);
}

PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return Pass(Entry::kPxnFeatureStringMaxlengthQuery,
                &SdkFunctions::PxnFeatureStringMaxlengthQuery, handle, name, maxLength);
}

PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return Pass(Entry::kPxnFeatureBoolGet, &SdkFunctions::PxnFeatureBoolGet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return Pass(Entry::kPxnFeatureBoolSet, &SdkFunctions::PxnFeatureBoolSet, handle, name, value);
}

PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    return Pass(Entry::kPxnFeatureCommandRun, &SdkFunctions::PxnFeatureCommandRun, handle, name);
}

PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return Pass(Entry::kPxnFeatureCommandIsDone, &SdkFunctions::PxnFeatureCommandIsDone, handle,
                name, done);
}

PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    return Pass(Entry::kPxnFeatureRawGet, &SdkFunctions::PxnFeatureRawGet, handle, name, buffer,
                bufferSize, sizeFilled);
}

PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return Pass(Entry::kPxnFeatureRawSet, &SdkFunctions::PxnFeatureRawSet, handle, name, buffer,
                bufferSize);
}

PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return Pass(Entry::kPxnFeatureRawLengthQuery, &SdkFunctions::PxnFeatureRawLengthQuery, handle,
                name, length);
}

PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return Pass(Entry::kPxnFeatureInvalidationRegister,
                &SdkFunctions::PxnFeatureInvalidationRegister, handle, name, callback, userContext);
}

PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return Pass(Entry::kPxnFeatureInvalidationUnregister,
                &SdkFunctions::PxnFeatureInvalidationUnregister, handle, name, callback);
}

PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize) {
    return Pass(Entry::kPxnPayloadSizeGet, &SdkFunctions::PxnPayloadSizeGet, handle, payloadSize);
}

PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size) {
    return Pass(Entry::kPxnFrameAnnounce, &SdkFunctions::PxnFrameAnnounce, handle, frame, size);
}

PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame) {
    return Pass(Entry::kPxnFrameRevoke, &SdkFunctions::PxnFrameRevoke, handle, frame);
}

PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle) {
    return Pass(Entry::kPxnFrameRevokeAll, &SdkFunctions::PxnFrameRevokeAll, handle);
}

PxnError PXN_CALL PxnCaptureStart(PxnHandle handle) {
    return Pass(Entry::kPxnCaptureStart, &SdkFunctions::PxnCaptureStart, handle);
}

PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle) {
    return Pass(Entry::kPxnCaptureEnd, &SdkFunctions::PxnCaptureEnd, handle);
}

PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                       PxnFrameCallback callback) {
    return Pass(Entry::kPxnCaptureFrameQueue, &SdkFunctions::PxnCaptureFrameQueue, handle, frame,
                callback);
}

PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame, uint32_t timeout) {
    return Pass(Entry::kPxnCaptureFrameWait, &SdkFunctions::PxnCaptureFrameWait, handle, frame,
                timeout);
}

PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle) {
    return Pass(Entry::kPxnCaptureQueueFlush, &SdkFunctions::PxnCaptureQueueFlush, handle);
}

PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Pass(Entry::kPxnTransportLayersList, &SdkFunctions::PxnTransportLayersList, layers,
                capacity, found, size);
}

PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    return Pass(Entry::kPxnInterfacesList, &SdkFunctions::PxnInterfacesList, interfaces, capacity,
                found, size);
}

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return Pass(Entry::kPxnMemoryRead, &SdkFunctions::PxnMemoryRead, handle, address, size, buffer,
                sizeComplete);
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return Pass(Entry::kPxnMemoryWrite, &SdkFunctions::PxnMemoryWrite, handle, address, size,
                buffer, sizeComplete);
}

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return Pass(Entry::kPxnSettingsSave, &SdkFunctions::PxnSettingsSave, handle, path, settings,
                size);
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return Pass(Entry::kPxnSettingsLoad, &SdkFunctions::PxnSettingsLoad, handle, path, settings,
                size);
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    return Pass(Entry::kPxnChunkDataAccess, &SdkFunctions::PxnChunkDataAccess, frame, callback,
                userContext);
}

std::int32_t PxnControl(const char* command, char* answer, std::uint32_t answerSize) {
    const SdkFunctions* const behind = Library::Instance().Behind();
    if (behind && !behind->control) {
        if (answer && answerSize > 0) {
            const std::size_t length =
                std::min<std::size_t>(std::strlen(kNoControl), answerSize - 1);
            std::memcpy(answer, kNoControl, length);
            answer[length] = 0;
        }
        return PxnErrNotImplemented;
    }
    return Pass(Entry::kPxnControl, &SdkFunctions::control, command, answer, answerSize);
}

void PxnLibraryVersion(std::uint16_t* parts) {
    const LibraryVersion& version = Library::Instance().Version();
    std::copy(version.begin(), version.end(), parts);
}

std::int32_t PxnTraceFinish(void) {
    return Library::Instance().Finish() ? 1 : 0;
}
