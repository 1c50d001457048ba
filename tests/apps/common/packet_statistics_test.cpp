// packet_statistics_test.cpp - tests of what the stream says of packets and frames
#include "apps/common/packet_statistics.h"

#include "apps/common/service_client.h"
#include "tests/apps/common/fake_services.h"

#include <gtest/gtest.h>

namespace {

class PacketCounts : public testing::Test {
protected:
    void Put(const char* name, std::int64_t count) {
        services.Add("Stream0", name, MV_FEATURE_INTEGER).value.integer = count;
    }

    FakeServices services;
    ServiceClient client{services};
};

TEST_F(PacketCounts, AreReadByTheNamesThatTheStreamHas) {
    EXPECT_TRUE(ReadPacketStatistics(nullptr).IsEmpty());
    EXPECT_TRUE(ReadPacketStatistics(&client).IsEmpty());
    EXPECT_EQ(PacketStatistics().Json().Text(), "null");
    Put("GVSPMissingPackets", 3);
    Put("GevStreamResendPacketCount", 7);
    Put("GVSPResentPackets", 8);
    Put("StreamLostFrameCount", 1);
    EXPECT_EQ(ReadPacketStatistics(&client).Text(),
              "3 packets missing, 7 packets resent, 1 frames without a buffer")
        << "as the standard defines it";
    Put("StreamBufferUnderrunCount", 2);
    const PacketStatistics statistics = ReadPacketStatistics(&client);
    EXPECT_EQ(statistics.Text(), "3 packets missing, 7 packets resent, 2 frames without a buffer, "
                                 "1 frames lost on the way");
    EXPECT_EQ(statistics.Json().Text(), "{\"received\":null,\"missing\":3,\"resent\":7,"
                                        "\"underruns\":2,\"lostFrames\":1}");
}

TEST_F(PacketCounts, AreThoseOfARunUnlessTheyWereReset) {
    PacketStatistics before;
    before.received = 100;
    before.missing = 5;
    PacketStatistics now;
    now.received = 130;
    now.missing = 2;
    now.resent = 1;
    PacketStatistics run = StatisticsSince(before, now);
    EXPECT_EQ(run.received, 30u);
    EXPECT_EQ(run.missing, 2u);
    EXPECT_EQ(run.resent, std::nullopt);
    EXPECT_EQ(run.underruns, std::nullopt);
    run += run;
    EXPECT_EQ(run.received, 60u);
    EXPECT_EQ(run.underruns, std::nullopt);
}

} // namespace
