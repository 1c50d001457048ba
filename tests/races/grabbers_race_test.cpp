// grabbers_race_test.cpp - several grabbers of one process at once
#include "race_fixture.h"

#include <atomic>

namespace {

class GrabbersRace : public RaceFixture {
protected:
    void TearDown() override {
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    /// From initialising to closing, or a part of it, as drawn.
    void UseCamera(CMivoraKVNPyxenClass& grabber, std::int32_t camera, RaceRandom& random) {
        if (!grabber.IsInitialized()) {
            ASSERT_EQ(grabber.Init(), MV_OK);
        }
        if (grabber.IsCameraOpen() == 0) {
            ASSERT_EQ(grabber.SetActCameraIndex(camera), MV_OK);
            ASSERT_EQ(grabber.OpenActCamera(), MV_OK);
        }
        ASSERT_EQ(grabber.PrepareFrameBuffers(1 + Draw(random, 4)), MV_OK);
        const auto mode = static_cast<std::uint32_t>(1 + Draw(random, 3));
        ASSERT_EQ(grabber.Snap(mode), MV_OK);
        Hesitate(random);
        EXPECT_EQ(grabber.StopSnap(), MV_OK);
        std::uint64_t received = 0;
        EXPECT_EQ(grabber.GetGrabberParam(MVGF_FRAMES_RECEIVED, &received, nullptr), MV_OK);
        frames += received;
        switch (Draw(random, 4)) {
        case 0:
            EXPECT_EQ(grabber.CloseActCamera(), MV_OK);
            EXPECT_EQ(grabber.RefreshCameraList(), MV_OK);
            break;
        case 1:
            EXPECT_EQ(grabber.DeInit(), MV_OK);
            break;
        default:
            break;
        }
    }
    /// A grabber's whole life, which ends wherever it is.
    void Live(const std::string& name, std::int32_t camera, RaceRandom& random) {
        const auto grabber = MakeGrabber(name);
        Hesitate(random);
        const std::uint64_t stage = Draw(random, 4);
        if (stage > 0) {
            ASSERT_EQ(grabber->Init(), MV_OK);
        }
        if (stage > 1) {
            EXPECT_EQ(grabber->GetNumCameras(), 2u);
            EXPECT_EQ(grabber->SetActCameraIndex(camera), MV_OK);
            // The other one with this camera may have it open.
            if (grabber->OpenActCamera() == MV_OK && stage > 2) {
                EXPECT_EQ(grabber->PrepareFrameBuffers(2), MV_OK);
                EXPECT_EQ(grabber->Snap(1), MV_OK);
            }
        }
        Hesitate(random);
        ++lives;
    }

    std::atomic<std::uint64_t> frames{0};
    std::atomic<std::uint64_t> lives{0};
};

TEST_F(GrabbersRace, TwoGrabbersUseOneLibrary) {
    const auto first = MakeGrabber("first");
    const auto second = MakeGrabber("second");
    RunRounds([&](RaceRandom& random) {
        Contest(random, {[&](RaceRandom& own) { UseCamera(*first, 0, own); },
                         [&](RaceRandom& own) {
                             UseCamera(*second, 1, own);
                         }});
    });
    first->DeInit();
    second->DeInit();
    EXPECT_GT(frames, 0u);
}

TEST_F(GrabbersRace, GrabbersAreCreatedAndDestroyedAtOnce) {
    RunRounds([this](RaceRandom& random) {
        Contest(random, {[this](RaceRandom& own) { Live("first", 0, own); },
                         [this](RaceRandom& own) { Live("second", 1, own); },
                         [this](RaceRandom& own) {
                             Live("third", 0, own);
                         }});
        ExpectNothingLeft();
    });
    EXPECT_GT(lives, 0u);
}

} // namespace
