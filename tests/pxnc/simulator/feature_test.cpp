// feature_test.cpp - features of every type
#include "tests/pxnc/simulator/simulator_fixture.h"

#include <cstring>
#include <limits>
#include <map>
#include <set>

namespace simulator_tests {
namespace {

class FeatureTest : public SimulatorTest {
protected:
    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kGigECamera);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        SimulatorTest::TearDown();
    }

    PxnHandle camera = nullptr;
};

bool IsUtf8(const char* text) {
    for (const auto* c = reinterpret_cast<const unsigned char*>(text); *c != 0; ++c) {
        int more = *c < 0x80         ? 0
                   : (*c >> 5) == 6  ? 1
                   : (*c >> 4) == 14 ? 2
                   : (*c >> 3) == 30 ? 3
                                     : -1;
        if (more < 0) {
            return false;
        }
        for (; more > 0; --more) {
            if ((*++c >> 6) != 2) {
                return false;
            }
        }
    }
    return true;
}

TEST_F(FeatureTest, EveryCameraHasManyFeaturesOfEveryTypeInAllCategories) {
    for (const char* id : {kGigECamera, kUsbCamera, kSerialCamera}) {
        const PxnHandle handle = id == kGigECamera ? camera : Open(id);
        const std::vector<PxnFeatureInfo> features = ListFeatures(handle);
        EXPECT_GE(features.size(), 150u) << id;
        std::set<std::uint32_t> types;
        std::set<std::string> names;
        std::set<std::string> categories;
        for (const PxnFeatureInfo& feature : features) {
            types.insert(feature.featureDataType);
            EXPECT_TRUE(names.insert(feature.name).second) << feature.name << " stands twice";
            const std::string category = feature.category;
            EXPECT_EQ(category.find('/'), 0u) << feature.name;
            categories.insert(category.substr(0, category.find('/', 1)));
            EXPECT_NE(*feature.displayName, 0) << feature.name;
            EXPECT_NE(*feature.description, 0) << feature.name;
            for (const char* text : {feature.unit, feature.description, feature.tooltip}) {
                EXPECT_TRUE(IsUtf8(text)) << feature.name;
            }
            EXPECT_GE(feature.visibility, 1u);
            EXPECT_LE(feature.visibility, 4u);
        }
        EXPECT_EQ(types, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6, 7})) << id;
        for (const char* category :
             {"/DeviceControl", "/ImageFormatControl", "/AcquisitionControl", "/AnalogControl",
              "/LUTControl", "/ColorTransformationControl", "/CounterAndTimerControl",
              "/DigitalIOControl", "/EventControl", "/TransportLayerControl", "/ChunkDataControl",
              "/UserSetControl", "/FileAccessControl", "/SequencerControl", "/ActionControl"}) {
            EXPECT_TRUE(categories.contains(category)) << id << " " << category;
        }
        if (handle != camera) {
            EXPECT_EQ(PxnCameraClose(handle), 0);
        }
    }
}

TEST_F(FeatureTest, EveryReadableFeatureOfEveryModuleCanBeRead) {
    const PxnCameraInfo info = InfoOf(camera);
    for (PxnHandle handle : {PXN_SYSTEM_HANDLE, info.transportLayerHandle, info.interfaceHandle,
                             camera, info.localDeviceHandle, info.streamHandles[0]}) {
        for (const PxnFeatureInfo& feature : ListFeatures(handle)) {
            SCOPED_TRACE(feature.name);
            if (!IsReadable(handle, feature.name)) {
                continue;
            }
            std::int64_t integer = 0;
            std::int64_t low = 0;
            std::int64_t high = 0;
            double real = 0;
            double lowReal = 0;
            double highReal = 0;
            std::uint32_t size = 0;
            switch (feature.featureDataType) {
            case PxnFeatureDataInt:
                EXPECT_EQ(PxnFeatureIntGet(handle, feature.name, &integer), 0);
                EXPECT_EQ(PxnFeatureIntRangeQuery(handle, feature.name, &low, &high), 0);
                EXPECT_LE(low, integer);
                EXPECT_GE(high, integer);
                EXPECT_EQ(PxnFeatureIntIncrementQuery(handle, feature.name, &integer), 0);
                EXPECT_GE(integer, 1);
                break;
            case PxnFeatureDataFloat:
                EXPECT_EQ(PxnFeatureFloatGet(handle, feature.name, &real), 0);
                EXPECT_EQ(PxnFeatureFloatRangeQuery(handle, feature.name, &lowReal, &highReal), 0);
                EXPECT_LE(lowReal, real);
                EXPECT_GE(highReal, real);
                break;
            case PxnFeatureDataEnum:
                EXPECT_NE(GetEnum(handle, feature.name), "");
                break;
            case PxnFeatureDataString:
                GetString(handle, feature.name);
                break;
            case PxnFeatureDataBool:
                GetBool(handle, feature.name);
                break;
            case PxnFeatureDataRaw:
                EXPECT_EQ(PxnFeatureRawLengthQuery(handle, feature.name, &size), 0);
                EXPECT_GT(size, 0u);
                break;
            default:
                ADD_FAILURE() << "type " << feature.featureDataType << " is not readable";
            }
        }
    }
}

