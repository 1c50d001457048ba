// text.h - text conversions that the two platforms do differently
#pragma once

#include <cstddef>
#include <string>

namespace platform {

/// Converts narrow text (the system's code page on Windows, UTF-8 elsewhere) to wide text.
/// Returns the number of wide characters including the terminator; with a null `buffer` or
/// capacity 0 only measures. 0 when the text is null, cannot be converted or does not fit; the
/// buffer's content is then unspecified.
std::size_t NarrowToWide(const char* text, wchar_t* buffer, std::size_t capacity);
/// The reverse; null and text that has no narrow form give an empty string.
std::string WideToNarrow(const wchar_t* text);
/// Compares ignoring the case of ASCII letters: negative, 0 or positive.
int CompareNoCase(const char* left, const char* right);

} // namespace platform
