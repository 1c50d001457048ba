#include "pxnc/simulator/system_modules.h"

#include "pxnc/simulator/input_features.h"
#include "pxnc/skeleton/condition.h"

namespace pxsim {
namespace {

void AddText(Module& module, const char* category, const char* name, const std::string& value,
             const char* text) {
    module.String(name).Value(value).In(category).ReadOnly().Text(text);
}

} // namespace

SystemModule::SystemModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()) {
    constexpr const char* kSystemInformation = "/SystemInformation";
    AddText(*this, kSystemInformation, "SystemVendorName", "Korvane", "Maker of the SDK.");
    AddText(*this, kSystemInformation, "SystemModelName", "Pyxen SDK simulator",
            "Name of the SDK.");
    AddText(*this, kSystemInformation, "SystemVersion", "1.4.0", "Version of the SDK.");
    AddEvent("Camera", "CameraID");
    AddEvent("Interface", "InterfaceID");
}

void SystemModule::AddEvent(const std::string& subject, const std::string& idSuffix) {
    const std::string event = "Event" + subject + "Discovery";
    const char* category = Strings().Intern("/EventControl/" + event + "Data");
    // The event feature counts: a callback may see that it missed none.
    Int(event.c_str()).In(category).ReadOnly().Volatile(0).Text("Events so far.");
    Enum((event + "Type").c_str())
        .Entries({"Missing", "Detected", "Reachable", "Unreachable"})
        .In(category)
        .ReadOnly()
        .Volatile(0)
        .Text("What happened last.");
    String((event + idSuffix).c_str())
        .In(category)
        .ReadOnly()
        .Volatile(0)
        .MaxLength(255)
        .Text("Whom it happened to.");
    Int((event + "Timestamp").c_str())
        .In(category)
        .ReadOnly()
        .Volatile(0)
        .Unit("ns")
        .For(PxnVisibilityExpert)
        .Text("When it happened.");
}

void SystemModule::Latch(const std::string& subject, const std::string& idSuffix, const char* type,
                         const std::string& id) {
    platform::MutexLock lock(ValueMutex());
    const std::string event = "Event" + subject + "Discovery";
    dynamic_cast<EnumFeature&>(*Find((event + "Type").c_str())).Put(type);
    dynamic_cast<StringFeature&>(*Find((event + idSuffix).c_str())).Put(id);
    const auto now = skeleton::Clock::now().time_since_epoch();
    dynamic_cast<IntFeature&>(*Find((event + "Timestamp").c_str()))
        .Put(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
    auto& count = dynamic_cast<IntFeature&>(*Find(event.c_str()));
    count.Advance();
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
    constexpr const char* kTLInformation = "/TLInformation";
    AddText(*this, kTLInformation, "TLID", setup.id, "Identifier of the transport layer.");
    AddText(*this, kTLInformation, "TLVendorName", setup.vendor, "Its maker.");
    AddText(*this, kTLInformation, "TLModelName", setup.model, "Its name.");
    AddText(*this, kTLInformation, "TLVersion", setup.version, "Its version.");
    AddText(*this, kTLInformation, "TLFileName", setup.path, "File that it comes from.");
    AddText(*this, kTLInformation, "TLDisplayName", setup.name, "Its name for people.");
    AddText(*this, kTLInformation, "TLPath", setup.path, "Path of that file.");
    AddText(*this, kTLInformation, "TLType", TransportLayerTypeName(setup.type), "Its technology.");
    Int("GenTLVersionMajor")
        .Value(1)
        .In(kTLInformation)
        .ReadOnly()
        .Text("Version of its interface.");
    Int("GenTLVersionMinor")
        .Value(5)
        .In(kTLInformation)
        .ReadOnly()
        .Text("Version of its interface.");
    Command("InterfaceUpdateList").In("/InterfaceEnumeration").Text("Looks for interfaces.");
    Int("InterfaceUpdateTimeout")
        .Value(1000)
        .Range(0, 60000)
        .Unit("ms")
        .In("/InterfaceEnumeration")
        .For(PxnVisibilityExpert)
        .Text("Time for looking.");
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
    constexpr const char* kInterfaceInformation = "/InterfaceInformation";
    AddText(*this, kInterfaceInformation, "InterfaceID", setup.id, "Identifier of the interface.");
    AddText(*this, kInterfaceInformation, "InterfaceDisplayName", setup.name,
            "Its name for people.");
    AddText(*this, kInterfaceInformation, "InterfaceType", TransportLayerTypeName(setup.type),
            "Its technology.");
    Command("DeviceUpdateList").In("/DeviceEnumeration").Text("Looks for cameras.");
    Int("DeviceUpdateTimeout")
        .Value(1000)
        .Range(0, 60000)
        .Unit("ms")
        .In("/DeviceEnumeration")
        .For(PxnVisibilityExpert)
        .Text("Time for looking.");
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
