// stream.h - a stream module with the engine that moves its frames
#pragma once

#include "pxnc/simulator/acquisition_engine.h"
#include "pxnc/simulator/module.h"

namespace pxsim {

class Camera;

class Stream : public Module {
public:
    Stream(Camera& camera, std::uint32_t index, skeleton::TextPool& strings,
           skeleton::Invalidations& events, std::shared_ptr<skeleton::CallbackTurns> turnsOfCamera);

    PxnError GetPayloadSize(std::uint32_t& bytes) override;
    void OnCaptureChanged() override;

    AcquisitionEngine& Engine() { return engine; }
    bool IsStreaming() const override { return engine.IsCapturing(); }

private:
    void AddFeatures(std::uint32_t index);
    void AddStatistics();
    void Show(const char* name, const std::atomic<std::uint64_t>& counter);
    void AddGigEFeatures();

    Camera& camera;
    AcquisitionEngine engine;
};

} // namespace pxsim
