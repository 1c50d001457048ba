// network_checks_test.cpp - tests of what is found about the network
#include "apps/doctor/checks.h"
#include "tests/apps/doctor/findings.h"

#include <gtest/gtest.h>

namespace {

NetworkFacts OneInterface() {
    NetworkFacts network;
    network.interfaces = {{"lo", 0x7F000001, 0xFF000000, 65536, true, true},
                          {"eth0", 0xC0000201, 0xFFFFFF00, 9000, true, false},
                          {"eth9", 0, 0, 1500, false, false}};
    return network;
}

TEST(NetworkChecks, InterfacesThatAreUpHaveAddressAndPacketSize) {
    EXPECT_EQ(FindingsOf(CheckNetwork(OneInterface()), "interface"),
              "ok: 192.0.2.1/24, packets of up to 9000 bytes\n");
}

TEST(NetworkChecks, NoInterfaceThatIsUpIsAWarning) {
    NetworkFacts network = OneInterface();
    network.interfaces[1].isUp = false;
    EXPECT_EQ(WorstOf(CheckNetwork(network), "interface"), "warning");
    network.wanted = {"lo"};
    EXPECT_EQ(WorstOf(CheckNetwork(network), "interface"), "") << "only lo was asked for";
    network.interfaces.clear();
    EXPECT_EQ(WorstOf(CheckNetwork(network), "interface"), "problem") << "there is no lo";
}

TEST(NetworkChecks, SmallPacketsAreAWarning) {
    NetworkFacts network = OneInterface();
    network.interfaces[1].mtu = 1400;
    EXPECT_NE(FindingsOf(CheckNetwork(network), "interface").find("-> ip link set eth0 mtu 1500"),
              std::string::npos);
    network.interfaces[1].mtu = 0;
    EXPECT_EQ(FindingsOf(CheckNetwork(network), "interface"), "ok: 192.0.2.1/24\n");
}

TEST(NetworkChecks, TwoInterfacesOfOneSubnetAreAWarning) {
    NetworkFacts network = OneInterface();
    network.interfaces[2] = {"eth1", 0xC0000209, 0xFFFFFF00, 1500, true, false};
    EXPECT_NE(FindingsOf(CheckNetwork(network), "interface").find("the same subnet as eth1"),
              std::string::npos);
    network.interfaces[2].address = 0xC0000309;
    EXPECT_EQ(WorstOf(CheckNetwork(network), "interface"), "ok");
}

TEST(NetworkChecks, ASmallReceiveBufferIsAWarningWithItsCommand) {
    NetworkFacts network;
    EXPECT_EQ(WorstOf(CheckNetwork(network), "receive-buffer"), "") << "not known";
    network.receiveBuffer = 212992;
    EXPECT_NE(FindingsOf(CheckNetwork(network), "receive-buffer")
                  .find("-> sysctl -w net.core.rmem_max=67108864"),
              std::string::npos);
    network.receiveBuffer = 2u << 20;
    EXPECT_EQ(WorstOf(CheckNetwork(network), "receive-buffer"), "ok");
}

TEST(NetworkChecks, AStrictPathFilterIsAWarningWithItsCommand) {
    NetworkFacts network;
    network.filters = {{"eth0", 0}, {"eth1", 2}};
    EXPECT_EQ(WorstOf(CheckNetwork(network), "path-filter"), "ok");
    network.filters["eth1"] = 1;
    EXPECT_NE(FindingsOf(CheckNetwork(network), "path-filter")
                  .find("-> sysctl -w net.ipv4.conf.eth1.rp_filter=2"),
              std::string::npos);
}

TEST(NetworkChecks, ACameraOfAnotherSubnetIsAProblem) {
    NetworkFacts network;
    GigeCamera camera;
    camera.interfaceName = "eth0";
    camera.interfaceAddress = 0xC0000201;
    camera.interfaceNetmask = 0xFFFFFF00;
    camera.address = 0xC0000207;
    camera.mac = 0x0102030405AB;
    network.cameras = {camera};
    EXPECT_EQ(FindingsOf(CheckNetwork(network), "address"),
              "ok: replies on eth0 (192.0.2.1/24) from 192.0.2.7, hardware address "
              "01:02:03:04:05:AB\n");
    network.cameras[0].address = 0xA9FE0107;
    EXPECT_EQ(WorstOf(CheckNetwork(network), "address"), "problem");
    EXPECT_NE(FindingsOf(CheckNetwork(network), "address").find("a free one of 192.0.2.1/24"),
              std::string::npos);
}

} // namespace
