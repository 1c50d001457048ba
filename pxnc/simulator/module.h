// module.h - a module of the SDK: a set of features behind handles
#pragma once

#include "platform/mutex.h"
#include "pxnc/simulator/typed_features.h"
#include "pxnc/skeleton/invalidations.h"
#include "pxnc/skeleton/module.h"
#include "pxnc/skeleton/text_pool.h"

#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pxsim {

/// System, transport layer, interface, camera, local device, stream or the chunk data of a frame.
///
/// The features are added while the module is built and live as long as it. The mutex guards their
/// values; modules that read each other's values share it, such as all modules of one camera. The
/// operations lock it themselves; it is recursive because features compute their values from
/// others.
class Module : public skeleton::Module {
public:
    Module(skeleton::TextPool& strings, skeleton::Invalidations& events,
           std::shared_ptr<platform::Mutex> mutex);
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    std::vector<PxnFeatureInfo> ListFeatures() override;
    PxnError With(const char* name,
                  skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) override;
    std::vector<skeleton::StoredValue> GetStoredValues() override;
    PxnError ApplyStoredValues(std::vector<skeleton::StoredValue> values) override;

    /// Adds the features of a table, in its order. The category's path begins with '/'.
    void AddTable(const char* category, std::span<const FeatureRow> rows);
    /// Hides a feature from the hosts while the module is built; the device itself keeps working
    /// with it. False when there is no such feature.
    bool Omit(const char* name);

    skeleton::TextPool& Strings() { return strings; }
    platform::Mutex& ValueMutex() const RETURN_CAPABILITY(mutex) { return mutex; }
    /// Null when there is no feature of that name, compared exactly, or when it is hidden.
    Feature* FindVisible(const char* name) const;
    Feature* Find(const char* name) const;
    /// Including hidden ones.
    const std::vector<std::unique_ptr<Feature>>& Features() const { return features; }

    /// Features by name and their present values. The feature must exist and have that type.
    Feature& At(const char* name) const;
    /// Get<Int>("Width") is the IntFeature of that name.
    template <typename Type>
    typename Type::Class& Get(const char* name) const {
        return dynamic_cast<typename Type::Class&>(At(name));
    }
    std::int64_t IntValue(const char* name) const;
    double FloatValue(const char* name) const;
    const char* EnumValue(const char* name) const;
    std::int64_t EnumIntValue(const char* name) const;
    bool BoolValue(const char* name) const;
    bool EnumIs(const char* name, const char* entry) const;

    /// Raises the invalidations of a feature and of all that depend on it, on every handle.
    void Invalidate(const Feature& feature);
    void Invalidate(const char* name);
    /// Streaming has begun or ended: the access of the locked features has changed.
    void InvalidateLocked();
    /// Invalidates everything, after values were restored.
    void InvalidateAll();

    /// No invalidation is raised during its lifetime. The caller must hold the mutex throughout.
    class Quiet {
    public:
        explicit Quiet(Module& module);
        ~Quiet();
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

    private:
        Module& quietened;
    };

    void AddHandle(PxnHandle handle);
    void RemoveHandle(PxnHandle handle);

    /// True while a stream runs: locked features cannot be written.
    virtual bool IsStreaming() const { return false; }

    /// For the modules that share this one's mutex.
    std::shared_ptr<platform::Mutex> SharedMutex() const { return ownedMutex; }

private:
    const std::shared_ptr<platform::Mutex> ownedMutex;

protected:
    platform::Mutex& mutex;

private:
    skeleton::TextPool& strings;
    skeleton::Invalidations& events;
    std::vector<std::unique_ptr<Feature>> features;
    std::unordered_map<std::string_view, Feature*> byName;
    std::vector<PxnHandle> handles GUARDED_BY(mutex);
    int quiet GUARDED_BY(mutex) = 0;
};

} // namespace pxsim
