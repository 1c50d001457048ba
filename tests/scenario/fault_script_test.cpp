// fault_script_test.cpp - faults by script in all programs
#include "tests/scenario/program_test.h"
#include "tests/support/in_process_grabber.h"
#include "tests/support/recording_sink.h"
#include "tests/support/wait_until.h"

#include <map>
#include <sstream>

namespace scenario {
namespace {

constexpr int kFrames = 60;

/// What the module reported for each frame, by frame number: "ok" or the receive error, in order if
/// a number occurs more than once.
using Course = std::map<int, std::string>;

class FaultScripts : public ProgramTest {
protected:
    void SetUp() override {
        // A camera that waits for buffers loses nothing, however slow this machine is.
        UseCamera("<feature name=\"SimulatorFreeRunning\" value=\"true\"/>\n");
        script = directory.Write("fault script.txt", "# frames that go wrong\n\n"
                                                     "frame incomplete 3,5,9\n"
                                                     "frame small 12\n"
                                                     "frame drop 15\n"
                                                     "frame duplicate 17\n"
                                                     "frame late 19\n"
                                                     "frame-random 7 20 incomplete\n"
                                                     "fail PxnCamerasList 2 -24\n");
    }

    static Course CourseOf(const std::vector<std::string>& log) {
        constexpr const char* kError = "0 CMivoraKVNPyxenClass::FrameCallback: Receive error: \"";
        constexpr const char* kGood = "1 CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed";
        constexpr const char* kNumber = "UniqueId = ";
        Course course;
        for (const std::string& line : log) {
            std::string outcome;
            if (line.find(kError) == 0) {
                const std::size_t begin = std::string(kError).size();
                outcome = line.substr(begin, line.find('"', begin) - begin);
            } else if (line.find(kGood) == 0) {
                outcome = "ok";
            } else {
                continue;
            }
            const int number =
                std::stoi(line.substr(line.find(kNumber) + std::string(kNumber).size()));
            if (number < kFrames) {
                std::string& known = course[number];
                known += (known.empty() ? "" : ", ") + outcome;
            }
        }
        return course;
    }
    Course CourseOfLogFile() const {
        std::vector<std::string> log;
        std::istringstream stream(directory.Read("log"));
        for (std::string line; std::getline(stream, line);) {
            log.push_back(line);
        }
        return CourseOf(log);
    }

    Course InGrab() const {
        const auto result = Mivora({"--sdk-script", script, "--log", PathOf("log"), "grab",
                                    "--frames", std::to_string(2 * kFrames), "--json"});
        ExpectDone(result);
        const Json report = Json::parse(result.output);
        EXPECT_TRUE(report["account"]["closed"]) << report;
        return CourseOfLogFile();
    }
    Course InShell() const {
        const auto result =
            Mivora({"--log", PathOf("log"), "shell"},
                   "SdkControl script " + script +
                       "\nInit\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 8\nSnap 1\n"
                       "WaitFrames " +
                       std::to_string(2 * kFrames) + " 60000\nStopSnap\n");
        EXPECT_EQ(result.status, 0) << result.output;
        EXPECT_PRED2(Contains, result.output, "SdkControl = 0 answer=\"ok\"");
        return CourseOfLogFile();
    }
    Course InThisTest() const {
        support::RecordingSink sink;
        MivoraInstallLogSink(&sink);
        {
            support::InProcess process;
            process.Control("script " + script);
            CMivoraGrabber* const grabber = process.Create();
            EXPECT_EQ(grabber->SetGrabberIni(PathOf("host.ini").c_str(), 0), 0);
            EXPECT_EQ(grabber->Init(), 0);
            EXPECT_EQ(grabber->SetActCameraIndex(0), 0);
            EXPECT_EQ(grabber->OpenActCamera(), 0);
            EXPECT_EQ(grabber->PrepareFrameBuffers(8), 0);
            EXPECT_EQ(grabber->Snap(1), 0);
            EXPECT_TRUE(support::WaitUntil(
                [&] {
                    std::uint64_t frames = 0;
                    std::uint64_t same = 0;
                    grabber->GetGrabberParam(4096, &frames, &same);
                    return frames >= 2 * kFrames;
                },
                60000));
            EXPECT_EQ(grabber->StopSnap(), 0);
            process.Delete(grabber);
        }
        MivoraInstallLogSink(nullptr);
        return CourseOf(sink.Lines());
    }

    std::string script;
};

TEST_F(FaultScripts, PlayTheSameInEveryProgram) {
    const Course inGrab = InGrab();
    EXPECT_EQ(InShell(), inGrab);
    EXPECT_EQ(InThisTest(), inGrab);

    const std::string incomplete = "Frame could not be filled to the end";
    for (const int number : {3, 5, 9}) {
        EXPECT_EQ(inGrab.at(number), incomplete) << number;
    }
    EXPECT_EQ(inGrab.at(12), "Frame buffer was too small");
    EXPECT_EQ(inGrab.count(15), 0u);
    EXPECT_EQ(inGrab.at(17).find("ok, "), 0u) << "sent twice: " << inGrab.at(17);
    EXPECT_EQ(inGrab.at(19), "ok");
    int atRandom = 0;
    for (int number = 20; number < kFrames; ++number) {
        atRandom += inGrab.at(number) == incomplete ? 1 : 0;
    }
    EXPECT_GT(atRandom, 0);
    EXPECT_LT(atRandom, kFrames - 20);
}

TEST_F(FaultScripts, ThatAreWrongEndTheCommandAndNameTheLine) {
    directory.Write("fault script.txt", "frame drop 3\n\nframe upside-down 4\n");
    for (const char* command : {"cameras", "shell"}) {
        ExpectFailure(Mivora({"--sdk-script", script, command}), 1,
                      {"the camera SDK refuses the script (-7): " + script +
                       ":3: \"upside-down\" is not a kind of frame fault"});
    }
    ExpectFailure(Mivora({"--sdk-script", PathOf("nothing.txt"), "features"}), 1,
                  {"refuses the script (-3): " + PathOf("nothing.txt") + ": cannot be read"});
}

} // namespace
} // namespace scenario
