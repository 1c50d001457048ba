// camera_fixture.h - the library started and a fake camera in its list
#pragma once

#include "tests/pxnc/genicam/sdk_library.h"
#include "tests/support/posix/fake_camera.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace genicam_test {

/// Starts camera and library once for all tests of a suite, since a search for cameras takes a
/// second, and opens the camera for each.
class CameraFixture : public testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    /// For suites with a GenICam description of their own.
    static void StartSuite(const std::string& description);

    /// Opens the camera with full access.
    void SetUp() override;
    void TearDown() override;

    static const SdkLibrary& Sdk() { return SdkLibrary::Instance(); }
    static support::FakeCamera& Fake() { return *fakeCamera; }
    static PxnCameraInfo InfoOfFake();
    /// Waits until the list has the fake camera.
    static bool WaitUntilListed();

    void Open();
    /// `expected` is PxnErrBadHandle for a camera that has vanished.
    void Close(PxnError expected = PxnErrSuccess);
    /// Starts the library with a short time between searches.
    static void StartLibrary();
    /// Forgets handles that a shutdown has closed.
    void ForgetHandles();

    PxnHandle camera = nullptr;
    PxnHandle stream = nullptr;
    PxnHandle localDevice = nullptr;

private:
    static std::unique_ptr<support::FakeCamera> fakeCamera;
};

} // namespace genicam_test
