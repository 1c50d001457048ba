// default_model.cpp - what the scripted SDK has when a test begins
#include "tests/scripted_sdk/default_model.h"

namespace scripted {
namespace {

EnumEntry Entry(const char* name, std::int64_t value) {
    EnumEntry entry;
    entry.name = name;
    entry.intValue = value;
    entry.displayName = name;
    return entry;
}

Feature WithCategory(Feature feature, const char* category) {
    feature.category = category;
    return feature;
}

Feature ReadOnly(Feature feature) {
    feature.flags = PxnFeatureFlagRead;
    feature.writeable = false;
    return feature;
}

Feature BaudRate(const char* value, std::vector<EnumEntry> entries) {
    return WithCategory(EnumFeature("DeviceSerialPortBaudRate", value, std::move(entries)),
                        "/DeviceControl");
}

void AddCameraFeatures(Camera& camera) {
    constexpr const char* kImage = "/ImageFormatControl";
    constexpr const char* kAcquisition = "/AcquisitionControl";
    camera.Put(WithCategory(IntFeature("Width", 640, 16, 2048, 16), kImage));
    camera.Put(WithCategory(IntFeature("Height", 480, 2, 1536, 2), kImage));
    camera.Put(WithCategory(IntFeature("OffsetX", 0, 0, 1408, 16), kImage));
    camera.Put(WithCategory(IntFeature("OffsetY", 0, 0, 1056, 2), kImage));
    camera.Put(
        WithCategory(EnumFeature("PixelFormat", "Mono8",
                                 {Entry("Mono8", 0x01080001), Entry("Mono10", 0x01100003),
                                  Entry("Mono10p", 0x010A0046), Entry("Mono12", 0x01100005),
                                  Entry("Mono12p", 0x010C0047), Entry("Mono12Packed", 0x010C0006),
                                  Entry("BayerRG8", 0x01080009), Entry("RGB8", 0x02180014),
                                  Entry("YUV422_8", 0x0210001F)}),
                     kImage));
    camera.Put(WithCategory(ReadOnly(IntFeature("PayloadSize", 640 * 480, 0, 0xFFFFFFFF)),
                            "/TransportLayerControl"));
    camera.Put(WithCategory(CommandFeature("AcquisitionStart"), kAcquisition));
    camera.Put(WithCategory(CommandFeature("AcquisitionStop"), kAcquisition));
    camera.Put(WithCategory(FloatFeature("ExposureTime", 10000, 10, 1000000), kAcquisition));
    camera.Put(WithCategory(FloatFeature("AcquisitionFrameRate", 25, 1, 100), kAcquisition));
    camera.Put(
        WithCategory(ReadOnly(StringFeature("DeviceModelName", "Model A")), "/DeviceControl"));
    camera.Put(WithCategory(StringFeature("DeviceUserID", "left"), "/DeviceControl"));
    camera.Put(WithCategory(BoolFeature("ReverseX", false), kImage));
    camera.Put(BaudRate("Baud9600", {Entry("Baud9600", 8), Entry("Baud115200", 64)}));
}

Camera DefaultCamera() {
    Camera camera;
    camera.id = "cam-1";
    camera.extendedId = "cam-ext-1";
    camera.name = "Camera A";
    camera.modelName = "Model A";
    camera.serial = "0001";
    AddCameraFeatures(camera);

    camera.localDevice.Put(ReadOnly(StringFeature("DeviceID", "local-cam-1")));
    camera.localDevice.Put(BaudRate(
        "Baud9600", {Entry("Baud9600", 8), Entry("Baud115200", 64), Entry("Baud230400", 128)}));

    Module stream;
    stream.Put(CommandFeature("GVSPAdjustPacketSize"));
    stream.Put(WithCategory(IntFeature("GevSCPSPacketSize", 1500, 576, 9000, 4), "/GevControl"));
    stream.Put(ReadOnly(StringFeature("StreamID", "stream-0")));
    camera.streams.push_back(stream);
    return camera;
}

} // namespace

Model DefaultModel() {
    Model model;
    model.system.Put(ReadOnly(StringFeature("TLVendorName", "Korvane")));
    model.system.Put(ReadOnly(StringFeature("EventCameraDiscoveryCameraID", "")));
    model.system.Put(ReadOnly(EnumFeature("EventCameraDiscoveryType", "Detected",
                                          {Entry("Missing", 0), Entry("Detected", 1),
                                           Entry("Reachable", 2), Entry("Unreachable", 3)})));
    model.system.Put(ReadOnly(IntFeature("EventCameraDiscovery", 0, 0, 0xFFFF)));

    TransportLayer layer;
    layer.id = "tl-gev";
    layer.name = "GigE";
    layer.modelName = "Pyxen GigE";
    layer.vendor = "Korvane";
    layer.version = "1.4.2";
    layer.path = "/opt/korvane/gev.cti";
    layer.Put(ReadOnly(StringFeature("TLID", "tl-gev")));
    layer.Put(ReadOnly(StringFeature("TLVendorName", "Korvane")));
    layer.Put(ReadOnly(StringFeature("TLModelName", "Pyxen GigE")));
    layer.Put(ReadOnly(StringFeature("TLVersion", "1.4.2")));
    layer.Put(ReadOnly(EnumFeature("TLType", "GEV", {Entry("GEV", 1), Entry("U3V", 7)})));
    model.transportLayers.push_back(layer);

    Interface port;
    port.id = "if-eth0";
    port.name = "eth0";
    port.Put(ReadOnly(StringFeature("InterfaceID", "if-eth0")));
    model.interfaces.push_back(port);

    model.cameras.push_back(DefaultCamera());
    model.chunk.Put(ReadOnly(IntFeature("ChunkWidth", 640, 0, 2048)));
    return model;
}

} // namespace scripted
