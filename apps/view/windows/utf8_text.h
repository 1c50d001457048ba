// utf8_text.h - converts UTF-8 text for windows
#pragma once

#include <string>

/// Bytes that are not UTF-8 become U+FFFD.
std::wstring ToWide(const std::string& text);
/// The same with the line ends that edit controls require.
std::wstring ToWideLines(const std::string& text);
