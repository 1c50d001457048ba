// sdk_check_test.cpp - pyxen-tool checks the libraries of camera SDKs
#include "tests/scenario/program_test.h"

#include <algorithm>
#include <set>

namespace scenario {
namespace {

class SdkCheck : public ProgramTest {
protected:
    /// The checks of a JSON report with this result.
    static std::set<std::string> WithResult(const Json& report, const std::string& result) {
        std::set<std::string> names;
        for (const Json& check : report["checks"]) {
            if (check["result"] == result) {
                names.insert(check["group"].get<std::string>() + ": " +
                             check["name"].get<std::string>());
            }
        }
        return names;
    }
    static std::string LibraryOf(const std::string& home) {
        return support::BuiltFile(
            platform::JoinPath(platform::JoinPath(home, "Bin"), platform::LibraryFileName("PxnC")));
    }
    /// A fault script with these lines.
    std::string Script(const std::string& lines) { return directory.Write("faults.txt", lines); }

    using Names = std::set<std::string>;
};

TEST_F(SdkCheck, PassesTheSimulator) {
    UseCamera();
    const auto result = Tool({"sdk-check", "--json"});
    ASSERT_EQ(result.status, 0) << result.output;
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["library"], LibraryOf("simulator"));
    EXPECT_GE(report["passed"], 90);
    EXPECT_EQ(report["failed"], 0);
    EXPECT_EQ(report["skipped"], 0);
    EXPECT_EQ(report["checks"].size(), report["passed"]);
    EXPECT_EQ(report["checks"][0]["group"], "startup");
    EXPECT_EQ(report["checks"][0]["name"], "version is known before the startup");
    EXPECT_EQ(report["checks"][0]["result"], "passed");
    EXPECT_EQ(report["checks"][0]["detail"], "");
}

TEST_F(SdkCheck, NamesEveryCheckThatFails) {
    UseCamera();
    const auto result = Tool({"--sdk-script",
                              Script("fail-always PxnFeatureIntSet -1\n"
                                     "fail-always PxnFeatureFloatSet -1\n"
                                     "fail-always PxnMemoryWrite -1\n"),
                              "sdk-check", "--json"});
    const Json report = Json::parse(result.output);
    // Those that expect these functions to refuse in a certain way: no check needs their success.
    EXPECT_EQ(WithResult(report, "failed"),
              (Names{"startup: nothing else works before the startup",
                     "arguments: missing arguments", "arguments: handles that are none",
                     "arguments: handles are checked first", "arguments: unknown features",
                     "arguments: registers of the system", "arguments: handles of a closed camera",
                     "values: functions of other types", "access: writing what cannot be written",
                     "access: features of a camera opened for reading",
                     "access: registers and settings of a camera opened for reading"}));
}

TEST_F(SdkCheck, PrintsATableWithTheReasonsOfFailures) {
    UseCamera();
    const auto result =
        Tool({"--sdk-script", Script("fail-always PxnFeatureBoolGet -24\n"), "sdk-check"});
    EXPECT_EQ(result.status, 1);
    EXPECT_PRED2(Contains, result.output,
                 "values        booleans are 0 or 1                                          "
                 "failed: PxnFeatureBoolGet of ");
    EXPECT_PRED2(Contains, result.output, " returned -24, not 0");
    EXPECT_PRED2(Contains, result.output,
                 "values        floats keep their limits                                     "
                 "passed\n");
    const std::size_t last = result.output.rfind('\n', result.output.size() - 2);
    const std::string counts = result.output.substr(last + 1);
    EXPECT_PRED2(Contains, counts, " passed, ");
    EXPECT_PRED2(Contains, counts, " failed, 0 skipped: " + LibraryOf("simulator") + "\n");
    EXPECT_EQ(counts.find(", 0 failed"), std::string::npos) << counts;
}

TEST_F(SdkCheck, SkipsWhatNeedsACameraWhenThereIsNone) {
    directory.Write("PxnC.xml", "<PxnC/>\n");
    const auto result = Tool({"sdk-check", "--json"});
    EXPECT_EQ(result.status, 0) << result.output;
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["failed"], 0);
    EXPECT_GE(report["skipped"], 80);
    EXPECT_GE(report["passed"], 7);
    EXPECT_EQ(report["checks"].back()["result"], "skipped");
    EXPECT_EQ(report["checks"].back()["detail"], "no camera that can be opened is present");
}

TEST_F(SdkCheck, EndsWhenTheLibraryDoesNotReturn) {
    UseCamera();
    const auto result = Tool({"--sdk-script", Script("stuck PxnFeatureIntRangeQuery\n"),
                              "sdk-check", "--limit", "1", "--json"});
    EXPECT_EQ(result.status, 1);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["failed"], 1);
    EXPECT_EQ(report["checks"].back()["result"], "failed");
    EXPECT_EQ(report["checks"].back()["detail"], "not done after 1 s; no check after it was run");
}

TEST_F(SdkCheck, ChecksTheCameraThatIsChosen) {
    directory.Write("PxnC.xml", "<PxnC>\n"
                                "<camera id=\"A\" access=\"none\"/>\n"
                                "<camera id=\"B\" sensorWidth=\"64\" sensorHeight=\"64\"/>\n"
                                "</PxnC>\n");
    for (const char* camera : {"1", "B", "Eth0|B"}) {
        const auto result = Tool({"--camera", camera, "sdk-check", "--json"});
        EXPECT_EQ(result.status, 0) << camera << result.output;
        EXPECT_EQ(Json::parse(result.output)["skipped"], 0) << camera;
    }
    const auto result = Tool({"--camera", "A", "sdk-check", "--json"});
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_GE(Json::parse(result.output)["skipped"], 80);
    ExpectFailure(Tool({"--camera", "C", "sdk-check"}), 1, {"there is no camera \"C\""});
}

TEST_F(SdkCheck, RefusesWhatIsNoSdk) {
    ExpectFailure(support::RunProgram("pyxen-tool", {"--sdk", PathOf("none"), "sdk-check"}), 1,
                  {"there is no file " + PathOf("none")});
    ExpectFailure(
        support::RunProgram("pyxen-tool", {"--sdk", support::BuiltFile("incomplete"), "sdk-check"}),
        1, {" lacks "});
    ExpectFailure(Tool({"sdk-check", "--limit", "0"}), 2, {"--limit"});
}

} // namespace
} // namespace scenario
