// interrupt.cpp - Ctrl-C and Ctrl-Break
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
    // FALSE for the second event leaves it to the default handler, which ends the program.
    return !requested.exchange(true);
}

} // namespace

bool InstallInterruptHandler() {
    requested.store(false);
    // A handler that is installed twice is also called twice per event.
    SetConsoleCtrlHandler(NoteRequest, FALSE);
    return SetConsoleCtrlHandler(NoteRequest, TRUE) != FALSE;
}

bool InterruptRequested() {
    return requested.load();
}

} // namespace platform
