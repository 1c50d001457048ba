// camera_list.cpp - the cameras that have been found, present and vanished
#include "pxnc/genicam/camera_list.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace genicam {
namespace {

constexpr unsigned kSearchesUntilMissing = 2;

/// Aravis' identifier is made of vendor, model and serial number; a camera without a serial number
/// is distinguished from others of its model by its hardware address.
std::string ExtendedId(const FoundCamera& found) {
    const std::string prefix = found.protocol == Protocol::kGigEVision ? "GEV:" : "U3V:";
    return prefix + found.id + (found.serial.empty() ? "-" + found.physicalId : std::string());
}

/// The network interface on whose subnet the camera is; empty for USB.
std::string InterfaceName(const FoundCamera& found,
                          const std::vector<NetworkInterface>& interfaces) {
    if (found.protocol == Protocol::kUsb3Vision) {
        return {};
    }
    const NetworkInterface* ours = FindInterfaceFor(interfaces, found.network);
    return ours ? ours->name : "unknown";
}

} // namespace

std::size_t CameraList::IndexOf(const std::string& id) const {
    std::size_t index = 0;
    while (index < records.size() && id != records[index].id && id != records[index].extendedId) {
        ++index;
    }
    return index;
}

const CameraList::Record* CameraList::Find(const std::string& id) const {
    const std::size_t index = IndexOf(id);
    return index < records.size() ? &records[index] : nullptr;
}

CameraList::Record* CameraList::Find(const std::string& id) {
    const std::size_t index = IndexOf(id);
    return index < records.size() ? &records[index] : nullptr;
}

CameraList::Record* CameraList::Add(const FoundCamera& found) {
    Record& record = records.emplace_back();
    record.id = texts.Intern(found.id);
    record.extendedId = texts.Intern(ExtendedId(found));
    record.name = texts.Intern(found.vendor + " " + found.model + " " + found.serial);
    record.vendor = texts.Intern(found.vendor);
    record.model = texts.Intern(found.model);
    record.serial = texts.Intern(found.serial);
    record.protocol = found.protocol;
    return &record;
}

std::vector<DiscoveryEvent> CameraList::Merge(const std::vector<FoundCamera>& found,
                                              std::vector<std::shared_ptr<CameraDevice>>& lost) {
    const std::vector<NetworkInterface> interfaces = ListNetworkInterfaces();
    transports.Update(interfaces);
    std::vector<DiscoveryEvent> events;
    const platform::MutexLock lock(mutex);
    for (Record& record : records) {
        ++record.searchesWithout;
    }
    for (const FoundCamera& camera : found) {
        const std::string interfaceName = InterfaceName(camera, interfaces);
        if (camera.protocol == Protocol::kGigEVision && !transports.IsAllowed(interfaceName)) {
            continue;
        }
        Record* record = Find(ExtendedId(camera));
        const bool isNew = !record || !record->isPresent;
        record = record ? record : Add(camera);
        record->searchesWithout = 0;
        record->isPresent = true;
        record->network = camera.network;
        record->layer = transports.LayerOf(camera.protocol);
        record->interfaceHandle = transports.InterfaceOf(camera.protocol, interfaceName);
        if (isNew) {
            events.push_back({true, record->extendedId});
        }
    }
    for (Record& record : records) {
        if (!record.isPresent || record.searchesWithout < kSearchesUntilMissing) {
            continue;
        }
        if (record.open.device && !record.open.device->IsLost()) {
            if (record.protocol == Protocol::kUsb3Vision || !record.open.device->IsWritable()) {
                // Nothing else detects this loss; MarkLost reports the event.
                lost.push_back(record.open.device);
            }
            continue;
        }
        record.isPresent = false;
        events.push_back({false, record.extendedId});
    }
    return events;
}

std::optional<DiscoveryEvent> CameraList::MarkMissing(const std::string& extendedId) {
    const platform::MutexLock lock(mutex);
    Record* record = Find(extendedId);
    if (record && record->open.frames) {
        record->open.frames->OnCameraLost();
    }
    if (!record || !record->isPresent) {
        return std::nullopt;
    }
    record->isPresent = false;
    return DiscoveryEvent{false, record->extendedId};
}

