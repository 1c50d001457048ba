// The dialog in which the user configures a camera's serial port.
#include "res/resource.h"
#include "screenshot.h"
#include "test_host.h"
#include "tests/module/serial/serial_fixture.h"
#include "ui/windows/kvn_pyxen_ser_cfg_dialog.h"
#include "when_shown.h"

#include <functional>
#include <thread>

using namespace pyxen;

namespace {

constexpr int kLists[] = {IDC_SERIAL_BAUD, IDC_SERIAL_BYTE_SIZE, IDC_SERIAL_STOP_BITS,
                          IDC_SERIAL_PARITY};

using Choices = std::vector<std::wstring>;

/// Camera ports: 0 allows two baud rates, 2 everything, 4 one choice a list.
class SerialConfigDialog : public SerialFixture {
protected:
    void SetUp() override {
        SerialFixture::SetUp();
        Offer(0x16000, 1u << 5 | 1u << 9 | 0x7u << 16 | 0xFu << 20 | 0x7u << 24);
        Offer(0x61000, 0xFFFFFFFF);
        Offer(0x63000, 1u << 9 | 1u << 17 | 1u << 21 | 1u << 25);
    }

    void Offer(uint64_t base, uint32_t capability) {
        Camera().SetRegister32(base, 3);
        Camera().SetRegister32(base + 0x100, capability);
    }

    /// Runs the dialog on a channel; `drive` works with it while it is open.
    void Run(const std::function<void()>& drive) {
        RunWith([&] { ASSERT_EQ(channel->ConfigDialog(host.Frame().m_hWnd, &exitCode), MV_OK); },
                drive);
    }
    void RunWith(const std::function<void()>& show, const std::function<void()>& drive) {
        const WhenShown shown(L"Configure Communication Port", [&](HWND window) {
            dialog = window;
            host.SetDialog(window);
            host.Pump();
            drive();
            host.SetDialog(nullptr);
        });
        show();
    }

    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    LRESULT Ask(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessage(Control(id), message, wParam, lParam);
    }
    Choices ListOf(int id, UINT count, UINT text) const {
        Choices choices;
        for (LRESULT index = 0; index < Ask(id, count); ++index) {
            wchar_t buffer[64] = L"";
            Ask(id, text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(buffer));
            choices.emplace_back(buffer);
        }
        return choices;
    }
    Choices Ports() const { return ListOf(IDC_SERIAL_PORTS, LB_GETCOUNT, LB_GETTEXT); }
    Choices List(int id) const { return ListOf(id, CB_GETCOUNT, CB_GETLBTEXT); }
    std::wstring Chosen(int id) const {
        const LRESULT index = Ask(id, CB_GETCURSEL);
        return index < 0 ? L"" : List(id)[static_cast<std::size_t>(index)];
    }
    void Choose(int id, const wchar_t* label) {
        const LRESULT index =
            Ask(id, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(label));
        ASSERT_GE(index, 0);
        Ask(id, CB_SETCURSEL, static_cast<WPARAM>(index));
    }
    /// As the user does: the list box tells its dialog.
    void ChoosePort(int index) {
        RECT row{};
        Ask(IDC_SERIAL_PORTS, LB_GETITEMRECT, static_cast<WPARAM>(index),
            reinterpret_cast<LPARAM>(&row));
        host.Click(Control(IDC_SERIAL_PORTS), row.left + 2, (row.top + row.bottom) / 2);
    }
    void Push(int button) { host.Click(Control(button), 5, 5); }
    void TypeDelay(const wchar_t* text) { SetWindowText(Control(IDC_SERIAL_DELAY), text); }
    std::wstring Delay() const { return TextOf(dialog, IDC_SERIAL_DELAY); }

