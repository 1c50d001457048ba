// sdk_test.cpp - startup, lists and opening
#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/sdk.h"

#include <cstring>
#include <set>

namespace simulator_tests {
namespace {

TEST(LibraryTest, VersionIsAnsweredBeforeStartup) {
    PxnVersionInfo version{};
    EXPECT_EQ(PxnVersionQuery(&version, sizeof version), 0);
    EXPECT_EQ(version.major, 1u);
    EXPECT_EQ(version.minor, 4u);
    EXPECT_EQ(version.patch, 0u);
    EXPECT_EQ(PxnVersionQuery(nullptr, sizeof version), PxnErrBadParameter);
    EXPECT_EQ(PxnVersionQuery(&version, 11), PxnErrStructSize);
}

TEST(LibraryTest, EveryOtherEntryNeedsTheStartup) {
    std::uint32_t number = 0;
    std::int64_t integer = 0;
    double real = 0;
    PxnBool flag = 0;
    const char* text = nullptr;
    char bytes[4] = {};
    PxnHandle camera = nullptr;
    PxnCameraInfo info{};
    PxnFeatureInfo feature{};
    PxnFeatureEnumEntry entry{};
    PxnFrame frame{};
    const PxnHandle system = PXN_SYSTEM_HANDLE;
    const auto invalidated = [](PxnHandle, const char*, void*) {
    };
    const auto accessed = [](PxnHandle, void*) -> PxnError {
        return 0;
    };
    const PxnError results[] = {
        PxnCamerasList(&info, 1, &number, sizeof info),
        PxnCameraInfoQueryByHandle(system, &info, sizeof info),
        PxnCameraInfoQuery("x", &info, sizeof info),
        PxnCameraOpen("x", 1, &camera),
        PxnCameraClose(system),
        PxnFeaturesList(system, nullptr, 0, &number, sizeof feature),
        PxnFeatureInfoQuery(system, "x", &feature, sizeof feature),
        PxnFeatureListSelected(system, "x", nullptr, 0, &number, sizeof feature),
        PxnFeatureAccessQuery(system, "x", &flag, &flag),
        PxnFeatureIntGet(system, "x", &integer),
        PxnFeatureIntSet(system, "x", 1),
        PxnFeatureIntRangeQuery(system, "x", &integer, &integer),
        PxnFeatureIntIncrementQuery(system, "x", &integer),
        PxnFeatureIntValidValueSetQuery(system, "x", nullptr, 0, &number),
        PxnFeatureFloatGet(system, "x", &real),
        PxnFeatureFloatSet(system, "x", 1),
        PxnFeatureFloatRangeQuery(system, "x", &real, &real),
        PxnFeatureEnumGet(system, "x", &text),
        PxnFeatureEnumSet(system, "x", "y"),
        PxnFeatureEnumRangeQuery(system, "x", nullptr, 0, &number),
        PxnFeatureEnumIsAvailable(system, "x", "y", &flag),
        PxnFeatureEnumAsInt(system, "x", "y", &integer),
        PxnFeatureEnumAsString(system, "x", 1, &text),
        PxnFeatureEnumEntryGet(system, "x", "y", &entry, sizeof entry),
        PxnFeatureStringGet(system, "x", nullptr, 0, &number),
        PxnFeatureStringSet(system, "x", "y"),
        PxnFeatureStringMaxlengthQuery(system, "x", &number),
        PxnFeatureBoolGet(system, "x", &flag),
        PxnFeatureBoolSet(system, "x", 1),
        PxnFeatureCommandRun(system, "x"),
        PxnFeatureCommandIsDone(system, "x", &flag),
        PxnFeatureRawGet(system, "x", nullptr, 0, &number),
        PxnFeatureRawSet(system, "x", bytes, 1),
        PxnFeatureRawLengthQuery(system, "x", &number),
        PxnFeatureInvalidationRegister(system, "x", invalidated, nullptr),
        PxnFeatureInvalidationUnregister(system, "x", invalidated),
        PxnPayloadSizeGet(system, &number),
        PxnFrameAnnounce(system, &frame, sizeof frame),
        PxnFrameRevoke(system, &frame),
        PxnFrameRevokeAll(system),
        PxnCaptureStart(system),
        PxnCaptureEnd(system),
        PxnCaptureFrameQueue(system, &frame, nullptr),
        PxnCaptureFrameWait(system, &frame, 1),
        PxnCaptureQueueFlush(system),
        PxnTransportLayersList(nullptr, 0, &number, sizeof(PxnTransportLayerInfo)),
        PxnInterfacesList(nullptr, 0, &number, sizeof(PxnInterfaceInfo)),
        PxnMemoryRead(system, 0, 4, bytes, &number),
        PxnMemoryWrite(system, 0, 4, bytes, &number),
        PxnSettingsSave(system, L"x", nullptr, 0),
        PxnSettingsLoad(system, L"x", nullptr, 0),
        PxnChunkDataAccess(&frame, accessed, nullptr),
    };
    EXPECT_EQ(std::size(results), 52u); // all but version, startup and shutdown
    for (const PxnError result : results) {
        EXPECT_EQ(result, PxnErrApiNotStarted);
    }
}

TEST(LibraryTest, StartupAndShutdownAreCounted) {
    std::uint32_t found = 0;
    ASSERT_EQ(PxnStartup(nullptr), 0);
    ASSERT_EQ(PxnStartup(nullptr), 0);
    PxnShutdown();
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
    PxnShutdown();
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
    PxnShutdown(); // one too many is harmless
    EXPECT_EQ(PxnStartup(nullptr), 0);
    PxnShutdown();
}

TEST(LibraryTest, AStartupThatFailedCounts) {
    std::uint32_t found = 0;
    EXPECT_EQ(PxnStartup(L"no such file.xml"), PxnErrNotFound);
    ASSERT_EQ(PxnStartup(nullptr), 0); // another user of the library
    EXPECT_EQ(PxnStartup(L"no such file.xml"), 0) << "only the first one reads a configuration";
    Control("fail PxnStartup 1 -14");
    EXPECT_EQ(PxnStartup(nullptr), PxnErrResources);
    for (int failedOrSecond = 0; failedOrSecond < 3; ++failedOrSecond) {
        PxnShutdown();
        EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
    }
    PxnShutdown();
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
}

TEST(LibraryTest, ShutdownReportsWhatWasNotGivenBack) {
    ASSERT_EQ(PxnStartup(nullptr), 0);
    PxnHandle camera = nullptr;
    ASSERT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, &camera), 0);
    std::vector<std::uint8_t> memory(100);
    PxnFrame frame{};
    frame.buffer = memory.data();
    frame.bufferSize = 100;
    ASSERT_EQ(PxnFrameAnnounce(camera, &frame, sizeof frame), 0);
    ASSERT_EQ(PxnFeatureInvalidationRegister(
                  camera, "Width", [](PxnHandle, const char*, void*) {}, nullptr),
              0);
    testing::internal::CaptureStderr();
    PxnShutdown();
    const std::string said = testing::internal::GetCapturedStderr();
    const std::string expected = "left at shutdown: 1 open camera handles, 1 announced frames, "
                                 "1 invalidation registrations";
    EXPECT_EQ(said, "PxnC: " + expected + "\n");
    EXPECT_EQ(Control("leaks"), expected);
}

