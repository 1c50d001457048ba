// node_description_test.cpp - features of every kind, from a description made for the purpose
#include "tests/pxnc/genicam/camera_fixture.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace genicam_test {

/// Features of every kind, from a description made for the purpose.
class DescriptionTest : public CameraFixture {
protected:
    static void SetUpTestSuite() {
        StartSuite(MIVORA_SOURCE_DIR "/tests/pxnc/genicam/test_camera.xml");
    }

    void SetUp() override {
        Open();
        ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 0), PxnErrSuccess);
    }

    void ExpectAccess(const char* name, bool readable, bool writeable) const {
        PxnBool canRead = 2;
        PxnBool canWrite = 2;
        EXPECT_EQ(Sdk().FeatureAccessQuery(camera, name, &canRead, &canWrite), PxnErrSuccess);
        EXPECT_EQ(canRead != 0, readable) << name;
        EXPECT_EQ(canWrite != 0, writeable) << name;
    }
};

TEST_F(DescriptionTest, ListsFeaturesInTheirOrderUnderNestedCategories) {
    std::vector<std::string> paths;
    for (const PxnFeatureInfo& info : ListFeatures(camera)) {
        paths.push_back(std::string(info.category) + "/" + info.name);
    }
    const std::vector<std::string> expected = {
        "/DeviceControl/DeviceVendorName",
        "/DeviceControl/DeviceModelName",
        "/ImageFormatControl/Width",
        "/ImageFormatControl/Height",
        "/ImageFormatControl/OffsetX",
        "/ImageFormatControl/PixelFormat",
        "/AcquisitionControl/AcquisitionStart",
        "/AcquisitionControl/AcquisitionStop",
        "/AcquisitionControl/AcquisitionAbort",
        "/AcquisitionControl/IdleInt",
        "/AcquisitionControl/ExposureTime",
        "/TransportLayerControl/PayloadSize",
        "/TransportLayerControl/TLParamsLocked",
        "/TestControl/Flag",
        "/TestControl/Choice",
        "/TestControl/Nested/SteppedInt",
        "/TestControl/Note",
        "/TestControl/Blob",
        "/TestControl/SlowCommand",
        "/TestControl/LockedInt",
        "/TestControl/OptionalInt",
        "/TestControl/ReadOnlyInt",
        "/TestControl/WriteOnlyInt",
        "/TestControl/Bits",
        "/TestControl/PartSelector",
        "/TestControl/PartValue",
        "/TestControl/Ratio",
        "/ChunkDataControl/ChunkCounter",
        "/ChunkDataControl/ChunkKind",
        "/Root/RootInt",
    };
    EXPECT_EQ(paths, expected);
}

TEST_F(DescriptionTest, FillsTheDescriptionRecord) {
    const PxnFeatureInfo width = FindFeature(camera, "Width");
    EXPECT_STREQ(width.unit, "px");
    EXPECT_STREQ(width.representation, "Linear");
    EXPECT_STREQ(width.displayName, "Width");
    EXPECT_EQ(width.isStreamable, 1);
    const PxnFeatureInfo flag = FindFeature(camera, "Flag");
    EXPECT_STREQ(flag.displayName, "The Flag");
    EXPECT_STREQ(flag.tooltip, "A flag.");
    EXPECT_STREQ(flag.description, "Locks one feature and makes another available.");
    EXPECT_STREQ(flag.sfncNamespace, "Custom");
    EXPECT_EQ(flag.featureDataType, std::uint32_t{PxnFeatureDataBool});
    EXPECT_EQ(flag.visibility, std::uint32_t{PxnVisibilityExpert});
    const PxnFeatureInfo exposure = FindFeature(camera, "ExposureTime");
    EXPECT_EQ(exposure.featureDataType, std::uint32_t{PxnFeatureDataFloat});
    EXPECT_STREQ(exposure.unit, "us");
    EXPECT_STREQ(exposure.representation, "Logarithmic");
    EXPECT_EQ(FindFeature(camera, "Choice").visibility, std::uint32_t{PxnVisibilityGuru});
    EXPECT_EQ(FindFeature(camera, "TLParamsLocked").visibility,
              std::uint32_t{PxnVisibilityInvisible});
    EXPECT_EQ(FindFeature(camera, "Blob").featureDataType, std::uint32_t{PxnFeatureDataRaw});
    EXPECT_STREQ(FindFeature(camera, "Bits").representation, "HexNumber");
    const PxnFeatureInfo readOnly = FindFeature(camera, "ReadOnlyInt");
    EXPECT_EQ(readOnly.featureFlags, std::uint32_t{PxnFeatureFlagRead | PxnFeatureFlagVolatile});
    EXPECT_EQ(readOnly.pollingTime, 250u);
    EXPECT_EQ(FindFeature(camera, "WriteOnlyInt").featureFlags, std::uint32_t{PxnFeatureFlagWrite});
    EXPECT_EQ(FindFeature(camera, "SteppedInt").featureFlags,
              std::uint32_t{PxnFeatureFlagRead | PxnFeatureFlagWrite | PxnFeatureFlagVolatile});
}