    HostWindow host;
    HWND dialog = nullptr;
    MV_DLG_EXITCODE exitCode = static_cast<MV_DLG_EXITCODE>(77);
};

void ExpectSame(const SerialSettings& left, const SerialSettings& right) {
    EXPECT_STREQ(left.portName, right.portName);
    EXPECT_EQ(left.baudIndex, right.baudIndex);
    EXPECT_EQ(left.parityIndex, right.parityIndex);
    EXPECT_EQ(left.byteSizeIndex, right.byteSizeIndex);
    EXPECT_EQ(left.stopBitsIndex, right.stopBitsIndex);
    EXPECT_EQ(left.intercharacterDelay, right.intercharacterDelay);
}

TEST_F(SerialConfigDialog, ShowsThePortsAndWhatTheSelectedOneAllows) {
    SerialSettings settings = SettingsOf("pyxenserialport2");
    settings.baudIndex = 5;
    settings.parityIndex = 2;
    settings.byteSizeIndex = 1;
    settings.stopBitsIndex = 1;
    settings.intercharacterDelay = 4294967295u;
    channel->SetSettings(settings);
    Run([&] {
        EXPECT_EQ(Ports(), (Choices{L"Serial port 0", L"Serial port 2", L"Serial port 4"}));
        EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETCURSEL), 1);
        for (WPARAM index = 0; index < 3; ++index) {
            EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETITEMDATA, index), static_cast<LRESULT>(index));
        }
        EXPECT_EQ(List(IDC_SERIAL_BAUD),
                  (Choices{L"300 Baud", L"600 Baud", L"1200 Baud", L"2400 Baud", L"4800 Baud",
                           L"9600 Baud", L"19200 Baud", L"38400 Baud", L"57600 Baud",
                           L"115200 Baud", L"230400 Baud"}));
        EXPECT_EQ(List(IDC_SERIAL_BYTE_SIZE), (Choices{L"5 Bit", L"6 Bit", L"7 Bit", L"8 Bit"}));
        EXPECT_EQ(List(IDC_SERIAL_STOP_BITS),
                  (Choices{L"1 Stopbit", L"1.5 Stopbits", L"2 Stopbits"}));
        EXPECT_EQ(List(IDC_SERIAL_PARITY), (Choices{L"No Parity", L"Odd Parity", L"Even Parity"}));
        for (const int id : kLists) {
            for (WPARAM index = 0; index < List(id).size(); ++index) {
                EXPECT_EQ(Ask(id, CB_GETITEMDATA, index), static_cast<LRESULT>(index)) << id;
            }
        }
        EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"9600 Baud");
        EXPECT_EQ(Chosen(IDC_SERIAL_BYTE_SIZE), L"6 Bit");
        EXPECT_EQ(Chosen(IDC_SERIAL_STOP_BITS), L"1.5 Stopbits");
        EXPECT_EQ(Chosen(IDC_SERIAL_PARITY), L"Even Parity");
        EXPECT_EQ(Delay(), L"4294967295");
        SaveScreenshot(dialog, "serial-all-rates");
        Push(IDCANCEL);
    });
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
}

TEST_F(SerialConfigDialog, BelongsToItsParent) {
    CWnd other;
    ASSERT_TRUE(other.CreateEx(0, nullptr, L"Another", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 90,
                               90, nullptr, nullptr));
    for (const HWND parent : {host.Frame().m_hWnd, other.m_hWnd}) {
        RunWith([&] { ASSERT_EQ(channel->ConfigDialog(parent, &exitCode), MV_OK); },
                [&] {
                    EXPECT_EQ(GetWindow(dialog, GW_OWNER), parent);
                    EXPECT_FALSE(IsWindowEnabled(parent));
                    Push(IDCANCEL);
                });
        EXPECT_TRUE(IsWindowEnabled(parent));
    }
}

TEST_F(SerialConfigDialog, ListsThePortsInTheOrderInWhichItGetsThem) {
    SerialDialogData data;
    data.ports = {
        {7, "SEVEN", "Zebra", 1u << 3}, {5, "FIVE", "Ape", 1u << 4}, {6, "SIX", "Mole", 0}};
    data.portIndex = 1;
    CKVNPyxenSerCfgDialog shown(data, &host.Frame());
    RunWith([&] { EXPECT_EQ(shown.DoModal(), IDOK); },
            [&] {
                EXPECT_EQ(Ports(), (Choices{L"Zebra", L"Ape", L"Mole"}));
                EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETCURSEL), 1);
                EXPECT_EQ(List(IDC_SERIAL_BAUD), Choices{L"4800 Baud"});
                ChoosePort(0);
                EXPECT_EQ(List(IDC_SERIAL_BAUD), Choices{L"2400 Baud"});
                Push(IDOK);
            });
    EXPECT_EQ(shown.Data().portIndex, 0);
}

