// copy_text.h - texts into the fixed buffers of callers
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Copies `text` into `buffer`, cut to `capacity` - 1 bytes and terminated; nothing with a null
/// buffer or capacity 0. Returns the length of the whole text.
std::uint32_t CopyText(std::string_view text, char* buffer, std::size_t capacity);