class ListTest : public SimulatorTest {};

TEST_F(ListTest, DefaultCamerasHangOnTheirOwnInterfacesAndLayers) {
    PxnCameraInfo cameras[5] = {};
    std::uint32_t found = 0;
    ASSERT_EQ(PxnCamerasList(cameras, 5, &found, sizeof cameras[0]), 0);
    ASSERT_EQ(found, 3u);
    std::set<PxnHandle> layers;
    std::set<PxnHandle> interfaces;
    for (std::uint32_t i = 0; i < found; ++i) {
        const PxnCameraInfo& camera = cameras[i];
        EXPECT_STRNE(camera.cameraIdString, camera.cameraIdExtended);
        EXPECT_EQ(camera.localDeviceHandle, nullptr);
        EXPECT_EQ(camera.streamHandles, nullptr);
        EXPECT_EQ(camera.streamCount, 0u);
        EXPECT_EQ(camera.permittedAccess, 3u);
        layers.insert(camera.transportLayerHandle);
        interfaces.insert(camera.interfaceHandle);
    }
    EXPECT_EQ(layers.size(), 3u);
    EXPECT_EQ(interfaces.size(), 3u);
    EXPECT_STREQ(cameras[0].cameraIdExtended, kGigECamera);
    EXPECT_STREQ(cameras[1].cameraIdExtended, kUsbCamera);
    EXPECT_STREQ(cameras[2].cameraIdExtended, kSerialCamera);
    EXPECT_EQ(GetString(cameras[0].transportLayerHandle, "TLType"), "GEV");
    EXPECT_EQ(GetString(cameras[1].transportLayerHandle, "TLType"), "U3V");
    EXPECT_EQ(GetString(cameras[2].transportLayerHandle, "TLType"), "CL");
    EXPECT_EQ(GetString(cameras[0].interfaceHandle, "InterfaceID"), "Eth0");
}

