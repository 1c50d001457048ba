// image_memory.h - the memory of an image
#pragma once

#include "sdk/malloc_array.h"

#include <cstddef>
#include <cstdint>

namespace pyxen {

/// A block of the C allocator in which an image begins at a cache line.
///
/// Stores of a whole vector register never cross a cache line then, which makes converting an image
/// about a tenth faster than at the addresses that the allocator happens to return.
class ImageMemory {
public:
    static constexpr std::size_t kAlignment = 64;

    /// Makes room for an image of `newSize` bytes, and has the system find memory for every page
    /// now, so that the first frames do not wait for it. An image that has that size already stays
    /// as it is, another one is lost. False when out of memory; the memory is unchanged then. A
    /// size of 0 frees it.
    bool Resize(std::uint64_t newSize);
    void Free() { Resize(0); }

    std::uint8_t* Get() { return image; }
    const std::uint8_t* Get() const { return image; }
    std::uint64_t Size() const { return size; }

private:
    MallocArray<std::uint8_t> block;
    std::uint8_t* image = nullptr; // in the block
    std::uint64_t size = 0;
};

} // namespace pyxen
