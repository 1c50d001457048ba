#include "tests/scenario/program_test.h"

#include <sstream>

namespace scenario {
namespace {

constexpr const char* kOperations[] = {
    "Init",     "SetActCameraIndex 0", "OpenActCamera", "PrepareFrameBuffers 2", "Snap 3",
    "StopSnap", "CloseActCamera",      "DeInit"};

class FailureSweep : public ProgramTest {
protected:
    static std::string Run() {
        std::string lines;
        for (const char* operation : kOperations) {
            lines += std::string(operation) + "\n";
        }
        return lines;
    }
    static std::string GoodAnswers() {
        std::string answers;
        for (const std::string operation : kOperations) {
            answers += operation.substr(0, operation.find(' ')) + " = 0\n";
        }
        return answers;
    }
    /// How many calls of the SDK a run makes.
    unsigned CountCalls() const {
        const std::string deInit = "DeInit\n";
        std::string lines = Run();
        lines.insert(lines.size() - deInit.size(), "SdkControl status\n");
        const std::string output = Mivora({"shell"}, lines).output;
        const std::string mark = "SdkControl = 0 answer=";
        const std::size_t at = output.find(mark) + mark.size();
        const Json answer = Json::parse(output.substr(at, output.find('\n', at) - at));
        // De-initialising makes some more; a failure that is never reached does no harm.
        return Json::parse(answer.get<std::string>())["calls"].get<unsigned>() + 3;
    }
};

TEST_F(FailureSweep, AfterAnyCallHasFailedTheNextRunWorks) {
    UseCamera("", "", "serial");
    const unsigned calls = CountCalls();
    ASSERT_GT(calls, 50u);
    std::string lines;
    for (unsigned nth = 1; nth <= calls; ++nth) {
        lines += "SdkControl fail any " + std::to_string(nth) + " -20\n" + Run() +
                 "SdkControl clear\n" + Run();
    }
    const auto result = Mivora({"shell"}, lines);
    EXPECT_EQ(result.status, 0);
    std::istringstream output(result.output);
    for (unsigned nth = 1; nth <= calls; ++nth) {
        std::string line;
        std::string failing;
        std::string next;
        std::getline(output, line);
        for (std::size_t i = 0; i < std::size(kOperations); ++i) {
            std::getline(output, line);
            failing += line + "\n";
        }
        EXPECT_NE(failing.find("DeInit = 0\n"), std::string::npos) << nth << "\n" << failing;
        std::getline(output, line);
        for (std::size_t i = 0; i < std::size(kOperations); ++i) {
            std::getline(output, line);
            next += line + "\n";
        }
        EXPECT_EQ(next, GoodAnswers()) << "after call " << nth << " had failed:\n" << failing;
    }
    // A camera whose closing is refused, and a registration whose release is, stay with the SDK.
    // All else is given back.
    EXPECT_EQ(result.errors, "PxnC: left at shutdown: 1 open camera handles, 1 announced frames, 0 "
                             "invalidation registrations\n"
                             "PxnC: left at shutdown: 0 open camera handles, 0 announced frames, 1 "
                             "invalidation registrations\n");
}

} // namespace
} // namespace scenario
