// feature_writing_test.cpp - writing a feature, and why one does not take a value
#include "services/feature_service.h"

#include "tests/module/services/services_fixture.h"

#include <algorithm>

using namespace pyxen;

namespace {

class FeatureWritingServices : public ServicesFixture {
protected:
    void SetUp() override {
        ServicesFixture::SetUp();
        Camera().Put(scripted::IntFeature("Amount", 5, 0, 9));
        Camera().Put(scripted::FloatFeature("Gain", 1.5, 0.25, 24));
        Camera().Put(scripted::RawFeature("Table", {'a', 'b'}));
        Device().Put(scripted::IntFeature("Amount", 1, 0, 7));
        directory.Write(
            "sync.json",
            R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"Amount",)"
            R"("Dependencies":[{"ModuleName":"Localdevice","FeatureName":"Amount"}]}]})");
        WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=sync.json\n");
        Open();
    }

    scripted::Module& Device() { return Camera().localDevice; }
};

TEST_F(FeatureWritingServices, CheckWriteReadBackAndSynchronise) {
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_OK);
    EXPECT_EQ(Reason(), "");
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].integer, 7);
    EXPECT_EQ(Device().Find("Amount")->intValue, 7);
    EXPECT_EQ(
        sdk.TakeCalls({"PxnFeatureIntSet", "PxnFeatureIntGet"}),
        (Texts{"PxnFeatureIntSet(camera0, \"Amount\", 7)", "PxnFeatureIntGet(camera0, \"Amount\")",
               "PxnFeatureIntGet(camera0, \"Amount\")",
               "PxnFeatureIntGet(localdevice0, \"Amount\")",
               "PxnFeatureIntSet(localdevice0, \"Amount\", 7)"}));
    EXPECT_EQ(Log(),
              (Texts{"1 CMivoraKVNPyxenClass::SyncFeature: int64 feature can be synched to "
                     "/Localdevice/Scripted/Amount (value = 7, min = 0, max = 7)",
                     "1 CMivoraKVNPyxenClass::SyncFeature: Synched int64 feature from "
                     "/Camera/Scripted/Amount to /Localdevice/Scripted/Amount (value = 7)"}));
}

TEST_F(FeatureWritingServices, LeaveADependentFeatureThatAgrees) {
    Device().Find("Amount")->intValue = 7;
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_OK);
    EXPECT_EQ(sdk.TakeCalls({"PxnFeatureIntSet"}),
              Texts{"PxnFeatureIntSet(camera0, \"Amount\", 7)"});
}

TEST_F(FeatureWritingServices, TakeEveryType) {
    EXPECT_EQ(Write("Camera", "Gain", FloatValue(2.5)), MV_SERVICE_OK);
    EXPECT_EQ(written[0].real, 2.5);
    EXPECT_EQ(Write("Camera", "PixelFormat", EntryValue("Mono12")), MV_SERVICE_OK);
    EXPECT_EQ(written[0].text, "Mono12");
    EXPECT_EQ(written[0].integer, 0x01100005);
    EXPECT_EQ(Write("Camera", "DeviceUserID", TextValue("right")), MV_SERVICE_OK);
    EXPECT_EQ(written[0].text, "right");
    MV_FEATURE_VALUE state = ServiceValue(MV_FEATURE_BOOLEAN);
    state.integer = 2;
    EXPECT_EQ(Write("Camera", "ReverseX", state), MV_SERVICE_OK);
    EXPECT_EQ(written[0].integer, 1);
    MV_FEATURE_VALUE bytes = ServiceValue(MV_FEATURE_REGISTER);
    bytes.text = "x\0";
    bytes.textBytes = 2;
    EXPECT_EQ(Write("Camera", "Table", bytes), MV_SERVICE_OK);
    EXPECT_EQ(written[0].text, std::string("x\0", 2));
}

