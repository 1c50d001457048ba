#include "pxnc/genicam/camera_list.h"

#include <algorithm>
#include <utility>

namespace genicam {

namespace {

constexpr unsigned kSearchesUntilMissing = 2;

/// Aravis' identifier is made of vendor, model and serial number; a camera without one is told
/// from others of its kind by its hardware address.
std::string ExtendedId(const FoundCamera& found) {
    const std::string prefix = found.protocol == Protocol::GigEVision ? "GEV:" : "U3V:";
    return prefix + found.id + (found.serial.empty() ? "-" + found.physicalId : std::string());
}

/// The network interface on whose subnet the camera is; empty for USB.
std::string InterfaceName(const FoundCamera& found,
                          const std::vector<NetworkInterface>& interfaces) {
    if (found.protocol == Protocol::Usb3Vision) {
        return {};
    }
    const NetworkInterface* ours = FindInterfaceFor(interfaces, found.network);
    return ours != nullptr ? ours->name : "unknown";
}

template <typename Records>
auto* FindIn(Records& records, const std::string& id) {
    const auto found = std::find_if(records.begin(), records.end(), [&](const auto& record) {
        return id == record.id || id == record.extendedId;
    });
    return found == records.end() ? nullptr : &*found;
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
        if (camera.protocol == Protocol::GigEVision && !transports.IsAllowed(interfaceName)) {
            continue;
        }
        Record* record = Find(ExtendedId(camera));
        const bool isNew = record == nullptr || !record->isPresent;
        record = record != nullptr ? record : Add(camera);
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
        const bool isOpen = record.open.device != nullptr;
        if (isOpen && !record.open.device->IsLost()) {
            if (record.protocol == Protocol::Usb3Vision || !record.open.device->IsWriteable()) {
                // Nobody else notices; losing it reports the event.
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
    if (record == nullptr || !record->isPresent) {
        return std::nullopt;
    }
    record->isPresent = false;
    return DiscoveryEvent{false, record->extendedId};
}

PxnCameraInfo CameraList::ToInfo(const Record& record) {
    const bool isOpen = record.open.device != nullptr && !record.open.device->IsLost();
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
    // Who holds control of a camera shows only when one asks for it, so a camera that nobody in
    // this process has open counts as free.
    info.permittedAccess = record.isReserved || isOpen
                               ? uint32_t{PxnAccessModeRead}
                               : uint32_t{PxnAccessModeFull} | uint32_t{PxnAccessModeRead};
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
    if (record == nullptr || !record->isPresent) {
        return PxnErrNotFound;
    }
    info = ToInfo(*record);
    return PxnErrSuccess;
}

PxnError CameraList::InfoOf(PxnHandle camera, PxnCameraInfo& info) const {
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (record.open.device != nullptr && record.open.camera == camera) {
            info = ToInfo(record);
            return PxnErrSuccess;
        }
    }
    return PxnErrBadHandle;
}

PxnError CameraList::Reserve(const char* id, Claim& claim) {
    const platform::MutexLock lock(mutex);
    Record* record = Find(id);
    if (record == nullptr || !record->isPresent) {
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

void CameraList::SetOpen(const std::string& extendedId, OpenCamera open) {
    const platform::MutexLock lock(mutex);
    Record* record = Find(extendedId);
    record->streams = &streamHandles.emplace_back(open.stream);
    record->open = std::move(open);
}

void CameraList::Release(const std::string& extendedId) {
    const platform::MutexLock lock(mutex);
    Find(extendedId)->isReserved = false;
}

bool CameraList::TakeOpen(PxnHandle camera, OpenCamera& open, std::string& extendedId) {
    const platform::MutexLock lock(mutex);
    for (Record& record : records) {
        if (record.open.device != nullptr && record.open.camera == camera) {
            open = std::exchange(record.open, OpenCamera{});
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
        if (record.open.device != nullptr) {
            handles.push_back(record.open.camera);
        }
    }
    return handles;
}

std::shared_ptr<FrameStream> CameraList::FramesOf(const std::string& extendedId) const {
    const platform::MutexLock lock(mutex);
    const Record* record = Find(extendedId);
    return record != nullptr ? record->open.frames : nullptr;
}

std::shared_ptr<ChunkReaders> CameraList::ReadersFor(const PxnFrame* frame,
                                                     ObjectOwner<ArvBuffer>& buffer) const {
    const platform::MutexLock lock(mutex);
    for (const Record& record : records) {
        if (record.open.frames != nullptr) {
            buffer = record.open.frames->BufferOf(frame);
            if (buffer != nullptr) {
                return record.open.chunkReaders;
            }
        }
    }
    return nullptr;
}

} // namespace genicam
