// test_camera.cpp - the camera: its features, and those of its local device and its stream
#include "test_camera.h"

#include <cstring>
#include <utility>

namespace test_camera {
namespace {

constexpr const char* kImage = "/ImageFormatControl";
constexpr const char* kAcquisition = "/AcquisitionControl";

bool Always() {
    return true;
}

} // namespace

TestCamera::TestCamera(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher)
    : FeatureSet(pool, dispatcher), frames(std::make_shared<FrameSource>()) {
    AddFeatures(pool);
}

void TestCamera::AddFeatures(skeleton::TextPool& pool) {
    // The size of the image stays while hosts have frames of that size filled.
    const auto isIdle = [this] {
        return !frames->IsCapturing();
    };
    Add<TextFeature>(Description{"DeviceModelName", "/DeviceControl", "Name of the model."},
                     "Test camera");
    width = &Add<IntegerFeature>(Description{"Width", kImage, "Width of the image.", "", isIdle},
                                 640, IntegerFeature::Limits{16, 1920, 16});
    height = &Add<IntegerFeature>(Description{"Height", kImage, "Height of the image.", "", isIdle},
                                  480, IntegerFeature::Limits{2, 1080, 2});
    Add<EntryFeature>(Description{"PixelFormat", kImage, "Format of the pixels.", "", isIdle}, pool,
                      std::vector<EntryFeature::Entry>{{"Mono8", kMono8}});
    Add<DerivedInteger>(
        Description{"PayloadSize", "/TransportLayerControl", "Bytes of a frame.", "B"},
        [this] { return width->Value() * height->Value(); });
    Add<EntryFeature>(
        Description{"AcquisitionMode", kAcquisition, "How many frames are sent.", "", isIdle}, pool,
        std::vector<EntryFeature::Entry>{{"Continuous", 0}});
    frameRate =
        &Add<FloatFeature>(Description{"AcquisitionFrameRate", kAcquisition,
                                       "Frames per second, from the next start.", "Hz", Always},
                           50.0, 1.0, 1000.0);
    Add<AcquisitionCommand>(
        Description{"AcquisitionStart", kAcquisition, "Begins to send frames.", "", Always},
        [this] {
            frames->StartCamera(
                {static_cast<std::uint32_t>(width->Value()),
                 static_cast<std::uint32_t>(height->Value()),
                 std::chrono::nanoseconds(static_cast<std::int64_t>(1e9 / frameRate->Value()))});
        });
    Add<AcquisitionCommand>(
        Description{"AcquisitionStop", kAcquisition, "Sends no more frames.", "", Always},
        [this] { frames->StopCamera(); });
}

PxnError TestCamera::GetPayloadSize(std::uint32_t& bytes) {
    std::int64_t size = 0;
    const PxnError result =
        With("PayloadSize", [&](skeleton::Feature& feature) { return feature.GetInt(size); });
    bytes = static_cast<std::uint32_t>(size);
    return result;
}

void TestCamera::OnWritten(const char* name) {
    FeatureSet::OnWritten(name);
    if (std::strcmp(name, "Width") == 0 || std::strcmp(name, "Height") == 0) {
        Report("PayloadSize");
    }
}

void TestCamera::OnCaptureChanged() {
    for (const char* locked : {"Width", "Height", "PixelFormat", "AcquisitionMode"}) {
        Report(locked);
    }
}

StreamModule::StreamModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher,
                           std::shared_ptr<TestCamera> owner)
    : FeatureSet(pool, dispatcher), camera(std::move(owner)) {
    Add<TextFeature>(Description{"StreamID", "/StreamInformation", "Identifier of the stream."},
                     "Stream0");
}

} // namespace test_camera
