// call_text.h - how the arguments of a call are written down
#pragma once

#include "tests/scripted_sdk/sdk_state.h"

#include <charconv>
#include <string>
#include <type_traits>

namespace scripted {

inline std::string Text(PxnHandle handle) {
    return SdkState::Instance().NameOf(handle);
}
inline std::string Text(const char* text) {
    return text != nullptr ? "\"" + std::string(text) + "\"" : "null";
}
inline std::string Text(const wchar_t* text) {
    if (text == nullptr) {
        return "null";
    }
    std::string narrow = "\"";
    for (; *text != 0; ++text) {
        narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
    }
    return narrow + "\"";
}
inline std::string Text(const PxnFrame* frame) {
    return frame != nullptr
               ? "frame" + std::to_string(reinterpret_cast<std::uintptr_t>(frame->context[2]))
               : "null";
}
inline std::string Text(double value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof(buffer), value).ptr;
    return std::string(buffer, end);
}
template <typename T>
requires std::is_integral_v<T> std::string Text(T value) {
    return std::to_string(value);
}
template <typename T>
requires std::is_function_v<T> std::string Text(T* callback) {
    return callback != nullptr ? "cb" : "null";
}

/// A place that the SDK fills: only whether there is one tells something.
struct Place {
    const void* address;
};
inline std::string Text(Place place) {
    return place.address != nullptr ? "array" : "null";
}

/// Bytes handed to the SDK: [41 0D].
struct Bytes {
    const char* data;
    std::size_t size;
};
inline std::string Text(Bytes bytes) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text = "[";
    for (std::size_t i = 0; bytes.data != nullptr && i < bytes.size; ++i) {
        const auto value = static_cast<unsigned char>(bytes.data[i]);
        text += i == 0 ? "" : " ";
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text + "]";
}

inline std::string Arguments() {
    return "";
}
template <typename First, typename... Rest>
std::string Arguments(First first, Rest... rest) {
    std::string text = Text(first);
    ((text += ", " + Text(rest)), ...);
    return text;
}

} // namespace scripted
