// virtual_table.h - positions in the virtual table of a class
#pragma once

#include <cstdint>
#include <cstring>

namespace support {

/// Index of a virtual member function in the virtual table of its class; -1 when it is not virtual.
/// In the Itanium C++ ABI a pointer to a virtual member function holds the function's offset in the
/// table plus one. A destructor takes two entries.
template <typename Member>
int EntryOf(Member member) {
    static_assert(sizeof member == 2 * sizeof(void*));
    std::uintptr_t words[2];
    std::memcpy(words, &member, sizeof words);
    return words[0] % 2 == 1 ? static_cast<int>((words[0] - 1) / sizeof(void*)) : -1;
}

} // namespace support
