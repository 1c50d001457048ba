#include "host/win32/serial_dialog_ids.h"
#include "mivora/cmd_channel.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <afxwin.h>

#include <string>
#include <thread>

namespace {

/// A visible window of this process with the title; null after a while.
HWND WaitForWindow(const char* title) {
    HWND window = nullptr;
    support::WaitUntil([&] {
        window = FindWindowA("#32770", title);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process != GetCurrentProcessId() || !IsWindowVisible(window)) {
            window = nullptr;
        }
        return window != nullptr;
    });
    return window;
}

/// The dialog runs on a thread of its own, as on an application's user-interface thread.
class SerialPortDialog : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(ini.Open(directory.PathOf("s.ini").c_str()));
        ASSERT_TRUE(ini.WriteText("s", "PORTNAME", "COM77"));
        ASSERT_TRUE(ini.WriteText("s", "BAUD", "12345"));
        ASSERT_TRUE(ini.WriteText("s", "PARITY", "Odd"));
        ASSERT_TRUE(ini.WriteText("s", "BYTESIZE", "7"));
        ASSERT_TRUE(ini.WriteText("s", "STOPBITS", "2"));
        ASSERT_EQ(channel->GetConfig(&ini, "s"), MV_OK);
        thread = std::thread([this] { result = channel->ConfigDialog(nullptr, &exitCode); });
        dialog = WaitForWindow("Serial Port");
        ASSERT_NE(dialog, nullptr);
    }
    void TearDown() override {
        if (thread.joinable()) {
            Press(IDCANCEL);
            thread.join();
        }
        DeleteCmdSerialInstance(channel);
    }

    void Press(int button) const {
        PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    }

    std::string Text(int control) const {
        char text[100] = "";
        SendDlgItemMessageA(dialog, control, WM_GETTEXT, sizeof text,
                            reinterpret_cast<LPARAM>(text));
        return text;
    }

    void Type(int control, const char* text) const {
        SendDlgItemMessageA(dialog, control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }

    void Choose(int control, int index) const {
        SendDlgItemMessageA(dialog, control, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }

    support::TemporaryDirectory directory;
    CIniFile ini;
    CCmdChannel* const channel = CreateCmdSerialInstance();
    std::thread thread;
    HWND dialog = nullptr;
    MV_ERRCODE result = MV_REFUSED;
    MV_DLG_EXITCODE exitCode = MV_DLG_OK;
};

TEST_F(SerialPortDialog, ShowsThePresentSettings) {
    EXPECT_EQ(Text(IDC_PORT), "COM77");
    EXPECT_EQ(Text(IDC_BAUD), "12345");
    EXPECT_EQ(Text(IDC_PARITY), "Odd");
    EXPECT_EQ(Text(IDC_BYTE_SIZE), "7");
    EXPECT_EQ(Text(IDC_STOP_BITS), "2");
}

TEST_F(SerialPortDialog, StoresWhatWasChosenOnOk) {
    Type(IDC_PORT, "COM3");
    Choose(IDC_BAUD, 9);
    Choose(IDC_PARITY, 2);
    Choose(IDC_BYTE_SIZE, 0);
    Choose(IDC_STOP_BITS, 1);
    Press(IDOK);
    thread.join();
    EXPECT_EQ(result, MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_STREQ(channel->GetConfigText(),
                 "115200 Baud, Parity = Even, Bytesize = 5, Stopbits = 1.5");
    EXPECT_EQ(channel->SetConfig(&ini, "s"), MV_OK);
    char port[16];
    ini.GetText("s", "PORTNAME", "", port, sizeof port);
    EXPECT_STREQ(port, "COM3");
}

TEST_F(SerialPortDialog, StoresNothingOnCancel) {
    Type(IDC_BAUD, "300");
    Choose(IDC_PARITY, 0);
    Press(IDCANCEL);
    thread.join();
    EXPECT_EQ(result, MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_STREQ(channel->GetConfigText(), "12345 Baud, Parity = Odd, Bytesize = 7, Stopbits = 2");
}

TEST_F(SerialPortDialog, StaysOpenOnABaudRateThatIsNone) {
    Type(IDC_BAUD, "fast");
    Press(IDOK);
    // Dialog and message box have the same title: the box is the one that holds the dialog back.
    EXPECT_TRUE(support::WaitUntil([&] { return !IsWindowEnabled(dialog); }));
    HWND box = nullptr;
    EXPECT_TRUE(support::WaitUntil([&] {
        box = GetLastActivePopup(dialog);
        return box && box != dialog;
    }));
    PostMessageA(box, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(support::WaitUntil([&] { return IsWindowEnabled(dialog) != FALSE; }));
    EXPECT_EQ(Text(IDC_BAUD), "fast");
    Type(IDC_BAUD, "600");
    Press(IDOK);
    thread.join();
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_STREQ(channel->GetConfigText(), "600 Baud, Parity = Odd, Bytesize = 7, Stopbits = 2");
}

} // namespace
