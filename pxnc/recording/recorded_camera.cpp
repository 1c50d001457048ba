// recorded_camera.cpp - the features of a camera that plays a recording
#include "pxnc/recording/recorded_camera.h"

#include "platform/file_system.h"
#include "pxnc/skeleton/local_feature.h"

#include <limits>
#include <utility>

namespace playback {
namespace {

using skeleton::LocalFeatures;

constexpr std::int64_t kMostInteger = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t kPathLimit = 4096;
constexpr const char* kSystem = "/SystemInformation";
constexpr const char* kEvents = "/EventControl";
constexpr const char* kDevice = "/DeviceControl";
constexpr const char* kImageFormat = "/ImageFormatControl";
constexpr const char* kAcquisition = "/AcquisitionControl";
constexpr const char* kPlayback = "/PlaybackControl";

template <typename Value>
LocalFeatures::Reader<Value> Always(Value constant) {
    return [constant](Value& value) {
        value = constant;
        return PxnErrSuccess;
    };
}

void AddFixedInt(LocalFeatures& add, const skeleton::LocalDescription& description,
                 std::int64_t value) {
    add.AddInt(description, {value, value, 1}, Always(value));
}

void AddFixedFloat(LocalFeatures& add, const skeleton::LocalDescription& description,
                   const std::optional<double>& value) {
    if (value) {
        add.AddFloat(description, Always(LocalFeatures::FloatLimits{*value, *value}),
                     Always(*value));
    }
}

void AddDevice(LocalFeatures& add, const CameraNames& names) {
    add.AddText({"DeviceVendorName", kDevice, "Vendor Name", "Maker of the recorded camera."},
                names.vendor);
    add.AddText({"DeviceModelName", kDevice, "Model Name", "Model of the recorded camera."},
                names.model);
    add.AddText(
        {"DeviceSerialNumber", kDevice, "Serial Number", "Serial number of the recorded camera."},
        names.serial);
    add.AddText({"DeviceUserID", kDevice, "User ID", "Name that the user gave to the camera."},
                names.userName);
}

void AddImageFormat(LocalFeatures& add, const Recording& recording) {
    const RecordingDescription& description = recording.index.description;
    AddFixedInt(add, {"Width", kImageFormat, "Width", "Width of the recorded images."},
                description.layout.width);
    AddFixedInt(add, {"Height", kImageFormat, "Height", "Height of the recorded images."},
                description.layout.height);
    AddFixedInt(add, {"OffsetX", kImageFormat, "Offset X", "Left edge on the sensor."},
                description.offsetX.value_or(0));
    AddFixedInt(add, {"OffsetY", kImageFormat, "Offset Y", "Upper edge on the sensor."},
                description.offsetY.value_or(0));
    add.AddEnum({"PixelFormat", kImageFormat, "Pixel Format",
                 "Format of the images as they are in the recording, already converted."},
                {{recording.format.name, std::int64_t{recording.format.code}}},
                Always(std::int64_t{recording.format.code}));
    AddFixedInt(add,
                {"PayloadSize", "/TransportLayerControl", "Payload Size", "Bytes of an image."},
                recording.imageBytes);
}

void AddAcquisition(LocalFeatures& add, const Recording& recording,
                    const std::shared_ptr<FramePlayer>& player) {
    const RecordingDescription& description = recording.index.description;
    add.AddEnum({"AcquisitionMode", kAcquisition, "Acquisition Mode",
                 "Frames are sent until the acquisition or the recording ends."},
                {{"Continuous", 0}}, Always(std::int64_t{0}));
    AddFixedFloat(add,
                  {"ExposureTime", kAcquisition, "Exposure Time",
                   "Exposure time during the recording.", PxnVisibilityBeginner, "us"},
                  description.exposureUs);
    AddFixedFloat(add,
                  {"AcquisitionFrameRate", kAcquisition, "Frame Rate",
                   "Frame rate of the recording.", PxnVisibilityBeginner, "Hz"},
                  description.frameRate);
    add.AddCommand(
        {"AcquisitionStart", kAcquisition, "Start", "Plays the recording from its first frame on."},
        [player] {
            player->Play();
            return PxnErrSuccess;
        });
    add.AddCommand({"AcquisitionStop", kAcquisition, "Stop", "Sends no more frames."}, [player] {
        player->Stop();
        return PxnErrSuccess;
    });
}

void AddPlayback(LocalFeatures& add, const Recording& recording,
                 const std::shared_ptr<FramePlayer>& player) {
    add.AddBool(
        {"PlaybackRepeat", kPlayback, "Repeat",
         "Begins again after the last frame; frame ids and timestamps go on rising."},
        [player](bool& value) {
            value = player->Repeats();
            return PxnErrSuccess;
        },
        [player](const bool& value) {
            player->SetRepeats(value);
            return PxnErrSuccess;
        });
    add.AddBool({"PlaybackAsFastAsPossible", kPlayback, "As Fast As Possible",
                 "Sends a frame as soon as one is queued, not at the recorded time."},
                Always(recording.isFast));
    AddFixedInt(add,
                {"PlaybackFrameCount", kPlayback, "Frame Count",
                 "Frames that are sent, once, from the first to the last."},
                static_cast<std::int64_t>(recording.plan.frames.size()));
    add.AddInt({"PlaybackPosition", kPlayback, "Position",
                "Number in the recording of the frame that was due last."},
               {0, kMostInteger, 1}, [player](std::int64_t& value) {
                   value = static_cast<std::int64_t>(player->Position());
                   return PxnErrSuccess;
               });
    add.AddBool(
        {"PlaybackEnded", kPlayback, "Ended", "Whether the last frame was due and none follows."},
        [player](bool& value) {
            value = player->HasEnded();
            return PxnErrSuccess;
        });
}

} // namespace

CameraNames::CameraNames(const Recording& recording) {
    const RecordedCamera& camera = recording.index.description.camera;
    const std::string path = platform::FullPath(recording.directory, kPathLimit);
    id = camera.id.value_or(path);
    extendedId = camera.extendedId.value_or(id);
    model = camera.model.value_or("Recording");
    userName = camera.userName.value_or("");
    name = userName.empty() ? model : userName;
    vendor = camera.vendor.value_or("");
    serial = camera.serial.value_or("");
    interfaceName = camera.interfaceName.value_or("Recording");
}

std::shared_ptr<PlaybackModule> MakeSystemModule(skeleton::Backend& backend) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    add.AddText({"SystemVendorName", kSystem, "Vendor Name", "Maker of this library."}, "Korvane");
    add.AddText({"SystemModelName", kSystem, "Model Name", "Name of this library."},
                "Pyxen Recording");
    // Hosts follow the first of these to learn of cameras that come and go; this one stays.
    AddFixedInt(add,
                {"EventCameraDiscovery", kEvents, "Camera Discovery",
                 "Number of cameras that came or went."},
                0);
    add.AddEnum({"EventCameraDiscoveryType", kEvents, "Camera Discovery Type",
                 "Whether the camera came or went; unreadable as none does."},
                {{"Missing", 0}, {"Detected", 1}},
                [](std::int64_t&) -> PxnError { return PxnErrInvalidAccess; });
    add.AddText({"EventCameraDiscoveryCameraID", kEvents, "Camera Discovery Camera",
                 "Extended identifier of the camera that came or went."},
                std::string());
    return std::make_shared<PlaybackModule>(backend, std::move(features));
}

