// backend_test.cpp - startup, configuration and the modules without a camera
#include "tests/pxnc/genicam/sdk_library.h"

#include "platform/text.h"
#include "tests/support/temporary_directory.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace genicam_test {
namespace {

std::wstring Wide(const std::string& text) {
    std::wstring wide(text.size() + 1, L'\0');
    wide.resize(platform::NarrowToWide(text.c_str(), wide.data(), wide.size()) - 1);
    return wide;
}

std::vector<PxnTransportLayerInfo> Layers() {
    std::vector<PxnTransportLayerInfo> layers(8);
    std::uint32_t found = 0;
    EXPECT_EQ(SdkLibrary::Instance().TransportLayersList(layers.data(), 8, &found,
                                                         sizeof(PxnTransportLayerInfo)),
              PxnErrSuccess);
    layers.resize(found);
    return layers;
}

std::vector<PxnInterfaceInfo> Interfaces() {
    std::vector<PxnInterfaceInfo> interfaces(64);
    std::uint32_t found = 0;
    EXPECT_EQ(SdkLibrary::Instance().InterfacesList(interfaces.data(), 64, &found,
                                                    sizeof(PxnInterfaceInfo)),
              PxnErrSuccess);
    interfaces.resize(found);
    return interfaces;
}

} // namespace

class LibraryTest : public testing::Test {
protected:
    const SdkLibrary& sdk = SdkLibrary::Instance();
    support::TemporaryDirectory directory;

    PxnError StartWith(const std::string& content) const {
        return sdk.Startup(Wide(directory.Write("PxnC.xml", content)).c_str());
    }
};

TEST_F(LibraryTest, ReportsItsVersionWithoutStartup) {
    PxnVersionInfo version = {};
    EXPECT_EQ(sdk.VersionQuery(&version, sizeof version), PxnErrSuccess);
    EXPECT_EQ(version.major, 1u);
    EXPECT_EQ(version.minor, 0u);
    EXPECT_EQ(version.patch, 0u);
    EXPECT_EQ(sdk.VersionQuery(&version, sizeof version + 1), PxnErrStructSize);
    EXPECT_EQ(sdk.VersionQuery(nullptr, sizeof version), PxnErrBadParameter);
}

TEST_F(LibraryTest, ReturnsNotStartedBeforeStartup) {
    std::uint32_t number = 0;
    PxnHandle handle = nullptr;
    PxnCameraInfo info = {};
    PxnFrame frame = {};
    std::int64_t value = 0;
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof info), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.CameraInfoQuery("x", &info, sizeof info), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.CameraOpen("x", PxnAccessModeFull, &handle), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.CameraClose(PXN_SYSTEM_HANDLE), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.FeaturesList(PXN_SYSTEM_HANDLE, nullptr, 0, &number, sizeof(PxnFeatureInfo)),
              PxnErrApiNotStarted);
    EXPECT_EQ(sdk.FeatureIntGet(PXN_SYSTEM_HANDLE, "x", &value), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.FeatureCommandRun(PXN_SYSTEM_HANDLE, "x"), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.FrameAnnounce(PXN_SYSTEM_HANDLE, &frame, sizeof frame), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.CaptureStart(PXN_SYSTEM_HANDLE), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.CaptureFrameWait(PXN_SYSTEM_HANDLE, &frame, 0), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.FrameRevokeAll(PXN_SYSTEM_HANDLE), PxnErrApiNotStarted);
    EXPECT_EQ(sdk.TransportLayersList(nullptr, 0, &number, sizeof(PxnTransportLayerInfo)),
              PxnErrApiNotStarted);
}

TEST_F(LibraryTest, IgnoresAShutdownWithoutStartup) {
    sdk.Shutdown();
    std::uint32_t number = 0;
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
}

TEST_F(LibraryTest, CountsStartupsAndShutdowns) {
    std::uint32_t number = 0;
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    sdk.Shutdown();
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrSuccess);
    sdk.Shutdown();
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrSuccess);
    sdk.Shutdown();
}

TEST_F(LibraryTest, ListsBothTransportLayers) {
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    const std::vector<PxnTransportLayerInfo> layers = Layers();
    ASSERT_EQ(layers.size(), 2u);
    EXPECT_STREQ(layers[0].transportLayerName, "GigE Vision");
    EXPECT_EQ(layers[0].transportLayerType, PxnTransportLayerGEV);
    EXPECT_STREQ(layers[1].transportLayerName, "USB3 Vision");
    EXPECT_EQ(layers[1].transportLayerType, PxnTransportLayerU3V);
    for (const PxnTransportLayerInfo& layer : layers) {
        const PxnHandle handle = layer.transportLayerHandle;
        EXPECT_EQ(GetString(handle, "TLID"), layer.transportLayerIdString);
        EXPECT_EQ(GetString(handle, "TLVendorName"), layer.transportLayerVendor);
        EXPECT_EQ(GetString(handle, "TLModelName"), layer.transportLayerModelName);
        EXPECT_EQ(GetString(handle, "TLVersion"), layer.transportLayerVersion);
        EXPECT_EQ(GetString(handle, "TLDisplayName"), layer.transportLayerName);
        const char* type = nullptr;
        EXPECT_EQ(sdk.FeatureEnumGet(handle, "TLType", &type), PxnErrSuccess);
        EXPECT_STREQ(type, layer.transportLayerType == PxnTransportLayerGEV ? "GEV" : "U3V");
    }
    EXPECT_STRNE(layers[0].transportLayerIdString, layers[1].transportLayerIdString);
    sdk.Shutdown();
}

