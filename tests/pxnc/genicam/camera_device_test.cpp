// camera_device_test.cpp - opening, describing and closing a camera
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/pxnc/genicam/foreign_controller.h"
#include "tests/support/temporary_directory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace genicam_test {

class CameraTest : public CameraFixture {};

TEST_F(CameraTest, ListsTheCameraWithItsIdentifiers) {
    Close();
    const std::vector<PxnCameraInfo> cameras = ListCameras();
    const auto found = std::find_if(cameras.begin(), cameras.end(), [](const auto& info) {
        return Fake().ExtendedId() == info.cameraIdExtended;
    });
    ASSERT_NE(found, cameras.end());
    EXPECT_EQ(Fake().PlainId(), found->cameraIdString);
    EXPECT_STREQ(found->modelName, "Fake");
    EXPECT_EQ(Fake().Serial(), found->serialString);
    EXPECT_EQ("Aravis Fake " + Fake().Serial(), found->cameraName);
    EXPECT_EQ(GetString(found->interfaceHandle, "InterfaceID"), "lo");
    EXPECT_EQ(GetString(found->transportLayerHandle, "TLDisplayName"), "GigE Vision");
    EXPECT_EQ(found->localDeviceHandle, nullptr);
    EXPECT_EQ(found->streamHandles, nullptr);
    EXPECT_EQ(found->streamCount, 0u);
    EXPECT_EQ(found->permittedAccess, std::uint32_t{PxnAccessModeFull | PxnAccessModeRead});
}

TEST_F(CameraTest, ReportsItsModulesOnlyWhileItIsOpen) {
    PxnCameraInfo info = {};
    ASSERT_EQ(Sdk().CameraInfoQueryByHandle(camera, &info, sizeof info), PxnErrSuccess);
    EXPECT_NE(info.localDeviceHandle, nullptr);
    ASSERT_EQ(info.streamCount, 1u);
    EXPECT_NE(info.streamHandles[0], nullptr);
    EXPECT_EQ(info.permittedAccess, std::uint32_t{PxnAccessModeRead});
    const PxnHandle closed = camera;
    Close();
    EXPECT_EQ(InfoOfFake().streamCount, 0u);
    EXPECT_EQ(InfoOfFake().localDeviceHandle, nullptr);
    EXPECT_EQ(Sdk().CameraInfoQueryByHandle(closed, &info, sizeof info), PxnErrBadHandle);
    EXPECT_EQ(Sdk().CameraInfoQueryByHandle(PXN_SYSTEM_HANDLE, &info, sizeof info),
              PxnErrBadHandle);
}

TEST_F(CameraTest, ReopensWithNewHandles) {
    const PxnHandle first = camera;
    const PxnHandle firstStream = stream;
    const PxnHandle firstDevice = localDevice;
    Close();
    std::int64_t width = 0;
    for (const PxnHandle handle : {first, firstStream, firstDevice}) {
        EXPECT_EQ(Sdk().FeatureIntGet(handle, "Width", &width), PxnErrBadHandle);
    }
    EXPECT_EQ(Sdk().CameraClose(first), PxnErrBadHandle);
    for (int i = 0; i < 5; ++i) {
        Open();
        EXPECT_NE(camera, first);
        EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &width), PxnErrSuccess);
        EXPECT_EQ(width, 512);
        Close();
    }
}

TEST_F(CameraTest, OpensByEitherIdentifierOnce) {
    PxnHandle second = nullptr;
    EXPECT_EQ(Sdk().CameraOpen(Fake().PlainId().c_str(), PxnAccessModeFull, &second), PxnErrInUse);
    Close();
    EXPECT_EQ(Sdk().CameraOpen(Fake().PlainId().c_str(), PxnAccessModeFull, &camera),
              PxnErrSuccess);
}

