// feature_test.cpp - features of the fake camera's own description
#include "tests/pxnc/genicam/camera_fixture.h"
#include "tests/support/temporary_directory.h"

#include <cstdint>
#include <cstring>
#include <set>

namespace genicam_test {

/// Features as the fake camera's own description has them.
class FeatureTest : public CameraFixture {};

TEST_F(FeatureTest, ListsEveryFeatureOnceUnderItsCategory) {
    std::set<std::string> names;
    for (const PxnFeatureInfo& info : ListFeatures(camera)) {
        EXPECT_TRUE(names.insert(info.name).second) << info.name;
        EXPECT_EQ(info.category[0], '/') << info.name;
        EXPECT_NE(info.displayName, nullptr);
        EXPECT_NE(info.tooltip, nullptr);
        EXPECT_NE(info.description, nullptr);
        EXPECT_NE(info.unit, nullptr);
        EXPECT_NE(info.representation, nullptr);
    }
    const PxnFeatureInfo width = FindFeature(camera, "Width");
    EXPECT_STREQ(width.category, "/ImageFormatControl");
    EXPECT_STREQ(width.description, "Width of image, in pixels.");
    EXPECT_STREQ(width.sfncNamespace, "Standard");
    EXPECT_EQ(width.featureDataType, std::uint32_t{PxnFeatureDataInt});
    EXPECT_EQ(width.featureFlags, std::uint32_t{PxnFeatureFlagRead | PxnFeatureFlagWrite});
    EXPECT_EQ(width.visibility, std::uint32_t{PxnVisibilityBeginner});
    EXPECT_EQ(FindFeature(camera, "PixelFormat").featureDataType,
              std::uint32_t{PxnFeatureDataEnum});
    EXPECT_EQ(FindFeature(camera, "AcquisitionStart").featureDataType,
              std::uint32_t{PxnFeatureDataCommand});
    EXPECT_EQ(FindFeature(camera, "DeviceVendorName").featureDataType,
              std::uint32_t{PxnFeatureDataString});
    EXPECT_EQ(FindFeature(camera, "PayloadSize").featureFlags, std::uint32_t{PxnFeatureFlagRead});
    EXPECT_EQ(FindFeature(camera, "WidthRegister").name, nullptr);
}

TEST_F(FeatureTest, ServesTheStandardTimingNames) {
    // The description calls the one ExposureTimeAbs and hides the other from its categories.
    double value = 0;
    double min = 0;
    double max = 0;
    EXPECT_STREQ(FindFeature(camera, "ExposureTime").category, "/AcquisitionControl");
    ASSERT_EQ(Sdk().FeatureFloatRangeQuery(camera, "ExposureTime", &min, &max), PxnErrSuccess);
    EXPECT_EQ(min, 10);
    EXPECT_EQ(max, 10000000);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", 2500), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "ExposureTimeAbs", &value), PxnErrSuccess);
    EXPECT_EQ(value, 2500);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTimeAbs", 10000), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "ExposureTime", &value), PxnErrSuccess);
    EXPECT_EQ(value, 10000);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTime", 9), PxnErrInvalidValue);

    EXPECT_STREQ(FindFeature(camera, "AcquisitionFrameRate").category, "/AcquisitionControl");
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "AcquisitionFrameRate", 50), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "AcquisitionFrameRate", &value), PxnErrSuccess);
    EXPECT_DOUBLE_EQ(value, 50);
    EXPECT_EQ(Sdk().FeatureFloatSet(camera, "AcquisitionFrameRate", 25), PxnErrSuccess);
}

TEST_F(FeatureTest, ServesAnIntegerWithItsLimits) {
    std::int64_t min = 0;
    std::int64_t max = 0;
    std::int64_t increment = 0;
    std::int64_t value = 0;
    ASSERT_EQ(Sdk().FeatureIntRangeQuery(camera, "Width", &min, &max), PxnErrSuccess);
    EXPECT_EQ(min, 1);
    EXPECT_EQ(max, 2048);
    ASSERT_EQ(Sdk().FeatureIntIncrementQuery(camera, "Width", &increment), PxnErrSuccess);
    EXPECT_EQ(increment, 1);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 320), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &value), PxnErrSuccess);
    EXPECT_EQ(value, 320);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "PayloadSize", &value), PxnErrSuccess);
    EXPECT_EQ(value, 320 * 512);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 0), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 2049), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &value), PxnErrSuccess);
    EXPECT_EQ(value, 320);
    std::uint32_t size = 0;
    EXPECT_EQ(Sdk().FeatureIntValidValueSetQuery(camera, "Width", nullptr, 0, &size),
              PxnErrValidValueSetNotPresent);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "Width", 512), PxnErrSuccess);
}

TEST_F(FeatureTest, TakesAFullRangeForANumberWithoutLimits) {
    std::int64_t min = 0;
    std::int64_t max = 0;
    ASSERT_EQ(Sdk().FeatureIntRangeQuery(camera, "PayloadSize", &min, &max), PxnErrSuccess);
    EXPECT_EQ(min, INT64_MIN);
    EXPECT_EQ(max, INT64_MAX);
}

