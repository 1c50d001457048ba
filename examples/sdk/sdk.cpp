// sdk.cpp - the implementation behind the functions of the skeleton
#include "camera_backend.h"
#include "pxnc/skeleton/never_destroyed.h"

namespace test_camera {
namespace {

class TestSdk final : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override { return {1, 0, 0}; }
    /// Has no configuration: whichever file is named is not looked at.
    PxnError Start(const wchar_t*, std::shared_ptr<skeleton::Backend>& started) override {
        const auto backend = std::make_shared<CameraBackend>();
        if (!backend->Start()) {
            return PxnErrResources;
        }
        started = backend;
        return PxnErrSuccess;
    }
};

} // namespace
} // namespace test_camera

skeleton::Implementation& skeleton::TheImplementation() {
    static NeverDestroyed<test_camera::TestSdk> sdk;
    return sdk.Get();
}
