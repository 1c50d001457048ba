// simulator_conformance_test.cpp - the simulator keeps what pxnc.h states
#include "platform/file_system.h"
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/support/temporary_directory.h"

namespace conformance_tests {
namespace {

/// Unplugs the camera by the simulator's control interface.
class SimulatorDriver : public conformance::Driver {
public:
    void UseLibrary(const conformance::SdkLibrary& library) {
        control = reinterpret_cast<ControlFunction>(library.FindSymbol("PxnControl"));
    }
    bool CanRemoveCamera() const override { return true; }
    void RemoveCamera() override { Run("unplug A"); }
    void ReturnCamera() override { Run("plug A"); }

private:
    using ControlFunction = std::int32_t (*)(const char* command, char* answer,
                                             std::uint32_t answerSize);
    void Run(const char* command) const {
        EXPECT_EQ(control(command, nullptr, 0), PxnErrSuccess) << command;
    }

    ControlFunction control = nullptr;
};

/// A simulator with one small camera of two streams.
class SmallSimulator {
public:
    SmallSimulator() {
        const std::string path = directory.Write(
            "PxnC.xml", "<PxnC>\n"
                        "<camera kind=\"serial\" id=\"A\" extendedId=\"Board0|A\" streams=\"2\" "
                        "sensorWidth=\"64\" sensorHeight=\"64\"/>\n"
                        "</PxnC>\n");
        auto driver = std::make_unique<SimulatorDriver>();
        SimulatorDriver& unowned = *driver;
        sdk = std::make_unique<SdkUnderTest>(
            "simulator", std::move(driver),
            conformance::SessionOptions{conformance::ToWide(path), "A"});
        unowned.UseLibrary(sdk->library);
    }
    std::unique_ptr<SdkUnderTest> Take() { return std::move(sdk); }
    std::string PathOf(const std::string& file) const { return directory.PathOf(file); }

private:
    support::TemporaryDirectory directory;
    std::unique_ptr<SdkUnderTest> sdk;
};

class SimulatorConformance : public ConformanceTest {
protected:
    static void SetUpTestSuite() {
        simulator = std::make_unique<SmallSimulator>();
        Begin(simulator->Take());
    }
    static void TearDownTestSuite() {
        End();
        simulator.reset();
    }

private:
    static std::unique_ptr<SmallSimulator> simulator;
};

std::unique_ptr<SmallSimulator> SimulatorConformance::simulator;

TEST_P(SimulatorConformance, IsKept) {
    ExpectKept({.areSkipped = {}, .fail = {}});
}

INSTANTIATE_TEST_SUITE_P(Checks, SimulatorConformance, testing::ValuesIn(conformance::AllChecks()),
                         TestName);

/// The camera's settings as a file has them.
std::string ReadSettings(conformance::Session& session, const std::string& path) {
    session.Prepare(conformance::Stage::kOpened);
    const conformance::SdkFunctions& sdk = session.Sdk();
    EXPECT_EQ(sdk.PxnSettingsSave(session.Camera(), conformance::ToWide(path).c_str(), nullptr, 0),
              PxnErrSuccess);
    std::string content;
    EXPECT_TRUE(platform::ReadWholeFile(path, content));
    return content;
}

TEST(HarmlessChecks, ChangeNoSettings) {
    SmallSimulator simulator;
    const std::unique_ptr<SdkUnderTest> sdk = simulator.Take();
    conformance::Session& session = *sdk->session;
    const std::string path = simulator.PathOf("settings.xml");
    unsigned compared = 0;
    for (const Check& check : conformance::AllChecks()) {
        // With the library stopped, the cameras forget their settings.
        const bool isStopping = check.stage == conformance::Stage::kStopped ||
                                std::string(check.name).find("shutdown") != std::string::npos;
        if (check.scope == conformance::Scope::kThorough || isStopping) {
            continue;
        }
        session.Prepare(conformance::Stage::kOpened);
        ASSERT_EQ(sdk->library.Functions().PxnFeatureIntSet(session.Camera(), "Width", 32),
                  PxnErrSuccess);
        const std::string before = ReadSettings(session, path);
        EXPECT_EQ(RunCheck(check, session).outcome, conformance::Outcome::kPassed);
        EXPECT_TRUE(ReadSettings(session, path) == before) << FullName(check);
        ++compared;
    }
    EXPECT_GE(compared, 80u);
}

} // namespace
} // namespace conformance_tests
