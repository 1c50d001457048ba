// known_camera_test.cpp - tests of how cameras are named and found
#include "apps/common/known_camera.h"

#include <gtest/gtest.h>

namespace {

std::vector<KnownCamera> ThreeCameras() {
    std::vector<KnownCamera> cameras(3);
    for (std::int32_t i = 0; i < 3; ++i) {
        KnownCamera& camera = cameras[static_cast<std::size_t>(i)];
        camera.index = i;
        camera.uniqueId = 1000u + static_cast<std::uint32_t>(i);
        camera.name = i == 2 ? "G-200" : "G-100";
        camera.model = camera.name;
        camera.vendor = "Korvane";
        camera.serialNumber = std::to_string(i == 0 ? 1001 : 5000 + i);
        camera.id = "DEV_" + std::to_string(i);
        camera.extendedId = "Eth0|" + camera.id;
        camera.interfaceName = "Eth0";
    }
    cameras[2].userName = "left";
    return cameras;
}

using Positions = std::vector<std::size_t>;

TEST(KnownCamera, IsFoundByWhatOnlyItHas) {
    const std::vector<KnownCamera> cameras = ThreeCameras();
    for (const char* text :
         {"2", "1002", "0x3EA", "DEV_2", "Eth0|DEV_2", "G-200", "left", "5002"}) {
        EXPECT_EQ(FindCameras(cameras, text), Positions{2}) << text;
    }
    EXPECT_EQ(FindCameras(cameras, "G-2"), Positions{});
    EXPECT_EQ(FindCameras(cameras, "3"), Positions{});
    EXPECT_EQ(FindCameras(cameras, ""), Positions{}) << "not those without a user name";
}

TEST(KnownCamera, IsFoundTogetherWithOthersOfItsName) {
    const std::vector<KnownCamera> cameras = ThreeCameras();
    EXPECT_EQ(FindCameras(cameras, "G-100"), (Positions{0, 1}));
    EXPECT_EQ(FindCameras(cameras, "Korvane"), (Positions{0, 1, 2}));
    EXPECT_EQ(FindCameras(cameras, "1001"), Positions{1}) << "the unique id before serial numbers";
}

TEST(KnownCamera, IsDescribedAsFarAsItIsKnown) {
    KnownCamera camera = ThreeCameras()[2];
    EXPECT_EQ(camera.Text(), "camera 2 (G-200, 0x000003EA)");
    EXPECT_EQ(camera.WholeText(),
              "camera 2 (G-200, 0x000003EA), user name left, Korvane, serial number 5002, at Eth0, "
              "Eth0|DEV_2");
    camera.canOpen = false;
    EXPECT_STREQ(camera.AccessText(), "in use, can be read");
    camera.canRead = false;
    EXPECT_STREQ(camera.AccessText(), "in use");
    EXPECT_EQ(KnownCamera().WholeText(), "camera 0 (, 0x00000000)");
}

} // namespace
