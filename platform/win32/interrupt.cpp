// interrupt.cpp - console events that ask a program to stop
#include "platform/interrupt.h"

#include <windows.h>

#include <atomic>

namespace platform {

namespace {

std::atomic<bool> requested{false};

BOOL WINAPI NoteRequest(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    // A second one is left to the system, which ends the program.
    return !requested.exchange(true);
}

} // namespace

bool InstallInterruptHandler() {
    requested.store(false);
    // Installing twice would call it twice for one event.
    SetConsoleCtrlHandler(NoteRequest, FALSE);
    return SetConsoleCtrlHandler(NoteRequest, TRUE) != FALSE;
}

bool InterruptRequested() {
    return requested.load();
}

} // namespace platform
