// A host that lets its user choose a camera, with the module's file and the simulator behind it.
#include "list_rows.h"
#include "mivora/camera.h"
#include "mivora/grabber.h"
#include "mivora/log_sink.h"
#include "mivora/module_entry.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "screenshot.h"
#include "test_host.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"
#include "tests/support/temporary_directory.h"
#include "when_shown.h"

#include <cstdint>
#include <functional>

namespace {

constexpr const char* kCameras = R"(<PxnC>
<camera id="L" name="Left camera" model="Left camera" serial="100-01" access="full"/>
<camera id="M" name="Middle camera" model="Middle camera" serial="100-02" access="read"/>
<camera id="R" kind="usb" name="Right camera" model="Right camera" serial="100-03" access="unknown"/>
<camera id="F" name="Fourth camera" model="Fourth camera" serial="100-04" plugged="false"/>
</PxnC>
)";

std::string ProgramDirectory() {
    return platform::DirectoryOf(platform::ExecutablePath());
}

class CameraChoice : public TestHost {
protected:
    void SetUp() override {
        directory.Write("PxnC.xml", kCameras);
        std::string error;
        ASSERT_TRUE(
            module.Load(platform::JoinPath(ProgramDirectory(), "MivoraKVNPyxen.dll"), true, &error))
            << error;
        Start();
    }
    void TearDown() override { Stop(); }

    /// A grabber as a host begins with it; the configuration is what was saved last.
    void Start() {
        const auto create =
            reinterpret_cast<MV_CREATE_GRABBER>(module.FindSymbol("CreateGrabberInstance"));
        MivoraInstallLogSink(&sink);
        grabber = create(nullptr);
        MivoraInstallLogSink(nullptr);
        ASSERT_NE(grabber, nullptr);
        ASSERT_EQ(grabber->SetGrabberIni(directory.PathOf("host.ini").c_str(), 0), MV_OK);
        ASSERT_EQ(grabber->LoadGrabberConfig(), MV_OK);
    }
    /// The same when the camera of that identifier was saved last; initialised.
    void StartWith(const std::string& id) {
        Stop();
        directory.Write("host.ini", "[Grabber_0]\nUniqueId=" + id + "\n");
        Start();
        Init();
    }
    void Init() { ASSERT_EQ(grabber->Init(), MV_OK); }
    void Stop() {
        grabber->DeInit();
        reinterpret_cast<MV_DELETE_GRABBER>(module.FindSymbol("DeleteGrabberInstance"))(grabber);
    }
    /// The host ends and starts again, with what it saved.
    void Restart() {
        ASSERT_EQ(grabber->SaveGrabberConfig(), MV_OK);
        Stop();
        Start();
        Init();
    }

    void Control(const std::string& line) {
        const std::string path = platform::JoinPath(
            platform::JoinPath(platform::JoinPath(ProgramDirectory(), "simulator"), "Bin"),
            "PxnC.dll");
        const HMODULE library = GetModuleHandleA(path.c_str());
        ASSERT_NE(library, nullptr);
        using Function = std::int32_t (*)(const char*, char*, std::uint32_t);
        const auto control = reinterpret_cast<Function>(
            reinterpret_cast<void*>(GetProcAddress(library, "PxnControl")));
        char answer[256] = "";
        EXPECT_EQ(control(line.c_str(), answer, sizeof answer), 0) << answer;
    }

    /// Shows the device finder; `drive` works with it while it is open.
    MV_ERRCODE Choose(const std::function<void()>& drive) {
        const WhenShown shown(L"Device Finder", [&](HWND window) {
            dialog = window;
            list = GetDlgItem(window, 7000);
            SetDialog(window);
            Pump();
            EXPECT_FALSE(IsWindowEnabled(Frame())); // modal to the host's window
            drive();
            SetDialog(nullptr);
        });
        return grabber->SelectCameraDialog(Frame().m_hWnd, &exitCode);
    }
    void Push(int button) { Click(GetDlgItem(dialog, button), 5, 5); }
    void ClickRow(int row) {
        const CRect rect = RectOf(list, row);
        Click(list, rect.left + 10, (rect.top + rect.bottom) / 2);
    }
    Row Names() const {
        Row names;
        for (int row = 0; row < RowCount(list); ++row) {
            names.push_back(RowOf(list, row)[0]);
        }
        return names;
    }
    std::string ActiveName() const {
        const CMivoraCamera* const camera = grabber->GetActCamera();
        return camera ? camera->GetCameraName() : "";
    }

    support::TemporaryDirectory directory;
    support::EnvironmentGuard home{"PYXEN_HOME",
                                   platform::JoinPath(ProgramDirectory(), "simulator")};
    support::RecordingSink sink;
    platform::SharedLibrary module;
    CMivoraGrabber* grabber = nullptr;
    HWND dialog = nullptr;
    HWND list = nullptr;
    MV_DLG_EXITCODE exitCode = static_cast<MV_DLG_EXITCODE>(77);
};

