// settings_service_test.cpp - saving and loading the settings of a camera
#include "services/settings_file.h"
#include "tests/module/services/settings_fixture.h"
#include "tests/module/simulator_grabber_fixture.h"

#include <optional>

using namespace pyxen;

namespace {

// ---- with the scripted SDK ----

TEST_F(SettingsServiceTest, SavesWhatIsStreamableAndCanBeWritten) {
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_OK);
    EXPECT_STREQ(File().reason.text, "");
    EXPECT_EQ(ReadText(File().Path()), R"({
  "format": "Mivora settings",
  "version": 1,
  "camera": {"vendor": "", "model": "Model A", "serial": "0001", "id": "cam-ext-1"},
  "settings": [
    {"module": "Camera", "feature": "Width", "type": "integer", "value": 640},
    {"module": "Camera", "feature": "DeviceUserID", "type": "string", "value": "left"},
    {"module": "Camera", "feature": "ReverseX", "type": "boolean", "value": false},
    {"module": "Camera", "feature": "Gain", "selectors": {"GainSelector": "All"}, "type": "float", "value": 1.5},
    {"module": "Camera", "feature": "Gain", "selectors": {"GainSelector": "Red"}, "type": "float", "value": 1.5}
  ]
}
)");
    ASSERT_EQ(File().got.all.size(), 5u);
    const ReceivedSetting& red = File().got.all[4];
    EXPECT_EQ(red.path, "Camera/Gain[GainSelector=Red]");
    EXPECT_EQ(red.value, "1.5");
    EXPECT_EQ(red.present, "1.5");
    EXPECT_EQ(Camera()["GainSelector"].text, "All");
}

TEST_F(SettingsServiceTest, SavesWhatCanBeWrittenOfACameraThatMarksNothing) {
    for (const char* const name : {"Width", "DeviceUserID", "ReverseX", "PayloadSize", "Gain"}) {
        Camera()[name].isStreamable = false;
    }
    scripted::Feature packet = scripted::IntFeature("PacketSize", 1500, 100, 9000);
    packet.category = "/TransportLayerControl/GigEVision";
    Camera().Put(packet);
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_OK);
    EXPECT_TRUE(File().got.Find("Camera/Width"));
    EXPECT_TRUE(File().got.Find("Camera/Gain[GainSelector=Red]"));
    EXPECT_FALSE(File().got.Find("Camera/PayloadSize"));
    EXPECT_FALSE(File().got.Find("Camera/PacketSize"));
    for (const ReceivedSetting& one : File().got.all) {
        EXPECT_TRUE(one.path.starts_with("Camera/")) << one.path;
    }
}

TEST_F(SettingsServiceTest, MovesSelectorsBackAfterAFailure) {
    Open();
    sdk.Fail("PxnFeatureFloatGet", PxnErrIO, 2);
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_STREQ(File().reason.text, "1 of 5 settings failed, such as Camera/Gain: Low level IO "
                                     "error in transport layer (-20)");
    EXPECT_EQ(Camera()["GainSelector"].text, "All");
    EXPECT_EQ(File().got.CountFailed(), 1u);
    EXPECT_EQ(File().got.Find("Camera/Gain[GainSelector=Red]")->result, MV_SERVICE_SDK_FAILED);
    // The others are in the file.
    SettingsFile file;
    std::string error;
    EXPECT_TRUE(ReadSettingsText(ReadText(File().Path()), file, error)) << error;
    EXPECT_EQ(file.settings.size(), 4u);
}

TEST_F(SettingsServiceTest, SaysWhichSelectorCannotBeMovedBack) {
    Open();
    sdk.Fail("PxnFeatureEnumSet", PxnErrIO, 2);
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_NE(std::string(File().reason.text).find("Camera/GainSelector: All"), std::string::npos)
        << File().reason.text;
    EXPECT_NE(std::string(File().reason.text).find("cannot be moved back to All"),
              std::string::npos);
}

TEST_F(SettingsServiceTest, SavesThePositionOfASelectorThatIsLocked) {
    Camera()["GainSelector"].writeable = false;
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_OK);
    EXPECT_NE(File().got.Find("Camera/Gain[GainSelector=All]"), nullptr);
    EXPECT_EQ(File().got.Find("Camera/Gain[GainSelector=Red]"), nullptr);
}