std::shared_ptr<PlaybackModule> MakeTransportLayerModule(skeleton::Backend& backend) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    add.AddText({"TLID", kSystem, "ID", "Unique identifier of the transport layer."}, "Recording");
    add.AddEnum({"TLType", kSystem, "Type", "Technology of the transport layer."},
                {{"Custom", PxnTransportLayerCustom}},
                Always(std::int64_t{PxnTransportLayerCustom}));
    return std::make_shared<PlaybackModule>(backend, std::move(features));
}

std::shared_ptr<PlaybackModule> MakeInterfaceModule(skeleton::Backend& backend,
                                                    const CameraNames& names) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    add.AddText({"InterfaceID", "/InterfaceInformation", "ID",
                 "Interface to which the recorded camera was connected."},
                names.interfaceName);
    return std::make_shared<PlaybackModule>(backend, std::move(features));
}

std::shared_ptr<PlaybackModule> MakeCameraModule(skeleton::Backend& backend,
                                                 const Recording& recording,
                                                 const CameraNames& names,
                                                 const std::shared_ptr<FramePlayer>& player) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    AddDevice(add, names);
    AddImageFormat(add, recording);
    AddAcquisition(add, recording, player);
    AddPlayback(add, recording, player);
    return std::make_shared<PlaybackModule>(backend, std::move(features), recording.imageBytes);
}

std::shared_ptr<PlaybackModule> MakeLocalDeviceModule(skeleton::Backend& backend,
                                                      const CameraNames& names) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    add.AddText({"DeviceID", "/DeviceInformation", "ID", "Identifier of the camera."}, names.id);
    return std::make_shared<PlaybackModule>(backend, std::move(features));
}

std::shared_ptr<PlaybackModule> MakeStreamModule(skeleton::Backend& backend,
                                                 const Recording& recording) {
    skeleton::FeatureModule::Features features;
    LocalFeatures add(backend.Texts(), features);
    add.AddText({"StreamID", "/StreamInformation", "ID", "Identifier of the stream."}, "Stream0");
    return std::make_shared<PlaybackModule>(backend, std::move(features), recording.imageBytes);
}

} // namespace playback
