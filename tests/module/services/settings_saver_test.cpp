// settings_saver_test.cpp - collecting the settings of the open camera
#include "services/settings_saver.h"

#include "tests/module/services/settings_fixture.h"

using namespace pyxen;

namespace {

using SettingsSaverTest = SettingsServiceTest;

TEST_F(SettingsSaverTest, SavesThePositionsThatASelectorHas) {
    scripted::Feature state = scripted::BoolFeature("State", true);
    state.selected = {"Width", ""};
    Camera().Put(state);
    scripted::Feature index = scripted::IntFeature("Index", 3, 9, 0); // its limits are exchanged
    index.selected = {"ReverseX"};
    Camera().Put(index);
    Camera()["GainSelector"].entries[2].available = true;
    Open();
    sdk.Fail("PxnFeatureEnumIsAvailable", PxnErrIO, 3);
    sdk.FailAlways("PxnFeatureIntIncrementQuery", PxnErrIO);
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.CountFailed(), 1u);
    EXPECT_TRUE(File().got.Find("Camera/Width[State=false]"));
    EXPECT_TRUE(File().got.Find("Camera/Width[State=true]"));
    EXPECT_EQ(File().got.Find("Camera/ReverseX[Index=9]")->result, MV_SERVICE_OUT_OF_RANGE);
    EXPECT_TRUE(File().got.Find("Camera/Gain[GainSelector=Red]"));
    EXPECT_FALSE(File().got.Find("Camera/Gain[GainSelector=Blue]"));
    EXPECT_TRUE(Camera()["State"].boolValue);
    EXPECT_EQ(Camera()["Index"].intValue, 3);
}

TEST_F(SettingsSaverTest, SavesTheFirstOfTooManyPositions) {
    for (const char* const name : {"Row", "Column"}) {
        scripted::Feature selector = scripted::IntFeature(name, 0, 0, 99);
        selector.selected = {"Width"};
        Camera().Put(selector);
    }
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.CountFailed(), 1u);
    EXPECT_EQ(File().got.Find("Camera/Width[Row=40, Column=95]")->result, MV_SERVICE_OK);
    EXPECT_EQ(File().got.Find("Camera/Width[Row=40, Column=96]")->result, MV_SERVICE_NOT_SUPPORTED);
}

TEST_F(SettingsSaverTest, ReportsWhatTheSdkFailsToSay) {
    Camera()["GainSelector"].readable = false;
    Camera().Put(scripted::IntFeature("DeviceVendorName", 1, 0, 1));
    Camera().features.push_back(*Camera().Find("Width"));
    Open();
    sdk.FailFeature(scripted::CameraHandle(), "DeviceUserID", "PxnFeatureAccessQuery", PxnErrIO);
    sdk.Fail("PxnCameraInfoQueryByHandle", PxnErrIO);
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.Find("Camera/Gain")->result, MV_SERVICE_NO_ACCESS);
    EXPECT_EQ(File().got.Find("Camera/DeviceUserID")->result, MV_SERVICE_SDK_FAILED);
    EXPECT_EQ(File().got.all.size(), 4u) << "a feature that is listed twice counts once";
    EXPECT_NE(ReadText(File().Path()).find("{\"vendor\": \"\", \"model\": \"\""),
              std::string::npos);
    for (const uint32_t flags : {0u, uint32_t{kMvSettingsDryRun}}) {
        EXPECT_EQ(
            File().Load(OneSetting("Gain", "float", "2", "{\"GainSelector\": \"Red\"}"), flags),
            MV_SERVICE_INCOMPLETE);
        EXPECT_EQ(File().got.all[0].result, MV_SERVICE_NO_ACCESS);
    }
    // What cannot be used itself is not missed.
    Camera()["Gain"].writeable = false;
    sdk.ClearFailures();
    EXPECT_EQ(File().Save(), MV_SERVICE_OK) << File().reason.text;
}

// Such a file could not be read again.
TEST_F(SettingsSaverTest, SavesNoNamesThatAreNoTexts) {
    Camera().Put(Streamed(scripted::IntFeature("Odd\xFF", 1, 0, 1)));
    Camera()["GainSelector"].entries.push_back({"\xFC", 3});
    scripted::Feature selector = scripted::IntFeature("Bank\xFF", 1, 0, 1);
    selector.selected = {"Width"};
    Camera().Put(selector);
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.CountFailed(), 4u) << "the name, the entry, and two positions";
    EXPECT_EQ(File().got.Find("Camera/Odd\xFF")->result, MV_SERVICE_NOT_SUPPORTED);
    EXPECT_EQ(File().Load(), MV_SERVICE_OK) << File().reason.text;
}

TEST_F(SettingsSaverTest, StopsWhereTheCameraGoesBetweenTwoPositions) {
    Open();
    sdk.FailFeature(scripted::CameraHandle(), "GainSelector", "PxnFeatureEnumSet", PxnErrBadHandle);
    EXPECT_EQ(File().Save(), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(File().got.Find("Camera/Gain[GainSelector=Red]")->result, MV_SERVICE_NO_CAMERA);
}

TEST_F(SettingsSaverTest, RefusesFilesThatAreTooLargeOrNone) {
    Camera().Put(
        Streamed(scripted::StringFeature("Blob", std::string(kMostSettingsBytes, 'x'), 1u << 30)));
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_FILE_FAILED);
    EXPECT_NE(std::string(File().reason.text).find("the settings take more than 4194304 bytes"),
              std::string::npos);
    SettingsCalls none(Services(), directory.Path());
    EXPECT_EQ(none.Load(), MV_SERVICE_FILE_FAILED);
}

} // namespace
