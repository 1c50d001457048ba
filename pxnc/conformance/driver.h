// driver.h - what checks need of a camera beyond the SDK's functions
#pragma once

#include "pxnc/conformance/sdk_library.h"

#include <functional>
#include <optional>
#include <string>

namespace conformance {

/// A feature and a way to change it, so that its registrations are called.
struct FeatureChange {
    PxnHandle handle = nullptr;
    std::string feature;
    /// Changes it once more. May return before the callbacks have.
    std::function<void()> cause;
};

/// Makes things happen to the camera. What is here suits a camera that streams by itself. Used by
/// one thread.
class Driver {
public:
    virtual ~Driver() = default;

    /// Lets the camera send frames and stop doing so.
    virtual PxnError StartFrames(const SdkFunctions& sdk, PxnHandle camera) {
        return sdk.PxnFeatureCommandRun(camera, "AcquisitionStart");
    }
    virtual PxnError StopFrames(const SdkFunctions& sdk, PxnHandle camera) {
        return sdk.PxnFeatureCommandRun(camera, "AcquisitionStop");
    }
    /// Called again and again while a check waits for frames of a camera that was started.
    virtual void LetFramesCome() {}
    /// A change that starting and stopping the acquisition does not cause. Nothing when there is
    /// none of its own.
    virtual std::optional<FeatureChange> OwnChange(PxnHandle /*camera*/) { return std::nullopt; }
    /// Whether it can take the camera away and bring it back.
    virtual bool CanRemoveCamera() const { return false; }
    virtual void RemoveCamera() {}
    virtual void ReturnCamera() {}
};

} // namespace conformance
