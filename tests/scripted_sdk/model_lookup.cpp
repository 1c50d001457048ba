// model_lookup.cpp - what handles and identifiers mean in the model
#include "tests/scripted_sdk/model_lookup.h"

#include "tests/scripted_sdk/nonsense.h"

#include <cstdio>

namespace scripted {
namespace {

/// The element whose handle it is; false for handles of something else. `first` is the handle of
/// the first element, whose handles follow one another.
template <typename Element>
bool FindIn(std::vector<Element>& list, PxnHandle handle, PxnHandle first, const char* kind,
            Place& place) {
    const std::uintptr_t index =
        reinterpret_cast<std::uintptr_t>(handle) - reinterpret_cast<std::uintptr_t>(first);
    if (index >= list.size()) {
        return false;
    }
    place = {&list[index], kind + std::to_string(index)};
    return true;
}

} // namespace

Place FindPlace(Model& model, PxnHandle handle) {
    if (handle == SystemHandle()) {
        return {&model.system, "system"};
    }
    if (handle == ChunkHandle()) {
        return {&model.chunk, "chunk"};
    }
    Place place;
    if (FindIn(model.transportLayers, handle, TransportLayerHandle(), "transportlayer", place) ||
        FindIn(model.interfaces, handle, InterfaceHandle(), "interface", place)) {
        return place;
    }
    for (std::size_t i = 0; i < model.cameras.size(); ++i) {
        Camera& camera = model.cameras[i];
        const std::string number = std::to_string(i);
        if (handle == CameraHandle(i)) {
            return {&camera, "camera" + number, i};
        }
        if (handle == LocalDeviceHandle(i)) {
            return {&camera.localDevice, "localdevice" + number};
        }
        const std::string prefix = i == 0 ? "" : "camera" + number + ".";
        if (FindIn(camera.streams, handle, StreamHandle(i), (prefix + "stream").c_str(), place)) {
            place.camera = i;
            return place;
        }
    }
    return {};
}

std::string NameOf(Model& model, PxnHandle handle) {
    if (!handle) {
        return "null";
    }
    const Place place = FindPlace(model, handle);
    if (place.module) {
        return place.name;
    }
    char number[24];
    std::snprintf(number, sizeof number, "0x%llX",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle)));
    return number;
}

std::optional<std::size_t> FindCamera(const Model& model, const std::string& given) {
    const std::string id = Plain(given.c_str());
    for (std::size_t i = 0; i < model.cameras.size(); ++i) {
        if (model.cameras[i].extendedId == id || model.cameras[i].id == id) {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace scripted
