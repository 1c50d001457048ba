// failure_sweep_test.cpp - every call of the SDK fails once, and the next attempt works
#include "tests/scenario/program_test.h"

#include <sstream>

namespace scenario {
namespace {

const Arguments kUse{
    "SetActCameraIndex 0", "OpenActCamera", "PrepareFrameBuffers 2", "Snap 3", "StopSnap",
    "CloseActCamera"};
const Arguments kFromInitToDeInit{
    "Init",   "SetActCameraIndex 0", "OpenActCamera", "PrepareFrameBuffers 2",
    "Snap 3", "CloseActCamera",      "DeInit"};

class FailureSweep : public ProgramTest {
protected:
    static std::string LinesOf(const Arguments& operations) {
        std::string lines;
        for (const std::string& operation : operations) {
            lines += operation + "\n";
        }
        return lines;
    }
    static std::string GoodAnswers(const Arguments& operations) {
        std::string answers;
        for (const std::string& operation : operations) {
            answers += operation.substr(0, operation.find(' ')) + " = 0\n";
        }
        return answers;
    }
    static std::string NextLines(std::istream& stream, std::size_t count) {
        std::string lines;
        std::string line;
        while (count-- > 0 && std::getline(stream, line)) {
            lines += line + "\n";
        }
        return lines;
    }
    /// Repeats the operations with each of their calls of the SDK failing once, every time followed
    /// by a run in which none fails.
    static std::string Sweep(const Arguments& operations, unsigned calls) {
        std::string lines;
        for (unsigned nth = 1; nth <= calls; ++nth) {
            lines += "SdkControl fail any " + std::to_string(nth) + " -20\n" + LinesOf(operations) +
                     "SdkControl clear\n" + LinesOf(operations);
        }
        return lines;
    }
    /// Checks that every operation returned a result, and success where nothing failed.
    static void ExpectSwept(std::istream& output, const Arguments& operations, unsigned calls) {
        for (unsigned nth = 1; nth <= calls; ++nth) {
            NextLines(output, 1);
            const std::string failing = NextLines(output, operations.size());
            NextLines(output, 1);
            EXPECT_EQ(NextLines(output, operations.size()), GoodAnswers(operations))
                << "after call " << nth << " had failed:\n"
                << failing;
        }
    }
    /// The number of calls of the SDK after these lines.
    unsigned CountCalls(const std::string& lines) const {
        const std::string output = Mivora({"shell"}, lines + "SdkControl status\n").output;
        const std::string mark = "SdkControl = 0 answer=";
        const std::size_t at = output.find(mark) + mark.size();
        const Json answer = Json::parse(output.substr(at, output.find('\n', at) - at));
        return Json::parse(answer.get<std::string>())["calls"].get<unsigned>();
    }
};

TEST_F(FailureSweep, AfterAnyCallOfAnAcquisitionHasFailedTheNextOneWorks) {
    UseCamera("", "", "serial");
    // The first use makes more calls than later ones. The last call closes the camera and is left
    // out: if it fails, the next use makes one more, which has its own test.
    const std::string once = "Init\n" + LinesOf(kUse);
    const unsigned calls = CountCalls(once + LinesOf(kUse)) - CountCalls(once) - 1;
    ASSERT_GT(calls, 50u);
    const auto result = Mivora({"shell"}, "Init\n" + Sweep(kUse, calls) + "DeInit\n");
    EXPECT_EQ(result.status, 0);
    std::istringstream output(result.output);
    EXPECT_EQ(NextLines(output, 1), "Init = 0\n");
    ExpectSwept(output, kUse, calls);
    EXPECT_EQ(NextLines(output, 1), "DeInit = 0\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(FailureSweep, AfterClosingHasFailedTheCameraIsClosedBeforeTheShutdown) {
    UseCamera();
    const std::string run = LinesOf(kFromInitToDeInit);
    const auto result = Mivora({"shell"}, "SdkControl fail PxnCameraClose 1 -20\n" + run + run);
    const std::string good = GoodAnswers(kFromInitToDeInit);
    EXPECT_EQ(result.output, "SdkControl = 0 answer=\"ok\"\n" + good + good);
    EXPECT_EQ(result.errors, ""); // nothing is left at the shutdown
}

TEST_F(FailureSweep, AfterAnyCallOfTheInitialisationHasFailedTheNextOneWorks) {
    UseCamera();
    const unsigned calls = CountCalls("Init\n");
    ASSERT_GT(calls, 5u);
    const auto result = Mivora({"shell"}, Sweep(kFromInitToDeInit, calls));
    EXPECT_EQ(result.status, 0);
    std::istringstream output(result.output);
    ExpectSwept(output, kFromInitToDeInit, calls);
    EXPECT_EQ(result.errors, "");
}

} // namespace
} // namespace scenario