TEST_F(CameraTest, RefusesWhatItCannotOpen) {
    PxnHandle handle = nullptr;
    PxnCameraInfo info = {};
    EXPECT_EQ(Sdk().CameraOpen("GEV:nobody", PxnAccessModeFull, &handle), PxnErrNotFound);
    EXPECT_EQ(Sdk().CameraInfoQuery("GEV:nobody", &info, sizeof info), PxnErrNotFound);
    EXPECT_EQ(Sdk().CameraOpen(nullptr, PxnAccessModeFull, &handle), PxnErrBadParameter);
    EXPECT_EQ(Sdk().CameraOpen(Fake().PlainId().c_str(), 0, &handle), PxnErrBadParameter);
    EXPECT_EQ(Sdk().CameraOpen(Fake().PlainId().c_str(), PxnAccessModeFull, nullptr),
              PxnErrBadParameter);
    EXPECT_EQ(Sdk().CameraInfoQuery(Fake().PlainId().c_str(), &info, 8), PxnErrStructSize);
}

TEST_F(CameraTest, ReadAccessReadsAndWritesNothing) {
    Close();
    ASSERT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), PxnAccessModeRead, &camera),
              PxnErrSuccess);
    std::int64_t width = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &width), PxnErrSuccess);
    EXPECT_EQ(width, 512);
    PxnBool readable = 0;
    PxnBool writeable = 1;
    EXPECT_EQ(Sdk().FeatureAccessQuery(camera, "Width", &readable, &writeable), PxnErrSuccess);
    EXPECT_EQ(readable, 1);
    EXPECT_EQ(writeable, 0);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 256), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", 100), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStart"), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().CaptureStart(camera), PxnErrInvalidAccess);
    const char bytes[4] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(Sdk().MemoryWrite(camera, 0x2000, 4, bytes, &done), PxnErrInvalidAccess);

    // Nothing of it keeps another program from controlling the camera.
    const ForeignController other;
    EXPECT_TRUE(other.HasControl());
}

TEST_F(CameraTest, FullAccessNeedsControl) {
    Close();
    const ForeignController other;
    ASSERT_TRUE(other.HasControl());
    PxnHandle handle = nullptr;
    EXPECT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), PxnAccessModeFull, &handle),
              PxnErrInvalidAccess);
    ASSERT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), PxnAccessModeRead, &handle),
              PxnErrSuccess);
    std::int64_t width = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(handle, "Width", &width), PxnErrSuccess);
    EXPECT_EQ(Sdk().CameraClose(handle), PxnErrSuccess);
}

TEST_F(CameraTest, ClosingGivesControlBack) {
    {
        const ForeignController other;
        EXPECT_FALSE(other.HasControl());
    }
    Close();
    const ForeignController other;
    EXPECT_TRUE(other.HasControl());
}

TEST_F(CameraTest, DescribesTheLocalDevice) {
    EXPECT_EQ(GetString(localDevice, "DeviceID"), Fake().ExtendedId());
    EXPECT_EQ(GetString(localDevice, "DeviceVendorName"), "Aravis");
    EXPECT_EQ(GetString(localDevice, "DeviceModelName"), "Fake");
    EXPECT_EQ(GetString(localDevice, "DeviceSerialNumber"), Fake().Serial());
    EXPECT_EQ(GetString(localDevice, "GevDeviceIPAddress"), "127.0.0.1");
    const char* text = nullptr;
    EXPECT_EQ(Sdk().FeatureEnumGet(localDevice, "DeviceAccessStatus", &text), PxnErrSuccess);
    EXPECT_STREQ(text, "OpenReadWrite");
    EXPECT_EQ(Sdk().FeatureEnumGet(localDevice, "DeviceType", &text), PxnErrSuccess);
    EXPECT_STREQ(text, "GEV");
    EXPECT_EQ(Sdk().FeatureEnumSet(localDevice, "DeviceType", "U3V"), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureStringSet(localDevice, "DeviceID", "x"), PxnErrInvalidAccess);
}