TEST_F(FeatureTest, QueriesOfTheWrongTypeAreRefused) {
    std::int64_t integer = 0;
    double real = 0;
    const char* text = nullptr;
    PxnBool flag = 0;
    std::uint32_t size = 0;
    EXPECT_EQ(PxnFeatureIntGet(camera, "PixelFormat", &integer), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureIntSet(camera, "ExposureTime", 1), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureIntRangeQuery(camera, "Gain", &integer, &integer), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureIntIncrementQuery(camera, "Gain", &integer), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureIntValidValueSetQuery(camera, "Gain", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureFloatGet(camera, "Width", &real), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Width", 1), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureFloatRangeQuery(camera, "Width", &real, &real), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumGet(camera, "Width", &text), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "Width", "x"), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumRangeQuery(camera, "Width", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumIsAvailable(camera, "Width", "x", &flag), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumAsInt(camera, "Width", "x", &integer), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureEnumAsString(camera, "Width", 1, &text), PxnErrWrongType);
    PxnFeatureEnumEntry entry{};
    EXPECT_EQ(PxnFeatureEnumEntryGet(camera, "Width", "x", &entry, sizeof entry), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureStringGet(camera, "PixelFormat", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureStringSet(camera, "PixelFormat", "x"), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureStringMaxlengthQuery(camera, "Width", &size), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureBoolGet(camera, "Width", &flag), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureBoolSet(camera, "Width", 1), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "Width"), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureCommandIsDone(camera, "Width", &flag), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureRawGet(camera, "Width", nullptr, 0, &size), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureRawSet(camera, "Width", "x", 1), PxnErrWrongType);
    EXPECT_EQ(PxnFeatureRawLengthQuery(camera, "Width", &size), PxnErrWrongType);
}

TEST_F(FeatureTest, UnknownNamesAndNullPointersAreRefused) {
    std::int64_t integer = 0;
    PxnFeatureInfo info{};
    EXPECT_EQ(PxnFeatureIntGet(camera, "width", &integer), PxnErrNotFound) << "names are exact";
    EXPECT_EQ(PxnFeatureIntGet(camera, nullptr, &integer), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureIntGet(camera, "Width", nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureIntRangeQuery(camera, "Width", nullptr, &integer), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureStringSet(camera, "DeviceUserID", nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureAccessQuery(camera, "Width", nullptr, nullptr), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureInfoQuery(camera, "Width", nullptr, sizeof info), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureInfoQuery(camera, "Width", &info, 87), PxnErrStructSize);
    EXPECT_EQ(PxnFeaturesList(camera, &info, 1, nullptr, sizeof info), PxnErrBadParameter);
    std::uint32_t found = 0;
    EXPECT_EQ(PxnFeaturesList(camera, &info, 1, &found, 89), PxnErrStructSize);
    EXPECT_EQ(PxnFeaturesList(camera, &info, 1, &found, sizeof info), PxnErrMoreData);
    EXPECT_GT(found, 150u);
}

TEST_F(FeatureTest, IntegersKeepTheirLimits) {
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorSteppedInteger", -10), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorSteppedInteger", 20), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorSteppedInteger", 21), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorSteppedInteger", -11), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorSteppedInteger", -8), PxnErrInvalidValue);
    EXPECT_EQ(GetInt(camera, "SimulatorSteppedInteger"), 20) << "a refused value changes nothing";
    constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorWideInteger", kLowest), 0);
    EXPECT_EQ(GetInt(camera, "SimulatorWideInteger"), kLowest);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SensorWidth", 64), PxnErrInvalidAccess);
}

TEST_F(FeatureTest, ValidValueSetsAreKept) {
    std::int64_t values[3] = {};
    std::uint32_t size = 0;
    EXPECT_EQ(PxnFeatureIntValidValueSetQuery(camera, "BinningHorizontal", values, 3, &size), 0);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(values[2], 4);
    EXPECT_EQ(PxnFeatureIntValidValueSetQuery(camera, "BinningHorizontal", values, 2, &size),
              PxnErrMoreData);
    EXPECT_EQ(PxnFeatureIntSet(camera, "BinningHorizontal", 3), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureIntSet(camera, "BinningHorizontal", 2), 0);
    EXPECT_EQ(PxnFeatureIntValidValueSetQuery(camera, "Width", values, 3, &size),
              PxnErrValidValueSetNotPresent);
}

TEST_F(FeatureTest, FloatsKeepTheirLimits) {
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 24.0), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 24.001), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", std::numeric_limits<double>::quiet_NaN()),
              PxnErrInvalidValue);
    EXPECT_EQ(GetFloat(camera, "Gain"), 24.0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "DeviceTemperature", 20.0), PxnErrInvalidAccess);
}

