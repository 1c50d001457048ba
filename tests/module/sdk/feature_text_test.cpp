// feature_text_test.cpp - whole texts out of the SDK
#include "tests/module/sdk/loaded_api.h"

namespace {

class FeatureText : public LoadedApi {
protected:
    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }
    PxnError Get(const char* name) { return api.GetFeatureAsText(camera, name, text); }

    PxnHandle camera = scripted::CameraHandle();
    std::string text = "before";
};

TEST_F(FeatureText, AsksForTheLengthAndThenForTheString) {
    EXPECT_EQ(Get("DeviceUserID"), PxnErrSuccess);
    EXPECT_EQ(text, "left");
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureStringGet(camera0, \"DeviceUserID\", null, 0)",
                                      "PxnFeatureStringGet(camera0, \"DeviceUserID\", array, 5)"}));
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(FeatureText, TakesEmptyAndLongStringsWhole) {
    Camera()["DeviceUserID"].text = "";
    EXPECT_EQ(Get("DeviceUserID"), PxnErrSuccess);
    EXPECT_EQ(text, "");
    const std::string longText(100000, 'x');
    Camera()["DeviceUserID"].text = longText;
    EXPECT_EQ(Get("DeviceUserID"), PxnErrSuccess);
    EXPECT_EQ(text, longText);
}

TEST_F(FeatureText, TakesTheEntryNameOfAnEnumeration) {
    EXPECT_EQ(Get("PixelFormat"), PxnErrSuccess);
    EXPECT_EQ(text, "Mono8");
    EXPECT_EQ(sdk.TakeCalls(), (Texts{"PxnFeatureStringGet(camera0, \"PixelFormat\", null, 0)",
                                      "PxnFeatureEnumGet(camera0, \"PixelFormat\")"}));
}

TEST_F(FeatureText, AnswersTheFirstFailure) {
    EXPECT_EQ(Get("Absent"), PxnErrNotFound);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnFeatureStringGet(camera0, \"Absent\", null, 0)"});
}

TEST_F(FeatureText, AnswersTheSecondFailure) {
    sdk.Fail("PxnFeatureStringGet", PxnErrIO, 2);
    EXPECT_EQ(Get("DeviceUserID"), PxnErrIO);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(FeatureText, OnlyTheFirstCallTellsThatTheFeatureIsAnEnumeration) {
    sdk.Fail("PxnFeatureStringGet", PxnErrWrongType, 2);
    EXPECT_EQ(Get("DeviceUserID"), PxnErrWrongType);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(sdk.TakeCalls({"PxnFeatureEnumGet"}), Texts{});
}

TEST_F(FeatureText, AnswersTheEnumerationsFailure) {
    sdk.Fail("PxnFeatureEnumGet", PxnErrInvalidAccess);
    EXPECT_EQ(Get("PixelFormat"), PxnErrInvalidAccess);
    EXPECT_EQ(text, "before");
}

TEST_F(FeatureText, TakesNoOtherType) {
    EXPECT_EQ(Get("Width"), PxnErrWrongType);
    EXPECT_EQ(text, "before");
}

TEST_F(FeatureText, AStringReadNeverTurnsToEnumerations) {
    EXPECT_EQ(api.GetStringFeature(camera, "PixelFormat", text), PxnErrWrongType);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnFeatureStringGet(camera0, \"PixelFormat\", null, 0)"});
}

TEST_F(FeatureText, ATextThatTheSdkLeftUnfilledIsEmpty) {
    api.PxnFeatureStringGet = [](PxnHandle, const char*, char*, std::uint32_t,
                                 std::uint32_t* filled) -> PxnError {
        *filled = 3;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Get("DeviceUserID"), PxnErrSuccess);
    EXPECT_EQ(text, "");
}

TEST_F(FeatureText, EndsATextThatTheSdkLeftOpen) {
    api.PxnFeatureStringGet = [](PxnHandle, const char*, char* buffer, std::uint32_t size,
                                 std::uint32_t* filled) -> PxnError {
        *filled = 3;
        for (std::uint32_t i = 0; i < size; ++i) {
            buffer[i] = 'z';
        }
        return PxnErrSuccess;
    };
    EXPECT_EQ(Get("DeviceUserID"), PxnErrSuccess);
    EXPECT_EQ(text, "zzz");
}

} // namespace
