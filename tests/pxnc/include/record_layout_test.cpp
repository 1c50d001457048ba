// record_layout_test.cpp - which field of a record is where, by what a library puts there
//
// The scripted SDK gets every text under its field's name. The records are read as a program of
// another language would: as bytes at the numbers below, without pxnc.h.
#include "platform/file_system.h"
#include "pxnc/conformance/sdk_library.h"
#include "tests/scripted_sdk/scripted_sdk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace pxnc_header_tests {
namespace {

/// A record as bytes.
template <std::size_t kSize>
class Bytes {
public:
    template <typename Record>
    Record* As() {
        static_assert(sizeof(Record) == kSize);
        return reinterpret_cast<Record*>(bytes);
    }

    template <typename Value>
    Value At(std::size_t offset) const {
        Value value{};
        std::memcpy(&value, bytes + offset, sizeof value);
        return value;
    }
    std::string TextAt(std::size_t offset) const {
        const char* const text = At<const char*>(offset);
        return text ? text : "(null)";
    }

private:
    alignas(8) unsigned char bytes[kSize] = {};
};

class RecordLayout : public testing::Test {
protected:
    void SetUp() override {
        const std::string directory = platform::JoinPath(scripted::Home(), "Bin");
        std::string error;
        ASSERT_TRUE(
            library.Load(platform::JoinPath(directory, platform::LibraryFileName("PxnC")), error))
            << error;
        scripted::GetSdk().Reset();
        scripted::GetSdk().Edit(NameAllFields);
        ASSERT_EQ(Sdk().PxnStartup(nullptr), PxnErrSuccess);
    }
    void TearDown() override {
        Sdk().PxnShutdown();
        scripted::GetSdk().Reset();
    }

    const conformance::SdkFunctions& Sdk() const { return library.Functions(); }

private:
    static void NameAllFields(scripted::Model& model) {
        model.version = {0x11, 0x22, 0x33};
        scripted::Camera& camera = model.cameras[0];
        camera.id = "cameraIdString";
        camera.extendedId = "cameraIdExtended";
        camera.name = "cameraName";
        camera.modelName = "modelName";
        camera.serial = "serialString";
        camera.permittedAccess = PxnAccessModeRead;
        scripted::Interface& port = model.interfaces[0];
        port.id = "interfaceIdString";
        port.name = "interfaceName";
        port.type = PxnTransportLayerCXP;
        scripted::TransportLayer& layer = model.transportLayers[0];
        layer.id = "transportLayerIdString";
        layer.name = "transportLayerName";
        layer.modelName = "transportLayerModelName";
        layer.vendor = "transportLayerVendor";
        layer.version = "transportLayerVersion";
        layer.path = "transportLayerPath";
        layer.type = PxnTransportLayerPCI;

        scripted::Feature feature =
            scripted::EnumFeature("name", "entryName",
                                  {{"entryName", 0x1122334455667788, true, "entryDisplayName",
                                    "entryTooltip", "entryDescription", PxnVisibilityGuru}});
        feature.category = "/category";
        feature.displayName = "displayName";
        feature.tooltip = "tooltip";
        feature.description = "description";
        feature.sfncNamespace = "sfncNamespace";
        feature.unit = "unit";
        feature.representation = "representation";
        feature.flags = PxnFeatureFlagRead | PxnFeatureFlagVolatile;
        feature.pollingTime = 1234;
        feature.visibility = PxnVisibilityInvisible;
        feature.isStreamable = true;
        model.system.Put(feature);
        feature.name = "selector";
        feature.isStreamable = false;
        feature.selected = {"name"};
        model.system.Put(feature);
    }

