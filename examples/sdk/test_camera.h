// test_camera.h - the camera: its features, and those of its local device and its stream
#pragma once

#include "features.h"
#include "frame_source.h"

#include <memory>

namespace test_camera {

/// The features of the camera itself. The frames are those of its only stream.
class TestCamera final : public FeatureSet {
public:
    TestCamera(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher);

    const std::shared_ptr<FrameSource>& Frames() const { return frames; }

    PxnError GetPayloadSize(std::uint32_t& bytes) override;
    void OnWritten(const char* name) override;
    void OnCaptureChanged() override;

private:
    void AddFeatures(skeleton::TextPool& pool);

    const std::shared_ptr<FrameSource> frames;
    IntegerFeature* width = nullptr; // owned by the feature set, as are the others
    IntegerFeature* height = nullptr;
    FloatFeature* frameRate = nullptr;
};

/// The stream's own features; what concerns frames is the camera's.
class StreamModule final : public FeatureSet {
public:
    StreamModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher,
                 std::shared_ptr<TestCamera> owner);

    PxnError GetPayloadSize(std::uint32_t& bytes) override { return camera->GetPayloadSize(bytes); }
    void OnCaptureChanged() override { camera->OnCaptureChanged(); }

private:
    const std::shared_ptr<TestCamera> camera;
};

} // namespace test_camera
