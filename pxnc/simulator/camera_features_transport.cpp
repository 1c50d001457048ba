// camera_features_transport.cpp - the transport layer's features, and those of the local device
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"
#include "pxnc/simulator/input_features.h"

namespace pxsim {
namespace {

constexpr const char* kTransportLayerControl = "/TransportLayerControl";
constexpr std::int64_t kLargestAddress = 0xFFFFFFFF;

constexpr FeatureRow kPayloadRows[] = {
    {"PayloadSize", Int{}, kExpert | kReadOnly, "Size of the buffer that a frame requires.",
     Extra{.unit = "B"}},
    {"TLParamsLocked", Bool{}, kInvisible | kReadOnly,
     "Whether the features that determine the frame layout are locked."},
};

constexpr FeatureRow kGigERows[] = {
    {"GevSCPSPacketSize", Int{.value = 1500, .min = 500, .max = 16100, .step = 4},
     kExpert | kLocked, "Size of a stream packet including its headers.",
     Extra{.unit = "B", .affects = "DeviceStreamChannelPacketSize"}},
    {"DeviceStreamChannelPacketSize", Int{.min = 500, .max = 16100, .step = 4},
     kExpert | kLocked | kNotStored, "Size of a stream packet including its headers.",
     Extra{.unit = "B", .category = "/DeviceControl"}},
    {"GevSCPD", Int{.min = 0, .max = 1000000}, kExpert, "Delay between two stream packets.",
     Extra{.unit = "ns"}},
    {"GevSCPSDoNotFragment", Bool{true}, kGuru,
     "Drops packets that are too large instead of fragmenting them."},
    {"GevSCPSFireTestPacket", Command{}, kGuru, "Sends a test packet of the current size."},
    {"GevMACAddress", Int{0x000F31024A10}, kBeginner | kReadOnly, "Hardware address of the camera.",
     Extra{.representation = "MACAddress"}},
    {"GevCurrentIPAddress", Int{.value = 0xA9FE0117, .min = 0, .max = kLargestAddress},
     kExpert | kReadOnly, "Current network address.", Extra{.representation = "IPV4Address"}},
    {"GevCurrentSubnetMask", Int{.value = 0xFFFF0000, .min = 0, .max = kLargestAddress},
     kExpert | kReadOnly, "Current subnet mask.", Extra{.representation = "IPV4Address"}},
    {"GevCurrentDefaultGateway", Int{.min = 0, .max = kLargestAddress}, kExpert | kReadOnly,
     "Current default gateway.", Extra{.representation = "IPV4Address"}},
    {"GevPersistentIPAddress", Int{.value = 0xC0A80117, .min = 0, .max = kLargestAddress}, kExpert,
     "Persistent network address.", Extra{.representation = "IPV4Address"}},
    {"GevPersistentSubnetMask", Int{.value = 0xFFFFFF00, .min = 0, .max = kLargestAddress}, kExpert,
     "Persistent subnet mask.", Extra{.representation = "IPV4Address"}},
    {"GevPersistentDefaultGateway", Int{.min = 0, .max = kLargestAddress}, kExpert,
     "Persistent default gateway.", Extra{.representation = "IPV4Address"}},
    {"GevCurrentIPConfigurationLLA", Bool{true}, kExpert, "Enables link-local addressing."},
    {"GevCurrentIPConfigurationDHCP", Bool{true}, kExpert, "Enables addressing by DHCP."},
    {"GevCurrentIPConfigurationPersistentIP", Bool{true}, kExpert,
     "Enables the persistent address."},
    {"GevHeartbeatTimeout", Int{.value = 3000, .min = 500, .max = 60000}, kExpert,
     "Time without a heartbeat after which the host is considered disconnected.",
     Extra{.unit = "ms"}},
    {"GevCCP", Enum{"OpenAccess ExclusiveAccess ControlAccess", "ControlAccess"}, kGuru,
     "Control access to the camera."},
};

constexpr FeatureRow kTimeProtocolRows[] = {
    {"PtpEnable", Bool{}, kExpert, "Synchronises the camera's clock with the network.",
     Extra{.affects = "PtpStatus PtpOffsetFromMaster"}},
    {"PtpStatus", Enum{"Disabled Listening Slave"}, kExpert | kReadOnly,
     "State of the clock synchronisation."},
    {"PtpOffsetFromMaster", Int{}, kExpert | kReadOnly, "Offset from the master clock.",
     Extra{.unit = "ns", .pollingMs = 1000}},
};

constexpr FeatureRow kUsbRows[] = {
    {"U3vCurrentSpeed", Enum{"HighSpeed SuperSpeed SuperSpeedPlus", "SuperSpeed"},
     kExpert | kReadOnly | kCustom, "Speed of the connection."},
    {"U3vTransferSize", Int{.value = 1048576, .min = 1024, .max = 4194304, .step = 1024},
     kGuru | kCustom | kLocked, "Size of a transfer.", Extra{.unit = "B"}},
    {"U3vMaxCommandTransfer", Int{1024}, kGuru | kReadOnly | kCustom, "Maximum size of a command.",
     Extra{.unit = "B"}},
};

constexpr FeatureRow kCameraLinkRows[] = {
    {"ClConfiguration", Enum{"Base Medium Full EightyBit", "Full"}, kExpert | kLocked,
     "Cables and taps that the link uses.", Extra{.affects = "ClTimeSlotsCount"}},
    {"ClTimeSlotsCount", Enum{"One Two Three"}, kExpert | kLocked,
     "Number of time slots per pixel."},
    {"DeviceSerialPortBaudRate", Enum{"Baud9600 Baud19200 Baud38400 Baud57600 Baud115200"}, kExpert,
     "Baud rate of the serial line that controls the camera.",
     Extra{.category = kTransportLayerControl}},
};

constexpr FeatureRow kCommunicationRows[] = {
    {"DeviceMessageTimeout", Int{.value = 200, .min = 10, .max = 60000}, kExpert,
     "Time to wait for a response from the camera.", Extra{.unit = "ms"}},
    {"DeviceMessageRetries", Int{.value = 3, .min = 0, .max = 100}, kExpert,
     "Maximum number of times that a message is repeated."},
};

constexpr FeatureRow kSerialCommunicationRows[] = {
    {"DeviceSerialPortBaudRate",
     Enum{"Baud9600 Baud19200 Baud38400 Baud57600 Baud115200 Baud230400"}, kExpert,
     "Baud rate of the serial line that controls the camera."},
};

void AddGigE(Camera& camera) {
    camera.AddTable("/TransportLayerControl/GigEVision", kGigERows);
    IntFeature& size = camera.Get<Int>("GevSCPSPacketSize");
    camera.Get<Int>("DeviceStreamChannelPacketSize")
        .Computed([&size] { return size.Get(); })
        .Writes([&size](std::int64_t value) { return size.Set(value); });
    camera.AddTable("/TransportLayerControl/PtpControl", kTimeProtocolRows);
    camera.Get<Enum>("PtpStatus").Computed([&camera] {
        return camera.BoolValue("PtpEnable") ? "Slave" : "Disabled";
    });
    camera.Get<Int>("PtpOffsetFromMaster")
        .Computed(
            [&camera] { return static_cast<std::int64_t>(camera.Timestamp() / 1000 % 41) - 20; })
        .AvailableWhen([&camera] { return camera.BoolValue("PtpEnable"); });
}

void AddCameraLink(Camera& camera) {
    camera.AddTable("/TransportLayerControl/CameraLink", kCameraLinkRows);
    camera.Get<Enum>("ClTimeSlotsCount").EntryAvailableWhen("Three", [&camera] {
        return camera.EnumIs("ClConfiguration", "Base");
    });
}

} // namespace

void AddTransportLayerControl(Camera& camera) {
    camera.AddTable(kTransportLayerControl, kPayloadRows);
    camera.Get<Int>("PayloadSize").Computed([&camera] { return camera.PayloadBytes(); });
    camera.Get<Bool>("TLParamsLocked").Computed([&camera] { return camera.IsStreaming(); });
    switch (camera.Setup().kind) {
    case CameraKind::kGigE:
        AddGigE(camera);
        break;
    case CameraKind::kUsb:
        camera.AddTable("/TransportLayerControl/USB3Vision", kUsbRows);
        break;
    case CameraKind::kSerial:
        AddCameraLink(camera);
        break;
    }
}

void AddLocalDeviceFeatures(Module& localDevice, Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    const FeatureRow identityRows[] = {
        {"DeviceID", String{setup.id.c_str()}, kBeginner | kReadOnly, "Identifier of the camera."},
        {"DeviceVendorName", String{setup.vendor.c_str()}, kBeginner | kReadOnly,
         "Name of the manufacturer."},
        {"DeviceModelName", String{setup.model.c_str()}, kBeginner | kReadOnly,
         "Model of the camera."},
        {"DeviceDisplayName", String{setup.name.c_str()}, kBeginner | kReadOnly,
         "Display name of the camera."},
        {"DeviceType", String{TransportLayerTypeName(camera.InterfaceType())},
         kBeginner | kReadOnly, "Transport layer type of the camera."},
    };
    const FeatureRow streamRows[] = {
        {"StreamCount", Int{setup.streams}, kBeginner | kReadOnly,
         "Number of streams of the camera."},
    };
    localDevice.AddTable("/DeviceInformation", identityRows);
    localDevice.AddTable("/DeviceCommunication", kCommunicationRows);
    localDevice.AddTable("/DeviceInformation", streamRows);
    if (setup.kind == CameraKind::kSerial) {
        localDevice.AddTable("/DeviceCommunication", kSerialCommunicationRows);
        AddInputFeatures(localDevice);
    }
}

} // namespace pxsim
