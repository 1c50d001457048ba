// image_memory.cpp - the memory of an image
#include "imaging/image_memory.h"

#include <limits>

namespace pyxen {

bool ImageMemory::Resize(std::uint64_t newSize) {
    if (image && size == newSize) {
        return true;
    }
    if (newSize == 0) {
        block.Free();
        image = nullptr;
        size = 0;
        return true;
    }
    constexpr std::size_t kSlack = kAlignment - 1;
    if (newSize > std::numeric_limits<std::size_t>::max() - kSlack ||
        !block.Resize(static_cast<std::size_t>(newSize) + kSlack)) {
        return false;
    }
    const auto begin = reinterpret_cast<std::uintptr_t>(block.Get());
    image = block.Get() + ((begin + kSlack) / kAlignment * kAlignment - begin);
    size = newSize;
    constexpr std::uint64_t kPage = 4096;
    for (std::uint64_t at = 0; at < size; at += kPage) {
        image[at] = 0;
    }
    return true;
}

} // namespace pyxen
