// camera_records_test.cpp - the SDK's camera list in an array of the right length
#include "sdk/malloc_array.h"
#include "tests/module/sdk/loaded_api.h"

#include <algorithm>
#include <utility>

using namespace pyxen;

namespace {

const char* const kGrowLine = "0 CPyxenAPIAccess::AllocateAndGetCameraList: More data was returned "
                              "in a string/list than space was provided";

class CameraRecords : public LoadedApi {
protected:
    void MakeCameras(std::size_t count) {
        auto& cameras = sdk.Data().cameras;
        const scripted::Camera pattern = cameras[0];
        cameras.assign(count, pattern);
        for (std::size_t index = 0; index < count; ++index) {
            cameras[index].extendedId = "ext-" + std::to_string(index);
        }
    }
    // The array that came back, freed at the end.
    std::uint32_t List() {
        PxnCameraInfo* listed = reinterpret_cast<PxnCameraInfo*>(this);
        const std::uint32_t count = api.AllocateAndGetCameraList(&listed);
        records.Adopt(listed);
        return count;
    }
    std::string GrowInformation(unsigned allocated, unsigned found) {
        return "1 CPyxenAPIAccess::AllocateAndGetCameraList: Too many camera entries for buffer. "
               "allocated: " +
               std::to_string(allocated) + " found: " + std::to_string(found) + " -> trying again.";
    }