    conformance::SdkLibrary library;
};

TEST_F(RecordLayout, OfVersions) {
    Bytes<12> version;
    ASSERT_EQ(Sdk().PxnVersionQuery(version.As<PxnVersionInfo>(), 12), PxnErrSuccess);
    EXPECT_EQ(version.At<std::uint32_t>(0), 0x11u);
    EXPECT_EQ(version.At<std::uint32_t>(4), 0x22u);
    EXPECT_EQ(version.At<std::uint32_t>(8), 0x33u);
}

TEST_F(RecordLayout, OfCameras) {
    PxnHandle handle = nullptr;
    ASSERT_EQ(Sdk().PxnCameraOpen("cameraIdString", PxnAccessModeFull, &handle), PxnErrSuccess);
    Bytes<80> camera;
    ASSERT_EQ(Sdk().PxnCameraInfoQueryByHandle(handle, camera.As<PxnCameraInfo>(), 80),
              PxnErrSuccess);
    EXPECT_EQ(camera.TextAt(0), "cameraIdString");
    EXPECT_EQ(camera.TextAt(8), "cameraIdExtended");
    EXPECT_EQ(camera.TextAt(16), "cameraName");
    EXPECT_EQ(camera.TextAt(24), "modelName");
    EXPECT_EQ(camera.TextAt(32), "serialString");
    EXPECT_EQ(camera.At<PxnHandle>(40), scripted::TransportLayerHandle());
    EXPECT_EQ(camera.At<PxnHandle>(48), scripted::InterfaceHandle());
    EXPECT_EQ(camera.At<PxnHandle>(56), scripted::LocalDeviceHandle());
    ASSERT_NE(camera.At<const PxnHandle*>(64), nullptr);
    EXPECT_EQ(*camera.At<const PxnHandle*>(64), scripted::StreamHandle());
    EXPECT_EQ(camera.At<std::uint32_t>(72), 1u);
    EXPECT_EQ(camera.At<std::uint32_t>(76), std::uint32_t{PxnAccessModeRead});
    EXPECT_EQ(Sdk().PxnCameraClose(handle), PxnErrSuccess);
}

TEST_F(RecordLayout, OfInterfaces) {
    Bytes<40> port;
    std::uint32_t found = 0;
    ASSERT_EQ(Sdk().PxnInterfacesList(port.As<PxnInterfaceInfo>(), 1, &found, 40), PxnErrSuccess);
    EXPECT_EQ(port.TextAt(0), "interfaceIdString");
    EXPECT_EQ(port.At<std::uint32_t>(8), std::uint32_t{PxnTransportLayerCXP});
    EXPECT_EQ(port.TextAt(16), "interfaceName");
    EXPECT_EQ(port.At<PxnHandle>(24), scripted::InterfaceHandle());
    EXPECT_EQ(port.At<PxnHandle>(32), scripted::TransportLayerHandle());
}

TEST_F(RecordLayout, OfTransportLayers) {
    Bytes<64> layer;
    std::uint32_t found = 0;
    ASSERT_EQ(Sdk().PxnTransportLayersList(layer.As<PxnTransportLayerInfo>(), 1, &found, 64),
              PxnErrSuccess);
    EXPECT_EQ(layer.TextAt(0), "transportLayerIdString");
    EXPECT_EQ(layer.TextAt(8), "transportLayerName");
    EXPECT_EQ(layer.TextAt(16), "transportLayerModelName");
    EXPECT_EQ(layer.TextAt(24), "transportLayerVendor");
    EXPECT_EQ(layer.TextAt(32), "transportLayerVersion");
    EXPECT_EQ(layer.TextAt(40), "transportLayerPath");
    EXPECT_EQ(layer.At<PxnHandle>(48), scripted::TransportLayerHandle());
    EXPECT_EQ(layer.At<std::uint32_t>(56), std::uint32_t{PxnTransportLayerPCI});
}

TEST_F(RecordLayout, OfFeatures) {
    Bytes<88> feature;
    ASSERT_EQ(
        Sdk().PxnFeatureInfoQuery(PXN_SYSTEM_HANDLE, "name", feature.As<PxnFeatureInfo>(), 88),
        PxnErrSuccess);
    EXPECT_EQ(feature.TextAt(0), "name");
    EXPECT_EQ(feature.TextAt(8), "/category");
    EXPECT_EQ(feature.TextAt(16), "displayName");
    EXPECT_EQ(feature.TextAt(24), "tooltip");
    EXPECT_EQ(feature.TextAt(32), "description");
    EXPECT_EQ(feature.TextAt(40), "sfncNamespace");
    EXPECT_EQ(feature.TextAt(48), "unit");
    EXPECT_EQ(feature.TextAt(56), "representation");
    EXPECT_EQ(feature.At<std::uint32_t>(64), std::uint32_t{PxnFeatureDataEnum});
    EXPECT_EQ(feature.At<std::uint32_t>(68), 1u | 8u);
    EXPECT_EQ(feature.At<std::uint32_t>(72), 1234u);
    EXPECT_EQ(feature.At<std::uint32_t>(76), std::uint32_t{PxnVisibilityInvisible});
    EXPECT_EQ(feature.At<std::uint8_t>(80), 1u);
    EXPECT_EQ(feature.At<std::uint8_t>(81), 0u);
    ASSERT_EQ(
        Sdk().PxnFeatureInfoQuery(PXN_SYSTEM_HANDLE, "selector", feature.As<PxnFeatureInfo>(), 88),
        PxnErrSuccess);
    EXPECT_EQ(feature.At<std::uint8_t>(80), 0u);
    EXPECT_EQ(feature.At<std::uint8_t>(81), 1u);
}

TEST_F(RecordLayout, OfEntries) {
    Bytes<48> entry;
    ASSERT_EQ(Sdk().PxnFeatureEnumEntryGet(PXN_SYSTEM_HANDLE, "name", "entryName",
                                           entry.As<PxnFeatureEnumEntry>(), 48),
              PxnErrSuccess);
    EXPECT_EQ(entry.TextAt(0), "entryName");
    EXPECT_EQ(entry.TextAt(8), "entryDisplayName");
    EXPECT_EQ(entry.TextAt(16), "entryTooltip");
    EXPECT_EQ(entry.TextAt(24), "entryDescription");
    EXPECT_EQ(entry.At<std::int64_t>(32), 0x1122334455667788);
    EXPECT_EQ(entry.At<std::uint32_t>(40), std::uint32_t{PxnVisibilityGuru});
}

TEST_F(RecordLayout, OfFrames) {
    PxnHandle camera = nullptr;
    ASSERT_EQ(Sdk().PxnCameraOpen("cameraIdString", PxnAccessModeFull, &camera), PxnErrSuccess);
    scripted::GetSdk().Edit([](scripted::Model& model) {
        model.cameras[0]["Width"].intValue = 11;
        model.cameras[0]["Height"].intValue = 22;
    });
    std::vector<unsigned char> buffer(1000);
    Bytes<112> frame;
    PxnFrame& record = *frame.As<PxnFrame>();
    const auto put = [&](std::size_t offset, auto value) {
        std::memcpy(reinterpret_cast<unsigned char*>(&record) + offset, &value, sizeof value);
    };
    put(0, static_cast<void*>(buffer.data()));
    put(8, std::uint32_t{1000});
    put(32, std::uintptr_t{7}); // the scripted SDK's index of the frame: context[2]
    const PxnFrameCallback ignore = [](PxnHandle, PxnHandle, PxnFrame*) {
    };
    ASSERT_EQ(Sdk().PxnFrameAnnounce(camera, &record, 112), PxnErrSuccess);
    ASSERT_EQ(Sdk().PxnCaptureStart(camera), PxnErrSuccess);
    ASSERT_EQ(Sdk().PxnCaptureFrameQueue(camera, &record, ignore), PxnErrSuccess);
    ASSERT_TRUE(scripted::GetSdk().Deliver(7, PxnFrameStatusTooSmall, 0x1122334455667788, 0xAB));
    EXPECT_EQ(frame.At<std::int32_t>(48), PxnFrameStatusTooSmall);
    EXPECT_EQ(frame.At<std::uint32_t>(52), 1u | 4u | 16u);
    EXPECT_EQ(frame.At<std::uint64_t>(56), 0x1122334455667788u);
    EXPECT_EQ(frame.At<std::uint32_t>(72), 0x01080001u);
    EXPECT_EQ(frame.At<std::uint32_t>(76), 11u);
    EXPECT_EQ(frame.At<std::uint32_t>(80), 22u);
    EXPECT_EQ(frame.At<std::uint32_t>(92), 1000u);
    EXPECT_EQ(frame.At<void*>(96), buffer.data());
    EXPECT_EQ(frame.At<std::uint32_t>(104), std::uint32_t{PxnPayloadImage});
    EXPECT_EQ(buffer[999], 0xAB);
    EXPECT_EQ(Sdk().PxnCameraClose(camera), PxnErrSuccess);
}

// What the scripted SDK leaves alone in a frame.
TEST(FrameLayout, OfTheRest) {
    PxnFrame frame{};
    const auto offsetOf = [&](const auto& field) {
        return reinterpret_cast<const unsigned char*>(&field) -
               reinterpret_cast<const unsigned char*>(&frame);
    };
    EXPECT_EQ(offsetOf(frame.context), 16);
    EXPECT_EQ(offsetOf(frame.timestamp), 64);
    EXPECT_EQ(offsetOf(frame.offsetX), 84);
    EXPECT_EQ(offsetOf(frame.offsetY), 88);
    EXPECT_EQ(offsetOf(frame.chunkDataPresent), 108);
}

} // namespace
} // namespace pxnc_header_tests