TEST_F(CameraTest, TextsOutliveTheCamera) {
    const std::vector<PxnFeatureInfo> features = ListFeatures(camera);
    const PxnCameraInfo info = InfoOfFake();
    const char* format = nullptr;
    ASSERT_EQ(Sdk().FeatureEnumGet(camera, "PixelFormat", &format), PxnErrSuccess);
    Close();
    EXPECT_STREQ(format, "Mono8");
    EXPECT_EQ(Fake().ExtendedId(), info.cameraIdExtended);
    for (const PxnFeatureInfo& feature : features) {
        EXPECT_GT(std::strlen(feature.name), 0u);
        EXPECT_EQ(feature.category[0], '/');
    }
}

TEST_F(CameraTest, ReadsAndWritesRegisters) {
    // Registers are big-endian; the first holds the present width.
    unsigned char bytes[4] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(Sdk().MemoryRead(camera, 0x100, 4, reinterpret_cast<char*>(bytes), &done),
              PxnErrSuccess);
    EXPECT_EQ(done, 4u);
    EXPECT_EQ(bytes[2] << 8 | bytes[3], 512);

    const char text[] = "sixteen letters.";
    EXPECT_EQ(Sdk().MemoryWrite(camera, 0x2000, 16, text, &done), PxnErrSuccess);
    EXPECT_EQ(done, 16u);
    char copy[16] = {};
    EXPECT_EQ(Sdk().MemoryRead(localDevice, 0x2000, 16, copy, &done), PxnErrSuccess);
    EXPECT_EQ(std::string(copy, 16), text);

    EXPECT_EQ(Sdk().MemoryRead(camera, 0x100, 4, nullptr, &done), PxnErrBadParameter);
    EXPECT_EQ(Sdk().MemoryRead(camera, 0x100, 0, copy, &done), PxnErrBadParameter);
    EXPECT_EQ(Sdk().MemoryWrite(camera, 0x100, 4, text, nullptr), PxnErrBadParameter);
}

TEST_F(CameraTest, ReadsMoreThanOnePacketOfRegisters) {
    std::string written(2048, '\0');
    for (std::size_t i = 0; i < written.size(); ++i) {
        written[i] = static_cast<char>('a' + i % 23);
    }
    std::uint32_t done = 0;
    EXPECT_EQ(Sdk().MemoryWrite(camera, 0x4000, 2048, written.data(), &done), PxnErrSuccess);
    std::string read(written.size(), '\0');
    EXPECT_EQ(Sdk().MemoryRead(camera, 0x4000, 2048, read.data(), &done), PxnErrSuccess);
    EXPECT_EQ(done, 2048u);
    EXPECT_EQ(read, written);
}

/// A camera whose description has a value that depends on itself.
class CircularDescriptionTest : public CameraFixture {
protected:
    static void SetUpTestSuite() {
        const support::TemporaryDirectory directory;
        StartSuite(directory.Write("circle.xml",
                                   "<RegisterDescription ModelName=\"M\" VendorName=\"V\">"
                                   "<Category Name=\"Root\"><pFeature>Width</pFeature></Category>"
                                   "<Integer Name=\"Width\"><pValue>Height</pValue></Integer>"
                                   "<Integer Name=\"Height\"><pValue>Width</pValue></Integer>"
                                   "</RegisterDescription>"));
    }
    void SetUp() override {}
    void TearDown() override {}
};

TEST_F(CircularDescriptionTest, IsNotOpened) {
    for (const std::uint32_t access : {PxnAccessModeFull, PxnAccessModeRead, PxnAccessModeFull}) {
        PxnHandle opened = nullptr;
        EXPECT_EQ(Sdk().CameraOpen(Fake().ExtendedId().c_str(), access, &opened), PxnErrXml);
        EXPECT_EQ(opened, nullptr);
    }
}

} // namespace genicam_test