PxnCameraInfo CameraList::ToInfo(const Record& record) {
    const bool isOpen = record.open.device && !record.open.device->IsLost();
    PxnCameraInfo info = {};
    info.cameraIdString = record.id;
    info.cameraIdExtended = record.extendedId;
    info.cameraName = record.name;
    info.modelName = record.model;
    info.serialString = record.serial;
    info.transportLayerHandle = record.layer;
    info.interfaceHandle = record.interfaceHandle;
    if (isOpen) {
        info.localDeviceHandle = record.open.localDevice;
        info.streamHandles = record.streams;
        info.streamCount = 1;
    }
    // Who controls a camera shows only when control is requested, so a camera that nobody in this
    // process has open counts as free.
    info.permittedAccess = record.isReserved || isOpen ? std::uint32_t{PxnAccessModeRead}
                                                       : std::uint32_t{PxnAccessModeFull} |
                                                             std::uint32_t{PxnAccessModeRead};
    return info;
}

std::vector<PxnCameraInfo> CameraList::Present() const {
    std::vector<PxnCameraInfo> infos;
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (record.isPresent) {
            infos.push_back(ToInfo(record));
        }
    }
    return infos;
}

PxnError CameraList::InfoOf(const char* id, PxnCameraInfo& info) const {
    const platform::MutexLock lock(mutex);
    const Record* record = Find(id);
    if (!record || !record->isPresent) {
        return PxnErrNotFound;
    }
    info = ToInfo(*record);
    return PxnErrSuccess;
}

PxnError CameraList::InfoOf(PxnHandle camera, PxnCameraInfo& info) const {
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (record.open.device && record.open.camera == camera) {
            info = ToInfo(record);
            return PxnErrSuccess;
        }
    }
    return PxnErrBadHandle;
}

PxnError CameraList::Reserve(const char* id, Claim& claim) {
    const platform::MutexLock lock(mutex);
    Record* record = Find(id);
    if (!record || !record->isPresent) {
        return PxnErrNotFound;
    }
    if (record->isReserved) {
        return PxnErrInUse;
    }
    record->isReserved = true;
    claim.extendedId = record->extendedId;
    claim.address = {record->id, record->protocol, record->network};
    claim.identity = {record->extendedId, record->vendor, record->model, record->serial,
                      record->name};
    return PxnErrSuccess;
}

void CameraList::SetOpen(const std::string& extendedId, OpenedCamera open) {
    const platform::MutexLock lock(mutex);
    Record* record = Find(extendedId);
    record->streams = &streamHandles.emplace_back(open.stream);
    record->open = std::move(open);
}

void CameraList::Release(const std::string& extendedId) {
    const platform::MutexLock lock(mutex);
    Find(extendedId)->isReserved = false;
}

bool CameraList::TakeOpen(PxnHandle camera, OpenedCamera& open, std::string& extendedId) {
    const platform::MutexLock lock(mutex);
    for (Record& record : records) {
        if (record.open.device && record.open.camera == camera) {
            open = std::exchange(record.open, OpenedCamera{});
            extendedId = record.extendedId;
            return true;
        }
    }
    return false;
}

std::vector<PxnHandle> CameraList::OpenHandles() const {
    std::vector<PxnHandle> handles;
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (record.open.device) {
            handles.push_back(record.open.camera);
        }
    }
    return handles;
}

PxnError CameraList::FindReceived(const PxnFrame& frame, std::shared_ptr<ChunkReaders>& readers,
                                  ObjectOwner<ArvBuffer>& buffer) const {
    PxnError result = PxnErrNotFound;
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (!record.open.frames) {
            continue;
        }
        const PxnError found = record.open.frames->GetReceived(&frame, buffer);
        if (found == PxnErrSuccess) {
            readers = record.open.chunkReaders;
            return PxnErrSuccess;
        }
        result = found != PxnErrNotFound ? found : result;
    }
    return result;
}

} // namespace genicam