TEST_F(DescriptionTest, KeepsToLimitsAndIncrement) {
    std::int64_t value = 0;
    std::int64_t increment = 0;
    EXPECT_EQ(Sdk().FeatureIntIncrementQuery(camera, "SteppedInt", &increment), PxnErrSuccess);
    EXPECT_EQ(increment, 5);
    for (const std::int64_t wanted : {-10, -5, 0, 85, 90}) {
        EXPECT_EQ(Sdk().FeatureIntSet(camera, "SteppedInt", wanted), PxnErrSuccess) << wanted;
        EXPECT_EQ(Sdk().FeatureIntGet(camera, "SteppedInt", &value), PxnErrSuccess);
        EXPECT_EQ(value, wanted);
    }
    for (const std::int64_t wanted : {-11, -9, 1, 86, 91, 95}) {
        EXPECT_EQ(Sdk().FeatureIntSet(camera, "SteppedInt", wanted), PxnErrInvalidValue) << wanted;
    }
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "SteppedInt", &value), PxnErrSuccess);
    EXPECT_EQ(value, 90);
    // Eight bits of a register.
    std::int64_t min = 0;
    std::int64_t max = 0;
    EXPECT_EQ(Sdk().FeatureIntRangeQuery(camera, "Bits", &min, &max), PxnErrSuccess);
    EXPECT_EQ(min, 0);
    EXPECT_EQ(max, 255);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Bits", 256), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Bits", 0xA5), PxnErrSuccess);
    unsigned char bytes[4] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(Sdk().MemoryRead(camera, 0x2044, 4, reinterpret_cast<char*>(bytes), &done),
              PxnErrSuccess);
    EXPECT_EQ(bytes[3], 0xA5);
}

TEST_F(DescriptionTest, RefusesAFloatThatIsNoNumber) {
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", std::nan("")), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", 1000001), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", 1000000), PxnErrSuccess);
    double value = 0;
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "Ratio", -0.1), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "Ratio", &value), PxnErrSuccess);
    EXPECT_EQ(value, -0.1);
}

TEST_F(DescriptionTest, FollowsAccessAsItChanges) {
    ExpectAccess("LockedInt", true, true);
    ExpectAccess("OptionalInt", false, false);
    ExpectAccess("ReadOnlyInt", true, false);
    ExpectAccess("WriteOnlyInt", false, true);
    std::int64_t value = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "OptionalInt", &value), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "WriteOnlyInt", &value), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "ReadOnlyInt", 1), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "WriteOnlyInt", 1), PxnErrSuccess);

    ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 1), PxnErrSuccess);
    ExpectAccess("LockedInt", true, false);
    ExpectAccess("OptionalInt", true, true);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "LockedInt", 1), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "OptionalInt", &value), PxnErrSuccess);
    EXPECT_EQ(value, 5);
    // What a feature could do stays as it was described.
    EXPECT_EQ(FindFeature(camera, "LockedInt").featureFlags,
              std::uint32_t{PxnFeatureFlagRead | PxnFeatureFlagWrite});
}

TEST_F(DescriptionTest, ReportsWhichEntriesAreAvailable) {
    EXPECT_EQ(EnumEntries(camera, "Choice"),
              (std::vector<std::string>{"First", "Sometimes", "Mono8"}));
    PxnBool available = 2;
    EXPECT_EQ(Sdk().FeatureEnumIsAvailable(camera, "Choice", "First", &available), PxnErrSuccess);
    EXPECT_EQ(available, 1);
    EXPECT_EQ(Sdk().FeatureEnumIsAvailable(camera, "Choice", "Sometimes", &available),
              PxnErrSuccess);
    EXPECT_EQ(available, 0);
    EXPECT_EQ(Sdk().FeatureEnumIsAvailable(camera, "Choice", "Never", &available), PxnErrSuccess);
    EXPECT_EQ(available, 0);
    EXPECT_EQ(Sdk().FeatureEnumIsAvailable(camera, "Choice", "Nothing", &available),
              PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "Choice", "Sometimes"), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "Choice", "Never"), PxnErrInvalidValue);
    ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 1), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "Choice", "Sometimes"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureBoolSet(camera, "Flag", 0), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "Choice", "Mono8"), PxnErrSuccess);
}

TEST_F(DescriptionTest, DescribesAnEntry) {
    PxnFeatureEnumEntry entry = {};
    ASSERT_EQ(Sdk().FeatureEnumEntryGet(camera, "Choice", "First", &entry, sizeof entry),
              PxnErrSuccess);
    EXPECT_STREQ(entry.name, "First");
    EXPECT_STREQ(entry.displayName, "First One");
    EXPECT_STREQ(entry.tooltip, "The first.");
    EXPECT_STREQ(entry.description, "The entry that is always there.");
    EXPECT_EQ(entry.intValue, 0);
    EXPECT_EQ(entry.visibility, std::uint32_t{PxnVisibilityExpert});
    EXPECT_EQ(Sdk().FeatureEnumEntryGet(camera, "Choice", "None", &entry, sizeof entry),
              PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureEnumEntryGet(camera, "Choice", "First", &entry, sizeof entry - 1),
              PxnErrStructSize);
    // Equal names are equal pointers, whichever feature they belong to.
    PxnFeatureEnumEntry format = {};
    ASSERT_EQ(Sdk().FeatureEnumEntryGet(camera, "Choice", "Mono8", &entry, sizeof entry),
              PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumEntryGet(camera, "PixelFormat", "Mono8", &format, sizeof format),
              PxnErrSuccess);
    EXPECT_EQ(entry.name, format.name);
    EXPECT_EQ(entry.intValue, 300);
}

