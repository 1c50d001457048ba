// stop_race_test.cpp - stopping from several threads while frames arrive
#include "race_fixture.h"

#include <atomic>

namespace {

class StopRace : public RaceFixture {
protected:
    void SetUp() override {
        RaceFixture::SetUp();
        grabber = MakeGrabber();
        Open(*grabber);
        ASSERT_EQ(grabber->PrepareFrameBuffers(4), MV_OK);
        ASSERT_EQ(grabber->InstPostProcessCallBack(&Receive, this), MV_OK);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        grabber.reset();
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    void Stop() {
        EXPECT_EQ(grabber->StopSnap(), MV_OK);
        EXPECT_EQ(grabber->GetAcquisitionState(), 0u);
        EXPECT_EQ(inside, 0u) << "no callback runs once the stop has returned";
    }
    void TakeFrames(RaceRandom& random) {
        std::uint64_t index = 0;
        for (unsigned count = 0; count < 4; ++count) {
            if (grabber->GetLastFilledBuffer(&index) == MV_OK) {
                EXPECT_NE(grabber->GetFrameBuffer(index), nullptr);
                EXPECT_EQ(grabber->ReleaseFrameBuffer(index), MV_OK);
            }
            Hesitate(random);
        }
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::atomic<std::uint64_t> frames{0};
    std::atomic<unsigned> inside{0};
    std::atomic<bool> stopsInside{false};

private:
    static void Receive(std::uint64_t, std::uint32_t, void* context) {
        auto& test = *static_cast<StopRace*>(context);
        ++test.inside;
        RaceRandom random(++test.frames);
        Hesitate(random);
        if (test.stopsInside && Draw(random, 3) == 0) {
            EXPECT_EQ(test.grabber->StopSnap(), MV_OK);
        }
        --test.inside;
    }
};

TEST_F(StopRace, StopsAgainstTheCallback) {
    RunRounds([this](RaceRandom& random) {
        if (Draw(random, 16) == 0) {
            ASSERT_EQ(grabber->PrepareFrameBuffers(1 + Draw(random, 6)), MV_OK);
        }
        stopsInside = false;
        const std::uint32_t mode = Draw(random, 4) == 0 ? 2 : 1;
        ASSERT_EQ(grabber->Snap(mode), MV_OK);
        const auto stop = [this](RaceRandom&) {
            Stop();
        };
        Contest(random, {stop, stop, [this](RaceRandom& own) {
                             TakeFrames(own);
                         }});
        const std::uint64_t received = frames;
        Hesitate(random);
        EXPECT_EQ(frames, received) << "no frame comes once the stop has returned";
    });
    EXPECT_GT(frames, 0u);
}

TEST_F(StopRace, StopsInsideTheCallbackAsWell) {
    RunRounds([this](RaceRandom& random) {
        stopsInside = true;
        ASSERT_EQ(grabber->Snap(1), MV_OK);
        Contest(random, {[this](RaceRandom&) { EXPECT_EQ(grabber->StopSnap(), MV_OK); },
                         [this](RaceRandom& own) {
                             TakeFrames(own);
                         }});
        EXPECT_EQ(grabber->GetAcquisitionState(), 0u);
    });
    EXPECT_GT(frames, 0u);
}

} // namespace
