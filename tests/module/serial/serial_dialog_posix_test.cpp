// serial_dialog_posix_test.cpp - a serial channel's dialog where there are no windows
#include "tests/module/serial/serial_fixture.h"

namespace {

using WithoutSerialDialog = SerialFixture;

TEST_F(WithoutSerialDialog, ConfiguringBehavesAsIfCancelled) {
    Camera().SetRegister32(kBase, 3);
    MV_DLG_EXITCODE exitCode = MV_DLG_OK;
    EXPECT_EQ(channel->ConfigDialog(nullptr, &exitCode), MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(channel->ConfigDialog(nullptr, nullptr), MV_OK);
    EXPECT_STREQ(channel->GetSettings().portName, "PYXENSERIALPORT2");
    // The ports were listed all the same.
    ASSERT_EQ(channel->GetPorts().size(), 1u);
    EXPECT_EQ(channel->GetPorts()[0].id, 2);
}

TEST_F(WithoutSerialDialog, ConfiguringNeedsNoGrabber) {
    channel = std::make_unique<CCmdKVNPyxen>(nullptr, Grabber().SerialMutex());
    MV_DLG_EXITCODE exitCode = MV_DLG_OK;
    EXPECT_EQ(channel->ConfigDialog(nullptr, &exitCode), MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(Calls(), Texts{});
}

} // namespace