TEST_F(SerialConfigDialog, OffersTwoRatesWhereThePortHasTwo) {
    channel->SetSettings(SettingsOf("PYXENSERIALPORT0"));
    Run([&] {
        EXPECT_EQ(List(IDC_SERIAL_BAUD), (Choices{L"9600 Baud", L"115200 Baud"}));
        EXPECT_EQ(Ask(IDC_SERIAL_BAUD, CB_GETITEMDATA, 0), 5);
        EXPECT_EQ(Ask(IDC_SERIAL_BAUD, CB_GETITEMDATA, 1), 9);
        EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"115200 Baud");
        EXPECT_EQ(Chosen(IDC_SERIAL_BYTE_SIZE), L"8 Bit");
        EXPECT_EQ(Delay(), L"0");
        SaveScreenshot(dialog, "serial-two-rates");
        Push(IDCANCEL);
    });
}

TEST_F(SerialConfigDialog, SelectsNothingThatThePortDoesNotAllow) {
    SerialSettings settings = SettingsOf("PYXENSERIALPORT0");
    settings.baudIndex = 3;
    channel->SetSettings(settings);
    Run([&] {
        EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"");
        EXPECT_EQ(Chosen(IDC_SERIAL_PARITY), L"No Parity");
        Push(IDOK);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    ExpectSame(channel->GetSettings(), settings); // a list without selection keeps its value
}

TEST_F(SerialConfigDialog, HasRoomForEveryText) {
    Run([&] {
        const HDC dc = GetDC(dialog);
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessage(dialog, WM_GETFONT, 0, 0)));
        const auto widthOf = [&](const std::wstring& text) {
            SIZE size{};
            GetTextExtentPoint32(dc, text.data(), static_cast<int>(text.size()), &size);
            return static_cast<int>(size.cx);
        };
        for (const int id : kLists) {
            COMBOBOXINFO info = {};
            info.cbSize = sizeof info;
            ASSERT_TRUE(GetComboBoxInfo(Control(id), &info));
            for (const std::wstring& label : List(id)) {
                EXPECT_LE(widthOf(label), CRect(info.rcItem).Width()) << id;
            }
        }
        CRect client;
        GetClientRect(Control(IDC_SERIAL_PORTS), &client);
        EXPECT_LE(widthOf(L"Serial port 4"), client.Width());
        GetClientRect(Control(IDC_SERIAL_DELAY), &client);
        EXPECT_LE(widthOf(L"4294967295"), client.Width());
        ReleaseDC(dialog, dc);
        Push(IDCANCEL);
    });
}

TEST_F(SerialConfigDialog, AsksTheCameraOnceWhenItOpens) {
    Run([&] {
        EXPECT_EQ(Calls().size(), 10u);
        ChoosePort(0);
        Push(IDOK);
    });
    EXPECT_EQ(Calls(), Texts{}); // an open port gets nothing of it before the next Open
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(SerialConfigDialog, FillsTheListsForTheSelectedPort) {
    Run([&] {
        Choose(IDC_SERIAL_BAUD, L"300 Baud");
        TypeDelay(L"17");
        ChoosePort(2);
        EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETCURSEL), 2);
        EXPECT_EQ(List(IDC_SERIAL_BAUD), Choices{L"115200 Baud"});
        EXPECT_EQ(List(IDC_SERIAL_PARITY), Choices{L"Odd Parity"});
        EXPECT_EQ(List(IDC_SERIAL_BYTE_SIZE), Choices{L"6 Bit"});
        EXPECT_EQ(List(IDC_SERIAL_STOP_BITS), Choices{L"1.5 Stopbits"});
        EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"115200 Baud");
        EXPECT_EQ(Chosen(IDC_SERIAL_PARITY), L"");
        EXPECT_EQ(Delay(), L"0");
        ChoosePort(1);
        EXPECT_EQ(List(IDC_SERIAL_BAUD).size(), 11u);
        EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"115200 Baud");
        ChoosePort(0);
        EXPECT_EQ(List(IDC_SERIAL_BAUD), (Choices{L"9600 Baud", L"115200 Baud"}));
        Push(IDCANCEL);
    });
}

