// camera_identity_test.cpp - which camera was chosen, and which was opened
#include "grabber/camera_identity.h"

#include "grabber/camera_key.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace pyxen;

namespace {

TEST(CameraIdentityTest, BeginsWithNeither) {
    const CameraIdentity identity;
    EXPECT_EQ(identity.GetSelected(), "");
    EXPECT_EQ(identity.GetOpened(), "");
    EXPECT_TRUE(identity.IsSelected(0));
    EXPECT_FALSE(identity.IsSelected(1));
}

TEST(CameraIdentityTest, ChoosingLeavesTheOpenedCamera) {
    CameraIdentity identity;
    identity.Open("opened");
    EXPECT_TRUE(identity.Select("chosen"));
    EXPECT_EQ(identity.GetSelected(), "chosen");
    EXPECT_EQ(identity.GetOpened(), "opened");
    EXPECT_TRUE(identity.IsSelected(CameraKey("chosen")));
    EXPECT_FALSE(identity.IsSelected(CameraKey("opened")));
}

TEST(CameraIdentityTest, OpeningChoosesTheCameraToo) {
    CameraIdentity identity;
    identity.Open("opened");
    EXPECT_EQ(identity.GetSelected(), "opened");
    identity.Open(nullptr);
    EXPECT_EQ(identity.GetSelected(), "");
    EXPECT_EQ(identity.GetOpened(), "");
}

TEST(CameraIdentityTest, ForgetsTheOpenedCameraAlone) {
    CameraIdentity identity;
    identity.Open("opened");
    identity.ForgetOpened();
    EXPECT_EQ(identity.GetOpened(), "");
    EXPECT_EQ(identity.GetSelected(), "opened");
}

// For ThreadSanitizer.
TEST(CameraIdentityTest, MayBeReadWhileItChanges) {
    CameraIdentity identity;
    std::atomic<bool> done{false};
    std::thread reader([&] {
        while (!done) {
            const std::string opened = identity.GetOpened();
            EXPECT_TRUE(opened.empty() || opened == "a camera with a long identifier") << opened;
        }
    });
    for (int time = 0; time < 500; ++time) {
        identity.Open("a camera with a long identifier");
        identity.Select("another camera");
        identity.ForgetOpened();
    }
    done = true;
    reader.join();
}

} // namespace
