// text_output.cpp - output to a buffer of limited size
#include "text_output.h"

#include <algorithm>
#include <cstring>

std::size_t TextOutput::Room() const {
    return length + 1 < capacity ? capacity - 1 - length : 0;
}

void TextOutput::Append(std::string_view text) {
    const std::size_t fitting = std::min(text.size(), Room());
    if (fitting > 0) {
        std::memcpy(buffer + length, text.data(), fitting);
    }
    length += text.size();
}

void TextOutput::Fill(char character, std::size_t count) {
    const std::size_t fitting = std::min(count, Room());
    if (fitting > 0) {
        std::memset(buffer + length, character, fitting);
    }
    length += count;
}

std::size_t TextOutput::Finish() {
    if (capacity > 0) {
        buffer[std::min(length, capacity - 1)] = '\0';
    }
    return length;
}

void AppendPadded(TextOutput& output, const FormatSpec& spec, std::string_view text) {
    NumberText whole;
    whole.digits = text;
    AppendNumber(output, spec, whole, false);
}

void AppendNumber(TextOutput& output, const FormatSpec& spec, const NumberText& number,
                  bool padWithZeros) {
    const std::size_t used = number.prefix.size() + number.leadingZeros + number.digits.size() +
                             number.innerZeros + number.tail.size();
    const std::size_t width = static_cast<std::size_t>(spec.width);
    const std::size_t padding = width > used ? width - used : 0;
    if (!spec.left && !padWithZeros) {
        output.Fill(' ', padding);
    }
    output.Append(number.prefix);
    if (!spec.left && padWithZeros) {
        output.Fill('0', padding);
    }
    output.Fill('0', number.leadingZeros);
    output.Append(number.digits);
    output.Fill('0', number.innerZeros);
    output.Append(number.tail);
    if (spec.left) {
        output.Fill(' ', padding);
    }
}
