// serial_race_test.cpp - serial channels while frame buffers are prepared
#include "race_fixture.h"
#include "serial/cmd_kvn_pyxen.h"

#include <array>
#include <cstdio>
#include <vector>

using namespace pyxen;

namespace {

class SerialRace : public RaceFixture {
protected:
    void SetUp() override {
        RaceFixture::SetUp();
        grabber = MakeGrabber();
        Open(*grabber);
        const char* const ports[] = {"PYXENSERIALPORT0", "PYXENSERIALPORT3"};
        for (std::size_t at = 0; at < channels.size(); ++at) {
            channels[at] = std::make_unique<CCmdKVNPyxen>(grabber.get(), grabber->SerialMutex());
            SerialSettings settings;
            std::snprintf(settings.portName, sizeof settings.portName, "%s", ports[at]);
            channels[at]->SetSettings(settings);
        }
    }
    void TearDown() override {
        channels = {};
        EXPECT_EQ(grabber->DeInit(), MV_OK);
        grabber.reset();
        ExpectNothingLeft();
        RaceFixture::TearDown();
    }

    /// Sends some bytes through a loopback and gets them back.
    void Talk(CCmdKVNPyxen& channel, RaceRandom& random) {
        ASSERT_EQ(channel.Open(), MV_OK);
        std::vector<std::uint8_t> sent(1 + Draw(random, 40));
        for (std::uint8_t& byte : sent) {
            byte = static_cast<std::uint8_t>(random());
        }
        std::uint64_t count = 0;
        EXPECT_EQ(channel.WriteBuffer(sent.data(), sent.size(), &count), MV_OK);
        EXPECT_EQ(count, sent.size());
        Hesitate(random);
        std::vector<std::uint8_t> received(sent.size());
        EXPECT_EQ(channel.ReadBuffer(received.data(), received.size(), &count), MV_OK);
        EXPECT_EQ(count, sent.size());
        EXPECT_EQ(received, sent);
        if (Draw(random, 4) == 0) {
            channel.EnumeratePorts();
            EXPECT_EQ(channel.GetPorts().size(), 5u);
        }
        EXPECT_STRNE(channel.GetConfigText(), "");
        EXPECT_EQ(channel.Purge(3), MV_OK);
        EXPECT_EQ(channel.Close(), MV_OK);
    }
    void Prepare(RaceRandom& random) {
        for (unsigned count = 0; count < 3; ++count) {
            EXPECT_EQ(grabber->PrepareFrameBuffers(1 + Draw(random, 3)), MV_OK);
            EXPECT_NE(grabber->GetFrameBuffer(0), nullptr);
            Hesitate(random);
        }
    }

    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::array<std::unique_ptr<CCmdKVNPyxen>, 2> channels;
};

TEST_F(SerialRace, ChannelsTalkAgainstPreparation) {
    RunRounds([this](RaceRandom& random) {
        Contest(random, {[this](RaceRandom& own) { Talk(*channels[0], own); },
                         [this](RaceRandom& own) { Talk(*channels[1], own); },
                         [this](RaceRandom& own) {
                             Prepare(own);
                         }});
    });
}

} // namespace