TEST_F(FeatureTest, EnumerationNamesAreSharedPointers) {
    const char* onCamera[8] = {};
    const char* onLocalDevice[8] = {};
    std::uint32_t found = 0;
    const PxnHandle serial = Open(kSerialCamera);
    const PxnHandle local = InfoOf(serial).localDeviceHandle;
    ASSERT_EQ(PxnFeatureEnumRangeQuery(serial, "DeviceSerialPortBaudRate", onCamera, 8, &found), 0);
    ASSERT_EQ(found, 5u);
    ASSERT_EQ(PxnFeatureEnumRangeQuery(local, "DeviceSerialPortBaudRate", onLocalDevice, 8, &found),
              0);
    ASSERT_EQ(found, 6u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(onCamera[i], onLocalDevice[i]) << onCamera[i];
    }
    const char* current = nullptr;
    EXPECT_EQ(PxnFeatureEnumGet(serial, "DeviceSerialPortBaudRate", &current), 0);
    EXPECT_EQ(current, onCamera[0]);
    EXPECT_EQ(PxnCameraClose(serial), 0);
}

TEST_F(FeatureTest, EnumerationEntriesHaveNumbersAndAvailability) {
    std::int64_t value = 0;
    const char* name = nullptr;
    PxnBool available = 9;
    PxnFeatureEnumEntry entry{};
    EXPECT_EQ(PxnFeatureEnumAsInt(camera, "PixelFormat", "Mono12p", &value), 0);
    EXPECT_EQ(value, 0x010C0047);
    EXPECT_EQ(PxnFeatureEnumAsString(camera, "PixelFormat", 0x02180014, &name), 0);
    EXPECT_STREQ(name, "Rgb8Packed") << "the first of two names";
    EXPECT_EQ(PxnFeatureEnumAsString(camera, "PixelFormat", 1, &name), PxnErrNotFound);
    EXPECT_EQ(PxnFeatureEnumAsInt(camera, "PixelFormat", "Mono7", &value), PxnErrNotFound);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "Mono7"), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureEnumIsAvailable(camera, "SimulatorClosedChoice", "Absent", &available), 0);
    EXPECT_EQ(available, 0);
    EXPECT_EQ(PxnFeatureEnumIsAvailable(camera, "SimulatorClosedChoice", "Present", &available), 0);
    EXPECT_EQ(available, 1);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "SimulatorClosedChoice", "Absent"), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureEnumIsAvailable(camera, "PixelFormat", "Mono7", &available),
              PxnErrNotFound);
    EXPECT_EQ(PxnFeatureEnumEntryGet(camera, "PixelFormat", "Mono8", &entry, sizeof entry), 0);
    EXPECT_EQ(entry.intValue, 0x01080001);
    EXPECT_STREQ(entry.name, "Mono8");
    EXPECT_EQ(PxnFeatureEnumEntryGet(camera, "PixelFormat", "Mono8", &entry, 47), PxnErrStructSize);
    EXPECT_EQ(PxnFeatureEnumEntryGet(camera, "PixelFormat", "x", &entry, sizeof entry),
              PxnErrNotFound);
}

