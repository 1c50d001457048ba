// scripted_driver.h - lets frames come from the scripted SDK, and changes its features
#pragma once

#include "pxnc/conformance/driver.h"
#include "tests/scripted_sdk/scripted_sdk.h"

#include <optional>
#include <thread>

namespace conformance_tests {

class ScriptedDriver : public conformance::Driver {
public:
    ScriptedDriver();
    ~ScriptedDriver() override;

    PxnError StopFrames(const conformance::SdkFunctions& sdk, PxnHandle camera) override;
    /// One frame, on a thread of the SDK.
    void LetFramesCome() override;
    std::optional<conformance::FeatureChange> OwnChange(PxnHandle camera) override;

    /// A camera with features of all types, and selectors.
    static void UseModel();

private:
    scripted::Sdk& sdk;
    std::jthread changing;
};

} // namespace conformance_tests
