// viewer_menu_test.cpp - tests of the viewer's menu commands and dialogs
#include "apps/view/windows/resource.h"
#include "platform/file_system.h"
#include "tests/apps/view/windows/viewer_fixture.h"
#include "tests/support/wait_until.h"
#include "tests/windows/screenshot.h"

#include <afxcmn.h>

#include <lodepng.h>

namespace {

class ViewerMenu : public ViewerTest {
protected:
    /// Chooses a menu item that opens a dialog, and acts on the dialog.
    void ChooseAndDrive(UINT command, const std::wstring& caption, DialogDriver::Action action) {
        DialogDriver driver(caption, std::move(action));
        Choose(command);
        PumpUntil([&] { return driver.IsDone(); });
    }
};

TEST_F(ViewerMenu, SelectsAnotherCamera) {
    OpenLive("Mono");
    ChooseAndDrive(ID_CAMERA_SELECT, L"Device Finder", [](HWND finder) {
        SaveScreenshot(finder, "viewer-device-finder");
        DialogDriver::Press(IDCANCEL)(finder);
    });
    WaitForStatus(kStatusCamera, L"Mono: live");
    ChooseAndDrive(ID_CAMERA_SELECT, L"Device Finder", [](HWND finder) {
        const HWND list = FindWindowEx(finder, nullptr, WC_LISTVIEW, nullptr);
        PostMessage(list, WM_KEYDOWN, VK_HOME, 1);
        PostMessage(list, WM_KEYDOWN, VK_DOWN, 1);
        const auto isChosen = [&] {
            return SendMessage(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                               MAKELPARAM(LVNI_SELECTED, 0)) == 1 &&
                   IsWindowEnabled(GetDlgItem(finder, IDOK));
        };
        EXPECT_TRUE(support::WaitUntil(isChosen));
        PostMessage(GetDlgItem(finder, IDOK), BM_CLICK, 0, 0);
    });
    PumpUntil([this] {
        const std::wstring text = window.StatusText(kStatusCamera);
        return text != L"Mono: live" && text.size() > 6 &&
               text.substr(text.size() - 6) == L": live";
    });
}

TEST_F(ViewerMenu, ShowsTheCameraControl) {
    OpenLive("Mono");
    ChooseAndDrive(ID_CAMERA_CONTROL, L"Camera Feature Control", [](HWND dialog) {
        SaveScreenshot(dialog, "viewer-camera-control");
        PostMessage(dialog, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(window.StatusText(kStatusCamera), L"Mono: live");
}

TEST_F(ViewerMenu, InterruptsTheImagesForAChangeOfTheBuffers) {
    OpenLive("Mono");
    Choose(ID_CAMERA_CONTROL);
    PumpUntil([] {
        const HWND dialog = FindWindow(nullptr, L"Camera Feature Control");
        return dialog && IsWindowVisible(dialog);
    });
    std::string answer;
    ASSERT_EQ(sdk.Run("set Mono OffsetX 16", answer), 0) << answer;
    WaitForStatus(kStatusCamera, L"Mono: stopped");
    WaitForStatus(kStatusCamera, L"Mono: live");
    ASSERT_EQ(sdk.Run("drain", answer), 0) << answer;
    const auto before = window.ImageView().Shown();
    PumpUntil([&] { return window.ImageView().Shown() != before; });
    EXPECT_EQ(window.StatusText(kStatusCamera), L"Mono: live") << "interrupted again";
}

TEST_F(ViewerMenu, KeepsTheCameraControlWhileTheCameraIsAway) {
    OpenLive("Mono");
    HWND dialog = nullptr;
    Choose(ID_CAMERA_CONTROL);
    PumpUntil([&] {
        dialog = FindWindow(nullptr, L"Camera Feature Control");
        return dialog && IsWindowVisible(dialog);
    });
    std::string answer;
    ASSERT_EQ(sdk.Run("unplug Mono", answer), 0) << answer;
    WaitForStatus(kStatusCamera, L"Waiting for Mono");
    EXPECT_TRUE(IsWindowVisible(dialog));
    ASSERT_EQ(sdk.Run("plug Mono", answer), 0) << answer;
    WaitForStatus(kStatusCamera, L"Mono: live");
    EXPECT_TRUE(IsWindowVisible(dialog));
    Close();
    EXPECT_FALSE(IsWindow(dialog));
}

TEST_F(ViewerMenu, ConfiguresTheGrabber) {
    OpenLive("Mono");
    std::wstring text;
    ChooseAndDrive(ID_CAMERA_GRABBER, L"Info", [&text](HWND box) {
        text = BoxText(box);
        DialogDriver::Press(IDOK)(box);
    });
    EXPECT_EQ(text.substr(0, 44), L"This dialog is currently not implemented.\r\nP");
}

TEST_F(ViewerMenu, ConfiguresASerialChannel) {
    OpenLive("Mono");
    ChooseAndDrive(ID_CAMERA_CHANNEL, L"Configure Communication Port", [](HWND dialog) {
        SaveScreenshot(dialog, "viewer-serial-channel");
        DialogDriver::Press(IDCANCEL)(dialog);
    });
    EXPECT_EQ(window.StatusText(kStatusCamera), L"Mono: live");
}

TEST_F(ViewerMenu, SavesTheConfiguration) {
    OpenLive("Bayer");
    Choose(ID_FILE_SAVE_CONFIG);
    PumpUntil([this] {
        std::string content;
        return platform::ReadWholeFile(options.configFile, content) &&
               content.find("test|Bayer") != std::string::npos;
    });
}

TEST_F(ViewerMenu, SavesTheImageThatIsShown) {
    OpenLive("Mono");
    StopLive();
    const std::string file = TemporaryFile("image.png");
    ChooseAndDrive(ID_FILE_SAVE_IMAGE, L"Save Image", [&file](HWND dialog) {
        const std::wstring name(file.begin(), file.end());
        HWND edit = GetDlgItem(dialog, 0x480);
        edit = edit ? edit : GetDlgItem(dialog, 0x47C);
        SendMessage(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
        DialogDriver::Press(IDOK)(dialog);
    });
    PumpUntil([&] { return platform::PathExists(file); });
    std::vector<unsigned char> pixels;
    unsigned width = 0;
    unsigned height = 0;
    const auto isWhole = [&] {
        pixels.clear();
        return lodepng::decode(pixels, width, height, file, LCT_GREY, 8) == 0;
    };
    PumpUntil(isWhole);
    EXPECT_EQ(width, 320u);
    EXPECT_EQ(height, 240u);
    EXPECT_EQ(pixels, Shown().frame->bytes);
}

TEST_F(ViewerMenu, PassesScriptsToTheSimulator) {
    OpenLive("Mono");
    Choose(ID_TOOLS_SCRIPT);
    const HWND dialog = FindWindow(nullptr, L"Simulator Script");
    ASSERT_TRUE(dialog && IsWindowVisible(dialog));
    const HWND lines = GetDlgItem(dialog, IDC_SCRIPT_LINES);
    const HWND answers = GetDlgItem(dialog, IDC_SCRIPT_ANSWERS);
    SetWindowText(lines, L"# faults end\r\nclear\r\n  unplug Mono\r\n");
    SendMessage(GetDlgItem(dialog, IDC_SCRIPT_RUN), BM_CLICK, 0, 0);
    PumpUntil([&] { return TextOf(answers).find(L"unplug Mono\r\n  0") != std::wstring::npos; });
    WaitForStatus(kStatusCamera, L"Waiting for Mono");
    SetWindowText(lines, L"plug Mono\r\nnonsense\r\nclear");
    SendMessage(GetDlgItem(dialog, IDC_SCRIPT_RUN), BM_CLICK, 0, 0);
    PumpUntil([&] { return TextOf(answers).find(L"nonsense\r\n  -") != std::wstring::npos; });
    EXPECT_EQ(TextOf(answers).find(L"clear"), std::wstring::npos) << "it ends at the first failure";
    SaveScreenshot(dialog, "viewer-script");
    WaitForStatus(kStatusCamera, L"Mono: live");
    SendMessage(dialog, WM_COMMAND, IDCANCEL, 0);
    EXPECT_FALSE(IsWindowVisible(dialog));
}

TEST_F(ViewerMenu, ShowsTheAboutBox) {
    OpenLive("Mono");
    std::wstring text;
    ChooseAndDrive(ID_HELP_ABOUT, L"About Mivora View", [&text](HWND box) {
        text = BoxText(box);
        SaveScreenshot(box, "viewer-about");
        DialogDriver::Press(IDOK)(box);
    });
    EXPECT_NE(text.find(L"Mivora grabber library"), std::wstring::npos);
}

TEST_F(ViewerMenu, EndsTheProgram) {
    OpenLive("Mono");
    Choose(ID_FILE_EXIT);
    PumpUntil([this] { return window.m_hWnd == nullptr; });
    EXPECT_EQ(window.ExitStatus(), 0);
}

class ViewerFailure : public ViewerTest {};

TEST_F(ViewerFailure, IsShownWhenThereIsNoSdk) {
    options.sdk = TemporaryFile("nowhere");
    std::wstring text;
    DialogDriver driver(L"Mivora View", [&text](HWND box) {
        text = BoxText(box);
        SaveScreenshot(box, "viewer-no-sdk");
        DialogDriver::Press(IDOK)(box);
    });
    ASSERT_TRUE(window.Open(options, modules, SW_SHOW));
    PumpUntil([this] { return window.m_hWnd == nullptr; });
    EXPECT_NE(text.find(L"Init failed with 4"), std::wstring::npos) << testing::PrintToString(text);
    EXPECT_NE(text.find(L"nowhere"), std::wstring::npos);
    EXPECT_EQ(window.ExitStatus(), 1);
}

TEST_F(ViewerFailure, IsShownWhenThereIsNoModule) {
    modules.SetPath(TemporaryFile("nomodule.dll"));
    std::wstring text;
    DialogDriver driver(L"Mivora View", [&text](HWND box) {
        text = BoxText(box);
        DialogDriver::Press(IDOK)(box);
    });
    EXPECT_FALSE(window.Open(options, modules, SW_SHOW));
    EXPECT_NE(text.find(L"nomodule.dll"), std::wstring::npos) << testing::PrintToString(text);
    EXPECT_EQ(window.ExitStatus(), 1);
}

TEST_F(ViewerFailure, IsShownWhenTheCameraIsUnknownAndOnlyThen) {
    options.cameras = {"Nobody"};
    std::wstring text;
    {
        DialogDriver driver(L"Mivora View", [&text](HWND box) {
            text = BoxText(box);
            DialogDriver::Press(IDOK)(box);
        });
        ASSERT_TRUE(window.Open(options, modules, SW_SHOW));
        PumpUntil([&] { return driver.IsDone(); });
    }
    EXPECT_NE(text.find(L"Nobody"), std::wstring::npos) << testing::PrintToString(text);
    WaitForStatus(kStatusCamera, L"No camera; looking for one");
}

} // namespace
