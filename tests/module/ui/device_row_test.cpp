#include "ui/device_row.h"

#include "sdk/sdk_error.h"
#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

using scripted::InterfaceHandle;
using scripted::StringFeature;
using scripted::TransportLayerHandle;

class DeviceRow : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        sdk.Data().transportLayers[0].Put(StringFeature("TLDisplayName", "GigE Vision"));
        camera.interfaceHandle = InterfaceHandle();
        camera.transportLayerHandle = TransportLayerHandle();
    }

    DeviceConnection Read() { return ReadDeviceConnection(api, camera, &sink); }
    /// The module and feature of each string that was read, once for the length and the text.
    Texts ReadFeatures() {
        Texts features;
        for (const std::string& call : sdk.TakeCalls({"PxnFeatureStringGet("})) {
            const auto start = call.find('(') + 1;
            const std::string feature = call.substr(start, call.find("\", ") + 1 - start);
            if (features.empty() || features.back() != feature) {
                features.push_back(feature);
            }
        }
        return features;
    }

    PxnCameraInfo camera{};
};

TEST_F(DeviceRow, ReadsInterfaceNameAndVendor) {
    const DeviceConnection read = Read();
    EXPECT_EQ(read.interfaceId, "if-eth0");
    EXPECT_EQ(read.transportLayerName, "GigE Vision");
    EXPECT_EQ(read.transportLayerVendor, "Korvane");
    EXPECT_EQ(ReadFeatures(),
              (Texts{"interface0, \"InterfaceID\"", "transportlayer0, \"TLDisplayName\"",
                     "transportlayer0, \"TLVendorName\""}));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(DeviceRow, TakesTheModelNameWhereTheLayerHasNoDisplayName) {
    sdk.Data().transportLayers[0].Put(StringFeature("TLDisplayName", ""));
    EXPECT_EQ(Read().transportLayerName, "Pyxen GigE");
    EXPECT_EQ(ReadFeatures(),
              (Texts{"interface0, \"InterfaceID\"", "transportlayer0, \"TLDisplayName\"",
                     "transportlayer0, \"TLModelName\"", "transportlayer0, \"TLVendorName\""}));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(DeviceRow, TellsOfEveryTextThatCannotBeRead) {
    sdk.FailFeature(InterfaceHandle(), "InterfaceID", "PxnFeatureStringGet", PxnErrIO);
    for (const char* feature : {"TLDisplayName", "TLModelName", "TLVendorName"}) {
        sdk.FailFeature(TransportLayerHandle(), feature, "PxnFeatureStringGet", PxnErrNotFound);
    }
    const DeviceConnection read = Read();
    EXPECT_EQ(read.interfaceId, "");
    EXPECT_EQ(read.transportLayerName, "");
    EXPECT_EQ(read.transportLayerVendor, "");
    const Texts lines = sink.Take();
    const Texts expected = {
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading InterfaceID failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLDisplayName failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLModelName failed.",
        "0 CKVNPyxenDeviceFinderDialog::UpdateCameraList: Reading TLVendorName failed."};
    ASSERT_EQ(lines.size(), expected.size());
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_EQ(lines[index].substr(0, expected[index].size()), expected[index]);
    }
    EXPECT_NE(lines[0].find(SdkErrorText(PxnErrIO)), std::string::npos) << lines[0];
    EXPECT_NE(lines[3].find(SdkErrorText(PxnErrNotFound)), std::string::npos) << lines[3];
}

TEST_F(DeviceRow, ReadsWithoutALog) {
    sdk.FailFeature(InterfaceHandle(), "InterfaceID", "PxnFeatureStringGet", PxnErrIO);
    EXPECT_EQ(ReadDeviceConnection(api, camera, nullptr).transportLayerVendor, "Korvane");
}

using Row = std::array<std::string, 5>;

TEST(DeviceRowTexts, NameTheCameraAndItsConnection) {
    PxnCameraInfo camera{};
    camera.cameraName = "Left";
    camera.serialString = "0007";
    EXPECT_EQ(DeviceRowTexts(camera, {"eth0", "GigE Vision", "Korvane"}),
              (Row{"Left", "0007", "eth0", "GigE Vision", "Korvane"}));
}

TEST(DeviceRowTexts, HaveAPlaceholderForWhatIsMissing) {
    EXPECT_EQ(DeviceRowTexts({}, {}), (Row{"", "", "- unkown -", "- unknown -", "- unknown -"}));
}

TEST(DeviceStateImage, TellsWhetherFullAccessIsPermitted) {
    for (std::uint32_t access = 0; access < 8; ++access) {
        EXPECT_EQ(DeviceStateImage(access), access & 1 ? 1u : 2u) << access;
    }
}

} // namespace
