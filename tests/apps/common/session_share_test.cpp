// session_share_test.cpp - tests of what the sessions of a process share
#include "apps/common/session_share.h"

#include "apps/common/module_maker.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/file_system.h"
#include "tests/support/environment_guard.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

TEST(SessionShare, LetsOneSessionHaveACamera) {
    const support::EnvironmentGuard home("PYXEN_HOME", support::BuiltFile("simulator"));
    AppOptions options;
    SessionShare share(options);
    ModuleMaker modules;
    modules.SetPath(support::BuiltFile(platform::LibraryFileName("MivoraKVNPyxen")));
    std::optional<Session> first;
    first.emplace(options, modules, share);
    Session second(options, modules, share);
    EXPECT_TRUE(first->IsShared());
    first->OpenCamera();
    EXPECT_THROW(second.OpenCamera(), CameraNamedTwice);
    first.reset();
    EXPECT_EQ(second.Grabber().GetActCameraIndex(), 0);
    second.OpenActCamera();
    EXPECT_TRUE(second.Grabber().IsCameraOpen());
}

} // namespace
