// transport_modules.cpp - the transport layers and the interfaces below them
#include "pxnc/genicam/transport_modules.h"

#include "pxnc/genicam/feature.h"

#include <algorithm>
#include <arv.h>
#include <memory>
#include <utility>

namespace genicam {
namespace {

constexpr char kUsbInterfaceId[] = "USB";
constexpr std::int64_t kGreatestAddress = 0xFFFFFFFF;

const std::vector<LocalFeatures::Entry>& TypeEntries() {
    static const std::vector<LocalFeatures::Entry> entries = {{"GEV", PxnTransportLayerGEV},
                                                              {"U3V", PxnTransportLayerU3V}};
    return entries;
}

LocalFeatures::Reader<std::int64_t> Constant(std::int64_t constant) {
    return [constant](std::int64_t& value) {
        value = constant;
        return PxnErrSuccess;
    };
}

/// Reads one number of the network interface `name` as it is now.
LocalFeatures::Reader<std::int64_t> LiveNumber(const std::string& name,
                                               std::int64_t (*pick)(const NetworkInterface&)) {
    return [name, pick](std::int64_t& value) -> PxnError {
        for (const NetworkInterface& candidate : ListNetworkInterfaces()) {
            if (candidate.name == name) {
                value = pick(candidate);
                return PxnErrSuccess;
            }
        }
        return PxnErrNotAvailable;
    };
}

void AddNetworkFeatures(LocalFeatures& add, const std::string& name) {
    constexpr char kCategory[] = "/InterfaceInformation";
    add.AddInt({"GevInterfaceMACAddress", kCategory, "MAC Address",
                "Hardware address of the network interface.", PxnVisibilityExpert, "",
                "MACAddress"},
               {0, 0xFFFFFFFFFFFF, 1}, LiveNumber(name, [](const NetworkInterface& present) {
                   return static_cast<std::int64_t>(present.hardwareAddress);
               }));
    add.AddInt({"GevInterfaceSubnetIPAddress", kCategory, "IP Address",
                "Address of the network interface.", PxnVisibilityBeginner, "", "IPV4Address"},
               {0, kGreatestAddress, 1}, LiveNumber(name, [](const NetworkInterface& present) {
                   return std::int64_t{present.address};
               }));
    add.AddInt({"GevInterfaceSubnetMask", kCategory, "Subnet Mask",
                "Subnet mask of the network interface.", PxnVisibilityBeginner, "", "IPV4Address"},
               {0, kGreatestAddress, 1}, LiveNumber(name, [](const NetworkInterface& present) {
                   return std::int64_t{present.mask};
               }));
}

} // namespace

TransportModules::TransportModules(skeleton::TextPool& textPool, skeleton::HandleTable& handleTable,
                                   const Configuration& configuration)
    : texts(textPool), handles(handleTable), allowedInterfaces(configuration.interfaces) {
    const platform::MutexLock lock(mutex);
    AddLayer(PxnTransportLayerGEV);
    if (configuration.usbEnabled) {
        AddLayer(PxnTransportLayerU3V);
        AddInterface(layers.back(), kUsbInterfaceId, "USB");
    }
}

void TransportModules::AddLayer(std::uint32_t type) {
    const bool isGigE = type == PxnTransportLayerGEV;
    const std::string name = isGigE ? "GigE Vision" : "USB3 Vision";
    const std::string version = std::to_string(arv_get_major_version()) + "." +
                                std::to_string(arv_get_minor_version()) + "." +
                                std::to_string(arv_get_micro_version());
    PxnTransportLayerInfo info = {};
    info.transportLayerIdString = texts.Intern(isGigE ? "PxnC-Aravis-GEV" : "PxnC-Aravis-U3V");
    info.transportLayerName = texts.Intern(name);
    info.transportLayerModelName =
        texts.Intern(isGigE ? "Aravis GigE Vision" : "Aravis USB3 Vision");
    info.transportLayerVendor = texts.Intern("Aravis");
    info.transportLayerVersion = texts.Intern(version);
    info.transportLayerPath = texts.Intern("");
    info.transportLayerType = type;

    constexpr char kCategory[] = "/SystemInformation";
    Module::Features features;
    LocalFeatures add(texts, features);
    add.AddText({"TLID", kCategory, "ID", "Unique identifier of the transport layer."},
                info.transportLayerIdString);
    add.AddText({"TLVendorName", kCategory, "Vendor Name", "Vendor of the transport layer."},
                info.transportLayerVendor);
    add.AddText({"TLModelName", kCategory, "Model Name", "Name of the transport layer."},
                info.transportLayerModelName);
    add.AddText({"TLVersion", kCategory, "Version", "Version of the transport layer."},
                info.transportLayerVersion);
    add.AddText({"TLDisplayName", kCategory, "Display Name",
                 "Name of the transport layer for people to read."},
                info.transportLayerName);
    add.AddEnum({"TLType", kCategory, "Type", "Technology of the transport layer."}, TypeEntries(),
                Constant(type));
    info.transportLayerHandle = handles.Add({std::make_shared<Module>(std::move(features))});
    layers.push_back(info);
}

PxnHandle TransportModules::AddInterface(const PxnTransportLayerInfo& layer, const std::string& id,
                                         const std::string& displayName) {
    PxnInterfaceInfo info = {};
    info.interfaceIdString = texts.Intern(id);
    info.interfaceType = layer.transportLayerType;
    info.interfaceName = texts.Intern(displayName);
    info.transportLayerHandle = layer.transportLayerHandle;

    constexpr char kCategory[] = "/InterfaceInformation";
    Module::Features features;
    LocalFeatures add(texts, features);
    add.AddText({"InterfaceID", kCategory, "ID", "Unique identifier of the interface."}, id);
    add.AddEnum({"InterfaceType", kCategory, "Type", "Technology of the interface."}, TypeEntries(),
                Constant(layer.transportLayerType));
    add.AddText({"InterfaceDisplayName", kCategory, "Display Name",
                 "Name of the interface for people to read."},
                displayName);
    if (layer.transportLayerType == PxnTransportLayerGEV) {
        AddNetworkFeatures(add, id);
    }
    info.interfaceHandle = handles.Add({std::make_shared<Module>(std::move(features))});
    interfaceInfos.push_back(info);
    return info.interfaceHandle;
}

void TransportModules::Update(const std::vector<NetworkInterface>& interfaces) {
    for (const NetworkInterface& present : interfaces) {
        if (IsAllowed(present.name)) {
            InterfaceOf(Protocol::kGigEVision, present.name);
        }
    }
}

PxnHandle TransportModules::LayerOf(Protocol protocol) const {
    const platform::MutexLock lock(mutex);
    return protocol == Protocol::kGigEVision ? layers.front().transportLayerHandle
                                             : layers.back().transportLayerHandle;
}

PxnHandle TransportModules::InterfaceOf(Protocol protocol, const std::string& interfaceName) {
    const bool isGigE = protocol == Protocol::kGigEVision;
    const std::string id = isGigE ? interfaceName : kUsbInterfaceId;
    const platform::MutexLock lock(mutex);
    for (const PxnInterfaceInfo& candidate : interfaceInfos) {
        if (id == candidate.interfaceIdString) {
            return candidate.interfaceHandle;
        }
    }
    return AddInterface(layers.front(), id, "Network interface " + id);
}

bool TransportModules::IsAllowed(const std::string& interfaceName) const {
    return allowedInterfaces.empty() ||
           std::find(allowedInterfaces.begin(), allowedInterfaces.end(), interfaceName) !=
               allowedInterfaces.end();
}

std::vector<PxnTransportLayerInfo> TransportModules::Layers() const {
    const platform::MutexLock lock(mutex);
    return layers;
}

std::vector<PxnInterfaceInfo> TransportModules::Interfaces() const {
    const platform::MutexLock lock(mutex);
    return interfaceInfos;
}

} // namespace genicam