    MallocArray<PxnCameraInfo> records;
};

TEST_F(CameraRecords, NoCameraIsAnEmptyListWithoutAnyLine) {
    MakeCameras(0);
    EXPECT_EQ(List(), 0u);
    EXPECT_EQ(records.Get(), nullptr);
    EXPECT_EQ(sink.Lines(), Texts{});
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnCamerasList(array, 100, 80)"});
}

TEST_F(CameraRecords, AFewCamerasComeInOneCall) {
    MakeCameras(3);
    ASSERT_EQ(List(), 3u);
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_EQ(records[index].cameraIdExtended, "ext-" + std::to_string(index));
    }
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnCamerasList(array, 100, 80)"});
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(CameraRecords, OneHundredCamerasComeInOneCall) {
    MakeCameras(100);
    ASSERT_EQ(List(), 100u);
    EXPECT_STREQ(records[99].cameraIdExtended, "ext-99");
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnCamerasList(array, 100, 80)"});
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(CameraRecords, MoreThanOneHundredCamerasNeedASecondCall) {
    MakeCameras(150);
    ASSERT_EQ(List(), 150u);
    EXPECT_STREQ(records[0].cameraIdExtended, "ext-0");
    EXPECT_STREQ(records[149].cameraIdExtended, "ext-149");
    EXPECT_EQ(sdk.TakeCalls(),
              (Texts{"PxnCamerasList(array, 100, 80)", "PxnCamerasList(array, 150, 80)"}));
    EXPECT_EQ(sink.Lines(), (Texts{kGrowLine, GrowInformation(100, 150)}));
}

TEST_F(CameraRecords, AsksAgainUntilTheCountIsStable) {
    MakeCameras(104);
    sdk.Data().foundAnswers["PxnCamerasList"] = {101, 102, 103};
    ASSERT_EQ(List(), 104u);
    EXPECT_EQ(sdk.TakeCalls(),
              (Texts{"PxnCamerasList(array, 100, 80)", "PxnCamerasList(array, 101, 80)",
                     "PxnCamerasList(array, 102, 80)", "PxnCamerasList(array, 103, 80)",
                     "PxnCamerasList(array, 104, 80)"}));
    EXPECT_EQ(sink.Lines().size(), 8u);
}

TEST_F(CameraRecords, ACountThatShrinksMeanwhileIsTaken) {
    MakeCameras(101);
    sdk.Data().foundAnswers["PxnCamerasList"] = {150};
    ASSERT_EQ(List(), 101u);
    EXPECT_STREQ(records[100].cameraIdExtended, "ext-100");
}

TEST_F(CameraRecords, MoreDataWithAFittingCountIsTaken) {
    api.PxnCamerasList = [](PxnCameraInfo* cameras, std::uint32_t, std::uint32_t* found,
                            std::uint32_t) -> PxnError {
        cameras[0] = {};
        cameras[0].cameraIdExtended = "only";
        *found = 1;
        return PxnErrMoreData;
    };
    ASSERT_EQ(List(), 1u);
    EXPECT_STREQ(records[0].cameraIdExtended, "only");
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(CameraRecords, TooManyCamerasAreReportedWhateverTheResult) {
    static bool again;
    again = false;
    api.PxnCamerasList = [](PxnCameraInfo* cameras, std::uint32_t capacity, std::uint32_t* found,
                            std::uint32_t) -> PxnError {
        std::fill_n(cameras, capacity, PxnCameraInfo{});
        *found = 101;
        return std::exchange(again, true) ? PxnErrMoreData : PxnErrSuccess;
    };
    EXPECT_EQ(List(), 101u);
    EXPECT_EQ(sink.Lines(), (Texts{"0 CPyxenAPIAccess::AllocateAndGetCameraList: No error",
                                   GrowInformation(100, 101)}));
}

TEST_F(CameraRecords, AFailureIsReportedAndGivesNoCamera) {
    MakeCameras(3);
    sdk.Fail("PxnCamerasList", PxnErrApiNotStarted);
    EXPECT_EQ(List(), 0u);
    EXPECT_EQ(records.Get(), nullptr);
    EXPECT_EQ(sink.Lines(),
              Texts{"0 CPyxenAPIAccess::AllocateAndGetCameraList: PxnCamerasList failed.: "
                    "PxnStartup() was not called before the current command"});
}

TEST_F(CameraRecords, AFailureOfALaterCallGivesNoCamera) {
    MakeCameras(150);
    sdk.Fail("PxnCamerasList", PxnErrIO, 2);
    EXPECT_EQ(List(), 0u);
    EXPECT_EQ(records.Get(), nullptr);
    EXPECT_EQ(sink.Lines(),
              (Texts{kGrowLine, GrowInformation(100, 150),
                     "0 CPyxenAPIAccess::AllocateAndGetCameraList: PxnCamerasList failed.: "
                     "Low level IO error in transport layer"}));
}

TEST_F(CameraRecords, NoMemoryForTheListGivesNoCamera) {
    sdk.Data().foundAnswers["PxnCamerasList"] = {0xFFFFFFFF};
    EXPECT_EQ(List(), 0u);
    EXPECT_EQ(records.Get(), nullptr);
    EXPECT_EQ(sink.Lines(),
              (Texts{kGrowLine, GrowInformation(100, 0xFFFFFFFF),
                     "0 CPyxenAPIAccess::AllocateAndGetCameraList: could not allocate memory for "
                     "camera list."}));
    EXPECT_EQ(sdk.TakeCalls(), Texts{"PxnCamerasList(array, 100, 80)"});
}

TEST_F(CameraRecords, OnlyTheCountIsAnsweredWithoutAPlaceForTheArray) {
    MakeCameras(150);
    EXPECT_EQ(api.AllocateAndGetCameraList(nullptr), 150u);
    MakeCameras(0);
    EXPECT_EQ(api.AllocateAndGetCameraList(nullptr), 0u);
}

TEST_F(CameraRecords, WorksWithoutSink) {
    ASSERT_TRUE(api.Load(nullptr, nullptr));
    MakeCameras(150);
    EXPECT_EQ(List(), 150u);
    sdk.Data().foundAnswers["PxnCamerasList"] = {0xFFFFFFFF};
    EXPECT_EQ(List(), 0u);
    sdk.Fail("PxnCamerasList", PxnErrIO);
    EXPECT_EQ(List(), 0u);
}

TEST_F(CameraRecords, AreNoneWithoutTheSdk) {
    CPyxenAPIAccess unloaded;
    PxnCameraInfo* listed = reinterpret_cast<PxnCameraInfo*>(this);
    EXPECT_EQ(unloaded.AllocateAndGetCameraList(&listed), 0u);
    EXPECT_EQ(listed, nullptr);
    EXPECT_EQ(unloaded.AllocateAndGetCameraList(nullptr), 0u);
}

TEST_F(CameraRecords, AreEmptyWhereTheSdkFilledFewerThanItCounts) {
    api.PxnCamerasList = [](PxnCameraInfo* cameras, std::uint32_t, std::uint32_t* found,
                            std::uint32_t) -> PxnError {
        cameras[0].cameraIdExtended = "ext-0";
        *found = 2;
        return PxnErrSuccess;
    };
    ASSERT_EQ(List(), 2u);
    EXPECT_STREQ(records[0].cameraIdExtended, "ext-0");
    EXPECT_EQ(records[1].cameraIdExtended, nullptr);
    EXPECT_EQ(records[1].modelName, nullptr);
    EXPECT_EQ(records[1].streamCount, 0u);
}

TEST_F(CameraRecords, AreClearedBeforeTheSdkIsAskedAgain) {
    api.PxnCamerasList = [](PxnCameraInfo* cameras, std::uint32_t capacity, std::uint32_t* found,
                            std::uint32_t) -> PxnError {
        *found = 150;
        const bool isFirst = capacity == 100;
        for (std::uint32_t index = 0; index < (isFirst ? capacity : 1); ++index) {
            cameras[index].cameraIdExtended = isFirst ? "too early" : "ext-0";
        }
        return isFirst ? PxnErrMoreData : PxnErrSuccess;
    };
    ASSERT_EQ(List(), 150u);
    EXPECT_STREQ(records[0].cameraIdExtended, "ext-0");
    for (std::size_t index = 1; index < 150; ++index) {
        EXPECT_EQ(records[index].cameraIdExtended, nullptr) << index;
    }
}

} // namespace