TEST_F(ListTest, ShortArraysAreFilledAsFarAsTheyGo) {
    PxnCameraInfo cameras[2] = {};
    std::uint32_t found = 0;
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof cameras[0]), 0);
    EXPECT_EQ(found, 3u);
    found = 0;
    EXPECT_EQ(PxnCamerasList(cameras, 2, &found, sizeof cameras[0]), PxnErrMoreData);
    EXPECT_EQ(found, 3u);
    EXPECT_STREQ(cameras[1].cameraIdExtended, kUsbCamera);
    EXPECT_EQ(PxnCamerasList(cameras, 0, &found, sizeof cameras[0]), PxnErrMoreData);
    EXPECT_EQ(PxnCamerasList(nullptr, 2, &found, sizeof cameras[0]), PxnErrBadParameter);
    EXPECT_EQ(PxnCamerasList(cameras, 2, nullptr, sizeof cameras[0]), PxnErrBadParameter);
    EXPECT_EQ(PxnCamerasList(cameras, 2, &found, 79), PxnErrStructSize);
}

TEST_F(ListTest, TransportLayersAndInterfacesBelongTogether) {
    PxnTransportLayerInfo layers[3] = {};
    PxnInterfaceInfo interfaces[3] = {};
    std::uint32_t found = 0;
    ASSERT_EQ(PxnTransportLayersList(layers, 3, &found, sizeof layers[0]), 0);
    ASSERT_EQ(found, 3u);
    ASSERT_EQ(PxnInterfacesList(interfaces, 3, &found, sizeof interfaces[0]), 0);
    ASSERT_EQ(found, 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(interfaces[i].transportLayerHandle, layers[i].transportLayerHandle);
        EXPECT_EQ(interfaces[i].interfaceType, layers[i].transportLayerType);
        EXPECT_EQ(GetString(layers[i].transportLayerHandle, "TLID"),
                  layers[i].transportLayerIdString);
        EXPECT_EQ(GetString(layers[i].transportLayerHandle, "TLVendorName"), "Korvane");
        EXPECT_EQ(GetString(layers[i].transportLayerHandle, "TLDisplayName"),
                  layers[i].transportLayerName);
        EXPECT_EQ(GetString(interfaces[i].interfaceHandle, "InterfaceID"),
                  interfaces[i].interfaceIdString);
    }
    EXPECT_EQ(layers[0].transportLayerType, std::uint32_t{PxnTransportLayerGEV});
    EXPECT_EQ(PxnTransportLayersList(layers, 3, &found, 63), PxnErrStructSize);
    EXPECT_EQ(PxnInterfacesList(interfaces, 3, &found, 39), PxnErrStructSize);
}

