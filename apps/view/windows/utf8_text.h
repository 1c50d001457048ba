// utf8_text.h - the viewer's texts in the form that windows take
#pragma once

#include <string>

/// Bytes that are no UTF-8 become U+FFFD.
std::wstring ToWide(const std::string& text);
/// With the line ends that edit controls want.
std::wstring ToWideLines(const std::string& text);
