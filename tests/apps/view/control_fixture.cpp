// control_fixture.cpp - runs the viewer's control on virtual cameras without a window
#include "tests/apps/view/control_fixture.h"

#include "platform/clock.h"
#include "tests/support/run_program.h"

#include <atomic>
#include <memory>

namespace {

constexpr std::uint64_t kPatienceNs = 60000000000;
constexpr std::uint32_t kLookAgainMs = 10;

} // namespace

ControlTest::ControlTest() : home("PYXEN_HOME", support::BuiltFile("simulator")) {
    options.configFile = directory.Write("host.ini", "[Grabber_0]\n");
    UseCameras(CameraXml("A") + CameraXml("B"));
    Sdk("clear"); // loads the library before the test changes PYXEN_HOME
}

ControlTest::~ControlTest() {
    End();
    Sdk("clear");
}

void ControlTest::UseCameras(const std::string& cameras) {
    directory.Write("PxnC.xml", "<PxnC>\n" + cameras + "</PxnC>\n");
}

std::string ControlTest::CameraXml(const std::string& id, const std::string& attributes) {
    return "<camera id=\"" + id + "\" extendedId=\"Eth0|" + id + "\" model=\"Camera " + id +
           "\" sensorWidth=\"64\" sensorHeight=\"64\" " + attributes +
           ">\n<feature name=\"Height\" value=\"48\"/>\n"
           "<feature name=\"ExposureTime\" value=\"1000\"/>\n"
           "<feature name=\"AcquisitionFrameRate\" value=\"100\"/>\n</camera>\n";
}

void ControlTest::Run(ViewStage stage) {
    pipe.emplace([this] { news.Set(); });
    IControlListener& listener = *this;
    control.emplace(options, maker, *pipe, listener);
    control->Run();
    WaitFor(stage);
}

void ControlTest::WaitUntil(const std::function<bool()>& isSo) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    for (;;) {
        news.Reset();
        control->ServeWindowThread();
        if (isSo()) {
            return;
        }
        ASSERT_LT(platform::MonotonicNanoseconds() - begin, kPatienceNs) << "nothing came of it";
        news.Wait(kLookAgainMs);
    }
}

void ControlTest::WaitFor(ViewStage stage) {
    SCOPED_TRACE(static_cast<int>(stage));
    WaitUntil([&] { return control->State().stage == stage; });
}

void ControlTest::WaitForNewPicture() {
    const auto before = pipe->Newest();
    WaitUntil([&] { return pipe->Newest() != before; });
}

void ControlTest::WaitForOrders() {
    const auto done = std::make_shared<std::atomic<bool>>(false);
    control->RunScript("", [done](const std::string&) { *done = true; });
    WaitUntil([&] { return done->load(); });
}

std::string ControlTest::WaitForFailure() {
    std::vector<std::string> failures;
    WaitUntil([&] {
        failures = control->TakeFailures();
        return !failures.empty();
    });
    return failures.empty() ? "" : failures.front();
}

void ControlTest::End() {
    if (control) {
        control->End();
        WaitUntil([this] { return control->HasEnded(); });
        control.reset();
        pipe.reset();
    }
}

void ControlTest::Sdk(const std::string& command) {
    std::string answer;
    EXPECT_EQ(sdk.Run(command, answer), 0) << command << ": " << answer;
}
