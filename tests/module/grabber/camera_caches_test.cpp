// camera_caches_test.cpp - the feature caches of the open camera's modules
#include "grabber/camera_caches.h"

#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

class CameraCachesTest : public LoadedApi {
protected:
    CameraCaches caches;
};

TEST_F(CameraCachesTest, AreFiveThatBeginEmpty) {
    ASSERT_EQ(caches.GetCount(), 5u);
    for (std::uint32_t index = 0; index < 5; ++index) {
        EXPECT_EQ(caches.Get(index), &caches[index]);
        EXPECT_EQ(caches[index].GetModuleName(), nullptr);
    }
    EXPECT_EQ(caches.Get(5), nullptr);
    EXPECT_EQ(caches.FindCacheByName("Camera"), nullptr);
    EXPECT_EQ(caches.FindCacheByName(nullptr), nullptr);
    EXPECT_EQ(caches.FindByHandle(scripted::CameraHandle()), nullptr);
}

TEST_F(CameraCachesTest, AreFoundByNameAndHandleUntilTheyAreCleared) {
    FeatureCache& camera = caches[kCameraCache];
    ASSERT_TRUE(camera.Init("Camera", &api, scripted::CameraHandle(), &sink));
    EXPECT_EQ(caches.FindCacheByName("cAMERA"), &camera);
    EXPECT_EQ(caches.FindCacheByName("Camer"), nullptr);
    EXPECT_EQ(caches.FindByHandle(scripted::CameraHandle()), &camera);
    caches.Clear();
    EXPECT_EQ(caches.FindCacheByName("Camera"), nullptr);
    EXPECT_EQ(camera.GetFeatureCount(), 0u);
}

TEST_F(CameraCachesTest, AreFoundByTheirHandleWhenTheyAreCleared) {
    ASSERT_TRUE(caches[kCameraCache].Init("Camera", &api, scripted::CameraHandle(), &sink));
    caches.Clear();
    const FeatureCache* const found = caches.FindByHandle(scripted::CameraHandle());
    ASSERT_EQ(found, &caches[kCameraCache]);
    EXPECT_EQ(found->GetModuleName(), nullptr);
    EXPECT_EQ(found->GetFeatureCount(), 0u);
}

TEST_F(CameraCachesTest, OfEqualHandlesTheFirstIsFound) {
    for (const auto index : {kStreamCache, kCameraCache, kLocalDeviceCache}) {
        ASSERT_TRUE(caches[index].Init("Module", &api, scripted::CameraHandle(), &sink));
    }
    EXPECT_EQ(caches.FindByHandle(scripted::CameraHandle()), &caches[kLocalDeviceCache]);
    caches[kLocalDeviceCache].Clear();
    EXPECT_EQ(caches.FindByHandle(scripted::CameraHandle()), &caches[kLocalDeviceCache]);
}

} // namespace
