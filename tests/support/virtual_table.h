// virtual_table.h - where a class has its virtual operations
#pragma once

#include <cstdint>
#include <cstring>

namespace support {

/// The place of a virtual operation in its class's table, -1 when it is none: the pointer to a
/// virtual member holds its offset there plus one. A destructor takes two places.
template <typename Member>
int EntryOf(Member member) {
    static_assert(sizeof member == 2 * sizeof(void*));
    std::uintptr_t words[2];
    std::memcpy(words, &member, sizeof words);
    return words[0] % 2 == 1 ? static_cast<int>((words[0] - 1) / sizeof(void*)) : -1;
}

} // namespace support
