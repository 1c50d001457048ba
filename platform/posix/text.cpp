// text.cpp - conversion between UTF-8 and wide text, independent of the locale
#include "platform/text.h"

#include <cstdint>
#include <type_traits>

namespace platform {

namespace {

static_assert(sizeof(wchar_t) == 4, "a wide character holds any code point");

constexpr std::uint32_t kLastCodePoint = 0x10FFFF;

bool IsSurrogate(std::uint32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

// Decodes the character at `text` and advances past it. False for invalid UTF-8, which includes
// overlong encodings and surrogates.
bool DecodeUtf8(const unsigned char*& text, std::uint32_t& codePoint) {
    const unsigned char lead = *text++;
    if (lead < 0x80) {
        codePoint = lead;
        return true;
    }
    unsigned following = 0;
    std::uint32_t least = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        following = 1;
        least = 0x80;
        codePoint = lead & 0x1Fu;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        following = 2;
        least = 0x800;
        codePoint = lead & 0x0Fu;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        following = 3;
        least = 0x10000;
        codePoint = lead & 0x07u;
    } else {
        return false;
    }
    for (; following > 0; --following) {
        // Never reads past the terminator, which is not a continuation byte.
        if ((*text & 0xC0u) != 0x80u) {
            return false;
        }
        codePoint = (codePoint << 6) | (*text++ & 0x3Fu);
    }
    return codePoint >= least && codePoint <= kLastCodePoint && !IsSurrogate(codePoint);
}

void AppendUtf8(std::string& text, std::uint32_t codePoint) {
    const auto append = [&text](std::uint32_t byte) {
        text.push_back(static_cast<char>(byte));
    };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | (codePoint >> 18));
        append(0x80 | ((codePoint >> 12) & 0x3F));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

} // namespace

std::size_t NarrowToWide(const char* text, wchar_t* buffer, std::size_t capacity) {
    if (!text) {
        return 0;
    }
    const bool measuring = !buffer || capacity == 0;
    const auto* next = reinterpret_cast<const unsigned char*>(text);
    std::size_t count = 0;
    std::uint32_t codePoint = 0;
    do {
        if (!DecodeUtf8(next, codePoint) || (!measuring && count == capacity)) {
            return 0;
        }
        if (!measuring) {
            buffer[count] = static_cast<wchar_t>(codePoint);
        }
        ++count;
    } while (codePoint != 0);
    return count;
}

std::string WideToNarrow(const wchar_t* text) {
    std::string narrow;
    for (; text && *text != L'\0'; ++text) {
        const auto codePoint = std::uint32_t{static_cast<std::make_unsigned_t<wchar_t>>(*text)};
        if (codePoint > kLastCodePoint || IsSurrogate(codePoint)) {
            return {};
        }
        AppendUtf8(narrow, codePoint);
    }
    return narrow;
}

} // namespace platform