TEST_F(ListTest, CameraRecordIsFoundByEitherIdentifier) {
    PxnCameraInfo info{};
    EXPECT_EQ(PxnCameraInfoQuery("DEV_000F31024A10", &info, sizeof info), 0);
    EXPECT_STREQ(info.cameraIdExtended, kGigECamera);
    EXPECT_EQ(PxnCameraInfoQuery(kGigECamera, &info, sizeof info), 0);
    EXPECT_STREQ(info.cameraIdString, "DEV_000F31024A10");
    EXPECT_EQ(PxnCameraInfoQuery("DEV", &info, sizeof info), PxnErrNotFound);
    EXPECT_EQ(PxnCameraInfoQuery(nullptr, &info, sizeof info), PxnErrBadParameter);
    EXPECT_EQ(PxnCameraInfoQuery(kGigECamera, nullptr, sizeof info), PxnErrBadParameter);
    EXPECT_EQ(PxnCameraInfoQuery(kGigECamera, &info, 81), PxnErrStructSize);
    EXPECT_EQ(PxnCameraInfoQueryByHandle(PXN_SYSTEM_HANDLE, &info, sizeof info), PxnErrBadHandle);
}

class OpenTest : public SimulatorTest {};

TEST_F(OpenTest, ChildHandlesExistOnlyWhileTheCameraIsOpen) {
    const PxnHandle camera = Open("DEV_000F31024A10");
    const PxnCameraInfo info = InfoOf(camera);
    ASSERT_NE(info.localDeviceHandle, nullptr);
    ASSERT_EQ(info.streamCount, 1u);
    const PxnHandle stream = info.streamHandles[0];
    EXPECT_FALSE(ListFeatures(info.localDeviceHandle).empty());
    EXPECT_FALSE(ListFeatures(stream).empty());
    EXPECT_EQ(PxnCameraClose(camera), 0);
    PxnCameraInfo closed{};
    ASSERT_EQ(PxnCameraInfoQuery(kGigECamera, &closed, sizeof closed), 0);
    EXPECT_EQ(closed.localDeviceHandle, nullptr);
    EXPECT_EQ(closed.streamCount, 0u);
    std::uint32_t found = 0;
    for (PxnHandle stale : {camera, info.localDeviceHandle, stream}) {
        EXPECT_EQ(PxnFeaturesList(stale, nullptr, 0, &found, sizeof(PxnFeatureInfo)),
                  PxnErrBadHandle);
    }
    EXPECT_EQ(PxnCameraClose(camera), PxnErrBadHandle);
    EXPECT_EQ(info.streamHandles[0], stream) << "the list lives until shutdown";
}

TEST_F(OpenTest, FullAccessIsGivenOnce) {
    const PxnHandle camera = Open(kGigECamera);
    PxnHandle second = nullptr;
    EXPECT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, &second), PxnErrInvalidAccess);
    EXPECT_EQ(InfoOf(camera).permittedAccess, std::uint32_t{PxnAccessModeRead});
    const PxnHandle reader = Open(kGigECamera, PxnAccessModeRead);
    EXPECT_NE(reader, camera);
    EXPECT_EQ(GetInt(reader, "Width"), 640);
    EXPECT_FALSE(IsWritable(reader, "Width"));
    EXPECT_EQ(PxnFeatureIntSet(reader, "Width", 320), PxnErrInvalidAccess);
    EXPECT_EQ(PxnFeatureCommandRun(reader, "AcquisitionStart"), PxnErrInvalidAccess);
    EXPECT_EQ(PxnCaptureStart(reader), PxnErrInvalidAccess);
    EXPECT_EQ(PxnCameraClose(camera), 0);
    EXPECT_EQ(GetInt(reader, "Width"), 640) << "the reader keeps the camera open";
    EXPECT_EQ(InfoOf(reader).permittedAccess, 3u);
    EXPECT_EQ(PxnCameraClose(reader), 0);
}

