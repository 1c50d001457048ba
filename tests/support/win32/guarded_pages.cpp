// guarded_pages.cpp - memory between two guard pages
#include "tests/support/guarded_pages.h"

#include <windows.h>

#include <new>

GuardedPages::GuardedPages(std::size_t bytes) {
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    const std::size_t page = system.dwPageSize;
    size = (bytes + page - 1) / page * page;
    whole = VirtualAlloc(nullptr, size + 2 * page, MEM_RESERVE, PAGE_NOACCESS);
    if (!whole) {
        throw std::bad_alloc();
    }
    begin = static_cast<std::uint8_t*>(whole) + page;
    if (size > 0 && !VirtualAlloc(begin, size, MEM_COMMIT, PAGE_READWRITE)) {
        VirtualFree(whole, 0, MEM_RELEASE);
        throw std::bad_alloc();
    }
}

GuardedPages::~GuardedPages() {
    VirtualFree(whole, 0, MEM_RELEASE);
}