TEST_F(DescriptionTest, RefusesANumberThatNoEntryStandsFor) {
    const char bytes[4] = {0, 0, 0, 77};
    std::uint32_t done = 0;
    ASSERT_EQ(Sdk().MemoryWrite(camera, 0x2024, 4, bytes, &done), PxnErrSuccess);
    const char* name = nullptr;
    EXPECT_NE(Sdk().FeatureEnumGet(camera, "Choice", &name), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "Choice", "First"), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureEnumGet(camera, "Choice", &name), PxnErrSuccess);
}

TEST_F(DescriptionTest, WritesAString) {
    EXPECT_EQ(Sdk().FeatureStringSet(camera, "Note", "Grüße"), PxnErrSuccess);
    EXPECT_EQ(GetString(camera, "Note"), "Grüße");
    EXPECT_EQ(Sdk().FeatureStringSet(camera, "Note", "exactly sixteen."), PxnErrSuccess);
    EXPECT_EQ(GetString(camera, "Note"), "exactly sixteen.");
    EXPECT_EQ(Sdk().FeatureStringSet(camera, "Note", "exactly seventeen"), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureStringSet(camera, "Note", ""), PxnErrSuccess);
    EXPECT_EQ(GetString(camera, "Note"), "");
}

TEST_F(DescriptionTest, WritesRawBytes) {
    const char written[17] = "raw\0bytes\xFF\x01\x02\x03\x04\x05";
    char read[16] = {};
    std::uint32_t size = 0;
    EXPECT_EQ(Sdk().FeatureRawLengthQuery(camera, "Blob", &size), PxnErrSuccess);
    EXPECT_EQ(size, 16u);
    EXPECT_EQ(Sdk().FeatureRawSet(camera, "Blob", written, 16), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureRawGet(camera, "Blob", read, 16, &size), PxnErrSuccess);
    EXPECT_EQ(size, 16u);
    EXPECT_EQ(std::memcmp(read, written, 16), 0);
    EXPECT_EQ(Sdk().FeatureRawGet(camera, "Blob", read, 4, &size), PxnErrMoreData);
    EXPECT_EQ(Sdk().FeatureRawSet(camera, "Blob", written, 15), PxnErrInvalidValue);
}

TEST_F(DescriptionTest, WaitsForACommandWithAPollingTime) {
    PxnBool done = 2;
    ASSERT_EQ(Sdk().FeatureCommandRun(camera, "SlowCommand"), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureCommandIsDone(camera, "SlowCommand", &done), PxnErrSuccess);
    EXPECT_EQ(done, 0);
    const char finished[4] = {};
    std::uint32_t written = 0;
    ASSERT_EQ(Sdk().MemoryWrite(camera, 0x2030, 4, finished, &written), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureCommandIsDone(camera, "SlowCommand", &done), PxnErrSuccess);
    EXPECT_EQ(done, 1);
}

TEST_F(DescriptionTest, KnowsWhatASelectorSelects) {
    EXPECT_EQ(FindFeature(camera, "PartSelector").hasSelectedFeatures, 1);
    EXPECT_EQ(FindFeature(camera, "PartValue").hasSelectedFeatures, 0);
    EXPECT_EQ(FindFeature(camera, "Choice").hasSelectedFeatures, 0);
    PxnFeatureInfo selected[2] = {};
    std::uint32_t found = 0;
    ASSERT_EQ(
        Sdk().FeatureListSelected(camera, "PartSelector", selected, 2, &found, sizeof selected[0]),
        PxnErrSuccess);
    ASSERT_EQ(found, 1u);
    EXPECT_STREQ(selected[0].name, "PartValue");
    ASSERT_EQ(Sdk().FeatureListSelected(camera, "Width", selected, 2, &found, sizeof selected[0]),
              PxnErrSuccess);
    EXPECT_EQ(found, 0u);

    std::int64_t value = 0;
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PartSelector", "Left"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "PartValue", 11), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PartSelector", "Right"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "PartValue", 22), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PartSelector", "Left"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureIntGet(camera, "PartValue", &value), PxnErrSuccess);
    EXPECT_EQ(value, 11);
}

TEST_F(DescriptionTest, LocksFeaturesWhileCapturing) {
    ExpectAccess("Width", true, true);
    ASSERT_EQ(Sdk().CaptureStart(camera), PxnErrSuccess);
    ExpectAccess("Width", true, false);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 256), PxnErrInvalidAccess);
    ASSERT_EQ(Sdk().CaptureEnd(camera), PxnErrSuccess);
    ExpectAccess("Width", true, true);
}

} // namespace genicam_test