TEST_F(FeatureTest, StringsAreMeasuredAndLimited) {
    std::uint32_t size = 0;
    EXPECT_EQ(PxnFeatureStringSet(camera, "DeviceUserID", "sixteen letters!"), 0);
    EXPECT_EQ(PxnFeatureStringSet(camera, "DeviceUserID", "seventeen letters"), PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureStringMaxlengthQuery(camera, "DeviceUserID", &size), 0);
    EXPECT_EQ(size, 16u);
    EXPECT_EQ(PxnFeatureStringGet(camera, "DeviceUserID", nullptr, 0, &size), 0);
    EXPECT_EQ(size, 17u) << "with the terminator";
    char text[17] = {};
    EXPECT_EQ(PxnFeatureStringGet(camera, "DeviceUserID", text, 8, &size), PxnErrMoreData);
    EXPECT_STREQ(text, "sixteen");
    EXPECT_EQ(size, 17u);
    EXPECT_EQ(PxnFeatureStringGet(camera, "DeviceUserID", text, 17, &size), 0);
    EXPECT_STREQ(text, "sixteen letters!");
    EXPECT_EQ(PxnFeatureStringGet(camera, "DeviceUserID", nullptr, 5, &size), PxnErrBadParameter);
    EXPECT_EQ(PxnFeatureStringGet(camera, "DeviceUserID", text, 17, nullptr), PxnErrBadParameter);
}

TEST_F(FeatureTest, RawFeaturesHaveAFixedLength) {
    std::uint32_t length = 0;
    ASSERT_EQ(PxnFeatureRawLengthQuery(camera, "FileAccessBuffer", &length), 0);
    std::string bytes(length, '\1');
    EXPECT_EQ(PxnFeatureRawSet(camera, "FileAccessBuffer", bytes.data(), length), 0);
    EXPECT_EQ(PxnFeatureRawSet(camera, "FileAccessBuffer", bytes.data(), length - 1),
              PxnErrInvalidValue);
    EXPECT_EQ(PxnFeatureRawSet(camera, "FileAccessBuffer", nullptr, length), PxnErrBadParameter);
    std::string read(length, '\0');
    std::uint32_t filled = 0;
    EXPECT_EQ(PxnFeatureRawGet(camera, "FileAccessBuffer", read.data(), length, &filled), 0);
    EXPECT_EQ(filled, length);
    EXPECT_EQ(read, bytes);
    EXPECT_EQ(PxnFeatureRawGet(camera, "FileAccessBuffer", read.data(), 1, &filled),
              PxnErrMoreData);
}

TEST_F(FeatureTest, CommandsRunAndAreDone) {
    PxnBool done = 9;
    EXPECT_EQ(PxnFeatureCommandRun(camera, "TimestampLatch"), 0);
    EXPECT_EQ(PxnFeatureCommandIsDone(camera, "TimestampLatch", &done), 0);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(PxnFeatureCommandIsDone(camera, "TimestampLatch", nullptr), PxnErrBadParameter);
    const std::int64_t first = GetInt(camera, "TimestampLatchValue");
    EXPECT_GT(first, 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "TimestampLatch"), 0);
    EXPECT_GT(GetInt(camera, "TimestampLatchValue"), first);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "TriggerSoftware"), PxnErrInvalidAccess)
        << "no trigger is used";
}