TEST_F(CameraChoice, IsMadeInTheFinderAndRememberedByTheHost) {
    Init();
    EXPECT_EQ(grabber->GetActCameraIndex(), -1);
    EXPECT_EQ(Choose([&] {
                  EXPECT_EQ(Names(), (Row{L"Left camera", L"Middle camera", L"Right camera"}));
                  EXPECT_EQ(StateImageOf(list, 0), 1u);
                  EXPECT_EQ(StateImageOf(list, 1), 2u);
                  EXPECT_EQ(StateImageOf(list, 2), 2u);
                  EXPECT_EQ(SelectedRow(list), -1);
                  SaveScreenshot(dialog, "choice-three-cameras");
                  Control("plug F");
                  PumpUntil([&] { return RowCount(list) == 4; });
                  EXPECT_EQ(RowOf(list, 3)[0], L"Fourth camera");
                  SaveScreenshot(dialog, "choice-fourth-plugged-in");
                  Control("unplug M");
                  PumpUntil([&] { return RowCount(list) == 3; });
                  EXPECT_EQ(Names(), (Row{L"Left camera", L"Right camera", L"Fourth camera"}));
                  ClickRow(1);
                  SaveScreenshot(dialog, "choice-middle-removed");
                  Push(IDOK);
              }),
              MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_EQ(ActiveName(), "Right camera");
    EXPECT_EQ(grabber->GetNumCameras(), 3u);
    Restart();
    EXPECT_EQ(ActiveName(), "Right camera");
    EXPECT_EQ(Choose([&] {
                  EXPECT_EQ(SelectedRow(list), 2); // all are plugged in again as configured
                  SaveScreenshot(dialog, "choice-preselected");
                  Push(IDCANCEL);
              }),
              MV_OK);
    EXPECT_NE(directory.Read("host.ini").find("UniqueId=Usb0|R\n"), std::string::npos)
        << directory.Read("host.ini");
}

TEST_F(CameraChoice, ChangesNothingOnCancel) {
    StartWith("Eth0|L");
    ASSERT_EQ(ActiveName(), "Left camera");
    ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
    EXPECT_EQ(Choose([&] {
                  EXPECT_EQ(SelectedRow(list), 0);
                  EXPECT_EQ(StateImageOf(list, 0), 2u); // the host itself has it open
                  ClickRow(2);
                  Press(VK_ESCAPE);
              }),
              MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(ActiveName(), "Left camera");
    EXPECT_TRUE(grabber->IsCameraOpen());
    Restart();
    EXPECT_EQ(ActiveName(), "Left camera");
}

TEST_F(CameraChoice, ClosesTheOpenCameraOnOk) {
    StartWith("Eth0|L");
    ASSERT_EQ(grabber->OpenActCamera(), MV_OK);
    EXPECT_EQ(Choose([&] {
                  Control("access R full");
                  PumpUntil([&] { return StateImageOf(list, 2) == 1; });
                  const CRect rect = RectOf(list, 2);
                  DoubleClick(list, rect.left + 10, (rect.top + rect.bottom) / 2);
              }),
              MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_FALSE(grabber->IsCameraOpen());
    EXPECT_EQ(ActiveName(), "Right camera");
    EXPECT_EQ(grabber->OpenActCamera(), MV_OK);
}

TEST_F(CameraChoice, LeavesNoCameraActiveWhenTheChosenOneIsGone) {
    Init();
    EXPECT_EQ(Choose([&] {
                  ClickRow(1);
                  Control("unplug M");
                  PumpUntil([&] { return RowCount(list) == 2; });
                  Push(IDOK);
              }),
              MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_EQ(grabber->GetActCameraIndex(), -1);
    // It stays the chosen one, and is active as soon as it is there again.
    ASSERT_EQ(grabber->DeInit(), MV_OK);
    Init();
    EXPECT_EQ(ActiveName(), "Middle camera");
}

TEST_F(CameraChoice, NeedsInit) {
    const WhenShown box(L"Error", [&](HWND window) {
        const Box shown(window);
        EXPECT_EQ(shown.text, L"MivoraKVNPyxen has not been properly initalized!");
        EXPECT_EQ(shown.icon, nullptr);
        EXPECT_EQ(GetWindow(window, GW_OWNER), Frame().m_hWnd);
        SaveScreenshot(window, "choice-not-initialised");
        SendMessage(window, WM_COMMAND, IDOK, 0);
    });
    EXPECT_EQ(grabber->SelectCameraDialog(Frame().m_hWnd, &exitCode), MV_NOT_INITIALISED);
}

TEST_F(CameraChoice, IsWhatTheConfigurationDialogAsksFor) {
    const WhenShown box(L"Info", [&](HWND window) {
        const Box shown(window);
        EXPECT_EQ(shown.text, L"This dialog is currently not implemented.\r\n"
                              L"Please continue by selecting the camera.");
        EXPECT_EQ(shown.icon, nullptr);
        EXPECT_EQ(GetWindow(window, GW_OWNER), Frame().m_hWnd);
        SaveScreenshot(window, "configuration-dialog");
        SendMessage(window, WM_COMMAND, IDOK, 0);
    });
    EXPECT_EQ(grabber->GrabberConfigDialog(Frame().m_hWnd, &exitCode), MV_OK);
    EXPECT_EQ(exitCode, MV_DLG_OK);
}

} // namespace
