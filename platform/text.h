// text.h - conversions between narrow and wide text, and comparison without case
//
// All functions may be called from any thread.
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// Converts narrow text (the system's code page on Windows, UTF-8 elsewhere) to wide text. Returns
/// the number of wide characters including the terminator. With a null `buffer` or `capacity` 0
/// nothing is written. Returns 0 when `text` is null, cannot be converted or does not fit into
/// `capacity` characters; the content of `buffer` is then unspecified.
std::size_t NarrowToWide(const char* text, wchar_t* buffer, std::size_t capacity);
/// Converts wide text to narrow text. Empty when `text` is null or cannot be converted exactly.
std::string WideToNarrow(const wchar_t* text);
/// Compares two strings bytewise, ignoring the case of ASCII letters whatever the locale. Negative,
/// 0 or positive; upper case letters are ordered as their lower case.
int CompareNoCase(const char* left, const char* right);

} // namespace platform
