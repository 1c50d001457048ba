// answer_size_test.cpp - counts of the SDK that no memory is asked for
#include "sdk/answer_size.h"

#include "sdk/feature.h"
#include "sync/feature_cache.h"
#include "tests/module/sdk/loaded_api.h"

#include <cstdint>
#include <string>

using namespace pyxen;

namespace {

class AnswerSize : public LoadedApi {
protected:
    /// The next call of the entry reports one element more than there is room for.
    template <typename T>
    void Overstate(const std::string& entry) {
        constexpr std::size_t kCount = kMostAnswerBytes / sizeof(T) + 1;
        sdk.Data().foundAnswers[entry] = {static_cast<std::uint32_t>(kCount)};
    }
};

TEST_F(AnswerSize, IsExceededByEntriesOfAnEnumeration) {
    Overstate<const char*>("PxnFeatureEnumRangeQuery");
    const Feature format(api, scripted::CameraHandle(), "PixelFormat", FeatureType::kEnumeration);
    FeatureRange range;
    FeatureStep failed{};
    EXPECT_EQ(format.Range(range, &failed), PxnErrOther);
    EXPECT_EQ(failed, FeatureStep::kMemory);
    EXPECT_EQ(format.Range(range, &failed), PxnErrSuccess);
    EXPECT_EQ(range.entries.size(), 9u);
}

TEST_F(AnswerSize, IsExceededByAText) {
    Overstate<char>("PxnFeatureStringGet");
    std::string text = "unchanged";
    EXPECT_EQ(api.GetStringFeature(scripted::CameraHandle(), "DeviceUserID", text), PxnErrOther);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(sdk.Calls().size(), 1u);
    EXPECT_EQ(api.GetStringFeature(scripted::CameraHandle(), "DeviceUserID", text), PxnErrSuccess);
    EXPECT_EQ(text, "left");
}

TEST_F(AnswerSize, IsExceededByTheFeaturesOfAModule) {
    Overstate<PxnFeatureInfo>("PxnFeaturesList");
    FeatureCache cache;
    EXPECT_FALSE(cache.Init("Camera", &api, scripted::CameraHandle(), &sink));
    EXPECT_EQ(sink.Take(),
              Texts{"0 FeatureCache::Init: Could not allocate memory for feature list"});
    EXPECT_EQ(sdk.Calls().size(), 1u);
    EXPECT_TRUE(cache.Init("Camera", &api, scripted::CameraHandle(), &sink));
}

TEST_F(AnswerSize, IsExceededByCameras) {
    Overstate<PxnCameraInfo>("PxnCamerasList");
    PxnCameraInfo* cameras = nullptr;
    EXPECT_EQ(api.AllocateAndGetCameraList(&cameras), 0u);
    EXPECT_EQ(cameras, nullptr);
    EXPECT_EQ(
        sink.Take().back(),
        "0 CPyxenAPIAccess::AllocateAndGetCameraList: could not allocate memory for camera list.");
}

} // namespace
