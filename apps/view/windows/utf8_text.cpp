// utf8_text.cpp - converts UTF-8 text for windows
#include "apps/view/windows/utf8_text.h"

#include <afxwin.h>

std::wstring ToWide(const std::string& text) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(),
                        static_cast<int>(wide.size()));
    return wide;
}

std::wstring ToWideLines(const std::string& text) {
    std::string lines;
    for (const char character : text) {
        lines += character == '\n' ? "\r\n" : std::string(1, character);
    }
    return ToWide(lines);
}
