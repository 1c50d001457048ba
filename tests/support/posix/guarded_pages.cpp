// guarded_pages.cpp - memory between two guard pages
#include "tests/support/guarded_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

GuardedPages::GuardedPages(std::size_t bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    size = (bytes + page - 1) / page * page;
    whole = mmap(nullptr, size + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (whole == MAP_FAILED) {
        throw std::bad_alloc();
    }
    begin = static_cast<std::uint8_t*>(whole) + page;
    if (size > 0 && mprotect(begin, size, PROT_READ | PROT_WRITE) != 0) {
        munmap(whole, size + 2 * page);
        throw std::bad_alloc();
    }
}

GuardedPages::~GuardedPages() {
    munmap(whole, size + 2 * static_cast<std::size_t>(begin - static_cast<std::uint8_t*>(whole)));
}
