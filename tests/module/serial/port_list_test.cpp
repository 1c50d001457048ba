// port_list_test.cpp - which ports a camera offers
#include "tests/module/serial/serial_fixture.h"

using namespace pyxen;

namespace {

class PortListTest : public SerialFixture {
protected:
    static constexpr uint64_t kBases[] = {0x16000, 0x60000, 0x61000, 0x62000, 0x63000};

    void Offer(int32_t id, uint32_t inquiry, uint32_t capability) {
        Camera().SetRegister32(kBases[id], inquiry);
        Camera().SetRegister32(kBases[id] + 0x100, capability);
    }
};

TEST_F(PortListTest, HoldsThePortsWithBothBitsSet) {
    Offer(0, 3, 0x11);
    Offer(1, 1, 0x22);
    Offer(2, 2, 0x33);
    Offer(3, 0, 0x44);
    Offer(4, 0xFFFFFFFF, 0x71FF0FFF);
    channel->EnumeratePorts();
    Texts expected;
    for (const uint64_t base : kBases) {
        expected = expected + Texts{Read(0, 4, base), Read(0x100, 4, base)};
    }
    EXPECT_EQ(Calls(), expected);
    const std::vector<SerialPortEntry> ports = channel->GetPorts();
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].id, 0);
    EXPECT_STREQ(ports[0].iniName, "PYXENSERIALPORT0");
    EXPECT_STREQ(ports[0].displayName, "Serial port 0");
    EXPECT_EQ(ports[0].capability, 0x11u);
    EXPECT_EQ(ports[1].id, 4);
    EXPECT_EQ(ports[1].capability, 0x71FF0FFFu);
    EXPECT_EQ(channel->FindPortIndex("pyxenserialPORT4", ports), 1);
    EXPECT_EQ(channel->FindPortIndex("PYXENSERIALPORT1", ports), -1);
    EXPECT_EQ(channel->FindPortIndex("", ports), -1);
    EXPECT_EQ(channel->FindPortIndex("PYXENSERIALPORT0", {}), -1);
}

TEST_F(PortListTest, LeavesOutAPortThatCannotBeAsked) {
    Offer(0, 3, 0x11);
    Offer(1, 3, 0x22);
    Offer(2, 3, 0x33);
    sdk.Fail("PxnMemoryRead", PxnErrIO, 1);
    sdk.Fail("PxnMemoryRead", PxnErrIO, 4);
    channel->EnumeratePorts();
    EXPECT_EQ(Calls().size(), 10u);
    ASSERT_EQ(channel->GetPorts().size(), 1u);
    EXPECT_EQ(channel->GetPorts()[0].id, 2);
    channel->EnumeratePorts();
    EXPECT_EQ(channel->GetPorts().size(), 3u);
}

TEST_F(PortListTest, IsEmptyOnceTheCameraIsClosed) {
    Offer(0, 3, 0x11);
    channel->EnumeratePorts();
    ASSERT_EQ(channel->GetPorts().size(), 1u);
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    channel->EnumeratePorts();
    EXPECT_TRUE(channel->GetPorts().empty());
}

TEST_F(PortListTest, NamesAndIdsBelongTogether) {
    for (int32_t id = 0; id < 5; ++id) {
        const std::string name = "PYXENSERIALPORT" + std::to_string(id);
        EXPECT_EQ(channel->GetPortNameById(id), name);
        EXPECT_EQ(channel->GetPortIdByName(name.c_str()), id);
    }
    EXPECT_EQ(channel->GetPortIdByName("pyxenserialport2"), 2);
    EXPECT_EQ(channel->GetPortIdByName("COM1"), -1);
    EXPECT_STREQ(channel->GetPortNameById(-1), "");
    EXPECT_STREQ(channel->GetPortNameById(5), "");
}

TEST_F(PortListTest, NoPortBelongsToANullName) {
    Offer(0, 3, 0x11);
    channel->EnumeratePorts();
    EXPECT_EQ(channel->GetPortIdByName(nullptr), -1);
    EXPECT_EQ(channel->FindPortIndex(nullptr, channel->GetPorts()), -1);
}

} // namespace
