#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kDeviceControl = "/DeviceControl";

void AddTexts(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    const auto add = [&](const char* name, const std::string& value, const char* text) {
        camera.String(name).Value(value).In(kDeviceControl).ReadOnly().Text(text);
    };
    add("DeviceVendorName", setup.vendor, "Name of the maker.");
    add("DeviceModelName", setup.model, "Model of the camera.");
    add("DeviceFamilyName", "Pyxen", "Family of the model.");
    add("DeviceManufacturerInfo", "Pyxen SDK simulator", "Further words of the maker.");
    add("DeviceVersion", "2.0", "Version of the hardware.");
    add("DeviceFirmwareVersion", "1.4.0.2", "Version of the firmware.");
    add("DeviceSerialNumber", setup.serial, "Serial number.");
    add("DeviceID", setup.id, "Identifier of the camera.");
    camera.String("DeviceUserID")
        .In(kDeviceControl)
        .MaxLength(16)
        .Text("A name given by the user.");
}

void AddVersions(Camera& camera) {
    const auto add = [&camera](const char* name, std::int64_t value, const char* text) {
        camera.Int(name)
            .Value(value)
            .In(kDeviceControl)
            .ReadOnly()
            .For(PxnVisibilityExpert)
            .Text(text);
    };
    add("DeviceSFNCVersionMajor", 2, "Version of the naming convention.");
    add("DeviceSFNCVersionMinor", 7, "Version of the naming convention.");
    add("DeviceSFNCVersionSubMinor", 0, "Version of the naming convention.");
    add("DeviceTLVersionMajor", 1, "Version of the transport layer standard.");
    add("DeviceTLVersionMinor", 2, "Version of the transport layer standard.");
    add("DeviceTLVersionSubMinor", 0, "Version of the transport layer standard.");
    add("DeviceManifestEntrySelector", 1, "Description that the manifest shows.");
    add("DeviceManifestXMLMajorVersion", 1, "Version of the description.");
    add("DeviceManifestXMLMinorVersion", 4, "Version of the description.");
    add("DeviceStreamChannelCount", camera.Setup().streams, "Streams of the camera.");
    add("DeviceLinkSpeed", camera.LinkBytesPerSecond(), "Bytes per second of the link.");
    camera.Enum("DeviceTLType")
        .Entries({"Unknown", "GEV", "CL", "IIDC", "UVC", "CXP", "CLHS", "U3V", "Ethernet", "PCI",
                  "Custom", "Mixed"})
        .Value(TransportLayerTypeName(camera.InterfaceType()))
        .In(kDeviceControl)
        .ReadOnly()
        .Text("Technology of the transport layer.");
}

