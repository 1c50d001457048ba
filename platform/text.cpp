// text.cpp - comparison without case, the same on all platforms
#include "platform/text.h"

namespace platform {

namespace {

// std::tolower depends on the locale, which the host may change.
int LowerAscii(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

} // namespace

int CompareNoCase(const char* left, const char* right) {
    while (*left != '\0' && LowerAscii(*left) == LowerAscii(*right)) {
        ++left;
        ++right;
    }
    return LowerAscii(*left) - LowerAscii(*right);
}

} // namespace platform
