#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"
#include "pxnc/simulator/input_features.h"

namespace pxsim {
namespace {

constexpr const char* kTransportLayerControl = "/TransportLayerControl";
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

void AddPackets(Camera& camera) {
    IntFeature& size = camera.Int("GevSCPSPacketSize")
                           .Value(1500)
                           .Range(500, 16100, 4)
                           .Unit("B")
                           .In(kGigE)
                           .For(PxnVisibilityExpert)
                           .LockedWhileStreaming()
                           .Affects({"DeviceStreamChannelPacketSize"})
                           .Text("Size of a stream packet with its headers.");
    camera.Int("DeviceStreamChannelPacketSize")
        .Computed([&size] { return size.Get(); })
        .Range(500, 16100, 4)
        .Writes([&size](std::int64_t value) { return size.Set(value); })
        .Unit("B")
        .In("/DeviceControl")
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .NotStored()
        .Text("Size of a stream packet with its headers.");
    camera.Int("GevSCPD")
        .Range(0, 1000000)
        .In(kGigE)
        .For(PxnVisibilityExpert)
        .Unit("ns")
        .Text("Pause between two stream packets.");
    camera.Bool("GevSCPSDoNotFragment")
        .Value(true)
        .In(kGigE)
        .For(PxnVisibilityGuru)
        .Text("Packets that are too large are lost instead of split.");
    camera.Command("GevSCPSFireTestPacket")
        .In(kGigE)
        .For(PxnVisibilityGuru)
        .Text("Sends one packet of the present size.");
}

void AddAddresses(Camera& camera) {
    const auto add = [&camera](const char* name, std::int64_t value,
                               const char* text) -> IntFeature& {
        return camera.Int(name)
            .Value(value)
            .Range(0, 0xFFFFFFFF)
            .As("IPV4Address")
            .In(kGigE)
            .For(PxnVisibilityExpert)
            .Text(text);
    };
    camera.Int("GevMACAddress")
        .Value(0x000F31024A10)
        .As("MACAddress")
        .In(kGigE)
        .ReadOnly()
        .Text("Hardware address.");
    add("GevCurrentIPAddress", 0xA9FE0117, "Network address.").ReadOnly();
    add("GevCurrentSubnetMask", 0xFFFF0000, "Mask of the network.").ReadOnly();
    add("GevCurrentDefaultGateway", 0, "Way out of the network.").ReadOnly();
    add("GevPersistentIPAddress", 0xC0A80117, "Address that the camera keeps.");
    add("GevPersistentSubnetMask", 0xFFFFFF00, "Mask that the camera keeps.");
    add("GevPersistentDefaultGateway", 0, "Gateway that the camera keeps.");
    for (const char* name : {"GevCurrentIPConfigurationLLA", "GevCurrentIPConfigurationDHCP",
                             "GevCurrentIPConfigurationPersistentIP"}) {
        camera.Bool(name)
            .Value(true)
            .In(kGigE)
            .For(PxnVisibilityExpert)
            .Text("A way to an address that the camera may take.");
    }
    camera.Int("GevHeartbeatTimeout")
        .Value(3000)
        .Range(500, 60000)
        .Unit("ms")
        .In(kGigE)
        .For(PxnVisibilityExpert)
        .Text("Time without a sign of life after which the host counts as gone.");
    camera.Enum("GevCCP")
        .Entries({"OpenAccess", "ExclusiveAccess", "ControlAccess"})
        .Value("ControlAccess")
        .In(kGigE)
        .For(PxnVisibilityGuru)
        .Text("Who controls the camera.");
}

void AddTimeProtocol(Camera& camera) {
    constexpr const char* kPtp = "/TransportLayerControl/PtpControl";
    camera.Bool("PtpEnable")
        .In(kPtp)
        .For(PxnVisibilityExpert)
        .Affects({"PtpStatus", "PtpOffsetFromMaster"})
        .Text("The clock follows the network's.");
    camera.Enum("PtpStatus")
        .Entries({"Disabled", "Listening", "Slave"})
        .Computed([&camera] { return camera.BoolValue("PtpEnable") ? "Slave" : "Disabled"; })
        .In(kPtp)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("State of the clock.");
    camera.Int("PtpOffsetFromMaster")
        .Computed(
            [&camera] { return static_cast<std::int64_t>(camera.Timestamp() / 1000 % 41) - 20; })
        .Unit("ns")
        .In(kPtp)
        .ReadOnly()
        .Volatile(1000)
        .For(PxnVisibilityExpert)
        .AvailableWhen([&camera] { return camera.BoolValue("PtpEnable"); })
        .Text("Distance to the network's clock.");
}

void AddUsbVision(Camera& camera) {
    constexpr const char* kUsb = "/TransportLayerControl/USB3Vision";
    camera.Enum("U3vCurrentSpeed")
        .Entries({"HighSpeed", "SuperSpeed", "SuperSpeedPlus"})
        .Value("SuperSpeed")
        .In(kUsb)
        .Custom()
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Speed of the connection.");
    camera.Int("U3vTransferSize")
        .Value(1048576)
        .Range(1024, 4194304, 1024)
        .Unit("B")
        .In(kUsb)
        .Custom()
        .For(PxnVisibilityGuru)
        .LockedWhileStreaming()
        .Text("Size of a transfer.");
    camera.Int("U3vMaxCommandTransfer")
        .Value(1024)
        .Unit("B")
        .In(kUsb)
        .Custom()
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("Largest command.");
}

void AddCameraLink(Camera& camera) {
    constexpr const char* kLink = "/TransportLayerControl/CameraLink";
    camera.Enum("ClConfiguration")
        .Entries({"Base", "Medium", "Full", "EightyBit"})
        .Value("Full")
        .In(kLink)
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .Affects({"ClTimeSlotsCount"})
        .Text("Cables and taps of the link.");
    camera.Enum("ClTimeSlotsCount")
        .Entries({"One", "Two", "Three"})
        .In(kLink)
        .For(PxnVisibilityExpert)
        .EntryAvailableWhen("Three", [&camera] { return camera.EnumIs("ClConfiguration", "Base"); })
        .LockedWhileStreaming()
        .Text("Time slots of a pixel.");
}

} // namespace

void AddTransportLayerControl(Camera& camera) {
    camera.Int("PayloadSize")
        .Computed([&camera] { return camera.PayloadBytes(); })
        .Unit("B")
        .In(kTransportLayerControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Bytes that a buffer must hold.");
    camera.Bool("TLParamsLocked")
        .Computed([&camera] { return camera.IsStreaming(); })
        .In(kTransportLayerControl)
        .ReadOnly()
        .For(PxnVisibilityInvisible)
        .Text("The features that shape the image are locked.");
    if (camera.Setup().kind == CameraKind::kGigE) {
        AddPackets(camera);
        AddAddresses(camera);
        AddTimeProtocol(camera);
    }
    if (camera.Setup().kind == CameraKind::kUsb) {
        AddUsbVision(camera);
    }
    if (camera.Setup().kind == CameraKind::kSerial) {
        AddCameraLink(camera);
        AddBaudRate(camera, {"Baud9600", "Baud19200", "Baud38400", "Baud57600", "Baud115200"},
                    "Baud9600", kTransportLayerControl);
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
        AddInputFeatures(localDevice);
    }
}

} // namespace pxsim
