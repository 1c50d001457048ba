// configuration.h - which cameras there are and what they are like
#pragma once

#include "pxnc.h"
#include "pxnc/simulator/pattern.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace pxsim {

enum class CameraKind { kGigE, kUsb, kSerial };

/// Something named in a configuration file; `line` is 0 outside a file.
struct Setting {
    std::string name;
    std::string value;
    std::size_t line = 0;
};

/// One of the five serial ports of a camera of kind "serial".
struct PortConfiguration {
    bool present = true;
    std::uint32_t capability = 0x07F707FF; // all baud rates and formats
    std::string device = "loopback";       // or "lens", "none"
    bool baudPaced = false;
};

struct CameraConfiguration {
    CameraKind kind = CameraKind::kGigE;
    std::string id;
    std::string extendedId;
    std::string name;
    std::string model;
    std::string vendor = "Korvane";
    std::string serial;
    std::string interfaceId;
    std::uint32_t sensorWidth = 1280;
    std::uint32_t sensorHeight = 1024;
    Pattern pattern = Pattern::kGradient;
    std::uint32_t seed = 1;
    bool freeRunning = false;
    bool plugged = true;
    std::uint32_t permittedAccess = PxnAccessModeFull | PxnAccessModeRead;
    std::uint32_t streams = 1;
    std::uint32_t extraFeatures = 0;
    std::vector<Setting> features; // initial values, in order
    std::vector<Setting> omitted;
    std::array<PortConfiguration, 5> ports;
};

struct InterfaceConfiguration {
    std::string id;
    std::string name;
    std::string transportLayerId;
    std::uint32_t type = PxnTransportLayerUnknown;
};

struct TransportLayerConfiguration {
    std::string id;
    std::string name;
    std::string model;
    std::string vendor = "Korvane";
    std::string version = "1.4.0";
    std::string path;
    std::uint32_t type = PxnTransportLayerUnknown;
};

struct Configuration {
    std::vector<TransportLayerConfiguration> transportLayers;
    std::vector<InterfaceConfiguration> interfaces;
    std::vector<CameraConfiguration> cameras;
    std::vector<Setting> script; // lines for the control interface, run after the startup
};

/// One GigE camera, one USB camera and one with five serial ports, each on its own interface
/// and transport layer.
Configuration DefaultConfiguration();
/// The transport layers and interfaces of the default configuration, without cameras.
Configuration DefaultTopology();

/// "GEV", "U3V" and so on.
const char* TransportLayerTypeName(std::uint32_t type);

} // namespace pxsim
