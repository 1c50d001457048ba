// camera_fixture.cpp - the library started and a fake camera in its list
#include "tests/pxnc/genicam/camera_fixture.h"

#include "tests/support/environment_guard.h"
#include "tests/support/wait_until.h"

namespace genicam_test {

std::unique_ptr<support::FakeCamera> CameraFixture::fakeCamera;

void CameraFixture::SetUpTestSuite() {
    StartSuite({});
}

void CameraFixture::StartSuite(const std::string& description) {
    fakeCamera = std::make_unique<support::FakeCamera>(description);
    StartLibrary();
    ASSERT_TRUE(WaitUntilListed());
}

void CameraFixture::StartLibrary() {
    const support::EnvironmentGuard interval("PYXEN_GENICAM_POLL_MS", "20");
    ASSERT_EQ(Sdk().Startup(nullptr), PxnErrSuccess);
}

void CameraFixture::TearDownTestSuite() {
    Sdk().Shutdown();
    fakeCamera.reset();
}

bool CameraFixture::WaitUntilListed() {
    return support::WaitUntil(
        [] {
            PxnCameraInfo info = {};
            return Sdk().CameraInfoQuery(Fake().ExtendedId().c_str(), &info, sizeof info) ==
                   PxnErrSuccess;
        },
        20000);
}

PxnCameraInfo CameraFixture::InfoOfFake() {
    PxnCameraInfo info = {};
    EXPECT_EQ(Sdk().CameraInfoQuery(Fake().PlainId().c_str(), &info, sizeof info), PxnErrSuccess);
    return info;
}

void CameraFixture::SetUp() {
    Open();
}

void CameraFixture::TearDown() {
    Close();
}

void CameraFixture::Open() {
    ASSERT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), PxnAccessModeFull, &camera),
              PxnErrSuccess);
    PxnCameraInfo info = {};
    ASSERT_EQ(Sdk().CameraInfoQueryByHandle(camera, &info, sizeof info), PxnErrSuccess);
    ASSERT_EQ(info.streamCount, 1u);
    stream = info.streamHandles[0];
    localDevice = info.localDeviceHandle;
}

void CameraFixture::Close(PxnError expected) {
    if (camera) {
        EXPECT_EQ(Sdk().CameraClose(camera), expected);
    }
    ForgetHandles();
}

void CameraFixture::ForgetHandles() {
    camera = nullptr;
    stream = nullptr;
    localDevice = nullptr;
}

} // namespace genicam_test