TEST_F(SerialConfigDialog, StoresWhatWasChosenOnOk) {
    Run([&] {
        ChoosePort(0);
        Choose(IDC_SERIAL_BAUD, L"9600 Baud");
        Choose(IDC_SERIAL_BYTE_SIZE, L"5 Bit");
        Choose(IDC_SERIAL_STOP_BITS, L"2 Stopbits");
        Choose(IDC_SERIAL_PARITY, L"Even Parity");
        TypeDelay(L"250");
        Push(IDOK);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    SerialSettings expected = SettingsOf("PYXENSERIALPORT0");
    expected.baudIndex = 5;
    expected.parityIndex = 2;
    expected.byteSizeIndex = 0;
    expected.stopBitsIndex = 2;
    expected.intercharacterDelay = 250;
    ExpectSame(channel->GetSettings(), expected);
    EXPECT_STREQ(channel->GetConfigText(), "9600 Baud, Parity = Even, Bytesize = 5, Stopbits = 2");
}

TEST_F(SerialConfigDialog, StoresNothingOnCancel) {
    const SerialSettings before = channel->GetSettings();
    for (int way = 0; way < 3; ++way) {
        Run([&] {
            ChoosePort(0);
            Choose(IDC_SERIAL_BAUD, L"9600 Baud");
            TypeDelay(L"250");
            if (way == 0) {
                Push(IDCANCEL);
            } else if (way == 1) {
                host.Press(VK_ESCAPE);
            } else {
                PostMessage(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
                host.Pump();
            }
        });
        EXPECT_EQ(exitCode, MV_DLG_CANCEL);
        ExpectSame(channel->GetSettings(), before);
    }
}

TEST_F(SerialConfigDialog, StaysEmptyWithoutACamera) {
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    SerialSettings settings = SettingsOf("PYXENSERIALPORT2");
    settings.baudIndex = 3;
    settings.intercharacterDelay = 12;
    channel->SetSettings(settings);
    Forget();
    Run([&] {
        EXPECT_EQ(Ports(), Choices{});
        EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETCURSEL), LB_ERR);
        for (const int id : kLists) {
            EXPECT_EQ(List(id), Choices{}) << id;
        }
        EXPECT_EQ(Delay(), L"12");
        SaveScreenshot(dialog, "serial-no-camera");
        Push(IDOK);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    ExpectSame(channel->GetSettings(), settings);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(SerialConfigDialog, SelectsNoPortWhenTheConfiguredOneIsNotOffered) {
    channel->SetSettings(SettingsOf("PYXENSERIALPORT1"));
    Run([&] {
        EXPECT_EQ(Ports().size(), 3u);
        EXPECT_EQ(Ask(IDC_SERIAL_PORTS, LB_GETCURSEL), LB_ERR);
        for (const int id : kLists) {
            EXPECT_EQ(List(id), Choices{}) << id;
        }
        Push(IDOK);
    });
    ExpectSame(channel->GetSettings(), SettingsOf("PYXENSERIALPORT1"));
}

TEST_F(SerialConfigDialog, ComplainsOfADelayThatIsNoNumber) {
    const SerialSettings before = channel->GetSettings();
    Run([&] {
        Choose(IDC_SERIAL_BAUD, L"300 Baud");
        for (const wchar_t* text : {L"abc", L"", L"-"}) {
            TypeDelay(text);
            {
                const WhenShown box(L"Error", [&](HWND window) {
                    const Box shown(window);
                    EXPECT_EQ(shown.text, L"Invalid intercharacter delay");
                    EXPECT_EQ(shown.icon, LoadIcon(nullptr, IDI_EXCLAMATION));
                    EXPECT_EQ(GetWindow(window, GW_OWNER), dialog);
                    SaveScreenshot(window, "serial-bad-delay");
                    SendMessage(window, WM_COMMAND, IDOK, 0);
                });
                Push(IDOK);
            }
            EXPECT_TRUE(IsWindowVisible(dialog));
            EXPECT_EQ(GetFocus(), Control(IDC_SERIAL_DELAY));
            EXPECT_EQ(Delay(), text);
            EXPECT_EQ(Chosen(IDC_SERIAL_BAUD), L"300 Baud");
            ExpectSame(channel->GetSettings(), before);
        }
        Push(IDCANCEL);
    });
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    ExpectSame(channel->GetSettings(), before);
}

TEST_F(SerialConfigDialog, MayBeEndedWithAGoodDelayAfterABadOne) {
    Run([&] {
        TypeDelay(L"soon");
        {
            const WhenShown box(L"Error",
                                [](HWND window) { SendMessage(window, WM_COMMAND, IDOK, 0); });
            Push(IDOK);
        }
        TypeDelay(L"7 ms");
        host.Press(VK_RETURN);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_EQ(channel->GetSettings().intercharacterDelay, 7u);
}

TEST_F(SerialConfigDialog, LetsOtherThreadsUseThePortsWhileItIsShown) {
    OpenChannel();
    Run([&] {
        std::thread other([&] {
            platform::Mutex& mutex = Grabber().SerialMutex();
            if (mutex.TryLock()) {
                EXPECT_EQ(channel->Purge(1), MV_OK);
                EXPECT_EQ(channel->Close(), MV_OK);
                mutex.Unlock();
            } else {
                ADD_FAILURE() << "the dialog holds the mutex";
            }
        });
        other.join();
        Push(IDCANCEL);
    });
}

TEST_F(SerialConfigDialog, LeavesAPortNameAloneThatItDidNotChoose) {
    channel->SetSettings(SettingsOf("PYXENSERIALPORT1")); // is not offered
    Run([&] {
        channel->SetSettings(SettingsOf("PYXENSERIALPORT3"));
        TypeDelay(L"5");
        Push(IDOK);
    });
    SerialSettings expected = SettingsOf("PYXENSERIALPORT3");
    expected.intercharacterDelay = 5;
    ExpectSame(channel->GetSettings(), expected);
}

TEST_F(SerialConfigDialog, NeedsNoGrabber) {
    channel = std::make_unique<CCmdKVNPyxen>(nullptr, Grabber().SerialMutex());
    Run([&] {
        EXPECT_EQ(Ports(), Choices{});
        TypeDelay(L"5");
        Push(IDOK);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_EQ(channel->GetSettings().intercharacterDelay, 5u);
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(SerialConfigDialog, NeedsNoParentAndNoPlaceForItsEnding) {
    const WhenShown shown(L"Configure Communication Port",
                          [](HWND window) { SendMessage(window, WM_COMMAND, IDCANCEL, 0); });
    EXPECT_EQ(channel->ConfigDialog(nullptr, nullptr), MV_OK);
}

TEST_F(SerialConfigDialog, IsShownByTheHostWhichSavesTheChoice) {
    Grabber().AddCmdChannel(Grabber().CreateCmdChannel(1));
    const auto ask = [&] {
        ASSERT_EQ(Grabber().SelectCmdDialog(host.Frame().m_hWnd, &exitCode), MV_OK);
    };
    RunWith(ask, [&] {
        ChoosePort(0);
        Push(IDCANCEL);
    });
    EXPECT_EQ(exitCode, MV_DLG_CANCEL);
    EXPECT_EQ(Grabber().GetIni()->GetNumSections(), 0u);
    RunWith(ask, [&] {
        ChoosePort(0);
        Choose(IDC_SERIAL_BAUD, L"9600 Baud");
        Push(IDOK);
    });
    EXPECT_EQ(exitCode, MV_DLG_OK);
    EXPECT_EQ(directory.Read("host.ini"),
              "[Channel_0_0]\nTYPE=Pyxen Serial Port\nPORTNAME=PYXENSERIALPORT0\nBAUD=9600\n"
              "PARITY=No\nBYTESIZE=8\nSTOPBITS=1\n");
}

} // namespace
