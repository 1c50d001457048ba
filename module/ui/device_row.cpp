// device_row.cpp - what the device finder shows of a camera
#include "ui/device_row.h"

#include "sdk/logger.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

namespace pyxen {

namespace {

std::string Read(CPyxenAPIAccess& api, PxnHandle handle, const char* feature,
                 const char* failureText, Logger log) {
    std::string text;
    const PxnError error = api.GetStringFeature(handle, feature, text);
    if (error != PxnErrSuccess) {
        ReportSdkError(failureText, error, log);
    }
    return text;
}

const std::string& OrElse(const std::string& text, const std::string& placeholder) {
    return text.empty() ? placeholder : text;
}

} // namespace

DeviceConnection ReadDeviceConnection(CPyxenAPIAccess& api, const PxnCameraInfo& camera,
                                      Logger log) {
    DeviceConnection connection;
    connection.interfaceId =
        Read(api, camera.interfaceHandle, "InterfaceID",
             "CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading InterfaceID failed.", log);
    const PxnHandle layer = camera.transportLayerHandle;
    connection.transportLayerName =
        Read(api, layer, "TLDisplayName",
             "CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLDisplayName failed.", log);
    if (connection.transportLayerName.empty()) {
        connection.transportLayerName =
            Read(api, layer, "TLModelName",
                 "CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLModelName failed.", log);
    }
    connection.transportLayerVendor =
        Read(api, layer, "TLVendorName",
             "CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLVendorName failed.", log);
    return connection;
}

std::array<std::string, kDeviceColumnCount> DeviceRowTexts(const PxnCameraInfo& camera,
                                                           const DeviceConnection& connection) {
    static const std::string kUnkown = "- unkown -"; // Compatibility: spelled so
    static const std::string kUnknown = "- unknown -";
    return {TextOrEmpty(camera.cameraName), TextOrEmpty(camera.serialString),
            OrElse(connection.interfaceId, kUnkown),
            OrElse(connection.transportLayerName, kUnknown),
            OrElse(connection.transportLayerVendor, kUnknown)};
}

std::uint32_t DeviceStateImage(std::uint32_t permittedAccess) {
    return permittedAccess & PxnAccessModeFull ? kDeviceFree : kDeviceInUse;
}

} // namespace pyxen
