// traced_conformance_test.cpp - an SDK keeps what pxnc.h states while it is traced
#include "platform/file_system.h"
#include "pxnc/trace/trace_reader.h"
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/support/environment_guard.h"
#include "tests/support/temporary_directory.h"

#include <set>

namespace conformance_tests {
namespace {

/// Unplugs the simulator's camera through the trace.
class TracedDriver : public conformance::Driver {
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

/// The simulator behind the library for traces, which reads its variables at its first call.
struct TracedSimulator {
    TracedSimulator() {
        const std::string configuration = directory.Write(
            "PxnC.xml", "<PxnC>\n"
                        "<camera kind=\"serial\" id=\"A\" extendedId=\"Board0|A\" streams=\"2\" "
                        "sensorWidth=\"64\" sensorHeight=\"64\"/>\n"
                        "</PxnC>\n");
        auto driver = std::make_unique<TracedDriver>();
        TracedDriver& unowned = *driver;
        sdk = std::make_unique<SdkUnderTest>(
            "trace", std::move(driver),
            conformance::SessionOptions{conformance::ToWide(configuration), "A"});
        unowned.UseLibrary(sdk->library);
        finish = reinterpret_cast<FinishFunction>(sdk->library.FindSymbol("PxnTraceFinish"));
        PxnVersionInfo version{};
        EXPECT_EQ(sdk->library.Functions().PxnVersionQuery(&version, sizeof version), 0);
    }

    support::TemporaryDirectory directory;
    const std::string trace = directory.PathOf("a.trace");
    support::EnvironmentGuard home{
        "PYXEN_TRACE_SDK", platform::DirectoryOf(platform::DirectoryOf(LibraryOf("simulator")))};
    support::EnvironmentGuard file{"PYXEN_TRACE_FILE", trace};
    std::unique_ptr<SdkUnderTest> sdk;
    using FinishFunction = std::int32_t (*)();
    FinishFunction finish = nullptr; // the library stays loaded
};

class TracedConformance : public ConformanceTest {
protected:
    static void SetUpTestSuite() {
        simulator = std::make_unique<TracedSimulator>();
        Begin(std::move(simulator->sdk));
    }
    static void TearDownTestSuite() {
        End();
        ExpectWholeTrace();
        simulator.reset();
    }

private:
    /// All functions and callbacks are in the trace, and whatever began has ended.
    static void ExpectWholeTrace() {
        EXPECT_EQ(simulator->finish(), 1);
        sdktrace::Trace trace;
        std::string error;
        ASSERT_TRUE(ReadTrace(simulator->trace, trace, error)) << error;
        EXPECT_TRUE(trace.hasBeginning);
        EXPECT_EQ(trace.libraryVersion, (sdktrace::LibraryVersion{1, 4, 0, 2}));
        std::set<sdktrace::Entry> entries;
        for (const sdktrace::Event& event : trace.events) {
            entries.insert(event.entry);
            EXPECT_NE(event.partner, sdktrace::Event::kNone) << RowOf(event.entry).name;
        }
        EXPECT_EQ(entries.size(), sdktrace::kEntryCount);
    }

    static std::unique_ptr<TracedSimulator> simulator;
};

std::unique_ptr<TracedSimulator> TracedConformance::simulator;

TEST_P(TracedConformance, IsKept) {
    ExpectKept({.areSkipped = {}, .fail = {}});
}

INSTANTIATE_TEST_SUITE_P(Checks, TracedConformance, testing::ValuesIn(conformance::AllChecks()),
                         TestName);

} // namespace
} // namespace conformance_tests