TEST_F(FeatureTest, WriteOnlyFeaturesCannotBeRead) {
    std::int64_t value = 0;
    EXPECT_EQ(PxnFeatureIntSet(camera, "ActionDeviceKey", 5), 0);
    EXPECT_EQ(PxnFeatureIntGet(camera, "ActionDeviceKey", &value), PxnErrInvalidAccess);
    EXPECT_FALSE(IsReadable(camera, "ActionDeviceKey"));
}

TEST_F(FeatureTest, SelectorsKeepOneValueEach) {
    PxnFeatureInfo info{};
    ASSERT_EQ(PxnFeatureInfoQuery(camera, "TriggerSelector", &info, sizeof info), 0);
    EXPECT_EQ(info.hasSelectedFeatures, 1);
    PxnFeatureInfo selected[16] = {};
    std::uint32_t found = 0;
    ASSERT_EQ(PxnFeatureListSelected(camera, "TriggerSelector", selected, 16, &found, sizeof info),
              0);
    std::set<std::string> names;
    for (std::uint32_t i = 0; i < found; ++i) {
        names.insert(selected[i].name);
    }
    EXPECT_TRUE(names.contains("TriggerMode"));
    EXPECT_TRUE(names.contains("TriggerSource"));
    EXPECT_EQ(PxnFeatureListSelected(camera, "Width", selected, 16, &found, sizeof info), 0);
    EXPECT_EQ(found, 0u);

    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "AnalogAll"), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 3.0), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalAll"), 0);
    EXPECT_EQ(GetFloat(camera, "Gain"), 0.0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "AnalogAll"), 0);
    EXPECT_EQ(GetFloat(camera, "Gain"), 3.0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalRed"), PxnErrInvalidValue)
        << "a monochrome image has no red";
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "BayerRG8"), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalRed"), 0);
}

TEST_F(FeatureTest, LookUpTablesAreOneMemorySeenTwoWays) {
    EXPECT_EQ(PxnFeatureEnumSet(camera, "LUTSelector", "Green"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "LUTIndex", 3), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "LUTValue", 0x0ABC), 0);
    std::string all(2048, '\0');
    std::uint32_t filled = 0;
    ASSERT_EQ(PxnFeatureRawGet(camera, "LUTValueAll", all.data(), 2048, &filled), 0);
    EXPECT_EQ(all[6], '\x0A');
    EXPECT_EQ(all[7], '\xBC');
    EXPECT_EQ(PxnFeatureEnumSet(camera, "LUTSelector", "Red"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "LUTIndex", 3), 0);
    EXPECT_EQ(GetInt(camera, "LUTValue"), 0);
}

TEST_F(FeatureTest, LinesFollowTheirSources) {
    EXPECT_EQ(PxnFeatureEnumSet(camera, "LineSelector", "Line2"), 0);
    EXPECT_EQ(GetEnum(camera, "LineMode"), "Output");
    EXPECT_EQ(PxnFeatureEnumSet(camera, "LineSource", "UserOutput1"), 0);
    EXPECT_FALSE(GetBool(camera, "LineStatus"));
    EXPECT_EQ(PxnFeatureEnumSet(camera, "UserOutputSelector", "UserOutput1"), 0);
    EXPECT_EQ(PxnFeatureBoolSet(camera, "UserOutputValue", 1), 0);
    EXPECT_EQ(GetInt(camera, "UserOutputValueAll"), 2);
    EXPECT_TRUE(GetBool(camera, "LineStatus"));
    EXPECT_EQ(GetInt(camera, "LineStatusAll"), 4);
    EXPECT_EQ(PxnFeatureBoolSet(camera, "LineInverter", 1), 0);
    EXPECT_FALSE(GetBool(camera, "LineStatus"));
    EXPECT_EQ(PxnFeatureEnumSet(camera, "LineMode", "Input"), 0);
    EXPECT_FALSE(IsReadable(camera, "LineSource"));
}