TEST_F(SettingsServiceTest, SavesNestedSelectorsWithinBounds) {
    scripted::Feature outer = scripted::IntFeature("Bank", 1, 0, 4, 2);
    outer.selected = {"GainSelector"};
    Camera().Put(outer);
    scripted::Feature endless = scripted::IntFeature("Index", 5, INT64_MIN, INT64_MAX);
    endless.selected = {"Width"};
    Camera().Put(endless);
    // A circle of selectors is no reason not to end.
    Camera()["GainSelector"].selected = {"Gain", "Bank"};
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_NE(File().got.Find("Camera/Gain[Bank=4, GainSelector=Red]"), nullptr);
    EXPECT_EQ(File().got.CountFailed(), 1u);
    EXPECT_EQ(File().got.Find("Camera/Width")->result, MV_SERVICE_NOT_SUPPORTED);
    EXPECT_EQ(Camera()["Bank"].intValue, 1);
    EXPECT_EQ(Camera()["Index"].intValue, 5);
}

TEST_F(SettingsServiceTest, LeavesTheFileWhenTheCameraGoes) {
    Open();
    File().WriteWhole("former");
    sdk.FailAlways("PxnFeatureIntGet", PxnErrBadHandle);
    EXPECT_EQ(File().Save(), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(ReadText(File().Path()), "former");
}

TEST_F(SettingsServiceTest, ReportsWhatAFileCannotHold) {
    Camera()["DeviceUserID"].text = "\xFF";
    Open();
    EXPECT_EQ(File().Save(), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.Find("Camera/DeviceUserID")->result, MV_SERVICE_NOT_SUPPORTED);
}

TEST_F(SettingsServiceTest, ReportsAFileThatCannotBeWritten) {
    Open();
    SettingsCalls nowhere(Services(), directory.PathOf("absent/camera.json"));
    EXPECT_EQ(nowhere.Save(), MV_SERVICE_FILE_FAILED);
    EXPECT_EQ(nowhere.Load(), MV_SERVICE_FILE_FAILED);
    EXPECT_NE(std::string(nowhere.reason.text), "");
}

TEST_F(SettingsServiceTest, WantsACameraAndArguments) {
    EXPECT_EQ(Services().SaveSettings(nullptr, nullptr, nullptr, nullptr), MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(Services().LoadSettings(nullptr, 0, nullptr, nullptr, nullptr),
              MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(File().Save(), MV_SERVICE_NOT_INITIALISED);
    EXPECT_EQ(File().Load(""), MV_SERVICE_NOT_INITIALISED);
    EXPECT_EQ(File().Load("", 2), MV_SERVICE_BAD_ARGUMENT);
    Init();
    EXPECT_EQ(File().Save(), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(File().Load(""), MV_SERVICE_NO_CAMERA);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    // No receiver is needed.
    EXPECT_EQ(Services().SaveSettings(File().Path().c_str(), nullptr, nullptr, nullptr),
              MV_SERVICE_OK);
    EXPECT_EQ(Services().LoadSettings(File().Path().c_str(), 0, nullptr, nullptr, nullptr),
              MV_SERVICE_OK);
}

TEST_F(SettingsServiceTest, WritesOnlyWhatTheCameraDoesNotHave) {
    Open();
    ASSERT_EQ(File().Save(), MV_SERVICE_OK);
    Camera()["Width"].intValue = 320;
    Camera()["DeviceUserID"].text = "right";
    Forget();
    EXPECT_EQ(File().Load(), MV_SERVICE_OK);
    EXPECT_EQ(Writes(), (Texts{"PxnFeatureIntSet(camera0, \"Width\", 640)",
                               "PxnFeatureStringSet(camera0, \"DeviceUserID\", \"left\")",
                               "PxnFeatureEnumSet(camera0, \"GainSelector\", \"Red\")",
                               "PxnFeatureEnumSet(camera0, \"GainSelector\", \"All\")",
                               "PxnFeatureEnumSet(camera0, \"GainSelector\", \"Red\")",
                               "PxnFeatureEnumSet(camera0, \"GainSelector\", \"All\")"}))
        << "once to write, once to look whether it has stayed";
    EXPECT_EQ(File().got.Find("Camera/Width")->present, "320");
    EXPECT_EQ(File().got.Find("Camera/Width")->value, "640");
    EXPECT_EQ(File().got.Find("Camera/ReverseX")->present, "false");
}

TEST_F(SettingsServiceTest, WritesNothingInADryRun) {
    Open();
    const std::string settings =
        OneSetting("Width", "integer", "320") + "," + OneSetting("Height", "integer", "7") + "," +
        OneSetting("Gain", "float", "3", "{\"GainSelector\": \"Red\"}") + "," +
        OneSetting("Gain", "float", "30", "{\"GainSelector\": \"All\"}") + "," +
        OneSetting("Gain", "float", "1.5", "{\"GainSelector\": \"Blue\"}");
    EXPECT_EQ(File().Load(settings, kMvSettingsDryRun), MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(Writes(), Texts{});
    ASSERT_EQ(File().got.all.size(), 5u);
    EXPECT_EQ(File().got.all[0].result, MV_SERVICE_OK);
    EXPECT_EQ(File().got.all[0].present, "640");
    EXPECT_EQ(File().got.all[2].result, MV_SERVICE_OK) << "its position is not looked at";
    EXPECT_EQ(File().got.all[2].present, "");
    EXPECT_EQ(File().got.all[3].result, MV_SERVICE_OUT_OF_RANGE);
    EXPECT_EQ(File().got.all[4].result, MV_SERVICE_OUT_OF_RANGE) << "no such position at present";
    EXPECT_EQ(Camera()["Width"].intValue, 640);
}

TEST_F(SettingsServiceTest, ReportsEachSettingThatIsNotTaken) {
    Open();
    EXPECT_EQ(File().Load(OneSetting("Absent", "integer", "1") + "," +
                          "{\"module\": \"Stream7\", \"feature\": \"Width\", \"type\": "
                          "\"integer\", \"value\": 1}," +
                          "{\"module\": \"System\", \"feature\": \"EventCameraDiscovery\", "
                          "\"type\": \"integer\", \"value\": 1}," +
                          OneSetting("Width", "float", "320") + "," +
                          OneSetting("ReverseX", "boolean", "true", "{\"GainSelector\": \"Red\"}") +
                          "," + OneSetting("PayloadSize", "integer", "5") + "," +
                          OneSetting("Height", "integer", "100000") + "," +
                          OneSetting("OffsetX", "integer", "32") + "," +
                          OneSetting("Gain", "float", "2", "{\"GainSelector\": \"Green\"}")),
              MV_SERVICE_INCOMPLETE);
    std::vector<int32_t> results;
    for (const ReceivedSetting& setting : File().got.all) {
        results.push_back(setting.result);
        EXPECT_EQ(setting.reason.empty(), setting.result == MV_SERVICE_OK) << setting.path;
    }
    EXPECT_EQ(results, (std::vector<int32_t>{
                           MV_SERVICE_NOT_FOUND, MV_SERVICE_NOT_FOUND, MV_SERVICE_NOT_FOUND,
                           MV_SERVICE_WRONG_TYPE, MV_SERVICE_NOT_FOUND, MV_SERVICE_NO_ACCESS,
                           MV_SERVICE_OUT_OF_RANGE, MV_SERVICE_OK, MV_SERVICE_OUT_OF_RANGE}));
    EXPECT_EQ(Camera()["OffsetX"].intValue, 32);
    EXPECT_EQ(Camera()["GainSelector"].text, "All");
}

TEST_F(SettingsServiceTest, WritesNothingOfAFileThatIsNotWhole) {
    Open();
    File().WriteWhole(SettingsText(OneSetting("Width", "integer", "320") + ",\n" +
                                   OneSetting("Height", "integer", "\"x\"")));
    EXPECT_EQ(File().Load(), MV_SERVICE_FILE_FAILED);
    EXPECT_NE(std::string(File().reason.text).find("camera.json: line 4, column 88: "),
              std::string::npos)
        << File().reason.text;
    File().WriteWhole(std::string(kMostSettingsBytes + 1, ' '));
    EXPECT_EQ(File().Load(), MV_SERVICE_FILE_FAILED);
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_TRUE(File().got.all.empty());
}

TEST_F(SettingsServiceTest, TriesAgainWhatWasRefusedWhileOthersAreTaken) {
    Open();
    Camera()["OffsetX"].intMax = 0;
    sdk.OnCall("PxnFeatureIntSet", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0]["OffsetX"].intMax = 1000; });
    });
    EXPECT_EQ(File().Load(OneSetting("OffsetX", "integer", "32") + "," +
                          OneSetting("Width", "integer", "320")),
              MV_SERVICE_OK);
    EXPECT_EQ(Camera()["OffsetX"].intValue, 32);
}

TEST_F(SettingsServiceTest, WritesAnewWhatAnotherSettingHasChanged) {
    Open();
    sdk.OnCall("PxnFeatureBoolSet", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0]["Width"].intValue = 96; });
    });
    EXPECT_EQ(File().Load(OneSetting("Width", "integer", "320") + "," +
                          OneSetting("ReverseX", "boolean", "true")),
              MV_SERVICE_OK);
    EXPECT_EQ(Camera()["Width"].intValue, 320);
    EXPECT_EQ(File().got.all[0].present, "640");
}

