// gvcp_test.cpp - tests of the messages of GigE Vision's control protocol
#include "apps/doctor/gvcp.h"

#include <gtest/gtest.h>

namespace gvcp {
namespace {

TEST(Gvcp, MessagesAreAsTheProtocolHasThem) {
    EXPECT_EQ(Discover(0x1234), (Message{0x42, 0x11, 0x00, 0x02, 0x00, 0x00, 0x12, 0x34}));
    EXPECT_EQ(ReadRegister(1, 0x0938),
              (Message{0x42, 0x01, 0x00, 0x80, 0x00, 0x04, 0x00, 0x01, 0x00, 0x00, 0x09, 0x38}));
    EXPECT_EQ(WriteRegister(3, 0x0A00, 2),
              (Message{0x42, 0x01, 0x00, 0x82, 0x00, 0x08, 0x00, 0x03, 0x00, 0x00, 0x0A, 0x00, 0x00,
                       0x00, 0x00, 0x02}));
    const Message force = ForceAddress(2, 0x0102030405AB, 0xC0000207, 0xFFFFFF00);
    ASSERT_EQ(force.size(), 8u + 56u);
    EXPECT_EQ(Message(force.begin(), force.begin() + 16),
              (Message{0x42, 0x11, 0x00, 0x04, 0x00, 0x38, 0x00, 0x02, 0x00, 0x00, 0x01, 0x02, 0x03,
                       0x04, 0x05, 0xAB}));
    EXPECT_EQ(Message(force.begin() + 28, force.begin() + 32), (Message{0xC0, 0x00, 0x02, 0x07}));
    EXPECT_EQ(Message(force.begin() + 44, force.begin() + 48), (Message{0xFF, 0xFF, 0xFF, 0x00}));
}

TEST(Gvcp, OnlyTheRightReplyIsARegister) {
    const Message reply{0x00, 0x00, 0x00, 0x81, 0x00, 0x04, 0x00, 0x05, 0x00, 0x00, 0x0B, 0xB8};
    EXPECT_EQ(ParseRegister(reply, 5), 3000u);
    EXPECT_EQ(ParseRegister(reply, 6), std::nullopt) << "of another request";
    Message wrong = reply;
    wrong[0] = 0x80;
    EXPECT_EQ(ParseRegister(wrong, 5), std::nullopt) << "an error";
    wrong = reply;
    wrong[3] = 0x03;
    EXPECT_EQ(ParseRegister(wrong, 5), std::nullopt) << "of another command";
    wrong = reply;
    wrong.pop_back();
    EXPECT_EQ(ParseRegister(wrong, 5), std::nullopt) << "too short";
    EXPECT_EQ(ParseRegister({}, 5), std::nullopt);
}

TEST(Gvcp, OnlyTheRightReplyIsAWrittenRegister) {
    const Message reply{0x00, 0x00, 0x00, 0x83, 0x00, 0x04, 0x00, 0x05, 0x00, 0x00, 0x00, 0x01};
    EXPECT_TRUE(IsWritten(reply, 5));
    EXPECT_FALSE(IsWritten(reply, 6));
    Message wrong = reply;
    wrong[0] = 0x80;
    EXPECT_FALSE(IsWritten(wrong, 5)) << "an error";
    wrong = reply;
    wrong[3] = 0x81;
    EXPECT_FALSE(IsWritten(wrong, 5)) << "of another command";
    EXPECT_FALSE(IsWritten({}, 5));
}

TEST(Gvcp, ADiscoveryThatIsTooShortIsNoCamera) {
    Message reply(8 + 247, 0);
    reply[3] = 0x03;
    EXPECT_FALSE(ParseDiscovery(reply, 0));
    reply.push_back(0);
    EXPECT_TRUE(ParseDiscovery(reply, 0));
}

} // namespace
} // namespace gvcp
