// text_output.h - output to a buffer of limited size
#pragma once

#include "format_spec.h"

#include <cstddef>
#include <string_view>

/// Writes text to a caller's buffer up to its capacity and counts the total length.
class TextOutput {
public:
    TextOutput(char* target, std::size_t targetCapacity)
        : buffer(target), capacity(target ? targetCapacity : 0) {}

    void Append(std::string_view text);
    void Fill(char character, std::size_t count);
    /// Null-terminates the text and returns its total length.
    std::size_t Finish();

private:
    std::size_t Room() const;

    char* const buffer;
    const std::size_t capacity;
    std::size_t length = 0;
};

/// A converted number: sign or base prefix, leading zeros, digits, zeros, and exponent.
struct NumberText {
    std::string_view prefix;
    std::size_t leadingZeros = 0;
    std::string_view digits;
    std::size_t innerZeros = 0;
    std::string_view tail;
};

/// Appends `text`, padded with spaces to the width of `spec`.
void AppendPadded(TextOutput& output, const FormatSpec& spec, std::string_view text);
/// Appends a number, padded to the width of `spec` with spaces, or with zeros after the prefix.
void AppendNumber(TextOutput& output, const FormatSpec& spec, const NumberText& number,
                  bool padWithZeros);
/// Appends a floating-point number by conversion f, e or g.
void AppendFloat(TextOutput& output, const FormatSpec& spec, double value);
