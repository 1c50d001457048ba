// sdk_error.cpp - texts for the SDK's result codes
#include "sdk/sdk_error.h"

#include "sdk/logger.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace pyxen {

namespace {

struct ErrorFormat {
    PxnError code;
    NameFormat format;
};

constexpr const char* kContextFormat = "%s: ";

// Compatibility: -38 has no text of its own; support knows it as an unknown error.
constexpr ErrorFormat kErrorFormats[] = {
    {0, "%s: No error"},
    {-1, "%s: Unexpected fault in PyxenC or driver"},
    {-2, "%s: PxnStartup() was not called before the current command"},
    {-3, "%s: The designated instance (camera, feature etc.) cannot be found"},
    {-4, "%s: The given handle is not valid"},
    {-5, "%s: Device was not opened for usage"},
    {-6, "%s: Operation is invalid with the current access mode"},
    {-7, "%s: One of the parameters was invalid (usually an illegal pointer)"},
    {-8, "%s: The given struct size is not valid for this version of the API"},
    {-9, "%s: More data was returned in a string/list than space was provided"},
    {-10, "%s: The feature type for this access function was wrong"},
    {-11, "%s: The value was not valid; either out of bounds or not an increment of the minimum"},
    {-12, "%s: Timeout during wait"},
    {-13, "%s: Other error"},
    {-14, "%s: Resources not available (e.g memory)"},
    {-15, "%s: Call is invalid in the current context (e.g callback)"},
    {-16, "%s: No transport layers were found"},
    {-17, "%s: API feature is not implemented"},
    {-18, "%s: API feature is not supported"},
    {-19, "%s: A multiple registers reads or writes was partially completed"},
    {-20, "%s: Low level IO error in transport layer"},
    {-21,
     "%s: The valid value set could not be retrieved, since the feature does not provide this property"},
    {-22, "%s: Unspecified GenTL runtime error"},
    {-23, "%s: Unspecified runtime error"},
    {-24, "%s: The responsible module/entity is busy executing actions"},
    {-25, "%s: The function has no data to work on"},
    {-26, "%s: An error occurred parsing a buffer containing chunk data"},
    {-27, "%s: Something is already in use"},
    {-28, "%s: Error condition unknown"},
    {-29, "%s: Error parsing XML"},
    {-30, "%s: Something is not available"},
    {-31, "%s: Something is not initialized"},
    {-32, "%s: The given address is out of range or invalid for internal reasons"},
    {-33, "%s: Something has already been done"},
    {-34, "%s: A frame expected to contain chunk data does not contain chunk data"},
    {-35, "%s: A callback provided by the user threw an exception"},
    {-36,
     "%s: The XML for the module is currently not loaded; the module could be in the wrong state or the XML could not be retrieved or could not be parsed properly"},
    {-37, "%s: A required transport layer could not be found or loaded"},
    {-39, "%s: An entity cannot be uniquely identified based on the information provided"},
    {-40, "%s: Something could not be accomplished with a given number of retries"},
    {-41, "%s: The operation requires more buffers"},
};

const ErrorFormat* FindErrorFormat(PxnError code) {
    const auto* found = std::find_if(std::begin(kErrorFormats), std::end(kErrorFormats),
                                     [code](const ErrorFormat& row) { return row.code == code; });
    return found == std::end(kErrorFormats) ? nullptr : found;
}

} // namespace

void ReportSdkError(const char* context, PxnError code, Logger log) {
    if (!log) {
        return;
    }
    if (const ErrorFormat* row = FindErrorFormat(code)) {
        log.Error(row->format, context);
    } else {
        log.Error("%s: unknown error (%d)", context, code);
    }
}

const char* SdkErrorText(PxnError code) {
    const ErrorFormat* row = FindErrorFormat(code);
    return row ? row->format.Text() + std::strlen(kContextFormat) : nullptr;
}

} // namespace pyxen
