#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kCategory = "/DeviceControl";

void AddTexts(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    const auto add = [&](const char* name, const std::string& value, const char* text) {
        camera.String(name).Value(value).In(kCategory).ReadOnly().Text(text);
    };
    add("DeviceVendorName", setup.vendor, "Name of the maker.");
    add("DeviceModelName", setup.model, "Model of the camera.");
    add("DeviceFamilyName", "Pyxen", "Family of the model.");
    add("DeviceManufacturerInfo", "Pyxen SDK simulator", "Further words of the maker.");
    add("DeviceVersion", "2.0", "Version of the hardware.");
    add("DeviceFirmwareVersion", "1.4.0.2", "Version of the firmware.");
    add("DeviceSerialNumber", setup.serial, "Serial number.");
    add("DeviceID", setup.id, "Identifier of the camera.");
    camera.String("DeviceUserID").In(kCategory).MaxLength(16).Text("A name given by the user.");
}

} // namespace

void AddDeviceControl(Camera& camera) {
    AddTexts(camera);
    camera.Enum("DeviceType")
        .Entries({"Transmitter", "Receiver", "Transceiver", "Peripheral"})
        .Value("Transmitter")
        .In(kCategory)
        .ReadOnly()
        .Text("Kind of the device.");
    camera.Enum("DeviceScanType")
        .Entries({"Areascan", "Linescan"})
        .Value("Areascan")
        .In(kCategory)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Kind of the sensor.");
    camera.Command("DeviceReset")
        .Runs([&camera] {
            camera.StopAcquisition();
            camera.ResetFeatures();
            return PxnErrSuccess;
        })
        .In(kCategory)
        .For(PxnVisibilityGuru)
        .Text("Stops the camera and sets it to its state at power-on.");
    camera.Float("DeviceTemperature")
        .Computed([&camera] {
            // Warms up over some minutes and breathes a little.
            const double seconds = static_cast<double>(camera.Timestamp()) * 1e-9;
            const double breath = static_cast<double>(camera.Timestamp() / 1000000 % 1000) * 1e-4;
            return 31.0 + 12.0 * seconds / (seconds + 120.0) + breath;
        })
        .Range(-40.0, 120.0)
        .Unit("°C")
        .In(kCategory)
        .ReadOnly()
        .Volatile(2000)
        .Text("Temperature of the sensor board.");
    camera.Int("Timestamp")
        .Computed([&camera] { return static_cast<std::int64_t>(camera.Timestamp()); })
        .Unit("ns")
        .In(kCategory)
        .ReadOnly()
        .Volatile(1000)
        .For(PxnVisibilityExpert)
        .Text("The camera's clock.");
    IntFeature& latched = camera.Int("TimestampLatchValue")
                              .Unit("ns")
                              .In(kCategory)
                              .ReadOnly()
                              .For(PxnVisibilityExpert)
                              .Text("The clock when it was latched last.");
    camera.Command("TimestampLatch")
        .Runs([&camera, &latched] {
            latched.Put(static_cast<std::int64_t>(camera.Timestamp()));
            return PxnErrSuccess;
        })
        .In(kCategory)
        .For(PxnVisibilityExpert)
        .Text("Keeps the present value of the clock.");
}

} // namespace pxsim