TEST_F(SettingsServiceTest, EndsWhereTwoSettingsChangeEachOther) {
    Open();
    sdk.OnCall("PxnFeatureBoolSet", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0]["Width"].intValue = 96; });
    });
    sdk.OnCall("PxnFeatureIntSet", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0]["ReverseX"].boolValue = false; });
    });
    EXPECT_EQ(File().Load(OneSetting("Width", "integer", "320") + "," +
                          OneSetting("ReverseX", "boolean", "true")),
              MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(File().got.CountFailed(), 1u);
    const bool isFirst = File().got.all[0].result != MV_SERVICE_OK;
    const ReceivedSetting& changed = File().got.all[isFirst ? 0 : 1];
    EXPECT_EQ(changed.result, MV_SERVICE_REFUSED);
    EXPECT_NE(changed.reason.find("another setting has changed it to"), std::string::npos);
}

TEST_F(SettingsServiceTest, LoadsWhatIsNotLookedAtAgain) {
    Camera()["Width"].flags |= PxnFeatureFlagVolatile;
    Open();
    sdk.OnCall("PxnFeatureBoolSet", [&] {
        sdk.Edit([](scripted::Model& model) { model.cameras[0]["Width"].intValue = 96; });
    });
    EXPECT_EQ(File().Load(OneSetting("Width", "integer", "320") + "," +
                          OneSetting("ReverseX", "boolean", "true") + "," +
                          OneSetting("Gain", "float", "2", "{\"GainSelector\": 1}")),
              MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(Camera()["Width"].intValue, 96) << "it changes by itself";
    EXPECT_EQ(File().got.all[2].result, MV_SERVICE_WRONG_TYPE);
    // What cannot be read is written, and cannot have been changed.
    sdk.FailFeature(scripted::CameraHandle(), "DeviceUserID", "PxnFeatureStringGet",
                    PxnErrInvalidAccess);
    EXPECT_EQ(File().Load(OneSetting("DeviceUserID", "string", "\"right\"")), MV_SERVICE_OK);
    EXPECT_EQ(File().got.all[0].present, "");
    EXPECT_EQ(Camera()["DeviceUserID"].text, "right");
}

TEST_F(SettingsServiceTest, StopsWhenTheCameraGoes) {
    Open();
    sdk.FailAlways("PxnFeatureIntSet", PxnErrBadHandle);
    EXPECT_EQ(File().Load(OneSetting("Width", "integer", "320") + "," +
                          OneSetting("ReverseX", "boolean", "true")),
              MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(File().got.all[0].result, MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(File().got.all[1].result, MV_SERVICE_NO_CAMERA);
    EXPECT_FALSE(Camera()["ReverseX"].boolValue);
}

// ---- with cameras of the simulator ----

class SettingsOnSimulator : public SimulatorGrabberFixture {
protected:
    std::string Configuration() const override {
        return "<PxnC><camera id=\"A\" sensorWidth=\"640\" sensorHeight=\"480\"/><camera "
               "id=\"B\" kind=\"usb\" sensorWidth=\"1280\" sensorHeight=\"1024\"/></PxnC>";
    }
    void SetUp() override {
        SimulatorGrabberFixture::SetUp();
        file.emplace(grabber->Services(), files.PathOf("saved.json"));
    }
    MV_SERVICE_RESULT Write(const char* feature, const MV_FEATURE_VALUE& value) {
        return grabber->Services().WriteFeature("Camera", feature, &value, nullptr, nullptr,
                                                nullptr);
    }
    std::string Read(const char* feature) {
        std::string read;
        ReceiverOf<const MV_FEATURE_VALUE*> receiver{[&](const MV_FEATURE_VALUE* value) {
            read = value->type == MV_FEATURE_ENUMERATION ? value->text
                   : value->type == MV_FEATURE_FLOAT     ? std::to_string(value->real)
                                                         : std::to_string(value->integer);
        }};
        grabber->Services().ReadFeature("Camera", feature, receiver.Receive, &receiver, nullptr);
        return read;
    }
    void UseCamera(uint32_t index) {
        ASSERT_EQ(grabber->CloseActCamera(), MV_OK);
        ASSERT_EQ(grabber->SetActCameraIndex(static_cast<int32_t>(index)), MV_OK);
        ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
    }

    const support::TemporaryDirectory files;
    std::optional<SettingsCalls> file;
};

TEST_F(SettingsOnSimulator, AreTheSameAfterTheyHaveBeenLoaded) {
    ASSERT_EQ(file->Save(), MV_SERVICE_OK) << file->reason.text;
    const std::string atPowerOn = ReadText(file->Path());
    EXPECT_GT(file->got.all.size(), 100u);
    ASSERT_EQ(Write("GainSelector", EntryValue("DigitalAll")), MV_SERVICE_OK);
    ASSERT_EQ(Write("Gain", FloatValue(3)), MV_SERVICE_OK);
    ASSERT_EQ(Write("GainSelector", EntryValue("AnalogAll")), MV_SERVICE_OK);
    ASSERT_EQ(Write("Width", IntegerValue(320)), MV_SERVICE_OK);
    ASSERT_EQ(Write("OffsetX", IntegerValue(64)), MV_SERVICE_OK);
    ASSERT_EQ(Write("PixelFormat", EntryValue("Mono12p")), MV_SERVICE_OK);
    ASSERT_EQ(Write("ExposureTime", FloatValue(200000)), MV_SERVICE_OK);
    SettingsCalls changed(grabber->Services(), files.PathOf("changed.json"));
    ASSERT_EQ(changed.Save(), MV_SERVICE_OK) << changed.reason.text;
    EXPECT_NE(ReadText(changed.Path()), atPowerOn);

    EXPECT_EQ(file->Load(), MV_SERVICE_OK) << file->reason.text;
    EXPECT_EQ(Read("Width"), "640");
    EXPECT_EQ(Read("OffsetX"), "0");
    SettingsCalls again(grabber->Services(), files.PathOf("again.json"));
    ASSERT_EQ(again.Save(), MV_SERVICE_OK);
    EXPECT_EQ(ReadText(again.Path()), atPowerOn);

    EXPECT_EQ(changed.Load(), MV_SERVICE_OK) << changed.reason.text;
    EXPECT_EQ(Read("Width"), "320");
    EXPECT_EQ(Read("OffsetX"), "64");
    ASSERT_EQ(again.Save(), MV_SERVICE_OK);
    EXPECT_EQ(ReadText(again.Path()), ReadText(changed.Path()));
    // All are there: nothing is left to write.
    EXPECT_EQ(changed.Load(kMvSettingsDryRun), MV_SERVICE_OK);
}

TEST_F(SettingsOnSimulator, FindAnOrderInWhichEachIsTaken) {
    EXPECT_EQ(file->Load(OneSetting("OffsetX", "integer", "320") + "," +
                         OneSetting("Width", "integer", "64")),
              MV_SERVICE_OK);
    EXPECT_EQ(Read("OffsetX"), "320");
    EXPECT_EQ(file->Load(OneSetting("Width", "integer", "640") + "," +
                         OneSetting("OffsetX", "integer", "0")),
              MV_SERVICE_OK);
    EXPECT_EQ(Read("Width"), "640");
    EXPECT_EQ(file->Load(OneSetting("AcquisitionFrameRate", "float", "0.5") + "," +
                         OneSetting("ExposureTime", "float", "1000000")),
              MV_SERVICE_OK);
}

TEST_F(SettingsOnSimulator, SayWhatARunningAcquisitionRefuses) {
    ASSERT_EQ(grabber->Snap(1), MV_OK);
    EXPECT_EQ(file->Load(OneSetting("Width", "integer", "320") + "," +
                         OneSetting("ExposureTime", "float", "1234")),
              MV_SERVICE_INCOMPLETE);
    EXPECT_EQ(file->got.all[0].result, MV_SERVICE_NO_ACCESS);
    EXPECT_EQ(file->got.all[1].result, MV_SERVICE_OK);
    EXPECT_EQ(Read("Width"), "640");
}

TEST_F(SettingsOnSimulator, OfOneCameraAreLoadedIntoAnother) {
    ASSERT_EQ(Write("Width", IntegerValue(320)), MV_SERVICE_OK);
    ASSERT_EQ(Write("ExposureTime", FloatValue(1234)), MV_SERVICE_OK);
    ASSERT_EQ(file->Save(), MV_SERVICE_OK);
    UseCamera(1);
    const MV_SERVICE_RESULT result = file->Load();
    EXPECT_EQ(result, MV_SERVICE_INCOMPLETE) << "the other has no packet size and so on";
    EXPECT_EQ(Read("Width"), "320");
    EXPECT_EQ(Read("ExposureTime"), "1234.000000");
    for (const ReceivedSetting& setting : file->got.all) {
        EXPECT_TRUE(setting.result == MV_SERVICE_OK || !setting.reason.empty()) << setting.path;
    }
    EXPECT_GT(file->got.CountFailed(), 0u);
    EXPECT_LT(file->got.CountFailed(), file->got.all.size() / 2);
}

} // namespace
