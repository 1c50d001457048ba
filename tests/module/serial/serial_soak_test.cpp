// serial_soak_test.cpp - channels and buffer preparation over one mutex, on the simulator
//
// MIVORA_SOAK_SECONDS says for how long; three seconds without it.
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "serial/cmd_kvn_pyxen.h"
#include "tests/support/environment_guard.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

class SerialSoakTest : public testing::Test {
protected:
    void SetUp() override {
        directory.Write("PxnC.xml", "<PxnC><camera kind=\"serial\" id=\"A\">"
                                    "<port number=\"0\" device=\"loopback\"/>"
                                    "<port number=\"3\" device=\"loopback\"/></camera></PxnC>");
        const std::string seconds = platform::GetEnvironment("MIVORA_SOAK_SECONDS");
        deadline += (seconds.empty() ? 3 : std::stoull(seconds)) * kSecond;
        ASSERT_EQ(grabber.SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
        ASSERT_EQ(grabber.Init(), MV_OK);
        ASSERT_EQ(grabber.SetActCameraIndex(0), MV_OK);
        ASSERT_EQ(grabber.OpenActCamera(), MV_OK);
    }

    bool IsTimeLeft() const { return platform::MonotonicNanoseconds() < deadline; }

    /// Sends bytes through a loopback until the time is over, once at least, and gets the same ones
    /// back.
    void Talk(const char* portName, unsigned seed, unsigned& rounds) {
        CCmdKVNPyxen channel(&grabber, grabber.SerialMutex());
        SerialSettings settings;
        std::snprintf(settings.portName, sizeof settings.portName, "%s", portName);
        channel.SetSettings(settings);
        ASSERT_EQ(channel.Open(), MV_OK);
        std::mt19937 random{seed};
        while ((IsTimeLeft() || rounds == 0) && !HasFailure()) {
            std::vector<std::uint8_t> sent(1 + random() % 3000);
            for (std::uint8_t& byte : sent) {
                byte = static_cast<std::uint8_t>(random());
            }
            std::uint64_t count = 0;
            EXPECT_EQ(channel.WriteBuffer(sent.data(), sent.size(), &count), MV_OK);
            EXPECT_EQ(count, sent.size());
            std::vector<std::uint8_t> received(sent.size());
            std::uint64_t done = 0;
            while (done < received.size() && !HasFailure()) {
                EXPECT_EQ(
                    channel.ReadBuffer(received.data() + done, received.size() - done, &count),
                    MV_OK);
                done += count;
            }
            EXPECT_EQ(received, sent);
            std::uint8_t more = 0;
            EXPECT_EQ(channel.ReadByte(&more, &count), MV_READ_FAILED);
            if (++rounds % 16 == 0) {
                channel.EnumeratePorts();
                EXPECT_EQ(channel.GetPorts().size(), 5u);
                EXPECT_EQ(channel.Purge(3), MV_OK);
                EXPECT_EQ(channel.Close(), MV_OK);
                EXPECT_EQ(channel.Open(), MV_OK);
            }
        }
        EXPECT_EQ(channel.Close(), MV_OK);
    }

    static constexpr std::uint64_t kSecond = 1000000000;
    support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    support::TemporaryDirectory directory;
    CMivoraKVNPyxenClass grabber{nullptr};
    std::uint64_t deadline = platform::MonotonicNanoseconds();
};

TEST_F(SerialSoakTest, TwoChannelsAndBufferPreparationContend) {
    unsigned firstRounds = 0;
    unsigned secondRounds = 0;
    unsigned preparations = 0;
    std::thread first([&] { Talk("PYXENSERIALPORT0", 1, firstRounds); });
    std::thread second([&] { Talk("PYXENSERIALPORT3", 2, secondRounds); });
    while ((IsTimeLeft() || preparations == 0) && !HasFailure()) {
        EXPECT_EQ(grabber.PrepareFrameBuffers(1 + preparations % 3), MV_OK);
        EXPECT_NE(grabber.GetFrameBuffer(0), nullptr);
        ++preparations;
    }
    first.join();
    second.join();
    EXPECT_GT(firstRounds, 0u);
    EXPECT_GT(secondRounds, 0u);
    EXPECT_GT(preparations, 0u);
    RecordProperty("rounds", std::to_string(firstRounds) + " " + std::to_string(secondRounds) +
                                 " " + std::to_string(preparations));
}

} // namespace
