// doctor_test.cpp - mivora doctor on simulated cameras
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class DoctorProgram : public ProgramTest {
protected:
    /// Nothing of this machine, which tests must not depend on.
    support::ProgramResult Doctor(const Arguments& more) const {
        Arguments all{"doctor", "--only", "sdk", "--only", "camera"};
        all.insert(all.end(), more.begin(), more.end());
        return Mivora(all);
    }
};

TEST_F(DoctorProgram, FindsNothingAmissWithASoundCamera) {
    UseCamera();
    const auto result = Doctor({});
    ExpectDone(result);
    for (const char* line :
         {"ok       library ", "ok       entries ", "ok       start-up ",
          "ok       open            camera 0 (Camera A, ", "): 5 of 5 were whole\n"}) {
        EXPECT_PRED2(Contains, result.output, line);
    }
    EXPECT_FALSE(Contains(result.output, "problem"));
}

TEST_F(DoctorProgram, EndsWithOneWhenThereIsAProblem) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" access=\"none\"/></PxnC>");
    const auto result = Doctor({"--json"});
    EXPECT_EQ(result.status, 1);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["schema"], 1);
    EXPECT_FALSE(report["ok"]);
    EXPECT_TRUE(report["fixes"].empty());
    int problems = 0;
    for (const Json& finding : report["findings"]) {
        if (finding["severity"] == "problem") {
            ++problems;
            EXPECT_EQ(finding["check"], "open");
            EXPECT_NE(finding["advice"], "");
        }
    }
    EXPECT_EQ(problems, 1) << report;
}

TEST_F(DoctorProgram, NamesEachPlaceWhereALibraryWasLookedFor) {
    const auto result = Mivora({"--sdk", PathOf("nowhere"), "doctor", "--only", "sdk"});
    EXPECT_EQ(result.status, 1);
    EXPECT_PRED2(Contains, result.output,
                 "warning  library         there is no file " + PathOf("nowhere"));
    EXPECT_PRED2(Contains, result.output, "problem  library         there is no file ");
}

TEST_F(DoctorProgram, RefusesWhatIsNoAddressAndNoArea) {
    ExpectFailure(Mivora({"doctor", "--address", "1.2.3"}), 2, {"\"1.2.3\" is no IPv4 address"});
    ExpectFailure(Mivora({"doctor", "--address", "192.0.2.1"}), 2, {"--address requires --fix"});
    ExpectFailure(Mivora({"doctor", "--only", "usb", "--interface", "eth0"}), 2,
                  {"have no effect without --only network"});
    ExpectFailure(Mivora({"doctor", "--fix", "--persistent"}), 2, {"requires --address"});
    ExpectFailure(Mivora({"doctor", "--only", "all"}), 2, {"\"all\" is none of sdk, network"});
}

} // namespace
} // namespace scenario