TEST_F(FeatureTest, FilesAreWrittenAndReadBack) {
    EXPECT_EQ(PxnFeatureEnumSet(camera, "FileOperationSelector", "Open"), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "FileOpenMode", "ReadWrite"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "FileOperationExecute"), 0);
    EXPECT_EQ(GetEnum(camera, "FileOperationStatus"), "Success");
    std::string bytes(256, '\0');
    bytes.replace(0, 5, "hello");
    EXPECT_EQ(PxnFeatureRawSet(camera, "FileAccessBuffer", bytes.data(), 256), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "FileAccessLength", 5), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "FileAccessOffset", 2), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "FileOperationSelector", "Write"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "FileOperationExecute"), 0);
    EXPECT_EQ(GetInt(camera, "FileOperationResult"), 5);
    EXPECT_EQ(GetInt(camera, "FileSize"), 7);
    EXPECT_EQ(PxnFeatureIntSet(camera, "FileAccessOffset", 4), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "FileOperationSelector", "Read"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "FileOperationExecute"), 0);
    EXPECT_EQ(GetInt(camera, "FileOperationResult"), 3);
    std::uint32_t filled = 0;
    EXPECT_EQ(PxnFeatureRawGet(camera, "FileAccessBuffer", bytes.data(), 256, &filled), 0);
    EXPECT_STREQ(bytes.c_str(), "llo");
    EXPECT_EQ(PxnFeatureEnumSet(camera, "FileOperationSelector", "Delete"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "FileOperationExecute"), 0);
    EXPECT_EQ(GetEnum(camera, "FileOperationStatus"), "Failure") << "it is still open";
}

TEST_F(FeatureTest, UserSetsKeepAndRestoreValues) {
    EXPECT_FALSE(IsWritable(camera, "UserSetSave")) << "the default set is fixed";
    EXPECT_EQ(PxnFeatureEnumSet(camera, "UserSetSelector", "UserSet1"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 320), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 6.0), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "UserSetSave"), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "UserSetSelector", "Default"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "UserSetLoad"), 0);
    EXPECT_EQ(GetInt(camera, "Width"), 640);
    EXPECT_EQ(GetFloat(camera, "Gain"), 0.0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "UserSetSelector", "UserSet1"), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "UserSetLoad"), 0);
    EXPECT_EQ(GetInt(camera, "Width"), 320);
    EXPECT_EQ(GetFloat(camera, "Gain"), 6.0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "UserSetDefault", "UserSet1"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 160), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "DeviceReset"), 0);
    EXPECT_EQ(GetInt(camera, "Width"), 320) << "the camera starts with that set";
}

TEST_F(FeatureTest, SequencerSetsRestoreTheFeaturesThatBelongToThem) {
    EXPECT_FALSE(IsWritable(camera, "SequencerSetSave"));
    EXPECT_EQ(PxnFeatureEnumSet(camera, "SequencerConfigurationMode", "On"), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 1000.0), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 2.0), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "SequencerSetSave"), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "ExposureTime", 2000.0), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 4.0), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "SequencerSetLoad"), 0);
    EXPECT_EQ(GetFloat(camera, "ExposureTime"), 1000.0);
    EXPECT_EQ(GetFloat(camera, "Gain"), 4.0) << "was not part of the set";
    EXPECT_EQ(PxnFeatureIntSet(camera, "SequencerSetSelector", 5), 0);
    EXPECT_EQ(PxnFeatureCommandRun(camera, "SequencerSetLoad"), PxnErrNotAvailable);
}

TEST_F(FeatureTest, TemperatureAndClockChangeByThemselves) {
    PxnFeatureInfo info{};
    ASSERT_EQ(PxnFeatureInfoQuery(camera, "Timestamp", &info, sizeof info), 0);
    EXPECT_NE(info.featureFlags & PxnFeatureFlagVolatile, 0u);
    EXPECT_GT(info.pollingTime, 0u);
    const std::int64_t first = GetInt(camera, "Timestamp");
    EXPECT_GT(GetInt(camera, "Timestamp"), first);
    EXPECT_GT(GetFloat(camera, "DeviceTemperature"), 20.0);
}

} // namespace
} // namespace simulator_tests
