// service_context.h - what all services of one grabber share
#pragma once

#include "sdk/feature.h"
#include "sdk/pyxen_api_access.h"
#include "services/service_grabber.h"
#include "services/service_lock.h"
#include "services/service_outcome.h"
#include "sync/feature_cache.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pyxen {

/// A module of the SDK under the name that services use.
struct ServiceModule {
    std::string name; ///< "System", else that of the cache
    FeatureCache* cache = nullptr;
    bool isOfCamera = false; ///< its handle becomes invalid with the camera
};

/// A feature of such a module.
struct ServiceFeature {
    ServiceModule module;
    const PxnFeatureInfo* info = nullptr;

    Feature Get() const { return module.cache->GetFeature(*info); }
    /// "Camera/Width"
    std::string Path() const { return module.name + "/" + info->name; }
    ServiceOutcome Failure(PxnError code, const std::string& what = {}) const {
        return SdkFailure(Path() + (what.empty() ? "" : ": ") + what, code, module.isOfCamera);
    }
    /// Feature::Read, with the reason of a failure.
    ServiceOutcome Read(FeatureValue& value) const {
        FeatureStep failed = FeatureStep::kContent;
        const PxnError error = Get().Read(value, &failed);
        if (error == PxnErrSuccess) {
            return {};
        }
        return failed == FeatureStep::kMemory
                   ? ServiceOutcome{MV_SERVICE_OUT_OF_MEMORY, Path() + ": out of memory"}
                   : Failure(error);
    }
};

/// Feature::Range and Feature::Selected, but that they throw std::bad_alloc without memory.
PxnError RangeOf(const Feature& feature, FeatureRange& range);
PxnError SelectedBy(const Feature& feature, std::vector<const char*>& names);

/// The grabber and the lock, and how a service takes it.
class ServiceContext {
public:
    explicit ServiceContext(IServiceGrabber& servedGrabber) : grabber(servedGrabber) {}

    IServiceGrabber& Grabber() const { return grabber; }
    ServiceLock& Lock() RETURN_CAPABILITY(lock) { return lock; }

    /// Runs `body`, which returns a ServiceOutcome, with the lock and an initialised grabber. What
    /// it throws is passed on.
    template <typename Body>
    ServiceOutcome WhileLocked(Body body) NO_THREAD_SAFETY_ANALYSIS {
        if (!lock.Enter(!grabber.IsInsideCallback())) {
            return {MV_SERVICE_BUSY, "the grabber is at work, and nothing can wait for it here"};
        }
        const Leaving leaving(lock);
        if (!grabber.IsInitialized() || !grabber.Api().IsValid()) {
            return {MV_SERVICE_NOT_INITIALISED, "the grabber is not initialised"};
        }
        return body();
    }

    // ---- with the lock ----

    /// The modules that are there.
    std::vector<ServiceModule> Modules() const;
    /// Finds a module, case ignored, and a feature of it.
    ServiceOutcome FindModule(const char* name, ServiceModule& module) const;
    ServiceOutcome FindFeature(const char* module, const char* name, ServiceFeature& feature) const;

    /// Which camera is open: another number for each opening.
    std::uint64_t CameraNumber() const { return cameraNumber; }
    void CountCamera() { ++cameraNumber; }

private:
    class Leaving {
    public:
        explicit Leaving(ServiceLock& entered) : lock(entered) {}
        ~Leaving() NO_THREAD_SAFETY_ANALYSIS { lock.Unlock(); }
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;

    private:
        ServiceLock& lock;
    };

    IServiceGrabber& grabber;
    ServiceLock lock;
    std::uint64_t cameraNumber = 0; // under the lock
};

} // namespace pyxen
