// interrupt.cpp - Ctrl-C and Ctrl-Break
#include "platform/interrupt.h"

#include <windows.h>

#include <atomic>

namespace platform {

namespace {

std::atomic<unsigned> count{0};
std::atomic<unsigned> most{1};

BOOL WINAPI NoteRequest(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    // FALSE leaves the event to the default handler, which ends the program.
    return count.fetch_add(1) < most.load();
}

} // namespace

bool InstallInterruptHandler(unsigned requests) {
    count.store(0);
    most.store(requests);
    // A handler that is installed twice is also called twice per event.
    SetConsoleCtrlHandler(NoteRequest, FALSE);
    return SetConsoleCtrlHandler(NoteRequest, TRUE) != FALSE;
}

bool InterruptRequested() {
    return count.load() != 0;
}

unsigned InterruptCount() {
    return count.load();
}

} // namespace platform