TEST_F(LibraryTest, ListsAnInterfaceForEveryNetworkInterfaceAndOneForUsb) {
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    const std::vector<PxnTransportLayerInfo> layers = Layers();
    std::set<std::string> ids;
    for (const PxnInterfaceInfo& info : Interfaces()) {
        EXPECT_TRUE(ids.insert(info.interfaceIdString).second) << info.interfaceIdString;
        EXPECT_EQ(GetString(info.interfaceHandle, "InterfaceID"), info.interfaceIdString);
        EXPECT_EQ(GetString(info.interfaceHandle, "InterfaceDisplayName"), info.interfaceName);
        const bool isGigE = info.interfaceType == PxnTransportLayerGEV;
        EXPECT_EQ(info.transportLayerHandle, layers[isGigE ? 0 : 1].transportLayerHandle);
        if (std::strcmp(info.interfaceIdString, "lo") == 0) {
            std::int64_t address = 0;
            EXPECT_EQ(
                sdk.FeatureIntGet(info.interfaceHandle, "GevInterfaceSubnetIPAddress", &address),
                PxnErrSuccess);
            EXPECT_EQ(address, 0x7F000001);
            EXPECT_STREQ(FindFeature(info.interfaceHandle, "GevInterfaceSubnetMask").representation,
                         "IPV4Address");
        }
    }
    EXPECT_EQ(ids.count("lo"), 1u);
    EXPECT_EQ(ids.count("USB"), 1u);
    sdk.Shutdown();
}

TEST_F(LibraryTest, FillsAShortArrayAndReportsThatThereIsMore) {
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    PxnTransportLayerInfo layers[2] = {};
    std::uint32_t found = 0;
    constexpr std::uint32_t kSize = sizeof(PxnTransportLayerInfo);
    EXPECT_EQ(sdk.TransportLayersList(nullptr, 0, &found, kSize), PxnErrSuccess);
    EXPECT_EQ(found, 2u);
    found = 0;
    EXPECT_EQ(sdk.TransportLayersList(layers, 1, &found, kSize), PxnErrMoreData);
    EXPECT_EQ(found, 2u);
    EXPECT_STREQ(layers[0].transportLayerName, "GigE Vision");
    EXPECT_EQ(layers[1].transportLayerName, nullptr);
    EXPECT_EQ(sdk.TransportLayersList(layers, 2, &found, kSize), PxnErrSuccess);
    EXPECT_EQ(sdk.TransportLayersList(layers, 2, &found, kSize - 1), PxnErrStructSize);
    EXPECT_EQ(sdk.TransportLayersList(nullptr, 2, &found, kSize), PxnErrBadParameter);
    EXPECT_EQ(sdk.TransportLayersList(layers, 2, nullptr, kSize), PxnErrBadParameter);
    sdk.Shutdown();
}

TEST_F(LibraryTest, DescribesTheSystemModule) {
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    for (const PxnFeatureInfo& info : ListFeatures(PXN_SYSTEM_HANDLE)) {
        EXPECT_EQ(info.category[0], '/') << info.name;
        EXPECT_STRNE(info.description, "") << info.name;
    }
    EXPECT_EQ(FindFeature(PXN_SYSTEM_HANDLE, "EventCameraDiscovery").featureDataType,
              std::uint32_t{PxnFeatureDataInt});
    EXPECT_EQ(GetString(PXN_SYSTEM_HANDLE, "EventCameraDiscoveryCameraID"), "");
    EXPECT_EQ(EnumEntries(PXN_SYSTEM_HANDLE, "EventCameraDiscoveryType"),
              (std::vector<std::string>{"Missing", "Detected"}));
    const char* type = nullptr;
    EXPECT_EQ(sdk.FeatureEnumGet(PXN_SYSTEM_HANDLE, "EventCameraDiscoveryType", &type),
              PxnErrInvalidAccess);
    PxnBool readable = 1;
    PxnBool writeable = 1;
    EXPECT_EQ(sdk.FeatureAccessQuery(PXN_SYSTEM_HANDLE, "EventCameraDiscoveryType", &readable,
                                     &writeable),
              PxnErrSuccess);
    EXPECT_EQ(readable, 0);
    EXPECT_EQ(writeable, 0);
    EXPECT_EQ(sdk.FeatureCommandRun(PXN_SYSTEM_HANDLE, "DiscoverCameras"), PxnErrSuccess);
    sdk.Shutdown();
}