void AddLink(Camera& camera) {
    const std::int64_t speed = camera.LinkBytesPerSecond();
    camera.Enum("DeviceLinkThroughputLimitMode")
        .Entries({"Off", "On"})
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .Affects({"DeviceLinkThroughputLimit", "AcquisitionFrameRate"})
        .OnChange([&camera] { camera.LimitFrameRate(); })
        .Text("The limit below is kept.");
    camera.Int("DeviceLinkThroughputLimit")
        .Value(speed / 1000 * 1000)
        .Range(1000000, speed / 1000 * 1000, 1000)
        .Unit("B/s")
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .AvailableWhen([&camera] { return camera.EnumIs("DeviceLinkThroughputLimitMode", "On"); })
        .Affects({"AcquisitionFrameRate"})
        .OnChange([&camera] { camera.LimitFrameRate(); })
        .Text("Most that the camera sends.");
    camera.Float("DeviceLinkCommandTimeout")
        .Value(200000.0)
        .Unit("µs")
        .In(kDeviceControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Longest time for an answer.");
    camera.Enum("DeviceLinkHeartbeatMode")
        .Entries({"Off", "On"})
        .Value("On")
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .Text("The camera expects signs of life.");
    camera.Float("DeviceLinkHeartbeatTimeout")
        .Value(3e6)
        .Range(500000.0, 60e6)
        .Unit("µs")
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .AvailableWhen([&camera] { return camera.EnumIs("DeviceLinkHeartbeatMode", "On"); })
        .Text("Time without a sign of life after which the host counts as gone.");
    camera.Enum("DeviceStreamChannelEndianness")
        .Entries({"Big", "Little"})
        .Value("Little")
        .In(kDeviceControl)
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("Order of bytes on the link.");
    camera.Enum("DeviceCharacterSet")
        .Entries({"ASCII", "UTF8"})
        .Value("UTF8")
        .In(kDeviceControl)
        .ReadOnly()
        .For(PxnVisibilityGuru)
        .Text("Encoding of texts.");
}

void AddSensors(Camera& camera) {
    camera.Enum("DeviceTemperatureSelector")
        .Entries({"Sensor", "Mainboard"})
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .Text("Place of the temperature.");
    camera.Float("DeviceTemperature")
        .SelectedBy("DeviceTemperatureSelector")
        .Computed([&camera] {
            // Warms up over some minutes and breathes a little.
            const double seconds = static_cast<double>(camera.Timestamp()) * 1e-9;
            const double breath = static_cast<double>(camera.Timestamp() / 1000000 % 1000) * 1e-4;
            const double rest = camera.EnumIs("DeviceTemperatureSelector", "Sensor") ? 31.0 : 36.0;
            return rest + 12.0 * seconds / (seconds + 120.0) + breath;
        })
        .Range(-40.0, 120.0)
        .Unit("°C")
        .In(kDeviceControl)
        .ReadOnly()
        .Volatile(2000)
        .Text("Temperature inside the camera.");
    camera.Enum("DeviceIndicatorMode")
        .Entries({"Inactive", "Active", "ErrorStatus"})
        .Value("Active")
        .In(kDeviceControl)
        .Text("What the lamp shows.");
    camera.Enum("DeviceClockSelector")
        .Entries({"Sensor", "SensorDigitization", "CameraLink"})
        .EntryAvailableWhen("CameraLink",
                            [&camera] { return camera.Setup().kind == CameraKind::kSerial; })
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .Text("Clock that the frequency belongs to.");
    camera.Float("DeviceClockFrequency")
        .SelectedBy("DeviceClockSelector")
        .Value(74.25e6)
        .ValueFor(2, 85e6)
        .Unit("Hz")
        .In(kDeviceControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Frequency of the clock.");
}

void AddClock(Camera& camera) {
    camera.Int("Timestamp")
        .Computed([&camera] { return static_cast<std::int64_t>(camera.Timestamp()); })
        .Unit("ns")
        .In(kDeviceControl)
        .ReadOnly()
        .Volatile(1000)
        .For(PxnVisibilityExpert)
        .Text("The camera's clock.");
    IntFeature& latched = camera.Int("TimestampLatchValue")
                              .Unit("ns")
                              .In(kDeviceControl)
                              .ReadOnly()
                              .For(PxnVisibilityExpert)
                              .Text("The clock when it was latched last.");
    camera.Command("TimestampLatch")
        .Runs([&camera, &latched] {
            latched.Put(static_cast<std::int64_t>(camera.Timestamp()));
            return PxnErrSuccess;
        })
        .In(kDeviceControl)
        .For(PxnVisibilityExpert)
        .Text("Keeps the present value of the clock.");
}

} // namespace

void AddDeviceControl(Camera& camera) {
    AddTexts(camera);
    AddVersions(camera);
    camera.Enum("DeviceType")
        .Entries({"Transmitter", "Receiver", "Transceiver", "Peripheral"})
        .Value("Transmitter")
        .In(kDeviceControl)
        .ReadOnly()
        .Text("Kind of the device.");
    camera.Enum("DeviceScanType")
        .Entries({"Areascan", "Linescan"})
        .Value("Areascan")
        .In(kDeviceControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Kind of the sensor.");
    camera.Command("DeviceReset")
        .Runs([&camera] {
            camera.StopAcquisition();
            camera.ResetFeatures();
            return PxnErrSuccess;
        })
        .In(kDeviceControl)
        .For(PxnVisibilityGuru)
        .Text("Stops the camera and sets it to its state at power-on.");
    AddSensors(camera);
    AddLink(camera);
    AddClock(camera);
}

} // namespace pxsim
