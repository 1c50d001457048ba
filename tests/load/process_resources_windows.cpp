// process_resources_windows.cpp - what a process holds of the system, from Windows
#include "process_resources.h"

// clang-format off
#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>
// clang-format on

namespace {

std::uint64_t CountThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return 0;
    }
    std::uint64_t count = 0;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Thread32First(snapshot, &entry); found;
         found = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

} // namespace

ProcessResources ProcessResources::Now() {
    ProcessResources now;
    PROCESS_MEMORY_COUNTERS memory = {};
    if (GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory)) {
        now.bytes = memory.WorkingSetSize;
    }
    DWORD handles = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &handles)) {
        now.handles = handles;
    }
    now.threads = CountThreads();
    now.drawingObjects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    now.userObjects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    return now;
}
