// serial_dialog_windows_test.cpp - the settings dialog with an invalid parent window
#include "mivora/cmd_channel.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(SerialDialog, ReportsThatItCannotBeShown) {
    CCmdChannel* const channel = CreateCmdSerialInstance();
    MV_DLG_EXITCODE exit = MV_DLG_OK;
    const auto noWindow = reinterpret_cast<MV_WINDOW>(std::uintptr_t{0x12345678});
    EXPECT_EQ(channel->ConfigDialog(noWindow, &exit), MV_REFUSED);
    EXPECT_EQ(exit, MV_DLG_CANCEL);
    DeleteCmdSerialInstance(channel);
}

} // namespace