TEST_F(FeatureTest, ServesThePixelFormatByNameAndCode) {
    const std::vector<std::string> entries = EnumEntries(camera, "PixelFormat");
    EXPECT_EQ(entries, (std::vector<std::string>{"BayerBG8", "BayerGB8", "BayerGR8", "BayerRG8",
                                                 "Mono8", "RGB8", "Mono16"}));
    std::int64_t code = 0;
    EXPECT_EQ(Sdk().FeatureEnumAsInt(camera, "PixelFormat", "Mono16", &code), PxnErrSuccess);
    EXPECT_EQ(code, 0x01100007);
    const char* name = nullptr;
    EXPECT_EQ(Sdk().FeatureEnumAsString(camera, "PixelFormat", 0x0108000B, &name), PxnErrSuccess);
    EXPECT_STREQ(name, "BayerBG8");
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "Mono16"), PxnErrSuccess);
    const char* present = nullptr;
    EXPECT_EQ(Sdk().FeatureEnumGet(camera, "PixelFormat", &present), PxnErrSuccess);
    EXPECT_STREQ(present, "Mono16");
    std::uint32_t payload = 0;
    EXPECT_EQ(Sdk().PayloadSizeGet(stream, &payload), PxnErrSuccess);
    EXPECT_EQ(payload, 2u * 512 * 512);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "Mono8"), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "Mono9"), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureEnumAsInt(camera, "PixelFormat", "Mono9", &code), PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureEnumAsString(camera, "PixelFormat", 1, &name), PxnErrNotFound);
}

TEST_F(FeatureTest, SharesEnumerationNamesBetweenAllCalls) {
    const char* present = nullptr;
    const char* byCode = nullptr;
    const char* entries[16] = {};
    std::uint32_t found = 0;
    ASSERT_EQ(Sdk().FeatureEnumGet(camera, "PixelFormat", &present), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumAsString(camera, "PixelFormat", 0x01080001, &byCode), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumRangeQuery(camera, "PixelFormat", entries, 16, &found),
              PxnErrSuccess);
    EXPECT_EQ(present, byCode);
    EXPECT_EQ(present, entries[4]);
    const char* off = nullptr;
    ASSERT_EQ(Sdk().FeatureEnumGet(camera, "TriggerMode", &off), PxnErrSuccess);
    PxnFeatureEnumEntry entry = {};
    ASSERT_EQ(Sdk().FeatureEnumEntryGet(camera, "TriggerMode", "Off", &entry, sizeof entry),
              PxnErrSuccess);
    EXPECT_EQ(off, entry.name);
}

TEST_F(FeatureTest, ServesAString) {
    EXPECT_EQ(GetString(camera, "DeviceVendorName"), "Aravis");
    std::uint32_t size = 0;
    EXPECT_EQ(Sdk().FeatureStringGet(camera, "DeviceVendorName", nullptr, 0, &size), PxnErrSuccess);
    EXPECT_EQ(size, 7u);
    char buffer[4] = {};
    EXPECT_EQ(Sdk().FeatureStringGet(camera, "DeviceVendorName", buffer, 4, &size), PxnErrMoreData);
    EXPECT_EQ(size, 7u);
    EXPECT_STREQ(buffer, "Ara");
    EXPECT_EQ(Sdk().FeatureStringMaxlengthQuery(camera, "DeviceVendorName", &size), PxnErrSuccess);
    EXPECT_EQ(size, 32u);
    EXPECT_EQ(Sdk().FeatureStringSet(camera, "DeviceVendorName", "x"), PxnErrInvalidAccess);
}

TEST_F(FeatureTest, ReportsWhatIsWrongWithACall) {
    std::int64_t integer = 0;
    double real = 0;
    const char* name = nullptr;
    std::uint32_t size = 0;
    PxnBool flag = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "NoSuchFeature", &integer), PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "NoSuchFeature", 1), PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureCommandIsDone(camera, "NoSuchFeature", &flag), PxnErrNotFound);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "PixelFormat", &integer), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "Width", &real), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureEnumGet(camera, "Width", &name), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureStringGet(camera, "PixelFormat", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureBoolGet(camera, "Width", &flag), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureCommandRun(camera, "Width"), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureRawGet(camera, "Width", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureIntValidValueSetQuery(camera, "PixelFormat", nullptr, 0, &size),
              PxnErrWrongType);
    EXPECT_EQ(Sdk().FeatureIntSet(camera, "PayloadSize", 1), PxnErrInvalidAccess);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, nullptr, &integer), PxnErrBadParameter);
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", nullptr), PxnErrBadParameter);
    EXPECT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", nullptr), PxnErrBadParameter);
}

TEST_F(FeatureTest, RunsACommandThatIsDoneAtOnce) {
    PxnBool done = 0;
    EXPECT_EQ(Sdk().FeatureCommandRun(camera, "AcquisitionStop"), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureCommandIsDone(camera, "AcquisitionStop", &done), PxnErrSuccess);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(Sdk().FeatureCommandRun(stream, "GVSPAdjustPacketSize"), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureCommandIsDone(stream, "GVSPAdjustPacketSize", &done), PxnErrSuccess);
    EXPECT_EQ(done, 1);
}

