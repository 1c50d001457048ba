// system_modules.cpp - the modules above the cameras: system, transport layers, interfaces
#include "pxnc/simulator/system_modules.h"

#include "pxnc/simulator/input_features.h"
#include "pxnc/skeleton/condition.h"

namespace pxsim {
namespace {

constexpr FeatureRow kSystemRows[] = {
    {"SystemVendorName", String{"Korvane"}, kBeginner | kReadOnly, "Manufacturer of the SDK."},
    {"SystemModelName", String{"Pyxen SDK simulator"}, kBeginner | kReadOnly, "Name of the SDK."},
    {"SystemVersion", String{"1.4.0"}, kBeginner | kReadOnly, "Version of the SDK."},
};

constexpr FeatureRow kInterfaceEnumerationRows[] = {
    {"InterfaceUpdateList", Command{}, kBeginner, "Updates the list of interfaces."},
    {"InterfaceUpdateTimeout", Int{.value = 1000, .min = 0, .max = 60000}, kExpert,
     "Timeout of the update.", Extra{.unit = "ms"}},
};

constexpr FeatureRow kDeviceEnumerationRows[] = {
    {"DeviceUpdateList", Command{}, kBeginner, "Updates the list of cameras."},
    {"DeviceUpdateTimeout", Int{.value = 1000, .min = 0, .max = 60000}, kExpert,
     "Timeout of the update.", Extra{.unit = "ms"}},
};

void AddDiscoveryEvent(Module& module, const std::string& subject, const std::string& idSuffix,
                       const char* idText) {
    const std::string event = "Event" + subject + "Discovery";
    const std::string type = event + "Type";
    const std::string id = event + idSuffix;
    const std::string timestamp = event + "Timestamp";
    const FeatureRow rows[] = {
        // The event feature counts, so that a callback can detect missed events.
        {event.c_str(), Int{}, kBeginner | kReadOnly, "Number of events so far.",
         Extra{.pollingMs = 0}},
        {type.c_str(), Enum{"Missing Detected Reachable Unreachable"}, kBeginner | kReadOnly,
         "Type of the last event.", Extra{.pollingMs = 0}},
        {id.c_str(), String{.maxLength = 255}, kBeginner | kReadOnly, idText,
         Extra{.pollingMs = 0}},
        {timestamp.c_str(), Int{}, kExpert | kReadOnly, "Time of the last event.",
         Extra{.unit = "ns", .pollingMs = 0}},
    };
    module.AddTable(("/EventControl/" + event + "Data").c_str(), rows);
}

void AddInformation(Module& module, const TransportLayerConfiguration& setup) {
    const FeatureRow rows[] = {
        {"TLID", String{setup.id.c_str()}, kBeginner | kReadOnly,
         "Identifier of the transport layer."},
        {"TLVendorName", String{setup.vendor.c_str()}, kBeginner | kReadOnly,
         "Manufacturer of the transport layer."},
        {"TLModelName", String{setup.model.c_str()}, kBeginner | kReadOnly,
         "Model name of the transport layer."},
        {"TLVersion", String{setup.version.c_str()}, kBeginner | kReadOnly,
         "Version of the transport layer."},
        {"TLFileName", String{setup.path.c_str()}, kBeginner | kReadOnly,
         "File name of the transport layer."},
        {"TLDisplayName", String{setup.name.c_str()}, kBeginner | kReadOnly,
         "Display name of the transport layer."},
        {"TLPath", String{setup.path.c_str()}, kBeginner | kReadOnly,
         "Path of the transport layer's file."},
        {"TLType", String{TransportLayerTypeName(setup.type)}, kBeginner | kReadOnly,
         "Type of the transport layer."},
        {"GenTLVersionMajor", Int{1}, kBeginner | kReadOnly,
         "Major version of the transport layer's interface."},
        {"GenTLVersionMinor", Int{5}, kBeginner | kReadOnly,
         "Minor version of the transport layer's interface."},
    };
    module.AddTable("/TLInformation", rows);
}

void AddInformation(Module& module, const InterfaceConfiguration& setup) {
    const FeatureRow rows[] = {
        {"InterfaceID", String{setup.id.c_str()}, kBeginner | kReadOnly,
         "Identifier of the interface."},
        {"InterfaceDisplayName", String{setup.name.c_str()}, kBeginner | kReadOnly,
         "Display name of the interface."},
        {"InterfaceType", String{TransportLayerTypeName(setup.type)}, kBeginner | kReadOnly,
         "Type of the interface."},
    };
    module.AddTable("/InterfaceInformation", rows);
}

} // namespace

SystemModule::SystemModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()) {
    AddTable("/SystemInformation", kSystemRows);
    AddDiscoveryEvent(*this, "Camera", "CameraID", "Identifier of the camera.");
    AddDiscoveryEvent(*this, "Interface", "InterfaceID", "Identifier of the interface.");
}

void SystemModule::Latch(const std::string& subject, const std::string& idSuffix, const char* type,
                         const std::string& id) {
    platform::MutexLock lock(ValueMutex());
    const std::string event = "Event" + subject + "Discovery";
    Get<Enum>((event + "Type").c_str()).Put(type);
    Get<String>((event + idSuffix).c_str()).Put(id);
    const auto now = skeleton::Clock::now().time_since_epoch();
    Get<Int>((event + "Timestamp").c_str())
        .Put(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
    Get<Int>(event.c_str()).Advance();
}

void SystemModule::LatchCameraEvent(const char* type, const std::string& cameraId) {
    Latch("Camera", "CameraID", type, cameraId);
}

void SystemModule::LatchInterfaceEvent(const char* type, const std::string& interfaceId) {
    Latch("Interface", "InterfaceID", type, interfaceId);
}

TransportLayer::TransportLayer(const TransportLayerConfiguration& newSetup,
                               skeleton::TextPool& pool, skeleton::Invalidations& dispatcher)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()), setup(newSetup) {
    AddInformation(*this, setup);
    AddTable("/InterfaceEnumeration", kInterfaceEnumerationRows);
    if (setup.type == PxnTransportLayerCL) {
        AddInputFeatures(*this);
    }
    info.transportLayerIdString = Strings().Intern(setup.id);
    info.transportLayerName = Strings().Intern(setup.name);
    info.transportLayerModelName = Strings().Intern(setup.model);
    info.transportLayerVendor = Strings().Intern(setup.vendor);
    info.transportLayerVersion = Strings().Intern(setup.version);
    info.transportLayerPath = Strings().Intern(setup.path);
    info.transportLayerType = setup.type;
}

void TransportLayer::FillInfo(PxnTransportLayerInfo& out) const {
    out = info;
    out.transportLayerHandle = handle;
}

Interface::Interface(const InterfaceConfiguration& newSetup, skeleton::TextPool& pool,
                     skeleton::Invalidations& dispatcher)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()), setup(newSetup) {
    AddInformation(*this, setup);
    AddTable("/DeviceEnumeration", kDeviceEnumerationRows);
    if (setup.type == PxnTransportLayerCL) {
        AddInputFeatures(*this);
    }
    info.interfaceIdString = Strings().Intern(setup.id);
    info.interfaceName = Strings().Intern(setup.name);
    info.interfaceType = setup.type;
}

void Interface::FillInfo(PxnInterfaceInfo& out) const {
    out = info;
    out.interfaceHandle = handle;
    out.transportLayerHandle = transportLayer;
}

void Interface::SetHandles(PxnHandle newHandle, PxnHandle newTransportLayer) {
    handle = newHandle;
    transportLayer = newTransportLayer;
}

} // namespace pxsim
