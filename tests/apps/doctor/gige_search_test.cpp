// gige_search_test.cpp - tests of the search for cameras, on the loopback interface
#include "apps/doctor/gige_search.h"

#include "tests/apps/doctor/fake_gige_camera.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kSearchMs = 500;
constexpr std::uint32_t kElsewhere = 0x0A000005;
constexpr std::uint32_t kHere = 0x7F000009;

std::vector<platform::NetworkInterface> Loopback() {
    return {{"lo", FakeGigeCamera::kLoopback, 0xFF000000, 65536, true, true}};
}

TEST(GigeSearch, FindsACameraOfAnotherSubnetAndGivesItAnAddress) {
    const FakeGigeCamera fake(kElsewhere);
    ASSERT_TRUE(fake.IsOpen());
    GigeSearch search(Loopback(), fake.Port());
    const std::vector<GigeCamera> cameras = search.Run(kSearchMs);
    ASSERT_EQ(cameras.size(), 1u);
    const GigeCamera& camera = cameras[0];
    EXPECT_EQ(camera.interfaceName, "lo");
    EXPECT_EQ(camera.mac, FakeGigeCamera::kMac);
    EXPECT_EQ(camera.address, kElsewhere);
    EXPECT_EQ(camera.netmask, 0xFF000000);
    EXPECT_EQ(camera.vendor, "Maker");
    EXPECT_EQ(camera.model, "Model");
    EXPECT_EQ(camera.serial, "S-7");
    EXPECT_EQ(camera.userName, "left one");
    EXPECT_FALSE(camera.IsInSubnet());

    EXPECT_TRUE(search.ForceAddress(camera, kHere, kSearchMs));
    EXPECT_EQ(fake.Address(), kHere);
    EXPECT_TRUE(search.Run(kSearchMs).at(0).IsInSubnet());
}

TEST(GigeSearch, ClaimsNoAddressThatTheCameraDoesNotReplyFrom) {
    const FakeGigeCamera fake(kElsewhere, false);
    GigeSearch search(Loopback(), fake.Port());
    const std::vector<GigeCamera> cameras = search.Run(kSearchMs);
    ASSERT_EQ(cameras.size(), 1u);
    EXPECT_FALSE(search.ForceAddress(cameras[0], kHere, kSearchMs));
    GigeCamera unknown = cameras[0];
    unknown.interfaceName = "eth9";
    EXPECT_FALSE(search.ForceAddress(unknown, kHere, kSearchMs));
}

/// A camera with the registers of a persistent address.
void AddNetworkRegisters(FakeGigeCamera& fake) {
    fake.SetRegister(gvcp::kControlRegister, 0);
    fake.SetRegister(gvcp::kNetworkRegister, 6);
    fake.SetRegister(gvcp::kPersistentAddressRegister, kElsewhere);
    fake.SetRegister(gvcp::kPersistentNetmaskRegister, 0xFFFFFF00);
    fake.SetRegister(gvcp::kPersistentGatewayRegister, 0x0A000001);
}

TEST(GigeSearch, HasACameraKeepItsAddress) {
    FakeGigeCamera fake(FakeGigeCamera::kLoopback);
    AddNetworkRegisters(fake);
    GigeSearch search(Loopback(), fake.Port());
    EXPECT_EQ(search.KeepAddress(search.Run(kSearchMs).at(0)), "");
    EXPECT_EQ(fake.Register(gvcp::kPersistentAddressRegister), FakeGigeCamera::kLoopback);
    EXPECT_EQ(fake.Register(gvcp::kPersistentNetmaskRegister), 0xFF000000);
    EXPECT_EQ(fake.Register(gvcp::kPersistentGatewayRegister), 0u);
    EXPECT_EQ(fake.Register(gvcp::kNetworkRegister), 7u);
    EXPECT_EQ(fake.Register(gvcp::kControlRegister), 0u) << "given back";
}

TEST(GigeSearch, KeepsNoAddressThatTheCameraDoesNotTake) {
    FakeGigeCamera fake(FakeGigeCamera::kLoopback);
    GigeSearch search(Loopback(), fake.Port());
    const GigeCamera camera = search.Run(kSearchMs).at(0);
    fake.SetRegister(gvcp::kControlRegister, 0);
    EXPECT_EQ(search.KeepAddress(camera), "it does not take a persistent address");
    EXPECT_EQ(fake.Register(gvcp::kControlRegister), 0u) << "given back";
    AddNetworkRegisters(fake);
    fake.SetRegister(gvcp::kControlRegister, 2);
    EXPECT_EQ(search.KeepAddress(camera), "it does not reply, or somebody else has it open");
    EXPECT_EQ(fake.Register(gvcp::kControlRegister), 2u) << "it is somebody else's";
    EXPECT_EQ(fake.Register(gvcp::kPersistentAddressRegister), kElsewhere);
}

TEST(GigeSearch, ReadsWhoHasACamera) {
    FakeGigeCamera fake(FakeGigeCamera::kLoopback);
    GigeSearch search(Loopback(), fake.Port());
    EXPECT_FALSE(search.Run(kSearchMs).at(0).isControlled) << "it lets nobody read";
    fake.SetRegister(gvcp::kControlRegister, 0);
    fake.SetRegister(gvcp::kHeartbeatRegister, 3000);
    GigeCamera camera = search.Run(kSearchMs).at(0);
    EXPECT_FALSE(camera.isControlled);
    EXPECT_EQ(camera.heartbeatMs, 3000u);
    fake.SetRegister(gvcp::kControlRegister, 2);
    EXPECT_EQ(search.Run(kSearchMs).at(0).controller, 0u) << "it does not tell";
    fake.SetRegister(gvcp::kControllerRegister, 0xC0000201);
    camera = search.Run(kSearchMs).at(0);
    EXPECT_TRUE(camera.isControlled);
    EXPECT_EQ(camera.controller, 0xC0000201);
}

TEST(GigeSearch, FindsTheHostThatHasACamera) {
    FakeGigeCamera fake(FakeGigeCamera::kLoopback);
    GigeSearch search(Loopback(), fake.Port());
    EXPECT_EQ(search.FindController("S-7", kSearchMs), std::nullopt) << "it lets nobody read";
    fake.SetRegister(gvcp::kControllerRegister, 0);
    EXPECT_EQ(search.FindController("S-7", kSearchMs), std::nullopt) << "it does not tell";
    fake.SetRegister(gvcp::kControllerRegister, 0xC0000201);
    EXPECT_EQ(search.FindController("S-7", kSearchMs), 0xC0000201);
    EXPECT_EQ(search.FindController("S-8", 10), std::nullopt);
    EXPECT_EQ(search.FindController("", kSearchMs), std::nullopt);
}

TEST(GigeSearch, AsksNoInterfaceThatIsDownOrHasNoAddress) {
    const FakeGigeCamera fake(FakeGigeCamera::kLoopback);
    std::vector<platform::NetworkInterface> interfaces = Loopback();
    interfaces[0].isUp = false;
    EXPECT_TRUE(GigeSearch(interfaces, fake.Port()).Run(kSearchMs).empty());
    interfaces[0] = {"eth0", 0, 0, 1500, true, false};
    EXPECT_TRUE(GigeSearch(interfaces, fake.Port()).Run(kSearchMs).empty());
}

} // namespace
