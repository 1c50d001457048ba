// spoiled_memory.cpp - overwrites what is freed, so that a use of it shows
#include <cstddef>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

void Spoil(void* memory) noexcept {
    if (!memory) {
        return;
    }
    // Volatile, or the compiler leaves out what nobody may read.
    volatile unsigned char* const bytes = static_cast<unsigned char*>(memory);
    const std::size_t size = _msize(memory);
    for (std::size_t index = 0; index < size; ++index) {
        bytes[index] = 0xDD;
    }
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* const memory = std::malloc(size ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    Spoil(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    Spoil(memory);
}
