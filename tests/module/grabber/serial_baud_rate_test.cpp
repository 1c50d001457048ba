// serial_baud_rate_test.cpp - choosing the serial link's speed
#include "grabber/serial_baud_rate.h"
#include "tests/module/grabber_fixture.h"

#include <limits>

using namespace pyxen;

namespace {

TEST(TrailingNumber, IsMadeOfTheLastDigits) {
    EXPECT_EQ(TrailingNumber("Baud9600"), 9600u);
    EXPECT_EQ(TrailingNumber("Baud115200"), 115200u);
    EXPECT_EQ(TrailingNumber("300"), 300u);
    EXPECT_EQ(TrailingNumber("Baud1_200"), 200u);
    EXPECT_EQ(TrailingNumber("Baud007"), 7u);
}

TEST(TrailingNumber, IsZeroWithoutDigitsAtTheEnd) {
    EXPECT_EQ(TrailingNumber(""), 0u);
    EXPECT_EQ(TrailingNumber("Auto"), 0u);
    EXPECT_EQ(TrailingNumber("9600Baud"), 0u);
}

TEST(TrailingNumber, StopsAtTheLargestNumber) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(TrailingNumber("Baud18446744073709551615"), kLargest);
    EXPECT_EQ(TrailingNumber("Baud18446744073709551616"), kLargest);
    EXPECT_EQ(TrailingNumber("Baud99999999999999999999999"), kLargest);
}

TEST(OptimumBaudRate, IsTheHighestCommonOne) {
    EXPECT_STREQ(
        FindOptimumBaudRate({"Baud9600", "Baud115200", "Baud230400"}, {"Baud9600", "Baud115200"}),
        "Baud115200");
    EXPECT_STREQ(FindOptimumBaudRate({"Baud115200", "Baud9600"}, {"Rate9600"}), "Baud9600");
}

TEST(OptimumBaudRate, IsComparedByNumberAndNotByText) {
    EXPECT_STREQ(FindOptimumBaudRate({"Fast115200", "Baud9600"}, {"Baud9600", "Baud115200"}),
                 "Fast115200");
    EXPECT_STREQ(FindOptimumBaudRate({"Auto"}, {"None"}), "Auto");
}

TEST(OptimumBaudRate, IsAbsentWithoutACommonOne) {
    EXPECT_EQ(FindOptimumBaudRate({"Baud9600"}, {"Baud115200"}), nullptr);
    EXPECT_EQ(FindOptimumBaudRate({}, {"Baud115200"}), nullptr);
    EXPECT_EQ(FindOptimumBaudRate({"Baud9600"}, {}), nullptr);
}

class SerialBaudRate : public GrabberFixture {
protected:
    Texts Lines() {
        Texts result;
        for (const std::string& line : Log()) {
            if (line.find("SetOptimumSerialPortBaudRate") != std::string::npos) {
                result.push_back(line);
            }
        }
        return result;
    }
    scripted::Feature& LocalRate() { return Camera().localDevice["DeviceSerialPortBaudRate"]; }

    const std::string found =
        "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Found optimum common DeviceSerialPortBaudrate for grabber and camera as Baud115200.";
};

TEST_F(SerialBaudRate, IsSwitchedOnTheGrabberSideOnly) {
    Init();
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(LocalRate().text, "Baud115200");
    EXPECT_EQ(Camera()["DeviceSerialPortBaudRate"].text, "Baud9600");
}

TEST_F(SerialBaudRate, IsLeftWhenItIsTheOptimumAlready) {
    Init();
    LocalRate().text = "Baud115200";
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureEnumSet"}), Texts{});
    EXPECT_EQ(
        Lines(),
        (Texts{
            found,
            "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Optimum DeviceSerialPortBaudrate of Baud115200 already set. No need to change it.",
        }));
}

TEST_F(SerialBaudRate, IsSetWhenTheCurrentOneCannotBeRead) {
    Init();
    LocalRate().text = "Baud115200";
    sdk.FailFeature(scripted::LocalDeviceHandle(), "DeviceSerialPortBaudRate", "PxnFeatureEnumGet",
                    PxnErrIO);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(sdk.Calls({"PxnFeatureEnumSet"}).size(), 1u);
}

TEST_F(SerialBaudRate, IsNotCalledSwitchedWhenTheSdkRefuses) {
    Init();
    sdk.Fail("PxnFeatureEnumSet", PxnErrInvalidAccess);
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Lines(), Texts{found});
}

TEST_F(SerialBaudRate, IsLeftAloneWithoutACommonOne) {
    Init();
    Camera()["DeviceSerialPortBaudRate"].entries.resize(1);
    Camera()["DeviceSerialPortBaudRate"].entries[0].name = "Baud57600";
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Lines(), Texts{});
    EXPECT_EQ(sdk.Calls({"PxnFeatureEnumGet(localdevice0", "PxnFeatureEnumSet"}), Texts{});
}

TEST_F(SerialBaudRate, IsLeftAloneWhenAListIsEmptyOrUnreadable) {
    Init();
    LocalRate().entries.clear();
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    sdk.Reset();
    Destroy();

    Init();
    Camera().Remove("DeviceSerialPortBaudRate");
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Lines(), Texts{});
    EXPECT_EQ(sdk.Calls({"PxnFeatureEnumSet"}), Texts{});
}

TEST_F(SerialBaudRate, TakesNoMoreOfAListThanTheSdkFilled) {
    Init();
    sdk.Data().foundAnswers["PxnFeatureEnumRangeQuery"] = {3, 1};
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(
        Lines().front(),
        "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: Found optimum common DeviceSerialPortBaudrate for grabber and camera as Baud9600.");
}

TEST_F(SerialBaudRate, PassesOverNamesThatTheSdkLeftOut) {
    Init();
    Grabber().Api().PxnFeatureEnumRangeQuery = [](PxnHandle, const char*, const char** entries,
                                                  std::uint32_t, std::uint32_t* count) -> PxnError {
        *count = 2;
        if (entries) {
            entries[0] = nullptr;
            entries[1] = "Baud115200";
        }
        return PxnErrSuccess;
    };
    Grabber().Api().PxnFeatureEnumGet = [](PxnHandle, const char*, const char** name) -> PxnError {
        *name = nullptr;
        return PxnErrSuccess;
    };
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Lines().front(), found);
    EXPECT_EQ(LocalRate().text, "Baud115200");
}

TEST_F(SerialBaudRate, IsLeftAloneWhenFillingAListFails) {
    for (const unsigned nth : {2u, 4u}) {
        Init();
        sdk.Fail("PxnFeatureEnumRangeQuery", PxnErrIO, nth);
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
        EXPECT_EQ(Lines(), Texts{});
        EXPECT_EQ(LocalRate().text, "Baud9600");
        Destroy();
        sdk.Reset();
    }
}

} // namespace
