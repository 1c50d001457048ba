// selftest_test.cpp - mivora selftest on simulated cameras
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class SelftestProgram : public ProgramTest {};

TEST_F(SelftestProgram, ReportsEachCheckAsItComesAndTheirNumbersAtTheEnd) {
    UseCamera();
    const auto result = Mivora({"selftest", "--only", "mode", "--only", "snap-1"});
    ExpectDone(result);
    EXPECT_EQ(result.output.find("mode               pass            64 x 48, 1 x 8 bits\n"
                                 "snap-1             pass            6 frames\n"
                                 "restored           pass            "),
              0u)
        << result.output;
    EXPECT_PRED2(Contains, result.output,
                 "3 passed, 0 failed, 0 not applicable: camera 0 (Camera A, ");
}

TEST_F(SelftestProgram, EndsWithOneWhenACheckFails) {
    UseCamera("", Faults("frame incomplete 2"));
    const auto result = Mivora({"selftest", "--only", "snap-1", "--json"});
    EXPECT_EQ(result.status, 1);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["schema"], 1);
    EXPECT_EQ(report["fail"], 1);
    EXPECT_EQ(report["checks"][0]["name"], "snap-1");
    EXPECT_EQ(report["checks"][0]["result"], "fail");
    EXPECT_PRED2(Contains, report["checks"][0]["detail"].get<std::string>(),
                 "with status -1 (parts are missing)");
    EXPECT_EQ(report["checks"][1]["name"], "restored");
}

TEST_F(SelftestProgram, RefusesACheckThatThereIsNot) {
    ExpectFailure(Mivora({"selftest", "--only", "luck"}), 2,
                  {"\"luck\" is none of open-close, mode, snap-1"});
}

} // namespace
} // namespace scenario
