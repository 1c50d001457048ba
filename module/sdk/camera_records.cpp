// camera_records.cpp - the SDK's camera list in an array of the right length
#include "sdk/answer_size.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

#include <algorithm>

using namespace pyxen;

namespace {

constexpr std::uint32_t kFirstCapacity = 100;

} // namespace

std::uint32_t CPyxenAPIAccess::AllocateAndGetCameraList(PxnCameraInfo** out) {
    if (out) {
        *out = nullptr;
    }
    if (!IsValid()) {
        return 0;
    }
    CloseRememberedCameras(*this);
    MallocArray<PxnCameraInfo> cameras;
    std::uint32_t capacity = kFirstCapacity;
    std::uint32_t found = 0;
    for (;;) {
        if (!IsAnswerSize<PxnCameraInfo>(capacity) || !cameras.Resize(capacity)) {
            log.Error(
                "CPyxenAPIAccess::AllocateAndGetCameraList: could not allocate memory for camera list.");
            return 0;
        }
        found = 0;
        // What the SDK counts and does not fill is a camera without texts.
        std::fill_n(cameras.Get(), capacity, PxnCameraInfo{});
        const PxnError result =
            PxnCamerasList(cameras.Get(), capacity, &found, sizeof(PxnCameraInfo));
        if (result != PxnErrSuccess && result != PxnErrMoreData) {
            ReportSdkError("CPyxenAPIAccess::AllocateAndGetCameraList: PxnCamerasList failed.",
                           result, log);
            return 0;
        }
        if (found <= capacity) {
            break;
        }
        ReportSdkError("CPyxenAPIAccess::AllocateAndGetCameraList", result, log);
        log.Information(
            "CPyxenAPIAccess::AllocateAndGetCameraList: Too many camera entries for buffer. allocated: %u found: %u -> trying again.",
            capacity, found);
        capacity = found;
    }
    if (found < capacity) {
        // If shrinking fails the larger array serves as well; a count of 0 frees it.
        cameras.Resize(found);
    }
    if (out) {
        *out = cameras.Release();
    }
    return found;
}
