// close_race_test.cpp - closing and de-initialising while cameras come and go
#include "race_fixture.h"

#include <atomic>
#include <iterator>

namespace {

class CloseRace : public RaceFixture {
protected:
    void SetUp() override {
        RaceFixture::SetUp();
        grabber = MakeGrabber();
        ASSERT_EQ(grabber->InstCamCfgChangeCallBack(&OnChange, this), MV_OK);
        Open(*grabber);
    }
    void TearDown() override {
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        grabber.reset();
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    void UseGrabber(RaceRandom& random) {
        switch (Draw(random, 4)) {
        case 0:
            grabber->CloseActCamera();
            Hesitate(random);
            grabber->OpenActCamera();
            break;
        case 1:
            EXPECT_EQ(grabber->DeInit(), MV_OK);
            isGone = true; // from now on nothing may be delivered
            ExpectNothingLeft();
            Hesitate(random);
            isGone = false;
            EXPECT_EQ(grabber->Init(), MV_OK);
            break;
        case 2:
            grabber->RefreshCameraList();
            break;
        default:
            grabber->CloseActCamera();
            break;
        }
    }
    void UseCamera(RaceRandom& random) {
        static constexpr const char* kAway[] = {"unplug A", "access A none", "access A read"};
        static constexpr const char* kBack[] = {"plug A", "access A full", "access A full"};
        for (unsigned count = 0; count < 2; ++count) {
            const std::uint64_t kind = Draw(random, std::size(kAway));
            TryControl(kAway[kind]); // refused while the SDK is not started
            Hesitate(random);
            TryControl(kBack[kind]);
            Hesitate(random);
        }
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::atomic<bool> isGone{false};
    std::atomic<std::uint64_t> changes{0};

private:
    static void OnChange(void* context) {
        auto& test = *static_cast<CloseRace*>(context);
        EXPECT_FALSE(test.isGone) << "the grabber is de-initialised";
        RaceRandom random(++test.changes);
        Hesitate(random);
        test.grabber->IsCameraOpen();
        EXPECT_EQ(test.grabber->GetAcquisitionState(), 0u);
        test.grabber->GetActCameraIndex();
        EXPECT_EQ(test.grabber->StopSnap(), MV_OK);
        EXPECT_FALSE(test.isGone) << "the grabber is de-initialised";
    }
};

TEST_F(CloseRace, ClosesAgainstDiscovery) {
    RunRounds([this](RaceRandom& random) {
        Contest(random, {[this](RaceRandom& own) { UseGrabber(own); },
                         [this](RaceRandom& own) {
                             UseCamera(own);
                         }});
        Reopen(*grabber, "A", 0);
    });
    EXPECT_GT(changes, 0u);
}

} // namespace
