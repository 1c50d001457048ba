// guarded_pages.h - memory between two pages that nobody may touch
#pragma once

#include <cstddef>
#include <cstdint>

/// Some pages of zeros; the page before them and the page behind them end the program when they are
/// read or written.
class GuardedPages {
public:
    /// Room for at least `bytes` bytes.
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
