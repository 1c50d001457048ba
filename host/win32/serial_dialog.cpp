// serial_dialog.cpp - the settings dialog of the host's serial channel
#include "host/src/serial_dialog.h"

#include "host/src/guarded.h"
#include "host/src/parse_number.h"
#include "host/win32/serial_dialog_ids.h"

#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <string>

namespace {

constexpr unsigned kMaxPorts = 256;

void AddChoice(HWND dialog, int control, const std::string& text) {
    SendDlgItemMessageA(dialog, control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void Select(HWND dialog, int control, const std::string& text) {
    const LRESULT index =
        SendDlgItemMessageA(dialog, control, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(text.c_str()));
    if (index == CB_ERR) {
        SetDlgItemTextA(dialog, control, text.c_str());
    } else {
        SendDlgItemMessageA(dialog, control, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}

std::string TextOf(HWND dialog, int control) {
    char text[256] = "";
    GetDlgItemTextA(dialog, control, text, sizeof text);
    return text;
}

void AddPortsOfThisComputer(HWND dialog) {
    for (unsigned number = 1; number <= kMaxPorts; ++number) {
        const std::string name = "COM" + std::to_string(number);
        char target[512];
        if (QueryDosDeviceA(name.c_str(), target, sizeof target) != 0) {
            AddChoice(dialog, IDC_PORT, name);
        }
    }
}

void Fill(HWND dialog, const SerialSettings& settings) {
    AddPortsOfThisComputer(dialog);
    for (const std::uint32_t baud :
         {300u, 600u, 1200u, 2400u, 4800u, 9600u, 19200u, 38400u, 57600u, 115200u, 230400u}) {
        AddChoice(dialog, IDC_BAUD, std::to_string(baud));
    }
    for (const auto parity : {platform::SerialParity::kNone, platform::SerialParity::kOdd,
                              platform::SerialParity::kEven}) {
        AddChoice(dialog, IDC_PARITY, ParityText(parity));
    }
    for (std::uint32_t bits = kMinByteSize; bits <= kMaxByteSize; ++bits) {
        AddChoice(dialog, IDC_BYTE_SIZE, std::to_string(bits));
    }
    for (const auto bits : {platform::SerialStopBits::kOne, platform::SerialStopBits::kOneAndHalf,
                            platform::SerialStopBits::kTwo}) {
        AddChoice(dialog, IDC_STOP_BITS, StopBitsText(bits));
    }
    Select(dialog, IDC_PORT, settings.portName);
    Select(dialog, IDC_BAUD, std::to_string(settings.baud));
    Select(dialog, IDC_PARITY, ParityText(settings.parity));
    Select(dialog, IDC_BYTE_SIZE, std::to_string(settings.byteSize));
    Select(dialog, IDC_STOP_BITS, StopBitsText(settings.stopBits));
}

/// Reads the controls into `settings`; false, without any change, if the baud rate is invalid.
bool Take(HWND dialog, SerialSettings& settings) {
    const std::uint32_t baud = ParseUint32(TextOf(dialog, IDC_BAUD)).value_or(0);
    if (baud == 0) {
        MessageBoxA(dialog, "The baud rate is a number above 0.", "Serial Port",
                    MB_OK | MB_ICONEXCLAMATION);
        SetFocus(GetDlgItem(dialog, IDC_BAUD));
        return false;
    }
    SerialSettings taken;
    taken.portName = TextOf(dialog, IDC_PORT);
    taken.baud = baud;
    taken.parity = ParseParity(TextOf(dialog, IDC_PARITY));
    taken.byteSize = ParseByteSize(TextOf(dialog, IDC_BYTE_SIZE));
    taken.stopBits = ParseStopBits(TextOf(dialog, IDC_STOP_BITS));
    settings = std::move(taken);
    return true;
}

INT_PTR OnCommand(HWND dialog, WORD command) {
    auto* const settings = reinterpret_cast<SerialSettings*>(GetWindowLongPtrA(dialog, DWLP_USER));
    switch (command) {
    case IDOK:
        if (Guarded(false, [&] { return Take(dialog, *settings); })) {
            EndDialog(dialog, IDOK);
        }
        return TRUE;
    case IDCANCEL:
        EndDialog(dialog, IDCANCEL);
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        Guarded(false, [&] {
            Fill(dialog, *reinterpret_cast<const SerialSettings*>(lParam));
            return true;
        });
        return TRUE;
    case WM_COMMAND:
        return OnCommand(dialog, LOWORD(wParam));
    default:
        return FALSE;
    }
}

/// The library that contains this code and the dialog resource.
HINSTANCE OwnInstance() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&DialogProcedure), &module);
    return module;
}

} // namespace

DialogEnd RunSerialDialog(MV_WINDOW parent, SerialSettings& settings) {
    const INT_PTR end =
        DialogBoxParamA(OwnInstance(), MAKEINTRESOURCEA(IDD_SERIAL_PORT), static_cast<HWND>(parent),
                        DialogProcedure, reinterpret_cast<LPARAM>(&settings));
    switch (end) {
    case IDOK:
        return DialogEnd::kOk;
    case IDCANCEL:
        return DialogEnd::kCancelled;
    default:
        return DialogEnd::kFailed;
    }
}
