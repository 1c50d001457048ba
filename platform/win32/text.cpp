// text.cpp - conversion between the system's code page and wide text
#include "platform/text.h"

#include <windows.h>

#include <algorithm>
#include <limits>

namespace platform {

std::size_t NarrowToWide(const char* text, wchar_t* buffer, std::size_t capacity) {
    if (!text) {
        return 0;
    }
    constexpr std::size_t kMost = std::numeric_limits<int>::max();
    const int room = buffer ? static_cast<int>(std::min(capacity, kMost)) : 0;
    return static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text, -1, buffer, room));
}

std::string WideToNarrow(const wchar_t* text) {
    if (!text) {
        return {};
    }
    // For UTF-8, characters that cannot be converted make the function fail; for all other code
    // pages it uses a default character and reports that.
    const bool isUtf8 = GetACP() == CP_UTF8;
    const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL substituted = FALSE;
    BOOL* const report = isUtf8 ? nullptr : &substituted;
    const int size = WideCharToMultiByte(CP_ACP, flags, text, -1, nullptr, 0, nullptr, report);
    if (size <= 0 || substituted) {
        return {};
    }
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, flags, text, -1, narrow.data(), size, nullptr, nullptr);
    narrow.resize(narrow.size() - 1);
    return narrow;
}

} // namespace platform
