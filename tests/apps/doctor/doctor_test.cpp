// doctor_test.cpp - tests of the doctor, in this process on the simulator
#include "apps/doctor/doctor.h"

#include "apps/common/app_options.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/apps/doctor/fake_gige_camera.h"
#include "tests/apps/doctor/findings.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kAnotherSubnet = 0x0A000005;

class DoctorTest : public testing::Test {
protected:
    DoctorTest() {
        directory.Write("PxnC.xml", Configuration(""));
        app.configFile = directory.PathOf("host.ini");
        machine.limits = platform::HostLimits(directory.Path());
        machine.listInterfaces = [this] {
            return interfaces;
        };
        machine.searchMs = 500;
    }
    static std::string Configuration(const std::string& script) {
        return "<PxnC><camera id=\"A\" model=\"Camera A\" sensorWidth=\"64\" sensorHeight=\"64\">"
               "<feature name=\"ExposureTime\" value=\"1000\"/>"
               "<feature name=\"AcquisitionFrameRate\" value=\"100\"/></camera>" +
               (script.empty() ? "" : "<faults><script>\n" + script + "</script></faults>") +
               "</PxnC>";
    }
    DoctorReport Run() {
        return Doctor(
                   options, app, [this]() -> IGrabberMaker& { return maker; }, machine)
            .Run();
    }
    /// Each as "fixed CHECK TEXT" or "unfixed CHECK TEXT".
    static std::string FixesOf(const DoctorReport& report) {
        std::string lines;
        for (const FixReport& fix : report.fixes) {
            lines += (fix.isDone ? "fixed " : "unfixed ") + fix.check + " " + fix.text + "\n";
        }
        return lines;
    }
    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    const support::NoSettling noSettling;
    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    DoctorOptions options;
    AppOptions app;
    LinkedMaker maker;
    std::vector<platform::NetworkInterface> interfaces;
    Machine machine;
};

TEST_F(DoctorTest, FindsNothingWhereEverythingWorks) {
    interfaces = {{"Eth0", 0, 0, 9000, true, false}};
    const DoctorReport report = Run();
    EXPECT_FALSE(HasProblem(report.findings)) << DoctorJson(report.findings, {}).Text();
    for (const char* check :
         {"library", "entries", "start-up", "open", "heartbeat", "packet-size", "frames"}) {
        EXPECT_EQ(WorstOf(report.findings, check), "ok") << check;
    }
    EXPECT_TRUE(report.fixes.empty());
}

TEST_F(DoctorTest, LooksOnlyAtWhatIsAskedFor) {
    options.only = {"usb"};
    EXPECT_TRUE(Run().findings.empty());
    options.only = {"sdk"};
    EXPECT_EQ(WorstOf(Run().findings, "start-up"), "ok");
    EXPECT_EQ(WorstOf(Run().findings, "open"), "");
    options.only = {"camera"};
    EXPECT_EQ(WorstOf(Run().findings, "open"), "ok");
    EXPECT_EQ(WorstOf(Run().findings, "library"), "");
}

TEST_F(DoctorTest, NamesTheCodeOfAStartUpThatFails) {
    directory.Write("PxnC.xml", "<PxnC");
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FindingsOf(report.findings, "start-up"), "problem: PxnStartup returns -29: "))
        << FindingsOf(report.findings, "start-up");
    EXPECT_EQ(WorstOf(report.findings, "cameras"), "") << "the start-up is the problem";
}

TEST_F(DoctorTest, NamesTheEntriesThatALibraryDoesNotHave) {
    app.sdk = support::BuiltFile("incomplete");
    EXPECT_EQ(
        FindingsOf(Run().findings, "entries"),
        "problem: the library does not have PxnFeatureEnumAsInt -> install the version of the "
        "SDK that this module was made for\n"
        "problem: the library does not have PxnChunkDataAccess -> install the version of the "
        "SDK that this module was made for\n");
}

TEST_F(DoctorTest, NamesACameraThatSomebodyElseHas) {
    directory.Write("PxnC.xml", Configuration("access A none\n"));
    EXPECT_TRUE(Has(FindingsOf(Run().findings, "open"), "problem: in use by another program"));
}

TEST_F(DoctorTest, SaysThatThereIsNoCamera) {
    directory.Write("PxnC.xml", "<PxnC></PxnC>");
    EXPECT_EQ(WorstOf(Run().findings, "cameras"), "problem");
}

TEST_F(DoctorTest, TakesNoFrameFromACameraThatWaitsForATrigger) {
    directory.Write("PxnC.xml", Configuration("set A TriggerMode On\n"));
    EXPECT_TRUE(Has(FindingsOf(Run().findings, "frames"), "waits for the trigger FrameStart"));
}

TEST_F(DoctorTest, FixesPacketsThatAreTooLarge) {
    interfaces = {{"Eth0", 0, 0, 1500, true, false}};
    EXPECT_EQ(WorstOf(Run().findings, "packet-size"), "problem");
    options.fix = true;
    const DoctorReport report = Run();
    EXPECT_EQ(FixesOf(report), "fixed packet-size 8228 -> 1500 bytes\n");
    EXPECT_EQ(FindingsOf(report.findings, "packet-size"),
              "ok: 1500 bytes, the interface takes 1500\n");
}

