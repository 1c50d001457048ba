// camera_test.cpp - properties and graphics modes of a camera node
#include "mivora/camera.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class CountedMode : public CMivoraGfxMode {
public:
    explicit CountedMode(int& destructions) : destroyed(destructions) {}
    ~CountedMode() override { ++destroyed; }

private:
    int& destroyed;
};

TEST(Camera, IsEmptyAtFirst) {
    CMivoraCamera camera;
    EXPECT_STREQ(camera.GetCameraName(), "");
    EXPECT_STREQ(camera.GetExtraDescription(), "");
    EXPECT_EQ(camera.GetCameraRecord(), nullptr);
    EXPECT_EQ(camera.GetCameraUniqueID(), 0u);
    EXPECT_EQ(camera.GetQZRCameraID(), 0u);
    EXPECT_EQ(camera.GetCameraSectionNum(), -1);
    EXPECT_EQ(camera.GetCamCntrlDlgIndex(), 0u);
    EXPECT_EQ(camera.GetNext(), nullptr);
    EXPECT_EQ(camera.GetPrev(), nullptr);
    EXPECT_EQ(camera.GetNumGfxModes(), 0u);
    EXPECT_EQ(camera.GetActGfxModeIndex(), -1);
    EXPECT_EQ(camera.GetActGfxMode(), nullptr);
    EXPECT_EQ(camera.GetFirstGfxMode(), nullptr);
}

TEST(Camera, StoresItsProperties) {
    CMivoraCamera camera;
    CMivoraCamera other;
    camera.SetCameraUniqueID(0xFFFFFFFFu);
    camera.SetQZRCameraID(7);
    camera.SetCameraSectionNum(3);
    camera.SetCamCntrlDlgIndex(2);
    camera.SetNext(&other);
    other.SetPrev(&camera);
    EXPECT_EQ(camera.GetCameraUniqueID(), 0xFFFFFFFFu);
    EXPECT_EQ(camera.GetQZRCameraID(), 7u);
    EXPECT_EQ(camera.GetCameraSectionNum(), 3);
    EXPECT_EQ(camera.GetCamCntrlDlgIndex(), 2u);
    EXPECT_EQ(camera.GetNext(), &other);
    EXPECT_EQ(other.GetPrev(), &camera);
}

TEST(Camera, KeepsAtMost255BytesOfItsName) {
    CMivoraCamera camera;
    camera.SetCameraName(std::string(300, 'n').c_str());
    EXPECT_EQ(camera.GetCameraName(), std::string(255, 'n'));
    camera.SetCameraName(std::string(255, 'm').c_str());
    EXPECT_EQ(camera.GetCameraName(), std::string(255, 'm'));
    camera.SetCameraName(nullptr);
    EXPECT_STREQ(camera.GetCameraName(), "");
}

TEST(Camera, BuildsOneModeOnceAndActivatesIt) {
    CMivoraCamera camera;
    EXPECT_EQ(camera.BuildGfxModeList(nullptr), 1u);
    CMivoraGfxMode* const mode = camera.GetFirstGfxMode();
    ASSERT_NE(mode, nullptr);
    EXPECT_EQ(camera.BuildGfxModeList(nullptr), 1u);
    EXPECT_EQ(camera.GetFirstGfxMode(), mode);
    EXPECT_EQ(camera.GetActGfxMode(), mode);
    EXPECT_EQ(camera.GetActGfxModeIndex(), 0);
}

TEST(Camera, ListsModesInOrderAndSwitchesBetweenThem) {
    int destroyed = 0;
    CMivoraCamera camera;
    auto* const first = new CountedMode(destroyed);
    auto* const second = new CountedMode(destroyed);
    camera.AddGfxMode(first);
    camera.AddGfxMode(second);
    camera.AddGfxMode(nullptr);
    EXPECT_EQ(camera.GetNumGfxModes(), 2u);
    EXPECT_EQ(camera.GetGfxMode(0), first);
    EXPECT_EQ(camera.GetGfxMode(1), second);
    EXPECT_EQ(camera.GetGfxMode(2), nullptr);
    EXPECT_EQ(camera.GetActGfxMode(), first);
    EXPECT_EQ(camera.SetActGfxModeIndex(1), MV_OK);
    EXPECT_EQ(camera.GetActGfxMode(), second);
    EXPECT_EQ(camera.SetActGfxModeIndex(2), MV_BAD_VALUE);
    EXPECT_EQ(camera.SetActGfxModeIndex(-2), MV_BAD_VALUE);
    EXPECT_EQ(camera.GetActGfxModeIndex(), 1);
    EXPECT_EQ(camera.SetActGfxModeIndex(-1), MV_OK);
    EXPECT_EQ(camera.GetActGfxMode(), nullptr);
    camera.DeleteGfxModes();
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(camera.GetNumGfxModes(), 0u);
    EXPECT_EQ(camera.GetActGfxModeIndex(), -1);
}

TEST(Camera, DeletesItsModesWithItself) {
    int destroyed = 0;
    auto camera = std::make_unique<CMivoraCamera>();
    camera->AddGfxMode(new CountedMode(destroyed));
    camera.reset();
    EXPECT_EQ(destroyed, 1);
}

} // namespace
