// answer_size.h - how much memory an answer of the camera SDK may take
#pragma once

#include <cstddef>

namespace pyxen {

/// What takes more counts as out of memory. Systems grant memory that they do not have and end the
/// process when it is written to, so an absurd count must not be left to them.
inline constexpr std::size_t kMostAnswerBytes = std::size_t{1} << 30;

template <typename T>
constexpr bool IsAnswerSize(std::size_t count) {
    return count <= kMostAnswerBytes / sizeof(T);
}

} // namespace pyxen