TEST_F(DoctorTest, ClaimsNoPacketSizeThatTheCameraDidNotTake) {
    interfaces = {{"Eth0", 0, 0, 1500, true, false}};
    directory.Write("PxnC.xml", Configuration("fail-always PxnFeatureIntSet -6\n"));
    options.fix = true;
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FixesOf(report), "unfixed packet-size stays 8228 bytes")) << FixesOf(report);
    EXPECT_EQ(WorstOf(report.findings, "packet-size"), "problem");
}

TEST_F(DoctorTest, FindsAPacketDelayWithWhichFramesAreWhole) {
    // The second delay that is written helps.
    directory.Write("PxnC.xml", Configuration("frame-random 1 100 incomplete\n"
                                              "at-call PxnFeatureIntSet 2 clear\n"));
    options.fix = true;
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FixesOf(report), "fixed packet-delay 0 -> 4000\n")) << FixesOf(report);
    EXPECT_EQ(FindingsOf(report.findings, "frames"), "ok: 5 of 5 were whole\n");
}

TEST_F(DoctorTest, PutsThePacketDelayBackWhenNoneHelps) {
    directory.Write("PxnC.xml", Configuration("frame-random 1 100 incomplete\n"));
    options.fix = true;
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FixesOf(report), "unfixed packet-delay no delay helps: 0 as before\n"))
        << FixesOf(report);
    EXPECT_TRUE(
        Has(FindingsOf(report.findings, "frames"), "problem: 0 of 5 were whole, 5 had gaps"));
}

TEST_F(DoctorTest, GivesACameraAnAddressOfTheInterfacesSubnet) {
    const FakeGigeCamera fake(kAnotherSubnet);
    interfaces = {{"lo", FakeGigeCamera::kLoopback, 0xFF000000, 65536, true, true}};
    machine.cameraPort = fake.Port();
    options.only = {"network"};
    EXPECT_EQ(WorstOf(Run().findings, "address"), "problem");
    options.fix = true;
    EXPECT_TRUE(Has(FixesOf(Run()), "unfixed address which addresses are free is not known"));
    options.address = 0x0A000009;
    EXPECT_TRUE(Has(FixesOf(Run()), "unfixed address 10.0.0.9 is not of 127.0.0.1/8"));
    options.address = FakeGigeCamera::kLoopback;
    EXPECT_TRUE(Has(FixesOf(Run()), "unfixed address 127.0.0.1 is taken"));
    EXPECT_EQ(fake.Address(), kAnotherSubnet) << "nothing was done so far";
    options.address = 0x7F000009;
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FixesOf(report), "fixed address 10.0.0.5 -> 127.0.0.9 until"));
    EXPECT_EQ(WorstOf(report.findings, "address"), "ok");
    EXPECT_EQ(fake.Address(), 0x7F000009u);
}

TEST_F(DoctorTest, ClaimsNoAddressThatTheCameraDidNotTake) {
    const FakeGigeCamera fake(kAnotherSubnet, false);
    interfaces = {{"lo", FakeGigeCamera::kLoopback, 0xFF000000, 65536, true, true}};
    machine.cameraPort = fake.Port();
    options.only = {"network"};
    options.fix = true;
    options.address = 0x7F000009;
    const DoctorReport report = Run();
    EXPECT_TRUE(Has(FixesOf(report), "unfixed address the camera does not reply from 127.0.0.9"));
    EXPECT_EQ(WorstOf(report.findings, "address"), "problem");
}

TEST_F(DoctorTest, HasACameraKeepItsAddress) {
    FakeGigeCamera fake(kAnotherSubnet);
    for (const std::uint32_t place :
         {gvcp::kControlRegister, gvcp::kNetworkRegister, gvcp::kPersistentAddressRegister,
          gvcp::kPersistentNetmaskRegister, gvcp::kPersistentGatewayRegister}) {
        fake.SetRegister(place, 0);
    }
    interfaces = {{"lo", FakeGigeCamera::kLoopback, 0xFF000000, 65536, true, true}};
    machine.cameraPort = fake.Port();
    options.only = {"network"};
    options.fix = true;
    options.isPersistent = true;
    options.address = 0x7F000009;
    EXPECT_EQ(FixesOf(Run()), "fixed address 10.0.0.5 -> 127.0.0.9\n"
                              "fixed address 127.0.0.9 is kept when its power is switched off\n");
    EXPECT_EQ(fake.Register(gvcp::kPersistentAddressRegister), 0x7F000009u);
    fake.SetRegister(gvcp::kPersistentAddressRegister, 0);
    EXPECT_EQ(FixesOf(Run()), "fixed address 127.0.0.9 is kept when its power is switched off\n")
        << "which it has already";
    fake.SetRegister(gvcp::kControlRegister, 2);
    EXPECT_EQ(FixesOf(Run()), "unfixed address 127.0.0.9 is not kept at power-off: it does not "
                              "reply, or somebody else has it open\n");
    options.address = 0x7F000008;
    EXPECT_EQ(FixesOf(Run()), "unfixed address no camera is in another subnet or has 127.0.0.8\n");
    options.isPersistent = false;
    EXPECT_EQ(FixesOf(Run()), "unfixed address no camera is in another subnet\n");
}

TEST_F(DoctorTest, LooksAtTheInterfacesThatAreNamed) {
    interfaces = {{"eth0", 0, 0, 1500, true, false}, {"eth1", 0, 0, 1500, true, false}};
    options.only = {"network"};
    options.interfaces = {"eth7"};
    EXPECT_TRUE(Has(FindingsOf(Run().findings, "interface"), "problem: there is no network"));
    options.interfaces = {"eth1"};
    EXPECT_EQ(WorstOf(Run().findings, "interface"), "");
}

} // namespace
