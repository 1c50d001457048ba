// camera_features_device.cpp - the device itself: identity, versions, sensors, link and clock
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kDeviceControl = "/DeviceControl";

constexpr FeatureRow kKindRows[] = {
    {"DeviceType", Enum{"Transmitter Receiver Transceiver Peripheral"}, kBeginner | kReadOnly,
     "Type of the device."},
    {"DeviceScanType", Enum{"Areascan Linescan"}, kExpert | kReadOnly, "Scan type of the sensor."},
    {"DeviceReset", Command{}, kGuru, "Stops the camera and restores its state at power-on."},
};

constexpr FeatureRow kSensorRows[] = {
    {"DeviceTemperatureSelector", Enum{"Sensor Mainboard"}, kExpert,
     "Location of the temperature sensor."},
    {"DeviceTemperature", Float{.min = -40.0, .max = 120.0}, kBeginner | kReadOnly,
     "Temperature at the selected location.",
     Extra{.unit = "°C", .selectors = "DeviceTemperatureSelector", .pollingMs = 2000}},
    {"DeviceIndicatorMode", Enum{"Inactive Active ErrorStatus", "Active"}, kBeginner,
     "Behaviour of the status indicator."},
    {"DeviceClockSelector", Enum{"Sensor SensorDigitization CameraLink"}, kExpert,
     "Clock whose frequency is reported."},
    {"DeviceClockFrequency", Float{74.25e6}, kExpert | kReadOnly,
     "Frequency of the selected clock.", Extra{.unit = "Hz", .selectors = "DeviceClockSelector"}},
};

constexpr FeatureRow kHostRows[] = {
    {"DeviceLinkCommandTimeout", Float{200000.0}, kExpert | kReadOnly,
     "Maximum response time to a command.", Extra{.unit = "µs"}},
    {"DeviceLinkHeartbeatMode", Enum{"Off On", "On"}, kExpert, "Enables the heartbeat."},
    {"DeviceLinkHeartbeatTimeout", Float{.value = 3e6, .min = 500000.0, .max = 60e6}, kExpert,
     "Time without a heartbeat after which the host is considered disconnected.",
     Extra{.unit = "µs"}},
    {"DeviceStreamChannelEndianness", Enum{"Big Little", "Little"}, kGuru | kReadOnly,
     "Byte order on the link."},
    {"DeviceCharacterSet", Enum{"ASCII UTF8", "UTF8"}, kGuru | kReadOnly,
     "Character encoding of texts."},
};

constexpr FeatureRow kClockRows[] = {
    {"Timestamp", Int{}, kExpert | kReadOnly, "Current time of the camera's clock.",
     Extra{.unit = "ns", .pollingMs = 1000}},
    {"TimestampLatchValue", Int{}, kExpert | kReadOnly,
     "Time of the clock when it was last latched.", Extra{.unit = "ns"}},
    {"TimestampLatch", Command{}, kExpert, "Latches the current time of the clock."},
};

void AddDeviceIdentity(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    const FeatureRow rows[] = {
        {"DeviceVendorName", String{setup.vendor.c_str()}, kBeginner | kReadOnly,
         "Name of the manufacturer."},
        {"DeviceModelName", String{setup.model.c_str()}, kBeginner | kReadOnly,
         "Model of the camera."},
        {"DeviceFamilyName", String{"Pyxen"}, kBeginner | kReadOnly,
         "Product family of the camera."},
        {"DeviceManufacturerInfo", String{"Pyxen SDK simulator"}, kBeginner | kReadOnly,
         "Additional information from the manufacturer."},
        {"DeviceVersion", String{"2.0"}, kBeginner | kReadOnly, "Version of the hardware."},
        {"DeviceFirmwareVersion", String{"1.4.0.2"}, kBeginner | kReadOnly,
         "Version of the firmware."},
        {"DeviceSerialNumber", String{setup.serial.c_str()}, kBeginner | kReadOnly,
         "Serial number."},
        {"DeviceID", String{setup.id.c_str()}, kBeginner | kReadOnly, "Identifier of the camera."},
        {"DeviceUserID", String{.maxLength = 16}, kBeginner, "Name assigned by the user."},
    };
    camera.AddTable(kDeviceControl, rows);
}

