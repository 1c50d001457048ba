#include "pxnc/genicam/module.h"

#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/frame_stream.h"

#include <utility>

namespace genicam {

Module::Module(PxnHandle moduleHandle, std::shared_ptr<platform::Mutex> featureMutex,
               Features moduleFeatures)
    : handle(moduleHandle), mutex(std::move(featureMutex)), features(std::move(moduleFeatures)) {
    for (const auto& feature : features) {
        byName.emplace(feature->Name(), feature.get());
    }
}

Module::~Module() = default;

Feature* Module::Find(const char* name) const {
    const auto found = byName.find(name);
    return found != byName.end() ? found->second : nullptr;
}

void Module::Attach(std::shared_ptr<CameraDevice> cameraDevice, std::shared_ptr<FrameStream> stream,
                    std::vector<PxnHandle> dependents) {
    device = std::move(cameraDevice);
    frames = std::move(stream);
    dependentHandles = std::move(dependents);
}

bool Module::IsLost() const {
    return device != nullptr && device->IsLost();
}

} // namespace genicam
