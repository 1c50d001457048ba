#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kCategory = "/TransportLayerControl";
constexpr const char* kGigE = "/TransportLayerControl/GigEVision";

void AddBaudRate(Module& module, const std::vector<const char*>& rates, const char* initial,
                 const char* category) {
    module.Enum("DeviceSerialPortBaudRate")
        .Entries(rates)
        .Value(initial)
        .In(category)
        .For(PxnVisibilityExpert)
        .Text("Speed of the serial line that controls the camera.");
}

void AddGigEVision(Camera& camera) {
    camera.Int("GevSCPSPacketSize")
        .Value(1500)
        .Range(500, 16100, 4)
        .Unit("B")
        .In(kGigE)
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .Text("Size of a stream packet with its headers.");
    camera.Int("GevSCPD")
        .Range(0, 1000000)
        .In(kGigE)
        .For(PxnVisibilityExpert)
        .Unit("ns")
        .Text("Pause between two stream packets.");
}

} // namespace

void AddTransportLayerControl(Camera& camera) {
    camera.Int("PayloadSize")
        .Computed([&camera] { return camera.PayloadBytes(); })
        .Unit("B")
        .In(kCategory)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Bytes that a buffer must hold.");
    camera.Bool("TLParamsLocked")
        .Computed([&camera] { return camera.IsStreaming(); })
        .In(kCategory)
        .ReadOnly()
        .For(PxnVisibilityInvisible)
        .Text("The features that shape the image are locked.");
    if (camera.Setup().kind == CameraKind::kGigE) {
        AddGigEVision(camera);
    }
    if (camera.Setup().kind == CameraKind::kSerial) {
        AddBaudRate(camera, {"Baud9600", "Baud19200", "Baud38400", "Baud57600", "Baud115200"},
                    "Baud9600", kCategory);
    }
}

void AddLocalDeviceFeatures(Module& localDevice, Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    constexpr const char* kInformation = "/DeviceInformation";
    const auto add = [&](const char* name, const std::string& value, const char* text) {
        localDevice.String(name).Value(value).In(kInformation).ReadOnly().Text(text);
    };
    add("DeviceID", setup.id, "Identifier of the camera.");
    add("DeviceVendorName", setup.vendor, "Name of the maker.");
    add("DeviceModelName", setup.model, "Model of the camera.");
    add("DeviceDisplayName", setup.name, "Name for people.");
    add("DeviceType", TransportLayerTypeName(camera.InterfaceType()), "Transport layer type.");
    localDevice.Int("DeviceMessageTimeout")
        .Value(200)
        .Range(10, 60000)
        .Unit("ms")
        .In("/DeviceCommunication")
        .For(PxnVisibilityExpert)
        .Text("Time to wait for the camera's answer.");
    localDevice.Int("DeviceMessageRetries")
        .Value(3)
        .Range(0, 100)
        .In("/DeviceCommunication")
        .For(PxnVisibilityExpert)
        .Text("Times that a message is repeated.");
    localDevice.Int("StreamCount")
        .Value(setup.streams)
        .In(kInformation)
        .ReadOnly()
        .Text("Streams of the camera.");
    if (setup.kind == CameraKind::kSerial) {
        AddBaudRate(localDevice,
                    {"Baud9600", "Baud19200", "Baud38400", "Baud57600", "Baud115200", "Baud230400"},
                    "Baud9600", "/DeviceCommunication");
    }
}

} // namespace pxsim