TEST_F(OpenTest, FramesBelongToTheHandleWithFullAccess) {
    const PxnHandle reader = Open(kGigECamera, PxnAccessModeRead);
    const PxnHandle stream = InfoOf(reader).streamHandles[0];
    PxnFrame frame{};
    EXPECT_EQ(PxnFrameAnnounce(stream, &frame, sizeof frame), PxnErrNotAvailable)
        << "nobody has full access";
    const PxnHandle camera = Open(kGigECamera);
    EXPECT_EQ(InfoOf(camera).streamHandles[0], stream);
    struct Seen {
        Counter frames;
        PxnHandle camera = nullptr;
    } seen;
    std::vector<Buffer> buffers = Announce(camera, 1);
    buffers[0].frame.context[0] = &seen;
    const auto callback = [](PxnHandle handle, PxnHandle, PxnFrame* received) {
        auto* note = static_cast<Seen*>(received->context[0]);
        note->camera = handle;
        note->frames.Add();
    };
    ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffers[0].frame, callback), 0);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    ASSERT_EQ(PxnFeatureCommandRun(camera, "AcquisitionStart"), 0);
    EXPECT_TRUE(seen.frames.WaitFor(1));
    EXPECT_EQ(PxnCameraClose(camera), 0);
    EXPECT_EQ(seen.camera, camera);
    EXPECT_EQ(Count("revokedByClose"), 1);
    EXPECT_FALSE(GetBool(reader, "TLParamsLocked")) << "closing ended the acquisition";
    EXPECT_EQ(PxnCameraClose(reader), 0);
}

TEST_F(OpenTest, RefusalsSayWhy) {
    PxnHandle camera = nullptr;
    EXPECT_EQ(PxnCameraOpen("nobody", PxnAccessModeFull, &camera), PxnErrNotFound);
    EXPECT_EQ(PxnCameraOpen(nullptr, PxnAccessModeFull, &camera), PxnErrBadParameter);
    EXPECT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnCameraOpen(kGigECamera, 7, &camera), PxnErrBadParameter);
    EXPECT_EQ(PxnCameraClose(PXN_SYSTEM_HANDLE), PxnErrBadHandle);
    EXPECT_EQ(PxnCameraClose(nullptr), PxnErrBadHandle);
    Control(std::string("access ") + kGigECamera + " read");
    EXPECT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, &camera), PxnErrInvalidAccess);
    Control(std::string("access ") + kGigECamera + " full");
    EXPECT_EQ(PxnCameraOpen(kGigECamera, PxnAccessModeFull, &camera), 0);
    EXPECT_EQ(PxnCameraClose(camera), 0);
}

TEST_F(OpenTest, ClosingGivesBackWhatTheHostLeft) {
    const PxnHandle camera = Open(kGigECamera);
    std::vector<Buffer> buffers = Announce(camera, 3);
    for (Buffer& buffer : buffers) {
        ASSERT_EQ(PxnCaptureFrameQueue(camera, &buffer.frame, nullptr), 0);
    }
    ASSERT_EQ(PxnFeatureInvalidationRegister(
                  camera, "Width", [](PxnHandle, const char*, void*) {}, nullptr),
              0);
    EXPECT_EQ(PxnCameraClose(camera), 0);
    EXPECT_EQ(Count("announced"), 3);
    EXPECT_EQ(Count("revokedByClose"), 3);
    EXPECT_EQ(Count("queued"), Count("flushed"));
    EXPECT_EQ(Count("registrations"), 0);
    EXPECT_EQ(Count("unregisteredByClose"), 1);
    EXPECT_EQ(Count("openCameras"), 0);
}

TEST_F(OpenTest, ValuesOutliveTheOpening) {
    PxnHandle camera = Open(kGigECamera);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 320), 0);
    EXPECT_EQ(PxnCameraClose(camera), 0);
    camera = Open(kGigECamera);
    EXPECT_EQ(GetInt(camera, "Width"), 320) << "the camera was not switched off";
    EXPECT_EQ(PxnCameraClose(camera), 0);
}

} // namespace
} // namespace simulator_tests
