// session_test.cpp - tests of the grabber of one command
#include "apps/common/session.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "mivora/log_sink.h"
#include "tests/support/environment_guard.h"

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

} // namespace
