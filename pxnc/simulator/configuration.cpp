// configuration.cpp - which cameras there are and what they are like
#include "pxnc/simulator/configuration.h"

namespace pxsim {
namespace {

CameraConfiguration GigECamera() {
    CameraConfiguration camera;
    camera.kind = CameraKind::kGigE;
    camera.id = "DEV_000F31024A10";
    camera.extendedId = "PyxenGEV|Eth0|00:0F:31:02:4A:10";
    camera.name = "Pyxen G-130";
    camera.model = "G-130";
    camera.serial = "GV-0210-0016";
    camera.interfaceId = "Eth0";
    return camera;
}

CameraConfiguration UsbCamera() {
    CameraConfiguration camera;
    camera.kind = CameraKind::kUsb;
    camera.id = "DEV_1AB22C00310B";
    camera.extendedId = "PyxenU3V|Usb0|1AB2:2C00:310B";
    camera.name = "Pyxen U-510";
    camera.model = "U-510c";
    camera.serial = "UV-0310-0011";
    camera.interfaceId = "Usb0";
    camera.sensorWidth = 2592;
    camera.sensorHeight = 1944;
    camera.features = {{"PixelFormat", "RGB8", 0}};
    return camera;
}

CameraConfiguration SerialCamera() {
    CameraConfiguration camera;
    camera.kind = CameraKind::kSerial;
    camera.id = "DEV_CL0000000042";
    camera.extendedId = "PyxenCL|Board0|Port0|CL-0042";
    camera.name = "Pyxen L-400";
    camera.model = "L-400";
    camera.serial = "CL-0042";
    camera.interfaceId = "Board0";
    camera.sensorWidth = 2048;
    camera.sensorHeight = 2048;
    camera.ports[1].device = "lens";
    return camera;
}

} // namespace

Configuration DefaultTopology() {
    Configuration topology;
    topology.transportLayers = {
        {"PyxenGEV", "Pyxen GigE Vision", "PyxenGEVTL", "Korvane", "1.4.0", "PyxenGEV.cti",
         PxnTransportLayerGEV},
        {"PyxenU3V", "Pyxen USB3 Vision", "PyxenU3VTL", "Korvane", "1.4.0", "PyxenU3V.cti",
         PxnTransportLayerU3V},
        {"PyxenCL", "Pyxen Camera Link", "PyxenCLTL", "Korvane", "1.4.0", "PyxenCL.cti",
         PxnTransportLayerCL},
    };
    topology.interfaces = {
        {"Eth0", "Ethernet adapter 0", "PyxenGEV", PxnTransportLayerGEV},
        {"Usb0", "USB host controller 0", "PyxenU3V", PxnTransportLayerU3V},
        {"Board0", "Frame grabber board 0", "PyxenCL", PxnTransportLayerCL},
    };
    return topology;
}

Configuration DefaultConfiguration() {
    Configuration configuration = DefaultTopology();
    configuration.cameras = {GigECamera(), UsbCamera(), SerialCamera()};
    return configuration;
}

const char* TransportLayerTypeName(std::uint32_t type) {
    static constexpr const char* kNames[] = {"Unknown",  "GEV", "CL",     "IIDC",
                                             "UVC",      "CXP", "CLHS",   "U3V",
                                             "Ethernet", "PCI", "Custom", "Mixed"};
    return type < std::size(kNames) ? kNames[type] : kNames[0];
}

} // namespace pxsim
