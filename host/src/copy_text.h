// copy_text.h - copies texts into caller-supplied buffers
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Copies `text` to `buffer`, truncated to `capacity` - 1 bytes and null-terminated. With a null
/// buffer or capacity 0 nothing is copied. Returns the length of the whole text.
std::uint32_t CopyText(std::string_view text, char* buffer, std::size_t capacity);
