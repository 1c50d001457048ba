// range_checks_test.cpp - whether a value fits a feature
#include "tests/module/sdk/loaded_api.h"

#include <cmath>
#include <limits>

namespace {

class RangeChecks : public LoadedApi {
protected:
    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }

    PxnHandle camera = scripted::CameraHandle();
};

TEST_F(RangeChecks, IntegerLimitsAreInclusive) {
    Camera().Put(scripted::IntFeature("Gain", 0, -5, 12));
    for (const std::int64_t value : {-5, 0, 12}) {
        EXPECT_TRUE(api.IsIntInRange(camera, "Camera", "Gain", value)) << value;
    }
    EXPECT_FALSE(api.IsIntInRange(camera, "Camera", "Gain", -6));
    EXPECT_FALSE(api.IsIntInRange(camera, "Camera", "Gain", 13));
    EXPECT_FALSE(
        api.IsIntInRange(camera, "Camera", "Gain", std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(sdk.TakeCalls().front(), "PxnFeatureIntRangeQuery(camera0, \"Gain\")");
}

TEST_F(RangeChecks, FloatLimitsAreInclusive) {
    Camera().Put(scripted::FloatFeature("Gain", 0, -0.5, 1.25));
    for (const double value : {-0.5, 0.0, 1.25}) {
        EXPECT_TRUE(api.IsFloatInRange(camera, "Camera", "Gain", value)) << value;
    }
    EXPECT_FALSE(api.IsFloatInRange(camera, "Camera", "Gain", std::nextafter(1.25, 2)));
    EXPECT_FALSE(api.IsFloatInRange(camera, "Camera", "Gain", std::nextafter(-0.5, -1)));
    EXPECT_FALSE(
        api.IsFloatInRange(camera, "Camera", "Gain", std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(RangeChecks, AStringMayBeAsLongAsItsMaximum) {
    Camera()["DeviceUserID"].maxLength = 4;
    EXPECT_TRUE(api.IsStringInRange(camera, "Camera", "DeviceUserID", ""));
    EXPECT_TRUE(api.IsStringInRange(camera, "Camera", "DeviceUserID", "abcd"));
    EXPECT_FALSE(api.IsStringInRange(camera, "Camera", "DeviceUserID", "abcde"));
    EXPECT_EQ(sdk.TakeCalls().front(), "PxnFeatureStringMaxlengthQuery(camera0, \"DeviceUserID\")");
}

TEST_F(RangeChecks, AnEnumerationTakesTheTextOfAnEntry) {
    const std::string copy = "Mono10";
    EXPECT_TRUE(api.IsEnumInRange(camera, "Camera", "PixelFormat", copy.c_str()));
    EXPECT_TRUE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "YUV422_8"));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "mono10"));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono1"));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", ""));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(RangeChecks, AnEnumerationWithoutEntriesTakesNothing) {
    Camera()["PixelFormat"].entries.clear();
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono8"));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(RangeChecks, EveryFailedQueryIsReportedWithTheNames) {
    EXPECT_FALSE(api.IsIntInRange(camera, "Camera", "PixelFormat", 1));
    EXPECT_FALSE(api.IsFloatInRange(camera, "Camera", "Width", 1));
    EXPECT_FALSE(api.IsStringInRange(camera, "Camera", "Width", ""));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "Width", ""));
    const std::string prefix = "0 CMivoraKVNPyxenClass::SyncFeature: Cannot query ";
    const std::string suffix = ": The feature type for this access function was wrong";
    EXPECT_EQ(sink.Lines(), (Texts{prefix + "range of int64 feature Camera::PixelFormat" + suffix,
                                   prefix + "range of int64 feature Camera::Width" + suffix,
                                   prefix + "max length of string-feature Camera::Width" + suffix,
                                   prefix + "range of enum feature Camera::Width" + suffix}));
}

TEST_F(RangeChecks, AnAbsentModuleNameIsUnknown) {
    EXPECT_FALSE(api.IsIntInRange(camera, nullptr, "Absent", 1));
    EXPECT_EQ(sink.Lines(),
              Texts{"0 CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature "
                    "unknown::Absent: The designated instance (camera, feature etc.) cannot be "
                    "found"});
}

TEST_F(RangeChecks, AFailedListOfEntriesIsReported) {
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrIO, 2);
    EXPECT_FALSE(api.IsEnumInRange(camera, "Stream0", "PixelFormat", "Mono8"));
    EXPECT_EQ(sink.Lines(),
              Texts{"0 CMivoraKVNPyxenClass::SyncFeature: Cannot query range of enum feature "
                    "Stream0::PixelFormat: Low level IO error in transport layer"});
}

TEST_F(RangeChecks, AnEntryMayLackItsName) {
    api.PxnFeatureEnumRangeQuery = [](PxnHandle, const char*, const char** entries, std::uint32_t,
                                      std::uint32_t* found) -> PxnError {
        *found = 2;
        if (entries) {
            entries[0] = nullptr;
            entries[1] = "Mono8";
        }
        return PxnErrSuccess;
    };
    EXPECT_TRUE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono8"));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono10"));
}

TEST_F(RangeChecks, AnEntryListThatShrinksMeanwhileIsReadNoFurther) {
    sdk.Data().foundAnswers["PxnFeatureEnumRangeQuery"] = {9, 1};
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono10"));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(RangeChecks, AnEntryListOfAnotherLengthThanAskedForIsReadNoFurther) {
    api.PxnFeatureEnumRangeQuery = [](PxnHandle, const char*, const char** entries, std::uint32_t,
                                      std::uint32_t* found) -> PxnError {
        *found = entries ? 0xFFFFFFFF : 1;
        if (entries) {
            entries[0] = "Mono8";
        }
        return PxnErrSuccess;
    };
    EXPECT_TRUE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono8"));
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono10"));
}

TEST_F(RangeChecks, ACountOfEntriesThatFailsOnceIsNotAskedForAgain) {
    sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrIO);
    EXPECT_FALSE(api.IsEnumInRange(camera, "Camera", "PixelFormat", "Mono8"));
    EXPECT_EQ(sdk.Calls().size(), 1u);
    EXPECT_EQ(sink.Lines().size(), 1u);
}

TEST_F(RangeChecks, AnswerWithoutSink) {
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    EXPECT_FALSE(api.IsIntInRange(camera, "Camera", "Absent", 1));
    EXPECT_TRUE(api.IsIntInRange(camera, "Camera", "Width", 640));
}

} // namespace
