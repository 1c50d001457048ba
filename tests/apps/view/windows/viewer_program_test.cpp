// viewer_program_test.cpp - tests of the viewer as a program
#include "apps/view/windows/resource.h"
#include "tests/apps/view/windows/viewer_fixture.h"
#include "tests/support/run_program.h"
#include "tests/support/wait_until.h"

namespace {

class ViewerProgram : public ViewerTest {};

TEST_F(ViewerProgram, ShowsACameraAndEndsWithItsWindow) {
    std::thread user([] {
        HWND found = nullptr;
        const auto isLive = [&found] {
            found = FindWindow(L"MivoraViewWindow", L"Bayer - Mivora View");
            return found && IsWindowVisible(found);
        };
        EXPECT_TRUE(support::WaitUntil(isLive, 60000));
        PostMessage(found, WM_COMMAND, ID_FILE_EXIT, 0);
    });
    const support::ProgramResult result =
        support::RunProgram("mivora-view", {"--config", options.configFile, "--camera", "Bayer"});
    user.join();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(ViewerProgram, ReportsABadOption) {
    DialogDriver driver(L"Mivora View", DialogDriver::Press(IDOK));
    EXPECT_EQ(support::RunProgram("mivora-view", {"--colour", "blue"}).status, 2);
}

TEST_F(ViewerProgram, ReportsAMissingModule) {
    DialogDriver driver(L"Mivora View", DialogDriver::Press(IDOK));
    EXPECT_EQ(support::RunProgram("mivora-view", {"--module", "nowhere.dll"}).status, 1);
}

} // namespace