TEST_F(FeatureWritingServices, WantAValueOfTheFeaturesType) {
    EXPECT_EQ(Write("Camera", "Gain", IntegerValue(2)), MV_SERVICE_WRONG_TYPE);
    EXPECT_EQ(Reason(), "Camera/Gain: the value is of another type");
    EXPECT_EQ(Write("Camera", "AcquisitionStart", ServiceValue(MV_FEATURE_COMMAND)),
              MV_SERVICE_WRONG_TYPE);
    EXPECT_EQ(Reason(), "Camera/AcquisitionStart: has no value");
    EXPECT_EQ(Write("Camera", "DeviceUserID", TextValue(nullptr)), MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(Reason(), "Camera/DeviceUserID: the value has no text");
    EXPECT_EQ(Write("Camera", "PixelFormat", EntryValue(nullptr)), MV_SERVICE_BAD_ARGUMENT);
    MV_FEATURE_VALUE bytes = ServiceValue(MV_FEATURE_REGISTER);
    bytes.textBytes = 2;
    EXPECT_EQ(Write("Camera", "Table", bytes), MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(Write("Camera", "Depth", IntegerValue(2)), MV_SERVICE_NOT_FOUND);
    EXPECT_TRUE(written.empty());
}

TEST_F(FeatureWritingServices, SayWhichValuesAreTaken) {
    const auto refused = [this](const char* name, const MV_FEATURE_VALUE& value) {
        EXPECT_EQ(Write("Camera", name, value), MV_SERVICE_OUT_OF_RANGE);
        EXPECT_TRUE(written.empty());
        return Reason();
    };
    EXPECT_EQ(refused("Width", IntegerValue(7)),
              "Camera/Width takes 16 to 2048 in steps of 16, not 7");
    EXPECT_EQ(refused("Gain", FloatValue(0.125)), "Camera/Gain takes 0.25 to 24, not 0.125");
    EXPECT_EQ(
        refused("PixelFormat", EntryValue("Mono99")),
        "Camera/PixelFormat: there is no entry \"Mono99\"; there are Mono8, Mono10, Mono10p, Mono12, Mono12p, Mono12Packed, BayerRG8, RGB8, YUV422_8");
    Camera().Find("DeviceUserID")->maxLength = 4;
    EXPECT_EQ(refused("DeviceUserID", TextValue("right")),
              "Camera/DeviceUserID takes at most 4 bytes, not \"right\"");
    // What only the SDK knows.
    sdk.FailFeature(scripted::CameraHandle(), "Width", "PxnFeatureIntSet", PxnErrInvalidValue);
    EXPECT_EQ(refused("Width", IntegerValue(641)),
              "Camera/Width takes 16 to 2048 in steps of 16, not 641");
    EXPECT_EQ(refused("Width", IntegerValue(656)), "Camera/Width: 656 is not taken");
    sdk.FailFeature(scripted::CameraHandle(), "Width", "PxnFeatureIntIncrementQuery", PxnErrIO);
    EXPECT_EQ(refused("Width", IntegerValue(641)), "Camera/Width: 641 is not taken");
    sdk.FailFeature(scripted::CameraHandle(), "OffsetX", "PxnFeatureIntSet", PxnErrInvalidValue);
    Camera().Find("OffsetX")->intIncrement = 1;
    EXPECT_EQ(refused("OffsetX", IntegerValue(3)), "Camera/OffsetX: 3 is not taken");
    sdk.FailFeature(scripted::CameraHandle(), "PixelFormat", "PxnFeatureEnumSet",
                    PxnErrInvalidValue);
    Camera().Find("PixelFormat")->entries[3].available = false;
    EXPECT_EQ(
        refused("PixelFormat", EntryValue("Mono12")),
        "Camera/PixelFormat: the entry \"Mono12\" cannot be selected at present; there are Mono8, Mono10, Mono10p, Mono12 (not at present), Mono12p, Mono12Packed, BayerRG8, RGB8, YUV422_8");
    sdk.FailFeature(scripted::CameraHandle(), "ReverseX", "PxnFeatureBoolSet", PxnErrInvalidValue);
    EXPECT_EQ(refused("ReverseX", ServiceValue(MV_FEATURE_BOOLEAN)),
              "Camera/ReverseX: false is not taken");
    sdk.FailFeature(scripted::CameraHandle(), "DeviceUserID", "PxnFeatureStringSet",
                    PxnErrInvalidValue);
    EXPECT_EQ(refused("DeviceUserID", TextValue("r")), "Camera/DeviceUserID: \"r\" is not taken");
}

TEST_F(FeatureWritingServices, SayThatAFeatureCannotBeWritten) {
    Camera().Find("Width")->writeable = false;
    EXPECT_EQ(Write("Camera", "Width", IntegerValue(656)), MV_SERVICE_NO_ACCESS);
    EXPECT_EQ(Reason(), "Camera/Width: cannot be written at present");
    sdk.Fail("PxnFeatureAccessQuery", PxnErrBadHandle);
    EXPECT_EQ(Write("Camera", "Gain", FloatValue(2)), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "Camera/Gain: the camera has gone");
    sdk.Fail("PxnFeatureFloatSet", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Gain", FloatValue(2)), MV_SERVICE_SDK_FAILED);
    const std::string failed = Reason();
    EXPECT_TRUE(failed.starts_with("Camera/Gain: 2: ")) << failed;
    EXPECT_TRUE(failed.ends_with(" (-20)")) << failed;
    EXPECT_TRUE(written.empty());
}

TEST_F(FeatureWritingServices, RefuseWhatADependentFeatureDoesNotTake) {
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(8)), MV_SERVICE_REFUSED);
    EXPECT_EQ(Reason(), "Camera/Amount: 8 is refused by /Localdevice/Scripted/Amount, which "
                        "depends on it: Out of range");
    Device().Find("Amount")->writeable = false;
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_REFUSED);
    EXPECT_TRUE(Reason().ends_with("Write protected"));
    sdk.FailFeature(scripted::LocalDeviceHandle(), "Amount", "PxnFeatureAccessQuery", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_REFUSED);
    EXPECT_TRUE(Reason().ends_with("Unknown accessibility"));
    EXPECT_TRUE(written.empty());
    EXPECT_EQ(sdk.TakeCalls({"PxnFeatureIntSet"}), Texts{});
}

