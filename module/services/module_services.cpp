// module_services.cpp - the slots of the services, which delegate to those who serve
#include "services/module_services.h"

#include "services/camera_service.h"
#include "services/description_file.h"

namespace pyxen {

namespace {

/// Runs a service, unless a required argument is missing, and hands out how it ended.
template <typename Body>
MV_SERVICE_RESULT Serve(MV_SERVICE_REASON* reason, bool isComplete, Body body) noexcept {
    if (!isComplete) {
        StoreReason("a required argument is missing, or a size is wrong", reason);
        return MV_SERVICE_BAD_ARGUMENT;
    }
    try {
        const ServiceOutcome outcome = body();
        StoreReason(outcome.reason.c_str(), reason);
        return outcome.result;
    } catch (...) {
        StoreReason("out of memory", reason);
        return MV_SERVICE_OUT_OF_MEMORY;
    }
}

} // namespace

void ModuleServices::LeaveCamera() {
    subscriptions.EndOfCamera();
    context.CountCamera();
}

void ModuleServices::LeaveSdk() {
    subscriptions.EndAll();
    context.CountCamera();
}

// ---- features ----

MV_SERVICE_RESULT ModuleServices::ListModules(MV_TEXT_RECEIVER receiver, void* receiverContext,
                                              MV_SERVICE_REASON* reason) {
    return Serve(reason, receiver != nullptr,
                 [&] { return features.ListModules(receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::ListFeatures(const char* module, MV_FEATURE_RECEIVER receiver,
                                               void* receiverContext, MV_SERVICE_REASON* reason) {
    return Serve(reason, module != nullptr && receiver != nullptr,
                 [&] { return features.List(module, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::DescribeFeature(const char* module, const char* feature,
                                                  MV_FEATURE_RECEIVER receiver,
                                                  void* receiverContext,
                                                  MV_SERVICE_REASON* reason) {
    return Serve(reason, module != nullptr && feature != nullptr && receiver != nullptr,
                 [&] { return features.Describe(module, feature, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::ReadFeature(const char* module, const char* feature,
                                              MV_VALUE_RECEIVER receiver, void* receiverContext,
                                              MV_SERVICE_REASON* reason) {
    return Serve(reason, module != nullptr && feature != nullptr && receiver != nullptr,
                 [&] { return features.Read(module, feature, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::WriteFeature(const char* module, const char* feature,
                                               const MV_FEATURE_VALUE* value,
                                               MV_VALUE_RECEIVER receiver, void* receiverContext,
                                               MV_SERVICE_REASON* reason) {
    return Serve(
        reason,
        module != nullptr && feature != nullptr && value && value->size >= sizeof(MV_FEATURE_VALUE),
        [&] { return features.Write(module, feature, *value, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::RunCommand(const char* module, const char* feature,
                                             uint32_t timeoutMs, MV_SERVICE_REASON* reason) {
    return Serve(reason, module != nullptr && feature != nullptr,
                 [&] { return features.Run(module, feature, timeoutMs); });
}

MV_SERVICE_RESULT ModuleServices::Subscribe(const char* module, const char* feature,
                                            MV_CHANGE_RECEIVER receiver, void* receiverContext,
                                            uint64_t* subscription, MV_SERVICE_REASON* reason) {
    return Serve(
        reason,
        module != nullptr && feature != nullptr && receiver != nullptr && subscription != nullptr,
        [&] {
            return subscriptions.Add(module, feature, receiver, receiverContext, *subscription);
        });
}

MV_SERVICE_RESULT ModuleServices::Unsubscribe(uint64_t subscription, MV_SERVICE_REASON* reason) {
    return Serve(reason, true, [&] { return subscriptions.End(subscription); });
}

MV_SERVICE_RESULT ModuleServices::ReadDescriptionFile(MV_DATA_RECEIVER receiver,
                                                      void* receiverContext,
                                                      MV_SERVICE_REASON* reason) {
    return Serve(reason, receiver != nullptr,
                 [&] { return pyxen::ReadDescriptionFile(context, receiver, receiverContext); });
}

// ---- frames ----

MV_SERVICE_RESULT ModuleServices::GetFrameInfo(uint64_t bufferIndex, MV_FRAME_INFO* info,
                                               MV_SERVICE_REASON* reason) {
    return Serve(reason, info && info->size >= sizeof(MV_FRAME_INFO),
                 [&] { return frames.GetInfo(bufferIndex, *info); });
}

MV_SERVICE_RESULT ModuleServices::ReadChunks(uint64_t bufferIndex, MV_CHUNK_RECEIVER receiver,
                                             void* receiverContext, MV_SERVICE_REASON* reason) {
    return Serve(reason, receiver != nullptr,
                 [&] { return frames.ReadChunks(bufferIndex, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::InstallFrameReceiver(MV_FRAME_RECEIVER receiver,
                                                       void* receiverContext,
                                                       MV_SERVICE_REASON* reason) {
    return Serve(reason, true, [&] { return frames.InstallReceiver(receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::ReadSentImage(uint64_t bufferIndex, MV_DATA_RECEIVER receiver,
                                                void* receiverContext, MV_SERVICE_REASON* reason) {
    return Serve(reason, receiver != nullptr,
                 [&] { return frames.ReadSentImage(bufferIndex, receiver, receiverContext); });
}

// ---- cameras ----

MV_SERVICE_RESULT ModuleServices::ListCameras(MV_CAMERA_RECEIVER receiver, void* receiverContext,
                                              MV_SERVICE_REASON* reason) {
    return Serve(reason, receiver != nullptr,
                 [&] { return pyxen::ListCameras(context, receiver, receiverContext); });
}

// ---- settings ----

MV_SERVICE_RESULT ModuleServices::SaveSettings(const char* path, MV_SETTING_RECEIVER receiver,
                                               void* receiverContext, MV_SERVICE_REASON* reason) {
    return Serve(reason, path != nullptr,
                 [&] { return settings.Save(path, receiver, receiverContext); });
}

MV_SERVICE_RESULT ModuleServices::LoadSettings(const char* path, uint32_t flags,
                                               MV_SETTING_RECEIVER receiver, void* receiverContext,
                                               MV_SERVICE_REASON* reason) {
    return Serve(reason, path != nullptr,
                 [&] { return settings.Load(path, flags, receiver, receiverContext); });
}

} // namespace pyxen
