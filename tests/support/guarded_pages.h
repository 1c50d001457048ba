// guarded_pages.h - memory between two guard pages
#pragma once

#include <cstddef>
#include <cstdint>

/// Zeroed pages of memory. An access to the page before or after them ends the program.
class GuardedPages {
public:
    /// Allocates `bytes` bytes, rounded up to whole pages. Throws std::bad_alloc.
    explicit GuardedPages(std::size_t bytes);
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;
    ~GuardedPages();

    std::uint8_t* Begin() const { return begin; }
    std::uint8_t* End() const { return begin + size; }

private:
    void* whole;
    std::uint8_t* begin;
    std::size_t size;
};