TEST_F(FeatureWritingServices, SayWhatDidNotFollow) {
    sdk.FailFeature(scripted::LocalDeviceHandle(), "Amount", "PxnFeatureIntSet", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_NOT_SYNCHRONISED);
    EXPECT_EQ(Reason(), "Camera/Amount: 7 has been written, but Localdevice/Amount did not follow");
    ASSERT_EQ(written.size(), 1u);
    EXPECT_EQ(written[0].integer, 7);
}

TEST_F(FeatureWritingServices, NameAllThatDidNotFollow) {
    Destroy();
    Device().Put(scripted::IntFeature("Rest", 1, 0, 9));
    directory.Write(
        "sync.json",
        R"({"SyncFeatures":[{"ModuleName":"Camera","FeatureName":"Amount","Dependencies":[)"
        R"({"ModuleName":"Localdevice","FeatureName":"Amount"},)"
        R"({"ModuleName":"Localdevice","FeatureName":"Rest"}]}]})");
    WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=sync.json\n");
    Open();
    sdk.FailFeature(scripted::LocalDeviceHandle(), "Amount", "PxnFeatureIntSet", PxnErrIO);
    sdk.FailFeature(scripted::LocalDeviceHandle(), "Rest", "PxnFeatureIntSet", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_NOT_SYNCHRONISED);
    EXPECT_EQ(Reason(), "Camera/Amount: 7 has been written, but Localdevice/Amount, "
                        "Localdevice/Rest did not follow");
}

TEST_F(FeatureWritingServices, WriteWhatCannotBeRead) {
    sdk.FailFeature(scripted::CameraHandle(), "Gain", "PxnFeatureFloatGet", PxnErrInvalidAccess);
    EXPECT_EQ(Write("Camera", "Gain", FloatValue(2)), MV_SERVICE_OK);
    EXPECT_TRUE(written.empty());
    sdk.ClearFailures();
    sdk.FailFeature(scripted::CameraHandle(), "Gain", "PxnFeatureFloatGet", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Gain", FloatValue(2)), MV_SERVICE_SDK_FAILED);
    EXPECT_TRUE(Reason().starts_with("Camera/Gain: has been written and cannot be read: "));
}

TEST_F(FeatureWritingServices, LogWithoutTheLock) {
    class AskingSink final : public support::RecordingSink {
    public:
        void Write(int level, const char* format, ...) override {
            static_cast<void>(level);
            static_cast<void>(format);
            ++lines;
            results.push_back(ask());
        }
        std::function<MV_SERVICE_RESULT()> ask;
        std::vector<MV_SERVICE_RESULT> results;
        unsigned lines = 0;
    } asking;
    Destroy();
    asking.ask = [] {
        return MV_SERVICE_OK;
    };
    UseSink(&asking);
    WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=sync.json\n");
    Open();
    asking.results.clear();
    asking.ask = [this] {
        return Read("Camera", "Width");
    };
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(7)), MV_SERVICE_OK);
    EXPECT_EQ(asking.results, (std::vector{MV_SERVICE_OK, MV_SERVICE_OK}));
    asking.results.clear();
    // A failed query of a range, which the access object reports.
    sdk.FailFeature(scripted::CameraHandle(), "Width", "PxnFeatureIntRangeQuery", PxnErrIO);
    EXPECT_EQ(Write("Camera", "Width", IntegerValue(656)), MV_SERVICE_OUT_OF_RANGE);
    EXPECT_EQ(Reason(), "Camera/Width: 656 is out of range");
    EXPECT_FALSE(asking.results.empty());
    EXPECT_EQ(std::count(asking.results.begin(), asking.results.end(), MV_SERVICE_OK),
              static_cast<std::ptrdiff_t>(asking.results.size()));
    asking.ask = [this] {
        return Read("Camera", "Width");
    };
    asking.results.clear();
    EXPECT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(std::count(asking.results.begin(), asking.results.end(), MV_SERVICE_BUSY),
              static_cast<std::ptrdiff_t>(asking.results.size()));
    EXPECT_FALSE(asking.results.empty());
    asking.ask = [] {
        return MV_SERVICE_OK;
    };
    Destroy();
}

TEST_F(FeatureWritingServices, WorkWithoutASink) {
    Destroy();
    WithoutSink();
    WriteIni("[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=sync.json\n");
    Open();
    EXPECT_EQ(Write("Camera", "Amount", IntegerValue(6)), MV_SERVICE_OK);
    EXPECT_EQ(Device().Find("Amount")->intValue, 6);
}

} // namespace