TEST_F(LibraryTest, RefusesUnknownHandles) {
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    std::int64_t value = 0;
    std::uint32_t number = 0;
    char bytes[4] = {};
    const PxnHandle unknown = reinterpret_cast<PxnHandle>(std::uintptr_t{0x1234});
    EXPECT_EQ(sdk.FeatureIntGet(unknown, "Width", &value), PxnErrBadHandle);
    EXPECT_EQ(sdk.FeatureIntGet(nullptr, "Width", &value), PxnErrBadHandle);
    EXPECT_EQ(sdk.CameraClose(unknown), PxnErrBadHandle);
    EXPECT_EQ(sdk.CaptureStart(unknown), PxnErrBadHandle);
    EXPECT_EQ(sdk.CaptureStart(PXN_SYSTEM_HANDLE), PxnErrBadHandle);
    EXPECT_EQ(sdk.FrameRevokeAll(PXN_SYSTEM_HANDLE), PxnErrBadHandle);
    EXPECT_EQ(sdk.PayloadSizeGet(PXN_SYSTEM_HANDLE, &number), PxnErrBadHandle);
    EXPECT_EQ(sdk.MemoryRead(PXN_SYSTEM_HANDLE, 0, 4, bytes, &number), PxnErrNotSupported);
    sdk.Shutdown();
}

TEST_F(LibraryTest, TakesAConfigurationOfSomebodyElse) {
    ASSERT_EQ(StartWith("<?xml version=\"1.0\"?>\n<PxnC><Cameras count=\"3\"/>\n"
                        "<gige packetSize=\"this is not ours\"/></PxnC>\n"),
              PxnErrSuccess);
    EXPECT_EQ(Layers().size(), 2u);
    sdk.Shutdown();
}

TEST_F(LibraryTest, LeavesOutWhatTheConfigurationDoes) {
    ASSERT_EQ(StartWith("<settings><genicam><gige interfaces=\" lo , none0 \" packetSize=\"auto\" "
                        "resend=\"false\" later=\"x\"/><usb enabled=\"false\"/><new/></genicam>"
                        "</settings>"),
              PxnErrSuccess);
    EXPECT_EQ(Layers().size(), 1u);
    const std::vector<PxnInterfaceInfo> interfaces = Interfaces();
    ASSERT_EQ(interfaces.size(), 1u);
    EXPECT_STREQ(interfaces[0].interfaceIdString, "lo");
    sdk.Shutdown();
}

TEST_F(LibraryTest, NamesFileAndLineOfAMalformedConfiguration) {
    testing::internal::CaptureStderr();
    const PxnError result = StartWith("<genicam>\n<gige>\n</genicam>\n");
    const std::string message = testing::internal::GetCapturedStderr();
    sdk.Shutdown(); // a failed startup counts as well
    EXPECT_EQ(result, PxnErrXml);
    EXPECT_NE(message.find(directory.PathOf("PxnC.xml") + ":3: "), std::string::npos) << message;
    EXPECT_NE(message.find("gige"), std::string::npos) << message;
}

TEST_F(LibraryTest, NamesTheAttributeThatMakesNoSense) {
    for (const char* element : {"<gige packetSize=\"12\"/>", "<gige packetSize=\"8192x\"/>",
                                "<gige resend=\"maybe\"/>", "<usb enabled=\"\"/>"}) {
        testing::internal::CaptureStderr();
        const PxnError result = StartWith(std::string("<genicam>\n") + element + "</genicam>");
        const std::string message = testing::internal::GetCapturedStderr();
        sdk.Shutdown();
        EXPECT_EQ(result, PxnErrXml) << element;
        EXPECT_NE(message.find("PxnC.xml:2: attribute "), std::string::npos) << message;
    }
}

TEST_F(LibraryTest, RefusesAConfigurationFileThatIsNotThere) {
    testing::internal::CaptureStderr();
    const PxnError result = sdk.Startup(Wide(directory.PathOf("none.xml")).c_str());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("none.xml"), std::string::npos);
    EXPECT_EQ(result, PxnErrNotFound);
    std::uint32_t number = 0;
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
    // A failed startup counts: its shutdown does not take the library from another user.
    ASSERT_EQ(sdk.Startup(nullptr), PxnErrSuccess);
    sdk.Shutdown();
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrSuccess);
    sdk.Shutdown();
    EXPECT_EQ(sdk.CamerasList(nullptr, 0, &number, sizeof(PxnCameraInfo)), PxnErrApiNotStarted);
}

} // namespace genicam_test
