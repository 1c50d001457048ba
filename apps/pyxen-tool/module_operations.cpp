// module_operations.cpp - shell operations that only this module has
#include "apps/common/command_failure.h"
#include "apps/common/shell_operation.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/feature_access.h"
#include "grabber/mivora_kvn_pyxen_class.h"

using namespace pyxen;

namespace {

using Text = const std::string&;

FeatureCache& RequireModule(CMivoraKVNPyxenClass& grabber, Text name) {
    FeatureCache* const cache = FeatureAccess::FindModule(grabber, name);
    if (!cache) {
        throw ShellRefusal("there is no module \"" + name + "\"");
    }
    return *cache;
}

ShellAnswer ModuleName(const FeatureCache* cache) {
    return ShellAnswer::Text(cache ? cache->GetModuleName() : nullptr);
}

void AddCaches(ShellOperations& operations, CMivoraKVNPyxenClass& grabber) {
    operations.Add("GetNumFeatureCaches", "",
                   [&] { return ShellAnswer::Number(grabber.GetNumFeatureCaches()); });
    operations.Add("GetFeatureCache", "I",
                   [&](std::uint32_t index) { return ModuleName(grabber.GetFeatureCache(index)); });
    operations.Add("GetFeatureCacheByName", "NAME", [&](Text name) {
        return ModuleName(grabber.GetFeatureCacheByName(name.c_str()));
    });
    operations.Add("PrintParameters", "MODULE", [&](Text name) {
        RequireModule(grabber, name).PrintParameters();
        return ShellAnswer::Ok();
    });
}

void AddTiming(ShellOperations& operations, CMivoraKVNPyxenClass& grabber) {
    operations.Add("GetExposureTime", "", [&] {
        std::uint32_t value = 0;
        const bool ok = grabber.GetExposureTime(&value);
        return ShellAnswer::Number(ok).With("value", value);
    });
    operations.Add("GetFrameInterval", "", [&] {
        std::uint32_t value = 0;
        const bool ok = grabber.GetFrameInterval(&value);
        return ShellAnswer::Number(ok).With("value", value);
    });
    operations.Add("OnTimingFeatureChanged", "MODULE NAME", [&](Text moduleName, Text name) {
        FeatureCache* const cache = FeatureAccess::FindModule(grabber, moduleName);
        grabber.OnTimingFeatureChanged(cache ? cache->GetHandle() : nullptr, name.c_str());
        return ShellAnswer::Ok();
    });
    operations.Add("NotifyBufferImpact", "0|1", [&](bool finished) {
        return ShellAnswer::Number(grabber.NotifyBufferImpact(finished));
    });
}

void AddSynchronisation(ShellOperations& operations, CMivoraKVNPyxenClass& grabber) {
    operations.Add("SyncModuleFeatures", "MODULE 0|1", [&](Text name, bool onlyIfDifferent) {
        return ShellAnswer::Number(
            grabber.Sync().SyncModuleFeatures(&RequireModule(grabber, name), onlyIfDifferent));
    });
    operations.Add("SyncDependentFeatures", "MODULE FEATURE 0|1",
                   [&](Text name, Text feature, bool onlyIfDifferent) {
                       return ShellAnswer::Number(grabber.Sync().SyncDependentFeatures(
                           &RequireModule(grabber, name), feature.c_str(), onlyIfDifferent));
                   });
    operations.Add(
        "CheckSyncPath", "MODULE FEATURE VALUE", [&](Text name, Text feature, Text value) {
            try {
                const FeatureAccess access = FeatureAccess::Find(grabber, name + "/" + feature);
                const SyncCheckResult result = grabber.Sync().CheckSyncPath(
                    &access.Cache(), access.Get().Name(), access.Parse(value));
                return ShellAnswer::Number(result.ok)
                    .WithText("feature", result.failingFeature)
                    .WithText("reason", result.reason)
                    .With("bufferImpact", result.bufferImpact);
            } catch (const CommandFailure& failure) {
                throw ShellRefusal(failure.what());
            }
        });
}

void AddRegisters(ShellOperations& operations, CMivoraKVNPyxenClass& grabber) {
    operations.Add("ReadRegister32", "ADDRESS SWAP", [&](std::uint64_t address, bool swap) {
        std::uint32_t value = 0;
        const bool ok = grabber.Api().IsValid() &&
                        grabber.Api().ReadRegister32(grabber.CameraHandle(), address, &value, swap);
        return ShellAnswer::Number(ok).With("value", value);
    });
    operations.Add("WriteRegister32", "ADDRESS VALUE SWAP",
                   [&](std::uint64_t address, std::uint32_t value, bool swap) {
                       CPyxenAPIAccess& api = grabber.Api();
                       return ShellAnswer::Number(
                           api.IsValid() &&
                           api.WriteRegister32(grabber.CameraHandle(), address, value, swap));
                   });
}

} // namespace

void AddModuleOperations(ShellOperations& operations, CMivoraKVNPyxenClass& grabber) {
    AddCaches(operations, grabber);
    AddTiming(operations, grabber);
    AddSynchronisation(operations, grabber);
    AddRegisters(operations, grabber);
}
