// malloc_array.h - an array in a block of the C allocator
#pragma once

#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <utility>

namespace pyxen {

/// An array of plain records in a block of the C allocator: grown with realloc, freed with free.
template <typename T>
class MallocArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    MallocArray() = default;
    ~MallocArray() { std::free(block); }
    MallocArray(MallocArray&& other) noexcept : block(std::exchange(other.block, nullptr)) {}
    MallocArray& operator=(MallocArray&& other) noexcept {
        std::swap(block, other.block);
        return *this;
    }
    MallocArray(const MallocArray&) = delete;
    MallocArray& operator=(const MallocArray&) = delete;

    /// Makes room for `count` records; false when out of memory, which leaves the block unchanged.
    /// A count of 0 frees the block.
    bool Resize(std::size_t count) {
        if (count == 0) {
            Free();
            return true;
        }
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) {
            return false;
        }
        void* grown = std::realloc(block, count * sizeof(T));
        if (!grown) {
            return false;
        }
        block = static_cast<T*>(grown);
        return true;
    }

    void Free() {
        std::free(block);
        block = nullptr;
    }
    /// Takes ownership of a block of the C allocator.
    void Adopt(T* newBlock) {
        std::free(block);
        block = newBlock;
    }
    /// Passes ownership of the block to the caller, who frees it.
    T* Release() { return std::exchange(block, nullptr); }

    T* Get() { return block; }
    const T* Get() const { return block; }
    T& operator[](std::size_t index) { return block[index]; }
    const T& operator[](std::size_t index) const { return block[index]; }
    explicit operator bool() const { return block != nullptr; }

private:
    T* block = nullptr;
};

} // namespace pyxen
