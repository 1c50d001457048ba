// camera_checks_test.cpp - tests of what is found about cameras
#include "apps/doctor/checks.h"
#include "tests/apps/doctor/findings.h"

#include <gtest/gtest.h>

namespace {

class CameraChecks : public testing::Test {
protected:
    CameraChecks() {
        camera.name = "camera 0 (G-130, 0x6080BA04)";
        camera.serial = "S-7";
        camera.interfaceId = "eth0";
        camera.trial = Trial{5, 5, 0, ""};
        network.interfaces = {{"eth0", 0xC0000201, 0xFFFFFF00, 1500, true, false},
                              {"eth1", 0xC0000301, 0xFFFFFF00, 9000, true, false}};
    }
    /// The camera replies on eth1.
    GigeCamera& Reply(std::uint32_t address) {
        GigeCamera reply;
        reply.interfaceName = "eth1";
        reply.interfaceAddress = 0xC0000301;
        reply.interfaceNetmask = 0xFFFFFF00;
        reply.address = address;
        reply.serial = "S-7";
        network.cameras = {reply};
        return network.cameras[0];
    }
    std::string Of(const std::string& check) const {
        return FindingsOf(CheckCameras({camera}, network), check);
    }
    std::string Worst(const std::string& check) const {
        return WorstOf(CheckCameras({camera}, network), check);
    }
    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    CameraFacts camera;
    NetworkFacts network;
};

TEST_F(CameraChecks, NoCameraIsAProblem) {
    EXPECT_TRUE(Has(FindingsOf(CheckCameras({}, network), "cameras"), "-> check cable and power"));
    Reply(0xC0000309);
    EXPECT_TRUE(
        Has(FindingsOf(CheckCameras({}, network), "cameras"), "cameras reply on the network"));
}

TEST_F(CameraChecks, ACameraThatOpensAndSendsIsOk) {
    EXPECT_EQ(Of("open"), "ok: can be opened\n");
    EXPECT_EQ(Of("frames"), "ok: 5 of 5 were whole\n");
    EXPECT_FALSE(HasProblem(CheckCameras({camera}, network)));
}

TEST_F(CameraChecks, ACameraThatCannotBeOpenedIsInUseOrElsewhereOrGone) {
    camera.openFailure = "failed";
    EXPECT_TRUE(Has(Of("open"), "problem: failed -> another program may have it"));
    EXPECT_EQ(Of("frames"), "") << "none was taken";
    camera.canOpen = false;
    EXPECT_TRUE(Has(Of("open"), "in use by another program: failed -> end the program that"));
    GigeCamera& reply = Reply(0xC0000309);
    reply.isControlled = true;
    reply.controller = 0xC0000302;
    reply.heartbeatMs = 3000;
    EXPECT_TRUE(Has(Of("open"), "in use by another program on 192.0.3.2: failed -> end the program "
                                "on 192.0.3.2 that has it; of one that crashed it is free after "
                                "3000 ms"));
    reply.address = 0xA9FE0107;
    EXPECT_TRUE(Has(Of("open"), "its address 169.254.1.7 is of another subnet than eth1"));
    EXPECT_TRUE(Has(Of("open"), "give it an address of 192.0.3.1/24"));
}

TEST_F(CameraChecks, HeartbeatsThatAreShortOrLongAreWarnings) {
    EXPECT_EQ(Of("heartbeat"), "") << "not known";
    camera.heartbeatMs = 3000;
    EXPECT_EQ(Worst("heartbeat"), "ok");
    camera.heartbeatSetting = "Camera/GevHeartbeatTimeout=3000";
    camera.heartbeatMs = 500;
    EXPECT_TRUE(
        Has(Of("heartbeat"), "-> mivora --camera 0x6080BA04 set Camera/GevHeartbeatTimeout=3000"));
    camera.heartbeatMs = 60000;
    EXPECT_EQ(Worst("heartbeat"), "warning");
}

TEST_F(CameraChecks, PacketsThatAreLargerThanTheInterfaceTakesAreAProblem) {
    camera.packetSize = 1500;
    EXPECT_EQ(Of("packet-size"), "ok: 1500 bytes, the interface takes 1500\n");
    camera.packetSize = 8228;
    EXPECT_EQ(Worst("packet-size"), "problem");
    Reply(0xC0000309); // on eth1, where they fit
    camera.packetDelay = 1000;
    EXPECT_EQ(Of("packet-size"),
              "ok: 8228 bytes, the interface takes 9000, with a delay of 1000 between two\n");
    camera.packetSize = 1500;
    EXPECT_EQ(Worst("packet-size"), "warning") << "larger ones would fit";
    network.interfaces.clear();
    EXPECT_EQ(Worst("packet-size"), "ok") << "what fits is not known";
}

TEST_F(CameraChecks, FramesThatAreMissingOrHaveGapsAreNamed) {
    camera.trial = Trial{5, 3, 2, ""};
    EXPECT_TRUE(Has(Of("frames"), "warning: 3 of 5 were whole, 2 had gaps -> a lower frame rate"));
    camera.packetSize = 1500;
    camera.trial = Trial{5, 0, 5, ""};
    EXPECT_TRUE(Has(Of("frames"), "problem: 0 of 5 were whole, 5 had gaps -> mivora doctor --fix"));
    camera.trial = Trial{5, 0, 0, ""};
    EXPECT_TRUE(Has(Of("frames"), "the others never came -> allow UDP packets"));
    camera.packetSize.reset();
    EXPECT_TRUE(Has(Of("frames"), "-> check exposure time and frame rate"));
    camera.trial = Trial{5, 0, 0, "PrepareFrameBuffers failed"};
    EXPECT_TRUE(Has(Of("frames"), "problem: PrepareFrameBuffers failed"));
}

TEST_F(CameraChecks, ACameraThatWaitsForATriggerIsNamed) {
    camera.trial.reset();
    EXPECT_EQ(Of("frames"), "");
    camera.trigger = "FrameStart";
    EXPECT_TRUE(Has(Of("frames"), "warning: the camera waits for the trigger FrameStart"));
    EXPECT_TRUE(Has(Of("frames"), "-> mivora --camera 0x6080BA04 set Camera/TriggerMode=Off"));
}

} // namespace
