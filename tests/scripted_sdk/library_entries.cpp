// library_entries.cpp - the scripted SDK's entries for library, cameras, transport and memory
#include "tests/scripted_sdk/call_text.h"
#include "tests/scripted_sdk/sdk_state.h"

#include <algorithm>
#include <cstring>

using namespace scripted;

namespace {

/// Fills `array` with what there is and room for, and answers as list entries do.
template <typename Record, typename Fill>
PxnError FillList(const char* entry, std::size_t count, Record* array, std::uint32_t capacity,
                  std::uint32_t* found, Fill fill) {
    const std::uint32_t reported = State().Found(entry, count);
    if (found != nullptr) {
        *found = reported;
    }
    if (array == nullptr) {
        return PxnErrSuccess;
    }
    for (std::size_t i = 0; i < std::min<std::size_t>(count, capacity); ++i) {
        fill(i, array[i]);
    }
    return reported > capacity ? PxnErrMoreData : PxnErrSuccess;
}

} // namespace

extern "C" PXN_API Sdk* ScriptedSdkInstance();
Sdk* ScriptedSdkInstance() {
    return &SdkState::Instance();
}

PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    return State().Run({.entry = "PxnVersionQuery", .arguments = Arguments(size)},
                       [&](SdkState::Lock&) -> PxnError {
                           if (size != sizeof(PxnVersionInfo)) {
                               return PxnErrStructSize;
                           }
                           *info = State().Data().version;
                           return PxnErrSuccess;
                       });
}

PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    return State().Run({.entry = "PxnStartup", .arguments = Arguments(configPath)},
                       [](SdkState::Lock&) { return State().ChangeStartups(1); });
}

void PXN_CALL PxnShutdown(void) {
    State().Run({.entry = "PxnShutdown", .arguments = ""},
                [](SdkState::Lock&) { return State().ChangeStartups(-1); });
}

PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    return State().Run(
        {.entry = "PxnCamerasList", .arguments = Arguments(Place{cameras}, capacity, size)},
        [&](SdkState::Lock&) {
            return FillList("PxnCamerasList", State().Data().cameras.size(), cameras, capacity,
                            found, [](std::size_t index, PxnCameraInfo& info) {
                                State().FillCameraInfo(index, info);
                            });
        });
}

PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return State().Run({.entry = "PxnCameraInfoQueryByHandle",
                        .handle = camera,
                        .arguments = Arguments(camera, size)},
                       [&](SdkState::Lock&) -> PxnError {
                           std::size_t index = 0;
                           if (!State().FindCamera(camera, index)) {
                               return PxnErrBadHandle;
                           }
                           State().FillCameraInfo(index, *info);
                           return PxnErrSuccess;
                       });
}

PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return State().Run({.entry = "PxnCameraInfoQuery", .arguments = Arguments(id, size)},
                       [&](SdkState::Lock&) -> PxnError {
                           std::size_t index = 0;
                           if (!State().FindCamera(std::string(id), index)) {
                               return PxnErrNotFound;
                           }
                           State().FillCameraInfo(index, *info);
                           return PxnErrSuccess;
                       });
}

PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return State().Run({.entry = "PxnCameraOpen", .arguments = Arguments(id, accessMode)},
                       [&](SdkState::Lock&) { return State().OpenCamera(id, camera); });
}

PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return State().Run(
        {.entry = "PxnCameraClose", .handle = camera, .arguments = Arguments(camera)},
        [&](SdkState::Lock& lock) { return State().CloseCamera(camera, lock); });
}

PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return State().Run(
        {.entry = "PxnTransportLayersList", .arguments = Arguments(Place{layers}, capacity, size)},
        [&](SdkState::Lock&) {
            const auto& all = State().Data().transportLayers;
            return FillList("PxnTransportLayersList", all.size(), layers, capacity, found,
                            [&](std::size_t index, PxnTransportLayerInfo& info) {
                                const TransportLayer& layer = all[index];
                                info = {};
                                info.transportLayerIdString = State().Intern(layer.id);
                                info.transportLayerName = State().Intern(layer.name);
                                info.transportLayerModelName = State().Intern(layer.modelName);
                                info.transportLayerVendor = State().Intern(layer.vendor);
                                info.transportLayerVersion = State().Intern(layer.version);
                                info.transportLayerPath = State().Intern(layer.path);
                                info.transportLayerHandle = TransportLayerHandle(index);
                                info.transportLayerType = layer.type;
                            });
        });
}

PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                    uint32_t* found, uint32_t size) {
    return State().Run(
        {.entry = "PxnInterfacesList", .arguments = Arguments(Place{interfaces}, capacity, size)},
        [&](SdkState::Lock&) {
            const auto& all = State().Data().interfaces;
            return FillList("PxnInterfacesList", all.size(), interfaces, capacity, found,
                            [&](std::size_t index, PxnInterfaceInfo& info) {
                                info = {};
                                info.interfaceIdString = State().Intern(all[index].id);
                                info.interfaceType = all[index].type;
                                info.interfaceName = State().Intern(all[index].name);
                                info.interfaceHandle = InterfaceHandle(index);
                                info.transportLayerHandle =
                                    TransportLayerHandle(all[index].transportLayer);
                            });
        });
}

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return State().Run(
        {.entry = "PxnMemoryRead", .handle = handle, .arguments = Arguments(handle, address, size)},
        [&](SdkState::Lock&) -> PxnError {
            Module* module = State().FindModule(handle);
            if (module == nullptr) {
                return PxnErrBadHandle;
            }
            std::vector<std::uint8_t> bytes;
            const auto sequence = module->readSequences.find(address);
            if (sequence != module->readSequences.end() && !sequence->second.empty()) {
                bytes = sequence->second.front();
                sequence->second.pop_front();
                bytes.resize(std::min<std::size_t>(bytes.size(), size));
            } else {
                for (std::uint32_t i = 0; i < size; ++i) {
                    const auto stored = module->registers.find(address + i);
                    bytes.push_back(stored != module->registers.end() ? stored->second : 0);
                }
            }
            bytes.resize(std::min<std::size_t>(bytes.size(), module->transferLimit.value_or(size)));
            if (!bytes.empty()) {
                std::memcpy(buffer, bytes.data(), bytes.size());
            }
            *sizeComplete = static_cast<std::uint32_t>(bytes.size());
            return PxnErrSuccess;
        });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return State().Run({.entry = "PxnMemoryWrite",
                        .handle = handle,
                        .arguments = Arguments(handle, address, Bytes{buffer, size})},
                       [&](SdkState::Lock&) -> PxnError {
                           Module* module = State().FindModule(handle);
                           if (module == nullptr) {
                               return PxnErrBadHandle;
                           }
                           const std::uint32_t count =
                               std::min(size, module->transferLimit.value_or(size));
                           for (std::uint32_t i = 0; i < count; ++i) {
                               module->registers[address + i] =
                                   static_cast<std::uint8_t>(buffer[i]);
                           }
                           *sizeComplete = count;
                           return PxnErrSuccess;
                       });
}

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void*, uint32_t) {
    return State().Run(
        {.entry = "PxnSettingsSave", .handle = handle, .arguments = Arguments(handle, path)},
        [](SdkState::Lock&) { return PxnErrSuccess; });
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void*, uint32_t) {
    return State().Run(
        {.entry = "PxnSettingsLoad", .handle = handle, .arguments = Arguments(handle, path)},
        [](SdkState::Lock&) { return PxnErrSuccess; });
}
