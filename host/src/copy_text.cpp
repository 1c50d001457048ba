// copy_text.cpp - copies texts into caller-supplied buffers
#include "copy_text.h"

#include <algorithm>
#include <cstring>

std::uint32_t CopyText(std::string_view text, char* buffer, std::size_t capacity) {
    if (buffer && capacity > 0) {
        const std::size_t length = std::min(text.size(), capacity - 1);
        // memmove: the text may already be in the buffer.
        std::memmove(buffer, text.data(), length);
        buffer[length] = '\0';
    }
    return static_cast<std::uint32_t>(text.size());
}
