// session_test.cpp - tests of the grabber of one command
#include "apps/common/session.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "mivora/log_sink.h"
#include "tests/apps/doctor/fake_gige_camera.h"
#include "tests/support/environment_guard.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

/// The maker of a module that cannot be loaded.
class NoMaker final : public IGrabberMaker {
public:
    CMivoraGrabber* Create() override {
        wasLogging = MivoraInstalledLogSink() != nullptr;
        throw CommandFailure("there is no module");
    }
    void Delete(CMivoraGrabber*) override { ADD_FAILURE() << "nothing was made"; }

    bool wasLogging = false;
};

TEST(Session, LeavesNoLogBehindWhenThereIsNoGrabber) {
    const support::EnvironmentGuard home("PYXEN_HOME");
    NoMaker maker;
    EXPECT_THROW(Session(AppOptions(), maker), CommandFailure);
    EXPECT_TRUE(maker.wasLogging);
    EXPECT_EQ(MivoraInstalledLogSink(), nullptr);
}

/// A camera of the simulator that somebody else has open, and one that replies for it.
class SessionOfABusyCamera : public testing::Test {
protected:
    void UseCamera(const std::string& more) {
        directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" serial=\"S-7\" access=\"read\" " +
                                        more + "/></PxnC>");
    }
    std::string WhyItCannotBeOpened() {
        AppOptions options;
        options.configFile = directory.PathOf("host.ini");
        options.gigePort = replying.Port();
        LinkedMaker maker;
        Session session(options, maker);
        try {
            session.OpenCamera();
        } catch (const CommandFailure& failure) {
            return failure.Details().empty() ? "" : failure.Details().front();
        }
        return "it can";
    }

    const support::EnvironmentGuard home{"PYXEN_HOME", support::BuiltFile("simulator")};
    const support::TemporaryDirectory directory;
    FakeGigeCamera replying{FakeGigeCamera::kLoopback};
    const std::string unknown = "somebody else has it open: another program here or on another "
                                "computer, or this one a second time";
};

TEST_F(SessionOfABusyCamera, NamesWhoHasItWhereTheCameraTells) {
    UseCamera("");
    EXPECT_EQ(WhyItCannotBeOpened(), unknown);
    replying.SetRegister(gvcp::kControllerRegister, 0xC0000201);
    EXPECT_EQ(WhyItCannotBeOpened(), "somebody else has it open: a program on 192.0.2.1");
    replying.SetRegister(gvcp::kControllerRegister, FakeGigeCamera::kLoopback);
    EXPECT_EQ(WhyItCannotBeOpened(), "somebody else has it open: a program on this computer");
}

TEST_F(SessionOfABusyCamera, AsksNoCameraOfAnotherKind) {
    UseCamera("kind=\"usb\"");
    replying.SetRegister(gvcp::kControllerRegister, 0xC0000201);
    EXPECT_EQ(WhyItCannotBeOpened(), unknown);
}

} // namespace
