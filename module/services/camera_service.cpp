// camera_service.cpp - the grabber's list of cameras, for hosts
#include "services/camera_service.h"

#include "mivora/camera.h"
#include "services/transport.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pyxen {

namespace {

struct ListedCamera {
    std::string id;
    std::string extendedId;
    std::string name;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userName;
    std::string interfaceId;
    std::string interfaceName;
    const char* transportLayer = "";
    bool canOpen = false;
    bool canRead = false;

    MV_CAMERA_DESCRIPTION Record(std::uint32_t index) const {
        MV_CAMERA_DESCRIPTION record{};
        record.size = sizeof record;
        record.index = index;
        record.id = id.c_str();
        record.extendedId = extendedId.c_str();
        record.name = name.c_str();
        record.vendor = vendor.c_str();
        record.model = model.c_str();
        record.serialNumber = serialNumber.c_str();
        record.userName = userName.c_str();
        record.interfaceId = interfaceId.c_str();
        record.interfaceName = interfaceName.c_str();
        record.transportLayer = transportLayer;
        record.canOpen = canOpen ? 1 : 0;
        record.canRead = canRead ? 1 : 0;
        return record;
    }
};

std::string TextOf(const char* text) {
    return text ? text : "";
}

/// What only an open camera says of itself; empty when it cannot be read.
std::string OpenCameraText(const ServiceContext& context, const char* name) {
    std::string text;
    ServiceModule camera;
    if (context.FindModule("Camera", camera)) {
        context.Grabber().Api().GetFeatureAsText(camera.cache->GetHandle(), name, text);
    }
    return text;
}

bool IsOpenCamera(const ServiceContext& context, const PxnCameraInfo& record) {
    ServiceModule device;
    return record.localDeviceHandle && context.FindModule("Localdevice", device) &&
           device.cache->GetHandle() == record.localDeviceHandle;
}

ListedCamera Describe(const ServiceContext& context, CMivoraCamera& node,
                      const std::vector<PxnInterfaceInfo>& interfaces) {
    CPyxenAPIAccess& api = context.Grabber().Api();
    const auto& record = *static_cast<const PxnCameraInfo*>(node.GetCameraRecord());
    ListedCamera camera;
    camera.id = TextOf(record.cameraIdString);
    camera.extendedId = TextOf(record.cameraIdExtended);
    camera.name = TextOf(node.GetCameraName());
    camera.model = TextOf(record.modelName);
    camera.serialNumber = TextOf(record.serialString);
    if (IsOpenCamera(context, record)) {
        camera.vendor = OpenCameraText(context, "DeviceVendorName");
        camera.userName = OpenCameraText(context, "DeviceUserID");
    }
    if (const PxnInterfaceInfo* const port = FindInterface(interfaces, record.interfaceHandle)) {
        camera.interfaceId = TextOf(port->interfaceIdString);
        camera.interfaceName = TextOf(port->interfaceName);
        camera.transportLayer = TransportLayerName(port->interfaceType);
    }
    // The list has what was so when it was made.
    PxnCameraInfo present{};
    if (api.PxnCameraInfoQuery(record.cameraIdExtended, &present, sizeof present) ==
        PxnErrSuccess) {
        // Where only an attempt can say, it is worth one.
        const std::uint32_t access = present.permittedAccess;
        camera.canOpen = (access & (PxnAccessModeFull | PxnAccessModeUnknown)) != 0;
        camera.canRead = (access & (PxnAccessModeRead | PxnAccessModeUnknown)) != 0;
    }
    return camera;
}

} // namespace

ServiceOutcome ListCameras(ServiceContext& context, MV_CAMERA_RECEIVER receiver,
                           void* receiverContext) {
    std::vector<ListedCamera> cameras;
    ServiceOutcome outcome = context.WhileLocked([&] {
        const std::vector<PxnInterfaceInfo> interfaces = ListInterfaces(context.Grabber().Api());
        for (CMivoraCamera* node = context.Grabber().FirstListedCamera(); node;
             node = node->GetNext()) {
            cameras.push_back(Describe(context, *node, interfaces));
        }
        return ServiceOutcome();
    });
    for (std::size_t index = 0; index < cameras.size(); ++index) {
        const MV_CAMERA_DESCRIPTION record =
            cameras[index].Record(static_cast<std::uint32_t>(index));
        CallReceiver(receiver, &record, receiverContext);
    }
    return outcome;
}

} // namespace pyxen