TEST_F(FeatureTest, SetsThePacketSizeOfTheStream) {
    std::int64_t before = 0;
    std::int64_t value = 0;
    ASSERT_EQ(Sdk().FeatureIntGet(stream, "GVSPPacketSize", &before), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureIntSet(stream, "GVSPPacketSize", 4000), PxnErrSuccess);
    EXPECT_EQ(Sdk().FeatureIntGet(stream, "GVSPPacketSize", &value), PxnErrSuccess);
    EXPECT_EQ(value, 4000);
    EXPECT_EQ(Sdk().FeatureIntSet(stream, "GVSPPacketSize", 100), PxnErrInvalidValue);
    EXPECT_EQ(Sdk().FeatureIntSet(stream, "GVSPPacketSize", before), PxnErrSuccess);
}

TEST_F(FeatureTest, SavesAndLoadsSettings) {
    const support::TemporaryDirectory directory;
    const std::string file = directory.PathOf("settings.xml");
    std::wstring path(file.begin(), file.end());
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 640), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "RGB8"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTimeAbs", 777), PxnErrSuccess);
    ASSERT_EQ(Sdk().SettingsSave(camera, path.c_str(), nullptr, 0), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 512), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "Mono8"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTimeAbs", 10000), PxnErrSuccess);

    ASSERT_EQ(Sdk().SettingsLoad(camera, path.c_str(), nullptr, 0), PxnErrSuccess);
    std::int64_t width = 0;
    const char* format = nullptr;
    double exposure = 0;
    EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &width), PxnErrSuccess);
    EXPECT_EQ(width, 640);
    EXPECT_EQ(Sdk().FeatureEnumGet(camera, "PixelFormat", &format), PxnErrSuccess);
    EXPECT_STREQ(format, "RGB8");
    EXPECT_EQ(Sdk().FeatureFloatGet(camera, "ExposureTimeAbs", &exposure), PxnErrSuccess);
    EXPECT_EQ(exposure, 777);

    // Loaded completely or not at all.
    for (const char* refused :
         {"<feature name=\"Nobody\" value=\"1\"/>", "<feature name=\"Height\" value=\"x\"/>",
          "<feature name=\"Height\" value=\"0\"/>"}) {
        directory.Write("settings.xml",
                        std::string("<PxnSettings><feature name=\"Width\" value=\"512\"/>") +
                            refused +
                            "<feature name=\"PixelFormat\" value=\"Mono8\"/></PxnSettings>");
        EXPECT_EQ(Sdk().SettingsLoad(camera, path.c_str(), nullptr, 0), PxnErrInvalidValue);
        EXPECT_EQ(Sdk().FeatureIntGet(camera, "Width", &width), PxnErrSuccess);
        EXPECT_EQ(width, 640) << refused;
        EXPECT_EQ(Sdk().FeatureEnumGet(camera, "PixelFormat", &format), PxnErrSuccess);
        EXPECT_STREQ(format, "RGB8") << refused;
    }
    ASSERT_EQ(Sdk().FeatureIntSet(camera, "Width", 512), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureEnumSet(camera, "PixelFormat", "Mono8"), PxnErrSuccess);
    ASSERT_EQ(Sdk().FeatureFloatSet(camera, "ExposureTimeAbs", 10000), PxnErrSuccess);
}

TEST_F(FeatureTest, RefusesFilesThatAreNoSettings) {
    const support::TemporaryDirectory directory;
    const auto load = [&](const char* name) {
        const std::string file = directory.PathOf(name);
        const std::wstring path(file.begin(), file.end());
        return Sdk().SettingsLoad(camera, path.c_str(), nullptr, 0);
    };
    directory.Write("other.xml", "<Something/>");
    directory.Write("broken.xml",
                    "<PxnSettings><feature name=\"Width\" value=\"1\"></PxnSettings>");
    directory.Write("nameless.xml", "<PxnSettings><feature value=\"1\"/></PxnSettings>");
    EXPECT_EQ(load("none.xml"), PxnErrNotFound);
    EXPECT_EQ(load("other.xml"), PxnErrXml);
    EXPECT_EQ(load("broken.xml"), PxnErrXml);
    EXPECT_EQ(load("nameless.xml"), PxnErrXml);
    EXPECT_EQ(Sdk().SettingsLoad(camera, nullptr, nullptr, 0), PxnErrBadParameter);
    EXPECT_EQ(Sdk().SettingsSave(camera, L"/nowhere/at/all.xml", nullptr, 0), PxnErrIO);
    EXPECT_EQ(Sdk().SettingsSave(camera, L"x.xml", nullptr, 5), PxnErrBadParameter);
    EXPECT_EQ(Sdk().SettingsSave(camera, L"x.xml", &directory, 5), PxnErrStructSize);
}

} // namespace genicam_test
