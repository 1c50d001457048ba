// module.h - something with a handle and features
#pragma once

#include "platform/mutex.h"
#include "pxnc/genicam/feature.h"

#include <atomic>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace genicam {

class CameraDevice;
class FrameStream;

/// A module of the interface: the system, a transport layer, an interface, an open camera, its
/// local device or its stream. Its features never change after construction, so looking them up
/// needs no lock; using one does.
class Module {
public:
    using Features = std::vector<std::unique_ptr<Feature>>;

    /// `featureMutex` is shared by the modules of one camera, since their features reach the same
    /// description.
    Module(PxnHandle moduleHandle, std::shared_ptr<platform::Mutex> featureMutex,
           Features moduleFeatures);
    ~Module();

    PxnHandle Handle() const { return handle; }
    const Features& AllFeatures() const { return features; }
    /// Null when the module has no feature of that name.
    Feature* Find(const char* name) const;

    /// Runs `use(feature)` with the mutex held; PxnErrNotFound without such a feature.
    template <typename Use>
    PxnError With(const char* name, Use use) const {
        Feature* feature = Find(name);
        if (feature == nullptr) {
            return PxnErrNotFound;
        }
        const platform::MutexLock lock(*mutex);
        return use(*feature);
    }

    /// Ties the module to the open camera it belongs to. Called before its handle is known to
    /// anybody. `dependents` are the modules whose features may change with this one's.
    void Attach(std::shared_ptr<CameraDevice> cameraDevice, std::shared_ptr<FrameStream> stream,
                std::vector<PxnHandle> dependents);
    /// The camera behind the module; null for modules that belong to none.
    CameraDevice* Device() const { return device.get(); }
    /// The camera's frames; null for all but camera and stream modules.
    FrameStream* Frames() const { return frames.get(); }
    const std::vector<PxnHandle>& Dependents() const { return dependentHandles; }

    /// True once the camera of the module has vanished.
    bool IsLost() const;

private:
    const PxnHandle handle;
    const std::shared_ptr<platform::Mutex> mutex;
    // Declared before the features: those of a camera point into its description.
    std::shared_ptr<CameraDevice> device;
    std::shared_ptr<FrameStream> frames;
    std::vector<PxnHandle> dependentHandles;
    const Features features;
    std::unordered_map<std::string_view, Feature*> byName;
};

} // namespace genicam
