// open_camera.cpp - the modules of one open camera
#include "pxnc/genicam/open_camera.h"

#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/feature_tree.h"
#include "pxnc/genicam/stream_features.h"

#include <cstdint>
#include <utility>

namespace genicam {
namespace {

/// A camera, local device or stream module.
class CameraModule : public Module {
public:
    /// `partnerHandle` is the module whose features may change with those of this one, or null.
    /// Only camera and stream modules have a payload.
    CameraModule(PxnHandle ownHandle, PxnHandle partnerHandle, ChangeWatch& changeWatch,
                 std::shared_ptr<CameraDevice> cameraDevice,
                 std::shared_ptr<FrameStream> cameraFrames, Features moduleFeatures)
        : FeatureModule(std::move(moduleFeatures), cameraDevice->NodeMutex()),
          handle(ownHandle),
          partner(partnerHandle),
          watch(changeWatch),
          device(std::move(cameraDevice)),
          frames(std::move(cameraFrames)) {}

    void OnWritten(const char* name) override { Search(name); }
    void OnCaptureChanged() override { Search(nullptr); }
    void OnWatched(const char* name) override { watch.OnWatched(handle, *this, name); }

    PxnError GetPayloadSize(std::uint32_t& bytes) override {
        return frames ? device->GetPayloadSize(bytes) : PxnError{PxnErrBadHandle};
    }
    PxnError ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                        std::uint32_t& done) override {
        return device->ReadMemory(address, buffer, size, done);
    }
    PxnError WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                         std::uint32_t& done) override {
        return device->WriteMemory(address, bytes, size, done);
    }

private:
    void Search(const char* written) {
        watch.Search(handle, written);
        if (partner) {
            watch.Search(partner);
        }
    }

    const PxnHandle handle;
    const PxnHandle partner;
    ChangeWatch& watch;
    const std::shared_ptr<CameraDevice> device;
    const std::shared_ptr<FrameStream> frames;
};

Module::Features LocalDeviceFeatures(skeleton::TextPool& texts, const CameraDevice& device,
                                     const CameraIdentity& identity) {
    constexpr char kCategory[] = "/DeviceInformation";
    const bool isGigE = device.Where().protocol == Protocol::kGigEVision;
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
                [isGigE](std::int64_t& value) {
                    value = isGigE ? PxnTransportLayerGEV : PxnTransportLayerU3V;
                    return PxnErrSuccess;
                });
    const bool writable = device.IsWritable();
    add.AddEnum({"DeviceAccessStatus", kCategory, "Access Status",
                 "How the device is open in this process."},
                {{"OpenReadWrite", 0}, {"OpenReadOnly", 1}}, [writable](std::int64_t& value) {
                    value = writable ? 0 : 1;
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

OpenedCamera AddCameraModules(skeleton::Backend& backend, ChangeWatch& watch,
                              const std::shared_ptr<CameraDevice>& device,
                              const std::shared_ptr<FrameStream>& frames,
                              const CameraIdentity& identity) {
    skeleton::TextPool& texts = backend.Texts();
    skeleton::HandleTable& handles = backend.Handles();
    OpenedCamera opened;
    opened.camera = handles.Reserve();
    opened.localDevice = handles.Reserve();
    opened.stream = handles.Reserve();
    opened.device = device;
    opened.frames = frames;
    opened.chunkReaders = std::make_shared<ChunkReaders>(backend, device);
    frames->Open(opened.camera, opened.stream);

    const auto add = [&](PxnHandle handle, PxnHandle partner,
                         const std::shared_ptr<FrameStream>& ownFrames, Module::Features features) {
        auto module = std::make_shared<CameraModule>(handle, partner, watch, device, ownFrames,
                                                     std::move(features));
        handles.Put(handle, {std::move(module), ownFrames, device->LostFlag(),
                             handle == opened.camera, device->IsWritable()});
    };
    Module::Features cameraFeatures;
    {
        const platform::MutexLock lock(*device->NodeMutex());
        AppendDescribedFeatures(texts, device->Description(), cameraFeatures);
        AppendStandardTiming(texts, device->Camera(), cameraFeatures);
    }
    add(opened.camera, opened.stream, frames, std::move(cameraFeatures));
    add(opened.localDevice, nullptr, nullptr, LocalDeviceFeatures(texts, *device, identity));
    add(opened.stream, opened.camera, frames, MakeStreamFeatures(texts, *device, *frames));
    return opened;
}

} // namespace genicam
