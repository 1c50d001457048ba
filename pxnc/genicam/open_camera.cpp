#include "pxnc/genicam/open_camera.h"

#include "pxnc/genicam/feature_tree.h"
#include "pxnc/genicam/local_feature.h"
#include "pxnc/genicam/stream_features.h"

#include <utility>
#include <vector>

namespace genicam {

namespace {

Module::Features LocalDeviceFeatures(TextPool& texts, const CameraDevice& device,
                                     const CameraIdentity& identity) {
    constexpr char kCategory[] = "/DeviceInformation";
    const bool isGigE = device.Where().protocol == Protocol::GigEVision;
    Module::Features features;
    LocalFeatures add(texts, features);
    add.AddText({"DeviceID", kCategory, "ID", "Unique identifier of the device."}, identity.id);
    add.AddText({"DeviceVendorName", kCategory, "Vendor Name", "Vendor of the device."},
                identity.vendor);
    add.AddText({"DeviceModelName", kCategory, "Model Name", "Model of the device."},
                identity.model);
    add.AddText({"DeviceSerialNumber", kCategory, "Serial Number", "Serial number of the device."},
                identity.serial);
    add.AddText(
        {"DeviceDisplayName", kCategory, "Display Name", "Name of the device for people to read."},
        identity.displayName);
    add.AddEnum({"DeviceType", kCategory, "Type", "Technology that reaches the device."},
                {{"GEV", PxnTransportLayerGEV}, {"U3V", PxnTransportLayerU3V}},
                [isGigE](int64_t& value) {
                    value = isGigE ? PxnTransportLayerGEV : PxnTransportLayerU3V;
                    return PxnErrSuccess;
                });
    const bool writeable = device.IsWriteable();
    add.AddEnum({"DeviceAccessStatus", kCategory, "Access Status",
                 "How the device is open in this process."},
                {{"OpenReadWrite", 0}, {"OpenReadOnly", 1}}, [writeable](int64_t& value) {
                    value = writeable ? 0 : 1;
                    return PxnErrSuccess;
                });
    if (isGigE) {
        add.AddText(
            {"GevDeviceIPAddress", kCategory, "IP Address", "Network address of the device."},
            device.Where().network);
    }
    return features;
}

} // namespace

OpenCamera AddCameraModules(TextPool& texts, HandleTable& handles,
                            std::shared_ptr<CameraDevice> device, const CameraIdentity& identity,
                            bool packetResend) {
    OpenCamera open;
    open.camera = handles.Reserve();
    open.localDevice = handles.Reserve();
    open.stream = handles.Reserve();
    open.frames = std::make_shared<FrameStream>(device, open.camera, open.stream, packetResend);

    open.chunkReaders = std::make_shared<ChunkReaders>(device);

    Module::Features cameraFeatures;
    {
        const platform::MutexLock lock(*device->NodeMutex());
        AppendDescribedFeatures(texts, device->Description(), device->IsWriteable(),
                                cameraFeatures);
        AppendStandardTiming(texts, device->Camera(), device->IsWriteable(), cameraFeatures);
    }
    const auto& mutex = device->NodeMutex();
    auto camera = std::make_shared<Module>(open.camera, mutex, std::move(cameraFeatures));
    camera->Attach(device, open.frames, {open.stream});
    auto localDevice = std::make_shared<Module>(open.localDevice, mutex,
                                                LocalDeviceFeatures(texts, *device, identity));
    localDevice->Attach(device, nullptr, {});
    auto stream = std::make_shared<Module>(open.stream, mutex,
                                           MakeStreamFeatures(texts, *device, *open.frames));
    stream->Attach(device, open.frames, {open.camera});
    handles.Add(std::move(camera));
    handles.Add(std::move(localDevice));
    handles.Add(std::move(stream));
    open.device = std::move(device);
    return open;
}

} // namespace genicam