void AddVersions(Camera& camera) {
    const FeatureRow rows[] = {
        {"DeviceSFNCVersionMajor", Int{2}, kExpert | kReadOnly,
         "Major version of the naming convention."},
        {"DeviceSFNCVersionMinor", Int{7}, kExpert | kReadOnly,
         "Minor version of the naming convention."},
        {"DeviceSFNCVersionSubMinor", Int{0}, kExpert | kReadOnly,
         "Subminor version of the naming convention."},
        {"DeviceTLVersionMajor", Int{1}, kExpert | kReadOnly,
         "Major version of the transport layer standard."},
        {"DeviceTLVersionMinor", Int{2}, kExpert | kReadOnly,
         "Minor version of the transport layer standard."},
        {"DeviceTLVersionSubMinor", Int{0}, kExpert | kReadOnly,
         "Subminor version of the transport layer standard."},
        {"DeviceManifestEntrySelector", Int{1}, kExpert | kReadOnly,
         "Manifest entry that is described."},
        {"DeviceManifestXMLMajorVersion", Int{1}, kExpert | kReadOnly,
         "Major version of the device description."},
        {"DeviceManifestXMLMinorVersion", Int{4}, kExpert | kReadOnly,
         "Minor version of the device description."},
        {"DeviceStreamChannelCount", Int{camera.Setup().streams}, kExpert | kReadOnly,
         "Number of streams of the camera."},
        {"DeviceLinkSpeed", Int{camera.LinkBytesPerSecond()}, kExpert | kReadOnly,
         "Speed of the link in bytes per second."},
        {"DeviceTLType",
         Enum{"Unknown GEV CL IIDC UVC CXP CLHS U3V Ethernet PCI Custom Mixed",
              TransportLayerTypeName(camera.InterfaceType())},
         kBeginner | kReadOnly, "Type of the transport layer."},
    };
    camera.AddTable(kDeviceControl, rows);
}

void AddKind(Camera& camera) {
    camera.AddTable(kDeviceControl, kKindRows);
    camera.Get<Command>("DeviceReset").Runs([&camera] {
        camera.StopAcquisition();
        camera.ResetFeatures();
        return PxnErrSuccess;
    });
}

void AddSensors(Camera& camera) {
    camera.AddTable(kDeviceControl, kSensorRows);
    camera.Get<Float>("DeviceTemperature").Computed([&camera] {
        // Warms up over some minutes and varies a little.
        const double seconds = static_cast<double>(camera.Timestamp()) * 1e-9;
        const double variation = static_cast<double>(camera.Timestamp() / 1000000 % 1000) * 1e-4;
        const double rest = camera.EnumIs("DeviceTemperatureSelector", "Sensor") ? 31.0 : 36.0;
        return rest + 12.0 * seconds / (seconds + 120.0) + variation;
    });
    camera.Get<Enum>("DeviceClockSelector").EntryAvailableWhen("CameraLink", [&camera] {
        return camera.Setup().kind == CameraKind::kSerial;
    });
    constexpr std::int64_t kCameraLinkClock = 2;
    camera.Get<Float>("DeviceClockFrequency").ValueFor(kCameraLinkClock, 85e6);
}

void AddLink(Camera& camera) {
    const std::int64_t highest = camera.LinkBytesPerSecond() / 1000 * 1000;
    const FeatureRow limitRows[] = {
        {"DeviceLinkThroughputLimitMode", Enum{"Off On"}, kExpert, "Enables the throughput limit.",
         Extra{.affects = "DeviceLinkThroughputLimit AcquisitionFrameRate"}},
        {"DeviceLinkThroughputLimit",
         Int{.value = highest, .min = 1000000, .max = highest, .step = 1000}, kExpert,
         "Maximum data rate of the camera.",
         Extra{.unit = "B/s", .affects = "AcquisitionFrameRate"}},
    };
    camera.AddTable(kDeviceControl, limitRows);
    camera.AddTable(kDeviceControl, kHostRows);
    camera.At("DeviceLinkThroughputLimitMode").OnChange([&camera] { camera.LimitFrameRate(); });
    camera.At("DeviceLinkThroughputLimit")
        .AvailableWhen([&camera] { return camera.EnumIs("DeviceLinkThroughputLimitMode", "On"); })
        .OnChange([&camera] { camera.LimitFrameRate(); });
    camera.At("DeviceLinkHeartbeatTimeout").AvailableWhen([&camera] {
        return camera.EnumIs("DeviceLinkHeartbeatMode", "On");
    });
}

void AddClock(Camera& camera) {
    camera.AddTable(kDeviceControl, kClockRows);
    const auto now = [&camera] {
        return static_cast<std::int64_t>(camera.Timestamp());
    };
    camera.Get<Int>("Timestamp").Computed(now);
    camera.Get<Command>("TimestampLatch").Runs([&camera, now] {
        camera.Get<Int>("TimestampLatchValue").Put(now());
        return PxnErrSuccess;
    });
}

} // namespace

void AddDeviceControl(Camera& camera) {
    AddDeviceIdentity(camera);
    AddVersions(camera);
    AddKind(camera);
    AddSensors(camera);
    AddLink(camera);
    AddClock(camera);
}

} // namespace pxsim
