// scripted_driver.cpp - lets frames come from the scripted SDK, and changes its features
#include "tests/pxnc/conformance/scripted_driver.h"

#include <vector>

namespace conformance_tests {
namespace {

constexpr const char* kChanged = "Width";

} // namespace

ScriptedDriver::ScriptedDriver() : sdk(scripted::GetSdk()) {}

ScriptedDriver::~ScriptedDriver() {
    sdk.WaitForDeliveries();
}

void ScriptedDriver::UseModel() {
    scripted::GetSdk().Reset();
    scripted::GetSdk().Edit([](scripted::Model& model) {
        scripted::Camera& camera = model.cameras[0];
        scripted::Feature table = scripted::RawFeature("LookUpTable", {'\1', '\2', '\3'});
        table.flags = PxnFeatureFlagRead;
        table.writeable = false;
        camera.Put(table);
        scripted::Feature& binning = camera.Put(scripted::IntFeature("Binning", 2, 1, 8));
        binning.validValues = {1, 2, 4, 8};
        scripted::Feature& selector = camera.Put(
            scripted::EnumFeature("GainSelector", "All", {{"All", 0}, {"Red", 1, false}}));
        selector.selected = {"Gain"};
        camera.Put(scripted::FloatFeature("Gain", 0, 0, 24));
        scripted::Feature hidden = scripted::StringFeature("Hidden", "");
        hidden.readable = false;
        hidden.writeable = false;
        camera.Put(hidden);
        camera.streams[0].Put(*camera.Find("PayloadSize"));
        for (scripted::Module* module :
             {static_cast<scripted::Module*>(&camera), &camera.streams[0]}) {
            for (scripted::Feature& feature : module->features) {
                feature.intIncrement = 1; // others are not enforced
            }
        }
    });
}

PxnError ScriptedDriver::StopFrames(const conformance::SdkFunctions& functions, PxnHandle camera) {
    const PxnError result = Driver::StopFrames(functions, camera);
    sdk.WaitForDeliveries();
    return result;
}

void ScriptedDriver::LetFramesCome() {
    if (!sdk.IsCapturing()) {
        return;
    }
    std::vector<std::uint64_t> frames = sdk.QueuedFrames();
    // An SDK that keeps its promises delivers none that is not queued.
    const std::vector<std::uint64_t> announced = sdk.AnnouncedFrames();
    frames.insert(frames.end(), announced.begin(), announced.end());
    for (const std::uint64_t frame : frames) {
        if (sdk.DeliverOnThread(frame, PxnFrameStatusComplete, 0, 1) ||
            sdk.Complete(frame, PxnErrSuccess, 1)) {
            return;
        }
    }
}

std::optional<conformance::FeatureChange> ScriptedDriver::OwnChange(PxnHandle camera) {
    return conformance::FeatureChange{camera, kChanged, [this, camera] {
                                          // On a thread: callbacks of a check may wait for it.
                                          changing = std::jthread(
                                              [this, camera] { sdk.Fire(camera, kChanged); });
                                      }};
}

} // namespace conformance_tests
