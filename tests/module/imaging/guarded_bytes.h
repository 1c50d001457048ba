// guarded_bytes.h - memory that detects writes outside it
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

/// Bytes between two strips of a pattern, beginning at any address.
class GuardedBytes {
public:
    explicit GuardedBytes(std::size_t bytes, std::size_t misalignment = 0)
        : begin(kGuard + misalignment), count(bytes), all(begin + bytes + kGuard, kPattern) {}

    std::uint8_t* Data() { return all.data() + begin; }
    std::size_t Size() const { return count; }
    std::vector<std::uint8_t> Content() const {
        return {all.begin() + static_cast<std::ptrdiff_t>(begin),
                all.begin() + static_cast<std::ptrdiff_t>(begin + count)};
    }
    /// True while nobody wrote before or behind the bytes.
    bool IsIntact() const {
        const auto isPattern = [](std::uint8_t byte) {
            return byte == kPattern;
        };
        const auto inner = all.begin() + static_cast<std::ptrdiff_t>(begin);
        return std::all_of(all.begin(), inner, isPattern) &&
               std::all_of(inner + static_cast<std::ptrdiff_t>(count), all.end(), isPattern);
    }

private:
    static constexpr std::size_t kGuard = 64;
    static constexpr std::uint8_t kPattern = 0xA5;
    std::size_t begin;
    std::size_t count;
    std::vector<std::uint8_t> all;
};

/// A copy in a block of exactly its size, so that AddressSanitizer sees every byte read past it.
class ExactCopy {
public:
    explicit ExactCopy(const std::vector<std::uint8_t>& bytes)
        : block(new std::uint8_t[bytes.size()]) {
        if (!bytes.empty()) {
            std::memcpy(block.get(), bytes.data(), bytes.size());
        }
    }
    const std::uint8_t* Data() const { return block.get(); }

private:
    std::unique_ptr<std::uint8_t[]> block;
};
